/* Configuration library: environment-reference expansion and the
 * properties-file reader. */
#ifndef QORVEL_CONFIG_H
#define QORVEL_CONFIG_H

#include "qorvel/export.h"

QORVEL_BEGIN_DECLS

/* Size of the buffer expand_envvars writes into. */
#define QORVEL_EXPAND_MAX 2048

/* Replaces $NAME, ${NAME} and "~$" (a literal "$") in `src` by the current
 * environment. Returns 1 with at most 2047 characters written to `dst`, which
 * must hold QORVEL_EXPAND_MAX bytes; returns 0 and leaves `dst` untouched when
 * a referenced variable is unset or a "{" is left open. */
QORVEL_API int expand_envvars(char* dst, const char* src);

QORVEL_END_DECLS

#endif
