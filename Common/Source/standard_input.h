#ifndef STANDARD_INPUT_H
#define STANDARD_INPUT_H

/// Tells what a read of stdin that came up short means. Returns false at the end of input and
/// after an error: no more bytes will come. Otherwise standard input is non-blocking and merely
/// empty: sleeps until it is readable or has ended, clears the stream's error state and returns
/// true. REQUIRES: errno is still that of the read.
bool AwaitStandardInput();

#endif
