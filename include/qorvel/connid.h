/* Connection identifiers: a repeating-key XOR cipher with a hexadecimal text
 * form, and the record that holds one identifier split into its fields.
 *
 * An identifier reads "first::second::number::rest". Callers own every buffer
 * they pass and size it as each declaration says; nothing is written through a
 * NULL destination or record, and each declaration says what is returned then.
 * Nothing here is shared between calls, so distinct records may be used from
 * distinct threads. */
#ifndef QORVEL_CONNID_H
#define QORVEL_CONNID_H

#include "qorvel/export.h"

QORVEL_BEGIN_DECLS

/* Enciphers `plain` with the repeating `key` into upper-case hex digits, two
 * per byte. `out` must hold 2 * strlen(plain) + 1 bytes and not overlap
 * `plain`. Returns the number
 * of digits written; 0 (and nothing written) when `out` is NULL. A NULL or
 * empty key or plain text counts as empty. */
QORVEL_API long ubEncrypt(const char* plain, const char* key, char* out);

/* Reverses ubEncrypt; digits of either case are read, an odd last digit
 * alone. `out` must hold (strlen(cipher) + 1) / 2 + 1 bytes. Returns the
 * number of bytes written. Text holding anything but hex digits is refused:
 * 0 is returned and `out` is left empty. 0 and nothing written when `out` is
 * NULL. `out` may be `cipher` (deciphering in place); other overlaps are not
 * allowed. */
QORVEL_API long ubDecrypt(const char* cipher, const char* key, char* out);

/* ubEncrypt / ubDecrypt with the library's built-in connection-ID key. */
QORVEL_API int encryptConnId(const char* plain, char* out);
QORVEL_API long decryptConnId(const char* cipher, char* out);

/* XORs `length` bytes of `in` with the repeating `key` into `out` (which may
 * be `in`); applying it twice restores the input. Returns `length`, or 0 when
 * `length` is not positive or `in` or `out` is NULL. An empty or NULL key
 * copies the bytes. */
QORVEL_API int cv_crypto(const char* key, const void* in, int length, void* out);

/* Entry points kept for callers that link against them; they have no work. */
QORVEL_API void cv_encrypt(void);
QORVEL_API void cv_decrypt(void);

/* Widths of the record's text fields, terminator included. */
#define CONNID_ENCRYPTED_SIZE 256
#define CONNID_TEXT_SIZE 512
#define CONNID_FIRST_SIZE 64
#define CONNID_SECOND_SIZE 256
#define CONNID_REST_SIZE 256

/* The longest plain identifier whose enciphered form fits `encryptedId`. */
#define CONNID_ENCIPHER_MAX 127

/* One identifier, whole and split. A plain record owned by the caller. */
typedef struct CONNIDINFO {
    char encryptedId[CONNID_ENCRYPTED_SIZE]; /* hex form, set by encryptIDInConnIDInfo */
    char connId[CONNID_TEXT_SIZE];           /* plain identifier */
    char idFirst[CONNID_FIRST_SIZE];         /* text before the first "::" */
    char idSecond[CONNID_SECOND_SIZE];       /* text between the first and second "::" */
    char idRest[CONNID_REST_SIZE];           /* everything after the third "::" */
    long idNumber;                           /* third field as a decimal, 32-bit value */
    long encryptedIdLength;                  /* characters in encryptedId */
} CONNIDINFO;

/* Copies `text` into connId (cut to 511 characters) and splits it. Missing
 * fields come out empty (idNumber 0); each field is cut to its width and the
 * number to its first 15 characters. encryptedId is not touched. `text` may
 * be a field of *info. A NULL info is ignored. */
QORVEL_API void parseConnID(const char* text, CONNIDINFO* info);

/* parseConnID; returns 0, or EINVAL for a NULL info. */
QORVEL_API int makeConnIDInfo(const char* text, CONNIDINFO* info);

/* Deciphers `cipher` into connId and splits it; returns the characters
 * deciphered. Cipher text that is not hex, or whose plain form would exceed
 * 511 characters, is refused: 0 is returned and connId and the fields are
 * left empty. encryptedId is not touched. `cipher` may be a field of *info,
 * connId included. 0 for a NULL info. */
QORVEL_API long decryptAndFillConnIDInfo(const char* cipher, CONNIDINFO* info);

/* Enciphers connId into encryptedId and sets encryptedIdLength. An identifier
 * over CONNID_ENCIPHER_MAX characters is refused rather than cut: encryptedId
 * is left empty and encryptedIdLength 0. Returns 0, or EINVAL for a NULL info. */
QORVEL_API int encryptIDInConnIDInfo(CONNIDINFO* info);

QORVEL_END_DECLS

#endif
