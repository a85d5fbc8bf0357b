#ifndef START_H
#define START_H

/// Tidies up what a web server may have left in disorder; the first thing that the program does.
///
/// Opens closed standard streams on /dev/null, for reading: otherwise the log's socket or the
/// document would become standard input or output. A body is then empty, and an answer that nobody
/// can receive counts as not written.
///
/// Blanks the arguments after the program's name, which the program ignores: some servers pass the
/// words of a query string without "=" (RFC 3875, 4.4), and anyone who looks up the program's name
/// in the process table would find it in those words.
void PutInOrder(int a_i_count, char* a_p_arguments[]);

#endif
