/* Configuration library: environment-reference expansion and the
 * properties-file reader. */
#ifndef QORVEL_CONFIG_H
#define QORVEL_CONFIG_H

#include <stddef.h>
#include <stdio.h>

#include "qorvel/export.h"

QORVEL_BEGIN_DECLS

/* Size of the buffer expand_envvars writes into. */
#define QORVEL_EXPAND_MAX 2048

/* Replaces $NAME, ${NAME} and "~$" (a literal "$") in `src` by the current
 * environment. Returns 1 with at most 2047 characters written to `dst`, which
 * must hold QORVEL_EXPAND_MAX bytes; returns 0 and leaves `dst` untouched when
 * a referenced variable is unset or a "{" is left open. */
QORVEL_API int expand_envvars(char* dst, const char* src);

/* ---- Properties files ---------------------------------------------------- */

/* Status codes of the properties-file reader (besides errno values). */
#define CFG_NOT_FOUND 2L          /* VTX unset, key absent, argument missing */
#define CFG_NO_MORE_SECTIONS 259L /* enumeration reached the end of the file */
#define CFG_NO_SECTION 10004L     /* the named section does not exist */
#define CFG_NULL_HANDLE 10006L    /* a lookup was handed no handle */
#define CFG_BAD_VALUE 10010L      /* value substitution could not complete */

/* Sizes of the handle's text fields. */
#define CFG_PATH_SIZE 256
#define CFG_HEADER_SIZE 1024

/* Longest section name a search takes: "[name]" is built in 256 bytes. */
#define CFG_SECTION_NAME_MAX 253

/* One open properties file. Owned by the caller (usually a local), filled by
 * opencfg, released by closecfg. A byte copy shares the stream and its read
 * position; sectionOffset belongs to each copy. fileName comes first, so a
 * pointer to the handle is also a pointer to the path. */
typedef struct CFGHANDLE {
    char fileName[CFG_PATH_SIZE];        /* resolved path of the open file */
    char sectionHeader[CFG_HEADER_SIZE]; /* "[name]" of the current section, or "" */
    long sectionOffset;                  /* first byte after that header; 0 = top */
    FILE* fp;                            /* open for reading, or NULL */
} CFGHANDLE;

/* Resolves the file (the variable `envVarName` when set and non-empty, else
 * `fileName` when it names a regular file, else $VTX/properties/<fileName or
 * "ubroker.properties">), opens it and, with `sectionName`, positions on that
 * section. Each text may be NULL. Returns 0; 2 when VTX is needed and unset;
 * an errno value when the file cannot be opened (EISDIR when the path names a
 * directory, EINVAL when it names another file that is not a regular one,
 * such as a FIFO, which is never waited on; ENAMETOOLONG when a path or VTX
 * does not fit its buffer, or the section name is over CFG_SECTION_NAME_MAX);
 * 10004 when the section is absent, in which case the file is open and the
 * handle must still be closed; 10006 for a NULL handle. A file of up to
 * 32 MiB is read once, here, and kept until closecfg: every search and lookup
 * on the handle sees it as it was then, and costs no more reading; a larger
 * file is read in parts as calls need them. fp is an ordinary buffered stream
 * the caller may read, and close only through closecfg; every call of this header that reads the file leaves
 * it where reading the lines one by one would have.
 * The handle may be uninitialised. A handle still open from an earlier
 * opencfg is closed first, so its copies must no longer be used. Distinct
 * handles may be opened and closed from distinct threads. */
QORVEL_API long opencfg(const char* sectionName, const char* envVarName, const char* fileName,
                        CFGHANDLE* handle);

/* Closes the stream (if open), empties sectionHeader, zeroes sectionOffset.
 * fileName is kept. Harmless on a closed handle. */
QORVEL_API void closecfg(CFGHANDLE* handle);

/* Positions on the first section whose header's first word is "[name]",
 * compared without regard to case. 1 when found, 0 otherwise (the handle then
 * keeps its previous section; names over CFG_SECTION_NAME_MAX are never
 * found). */
QORVEL_API int find_Section(const char* sectionName, CFGHANDLE* handle);

