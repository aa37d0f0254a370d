// Key lookup and value substitution inside the configuration library. Not
// exported: the service readers and getProperties reach them from here.
#pragma once

#include <cstddef>
#include <cstdint>

#include "qorvel/config.h"

namespace qorvel {

// Lookup flags: the low 16 bits are the value type, the rest are attributes.
inline constexpr std::uint32_t PROP_STRING = 1;
inline constexpr std::uint32_t PROP_INTEGER = 4;           // destination is an 8-byte long
inline constexpr std::uint32_t PROP_WHOLE_LINE = 0x40000;  // whole value, not its first word
inline constexpr std::uint32_t kPropTypeMask = 0xFFFF;

// A numeric default of this value means "no default".
inline constexpr long kNoNumericDefault = 0xDEAD;
// What a number destination holds when its key is absent and has no default.
inline constexpr long kAbsentNumber = 0xFFFFFFFFL;

// Working text of one substitution, terminator included.
inline constexpr std::size_t kSubstitutionSize = 4096;

// Reads `key` from the handle's current section (or, without one, from the
// entries above the first header) into `out`, which holds `outSize` bytes: a
// text cut to outSize - 1 characters, or a long when the type is PROP_INTEGER.
// Defaults apply when the key is absent: `defaultText` (may be `out` itself)
// for texts, `defaultNumber` unless kNoNumericDefault for numbers. Returns 0,
// CFG_NOT_FOUND (then `out` holds the key's name or kAbsentNumber),
// CFG_NULL_HANDLE (out untouched) or CFG_BAD_VALUE. Only the shared stream's
// position changes; the caller's handle does not.
long getPropValue(const CFGHANDLE* handle, const char* key, void* out, std::size_t outSize,
                  std::uint32_t flags, const char* defaultText, long defaultNumber, int substitute);

// Rewrites `value`, read as `key` on `handle`, into `out` (outSize bytes):
// property references, environment references, system-property removal and
// alternatives, in that order. Returns 1, CFG_NULL_HANDLE, or 0 when the
// substitution outgrows its bounds (references that never settle, a working
// text over kSubstitutionSize - 1 characters).
int filterValue(const CFGHANDLE* handle, const char* key, char* out, std::size_t outSize,
                const char* value);

}  // namespace qorvel
