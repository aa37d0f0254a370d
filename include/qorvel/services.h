/* Service configuration library: system error texts. */
#ifndef QORVEL_SERVICES_H
#define QORVEL_SERVICES_H

#include <stddef.h>

#include "qorvel/export.h"

QORVEL_BEGIN_DECLS

/* Copies strerror(code) into `buf` (at most size - 1 characters). With `strip`
 * non-zero the text is cut at its first CR LF pair. Returns the length of the
 * text before that cut. `reserved` is not consulted. */
QORVEL_API size_t fmtSystemMsg(unsigned int code, unsigned long reserved, char* buf, size_t size,
                               int strip);

/* fmtSystemMsg without cutting the line end. */
QORVEL_API size_t FormatSysMessage(unsigned int code, unsigned long reserved, char* buf, size_t size);

QORVEL_END_DECLS

#endif