/* From the stream's current position, finds the next section whose name
 * begins with `prefix` (with case) and writes the name's last dotted
 * component into `outName` (at most outSize - 1 characters and a NUL).
 * Returns 0, or 259 at the end of the file. sectionHeader is not changed.
 * The search goes on from wherever the shared stream was left, and a lookup
 * on the same handle (or a byte copy of it) moves that stream: a getPropValue
 * that does not find its key reads through the next section's header, so an
 * enumeration that looks a key up in each section it finds silently skips the
 * section after every failed lookup. Look keys up through a second handle of
 * the same file, opened with its own opencfg and positioned with find_Section
 * on each section found. */
QORVEL_API long find_NextSection(const char* prefix, char* outName, size_t outSize,
                                 CFGHANDLE* handle);

/* From the stream's current position, the next section header of any name,
 * as find_NextSection reads it: its whole name (the header's text after "[",
 * leading "]" skipped, up to the next "]") into `outName` (at most
 * outSize - 1 characters and a NUL), and sectionOffset set to the first byte
 * after it (sectionHeader is not changed). Returns 0; 259 at the end of the
 * file; ERANGE when the name was cut to fit (the enumeration may go on).
 * A name listed here is not always one find_Section reaches: "[B]x", "[B C]"
 * and a second "[B]" are listed as "B", but find_Section("B") lands on the
 * first header whose first word is "[B]". Compare sectionOffset after both to
 * tell. The stream is shared with lookups as for find_NextSection. */
QORVEL_API long find_NextHeader(char* outName, size_t outSize, CFGHANDLE* handle);

/* Reads `count` keys, given as trailing (const char* key, char* buffer) pairs,
 * from section `sectionName` and each of its dotted ancestors ("a", "a.b",
 * "a.b.c"), the deeper section overriding. A buffer's text on entry is its
 * default. A found value clears the buffer's current text and is written with
 * its NUL; nothing past the longer of the two is touched. The call carries no
 * capacities, so a value is cut only at CFG_VALUE_SIZE - 1 characters with
 * `substitute` non-zero, 1023 without: each buffer must hold that much unless
 * the caller knows its values are shorter. getPropertiesSized takes the
 * capacities. A NULL key or buffer ends the list. Returns 0; 2 when fileName
 * or sectionName is NULL or VTX is needed and unset; the errno of a failed
 * open; ENAMETOOLONG when a level's name ("a.b.c" for "a..b.c") is over
 * CFG_SECTION_NAME_MAX; 10010 when a substitution could not complete (that
 * key's buffer then holds the key's name). The buffers must not overlap. */
QORVEL_API long getProperties(long count, int substitute, const char* fileName,
                              const char* sectionName, ...);

/* getProperties with trailing (const char* key, char* buffer, size_t capacity)
 * triples: each value is cut to capacity - 1 characters and a NUL, and no
 * byte at or past buffer + capacity is read or written. A NULL key or buffer,
 * or a zero capacity, ends the list. Pass each capacity as a size_t (sizeof
 * gives one; cast a literal). */
QORVEL_API long getPropertiesSized(long count, int substitute, const char* fileName,
                                   const char* sectionName, ...);

/* ---- Single values -------------------------------------------------------- */

/* Lookup flags: the low 16 bits are the destination's type, the high bits
 * attributes. services.h adds the attributes its descriptor tables carry. */
#define PROP_STRING 0x1u            /* a NUL-terminated text */
#define PROP_INTEGER 0x4u           /* a long, read as a decimal number */
#define PROP_WHOLE_LINE 0x00040000u /* the whole value, blanks included, not its first word */
#define PROP_TYPE_MASK 0x0000FFFFu

/* A defaultNumber of this value means there is no numeric default. */
#define PROP_NO_DEFAULT_NUMBER 0xDEADL
/* What a number destination holds after a failed lookup. */
#define PROP_ABSENT_NUMBER 0xFFFFFFFFL

/* Size of a substituted value and its NUL (filterValue's `out`). */
#define CFG_VALUE_SIZE 4096

