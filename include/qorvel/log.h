/* Diagnostics: the debug log, data dumps written to it, the trace table and
 * a random event generator.
 *
 * A log handle is a FILE* opened by OpenLogfile or ExtendLogfile, or NULL when
 * opening failed; every log and dump routine accepts NULL and then does
 * nothing. Since a log may hold secrets, both open it close-on-exec, create it
 * with mode 0600, and refuse (NULL, with errno set) rather than write where
 * another user or a planted link decided: a symbolic link as the file itself
 * (ELOOP); an existing file that is not a regular file of the effective user
 * with one link (EPERM); a link on the way, or an existing file, that another
 * user put in a sticky world-writable directory such as /tmp (EACCES).
 * The caller owns an open handle and releases it with CloseLogfile.
 * Nothing here is safe for concurrent use: LogMsg uses ctime's buffer, and the
 * trace table and the seeded flags are process-wide and unlocked. */
#ifndef QORVEL_LOG_H
#define QORVEL_LOG_H

#include <stdarg.h>
#include <stdint.h>
#include <stdio.h>
#include <time.h>

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
 * 9 bytes. Returns NULL when the file cannot be opened, or when `prefix` or
 * `name` is NULL (nothing is written then). */
QORVEL_API FILE* OpenLogfile(int append, const char* prefix, char* name);

/* Opens `path` as it is, for append or truncation; NULL on failure or for a
 * NULL path (errno set as above when the file was refused). */
QORVEL_API FILE* ExtendLogfile(int append, const char* path);

/* Writes the stamped "Log Closed" line and closes the stream. */
QORVEL_API void CloseLogfile(FILE* log);

/* Writes out what the stream holds buffered. */
QORVEL_API void FlushLogfile(FILE* log);

/* A pseudo-random number from 1 to n; 0 when n < 1. Seeds rand() once per
 * process. */
QORVEL_API int get_random(int n);

/* ---- Data dumps ---------------------------------------------------------
 * Each writes a stamp (when `stamp` is non-zero) and the printf-style header,
 * then the data; only the closing line end is flushed, and only with `flush`
 * non-zero. A NULL data address writes " <<NULL pointer>>" after the header. */

/* EBCDIC (code page 500) to 7-bit ASCII; "?" where ASCII has no counterpart. */
QORVEL_API extern const unsigned char ebctoasc[256];

/* Hexadecimal dump, sixteen bytes a line under an offset, with the printable
 * bytes as a text column. */
QORVEL_API void LogDump(FILE* log, int stamp, int flush, const void* data, int length,
                        const char* format, ...) __attribute__((format(printf, 6, 7)));

/* LogDump with the text column read as EBCDIC through ebctoasc. */
QORVEL_API void LogDumpEbcdic(FILE* log, int stamp, int flush, const void* data, int length,
                              const char* format, ...) __attribute__((format(printf, 6, 7)));

/* The bytes as text on one line, "." for each unprintable one. */
QORVEL_API void LogPbCb(FILE* log, int stamp, int flush, const void* data, int length,
                        const char* format, ...) __attribute__((format(printf, 6, 7)));

/* A request block: its header fields, control-information bytes and the
 * hexadecimal dump of each request and response parameter block. The block
 * and every block it points to must be readable; nothing else is checked. A
 * NULL block is shown as for the other dumps. */
QORVEL_API void LogRequest(FILE* log, int stamp, int flush, const void* request, const char* format,
                           ...) __attribute__((format(printf, 5, 6)));

/* ---- Trace table ----------------------------------------------------------
 * Five ring buffers, addressed by trace id 0 to 4, each keeping the latest
 * bytes put into it. The table is process-wide and not locked. */

#define TRACETBL_ENTRIES 5

/* One slot of the table; in use exactly while `buffer` is not NULL. */
typedef struct TRACETBL_ENTRY {
    uint32_t id;             /* the slot's own index while in use, else 0 */
    uint32_t size;           /* capacity of buffer in bytes */
    uint32_t count;          /* bytes held, at most size */
    unsigned char* writePos; /* where the next byte goes */
    unsigned char* buffer;   /* the ring, or NULL when the slot is free */
} TRACETBL_ENTRY;

/* The first free slot, its index stored in *id; NULL (id untouched) when all
 * are in use or id is NULL. */
QORVEL_API TRACETBL_ENTRY* available_tracetbl_entry(uint32_t* id);

/* The slot in use under `id`, or NULL. */
QORVEL_API TRACETBL_ENTRY* find_tracetbl_entry(uint32_t id);

/* Sets up a zeroed ring of `size` bytes in the first free slot and stores its
 * id (stored even when allocation then fails). 1 on success; 0 when no slot is
 * free, the size is 0, id is NULL or memory is short. */
QORVEL_API int InitTrace(uint32_t size, uint32_t* id);

/* Releases the slot and its ring; 1 when it was in use, else 0. */
QORVEL_API int StopTrace(uint32_t id);

/* Appends `length` bytes, dropping the oldest beyond the ring's size. 1 when
 * the slot is in use; 0 otherwise or when `data` is NULL with a length. */
QORVEL_API int PutTraceData(uint32_t id, const void* data, uint32_t length);

/* Moves up to `max` of the oldest bytes held into `out` and removes them.
 * Returns the number moved (0 for a NULL out), also stored in *nread (when
 * not NULL). */
QORVEL_API uint32_t GetTraceData(uint32_t id, void* out, uint32_t max, uint32_t* nread);

/* ---- Event generator and time text ---------------------------------------- */

/* Seeds rand() from the local time's seconds times minutes. */
QORVEL_API void seed_event_generator(void);

/* Counts *countdown down and returns 0; at 0 returns 1 and restarts the
 * countdown at a random 0 to range - 1 (0 when range is below 1). Seeds the
 * generator on its first call. A NULL countdown returns 0 and does nothing. */
QORVEL_API int random_event(uint32_t* countdown, int range);

/* ctime's text of `t` (25 characters with the line feed) cut to size - 1.
 * Returns the characters stored; -1 when `buf` is NULL, `size` is not
 * positive or the time cannot be shown. */
QORVEL_API long time_tToAsciiTime(time_t t, char* buf, int64_t size);

QORVEL_END_DECLS

#endif
