// Proves that the caller knows a user's password, against the system's user
// and shadow databases.
#pragma once

namespace qorvel {

// 1 when `password` is the password of `user`, 0 when it is not or cannot be
// checked (the reason is shown on the console in every mode). With
// QRB_AUTH_DEBUG set, one outcome line is appended to the authentication debug
// file (QRB_AUTH_DEBUG_FILE, default "./authdbg.log"). Neither the password
// nor any hash is ever written anywhere.
int validateUserPassword(const char* user, const char* password);

// While the launcher holds a password it is neither dumped nor traced by
// other users: a core file would carry the secret. main guards from the
// start; the daemon start releases once the password is wiped (the exec
// gives the JVM its own setting either way).
void guard_secrets();
void release_secrets();

}  // namespace qorvel
