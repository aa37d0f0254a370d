// Reading of one enciphered byte; private to the connection-ID cipher.
#pragma once

namespace qorvel {

// The two characters at `digits` read as one base-16 number (as strtol reads
// them: leading blanks, a sign and "0x" pass, conversion stops at the first
// non-digit, nothing convertible gives 0), reduced to a signed byte. A NUL
// first character ends the text there; the second is then never read.
int unhex(const char* digits);

}  // namespace qorvel
