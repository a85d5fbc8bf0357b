#ifndef START_H
#define START_H

/// Puts in order what a web server may have left in disorder; the first thing that the program
/// does.
///
/// Standard streams that are closed are opened on /dev/null, for reading: otherwise the log's
/// socket or the document would come to be standard input or output. A body is then empty, and an
/// answer that nobody can receive counts as not written.
///
/// The arguments behind the program's name, which the program ignores, are blanked: some servers
/// pass the words of a query string without "=" (RFC 3875, 4.4), and whoever looks at the process
/// table for the program's name would find it in them.
void PutInOrder(int a_i_count, char* a_p_arguments[]);

#endif
