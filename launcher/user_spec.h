// Splitting the -u value "User:Group:Password".
#pragma once

#include <string_view>

namespace qorvel {

// Fills user, group and password (each kIdentityFieldSize bytes, zero-filled
// first). False on a format error: all fields empty, a password without a user,
// or a field too long for its buffer.
bool split_user_spec(std::string_view value, char* user, char* group, char* password);

// Overwrites the password of a User:Group:Password value with 'x', keeping
// its length, so the word no longer shows it.
void mask_password(char* value);

}  // namespace qorvel
