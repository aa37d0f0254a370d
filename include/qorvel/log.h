/* Debug log: free-form diagnostic text written to a buffered stream.
 *
 * A log handle is a FILE* opened by OpenLogfile or ExtendLogfile, or NULL when
 * opening failed; every routine accepts NULL and then does nothing. None of
 * these routines is safe for concurrent use (LogMsg uses ctime's buffer). */
#ifndef QORVEL_LOG_H
#define QORVEL_LOG_H

#include <stdarg.h>
#include <stdio.h>

#include "qorvel/export.h"

QORVEL_BEGIN_DECLS

/* Writes one message; with `stamp` non-zero it is preceded by "\n<ctime> :: ",
 * with `flush` non-zero the stream is flushed afterwards. */
QORVEL_API void LogMsg(FILE* log, int stamp, int flush, const char* format, ...)
    __attribute__((format(printf, 4, 5)));

/* LogMsg with the arguments as a va_list, for callers that wrap it. */
QORVEL_API void LogMsgV(FILE* log, int stamp, int flush, const char* format, va_list args)
    __attribute__((format(printf, 4, 0)));

/* Opens "<prefix><MM><DD>.log" (local date) for append (`append` non-zero) or
 * truncation. The name is written into `name`, which must hold the prefix plus
 * 9 bytes. Returns NULL when the file cannot be opened. */
QORVEL_API FILE* OpenLogfile(int append, const char* prefix, char* name);

/* Opens `path` as it is, for append or truncation; NULL on failure. */
QORVEL_API FILE* ExtendLogfile(int append, const char* path);

/* Writes the stamped "Log Closed" line and closes the stream. */
QORVEL_API void CloseLogfile(FILE* log);

QORVEL_API void FlushLogfile(FILE* log);

/* A pseudo-random number from 1 to n (n > 0); seeds rand() once per process. */
QORVEL_API int get_random(int n);

QORVEL_END_DECLS

#endif