/* Reads `key` from the handle's current section (or, without one, from the
 * entries above the first header), the key compared without regard to case,
 * the first entry winning. `out` holds `outSize` bytes: all of them are
 * cleared when the key is found, then a text gets at most outSize - 1
 * characters and a NUL; for PROP_INTEGER `out` is a long and outSize at least
 * sizeof(long). With `substitute` non-zero the value passes through
 * filterValue. An absent key takes `defaultText` (texts; NULL for none; `out`
 * itself means the default is already in place) or `defaultNumber` (numbers;
 * PROP_NO_DEFAULT_NUMBER for none); defaults are never substituted. Returns
 * 0; 2 when the key is absent without a default (`out` then holds the key's
 * name, or PROP_ABSENT_NUMBER); 10006 for a NULL handle (`out` untouched);
 * 10010 when substitution could not complete (`out` as for 2); 2 with
 * nothing written for a NULL key or out; EINVAL with nothing written for
 * PROP_INTEGER and an outSize below sizeof(long). Only the shared stream's
 * position changes, never the handle. */
QORVEL_API long getPropValue(const CFGHANDLE* handle, const char* key, void* out, size_t outSize,
                             unsigned int flags, const char* defaultText, long defaultNumber,
                             int substitute);

/* Rewrites `value`, read as `key` on `handle` (whose file and section give
 * references their context), into `out`, which must hold CFG_VALUE_SIZE
 * bytes and may be `value` itself: "!{value-of:key}" and
 * "!{value-of:section.key}" take other values of the file, environment
 * references expand (all or none), "!{SystemProperty:...}" is removed and
 * "?alt?alt?default?" keeps the first alternative not left unexpanded.
 * Returns 1; 10006 for a NULL handle; 0 when the substitution cannot complete
 * (references that never settle, a text of CFG_VALUE_SIZE characters or more).
 * A NULL value gives an empty text; a NULL `out` returns 0. */
QORVEL_API int filterValue(const CFGHANDLE* handle, const char* key, char* out, const char* value);

/* Copies $VTX into *pathBuffer (size bytes). Returns 0; 2 when VTX is unset;
 * ENAMETOOLONG when it does not fit. The buffer is untouched on failure. */
QORVEL_API long getInstallPath(char** pathBuffer, size_t size);

/* Reads one logical line (blanks folded, trailing space dropped, lines ending
 * in "," joined) of at most limit - 1 characters into `buffer`. Returns 0, or
 * 1 when the end of the file was met; callers then discard the text. */
QORVEL_API int cfg_getline(char* buffer, int limit, FILE* stream);

/* Skips spaces and tabs; returns the next other character or EOF. */
QORVEL_API int eat_ws(FILE* stream);

/* Splits "key=value" in place: the key (up to the first unescaped "=") goes to
 * `keyword`, the value (leading white space removed) is moved to the front of
 * `line`. `keyword` must hold strlen(line) + 1 bytes. */
QORVEL_API void cfg_getkeyword(char* keyword, char* line);

/* Splits off the first word (up to white space not preceded by a backslash)
 * into `word` and moves the rest, leading white space removed, to the front of
 * `line`. `word` must hold strlen(line) + 1 bytes. */
QORVEL_API void cfg_getword(char* word, char* line);

/* Moves `text` up to the first `delimiter` into `word` and drops it and the
 * delimiter from `text`. `word` must hold strlen(text) + 1 bytes. */
QORVEL_API void getword(char* word, char* text, char delimiter);

/* Length of a space-padded field of `width` characters: the text's length
 * when it ends sooner, else `width` less its trailing spaces; 0 for width <= 0. */
QORVEL_API int spc_len(const char* text, int width);

/* Copies spc_len(text, width) characters and a NUL into `destination`. */
QORVEL_API void spc_copy(char* destination, const char* text, int width);

/* 1 when `path` (symbolic links followed) is a directory, else 0. */
QORVEL_API int is_directory(const char* path);

/* 1 when `path` (symbolic links followed) is a regular file, else 0: a
 * directory or a device is not a file to read settings or input from. */
QORVEL_API int is_afile(const char* path);

QORVEL_END_DECLS

#endif
