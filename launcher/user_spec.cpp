#include "launcher/user_spec.h"

#include <cstring>

#include "launcher/settings.h"
#include "util/bounded_text.h"

namespace qorvel {
namespace {

// An overlong field is refused: a cut user or group name could name another account.
bool store(char* field, std::string_view text) {
    return text.empty() || bounded_copy(field, kIdentityFieldSize, text);
}

}  // namespace

bool split_user_spec(std::string_view value, char* user, char* group, char* password) {
    std::memset(user, 0, kIdentityFieldSize);
    std::memset(group, 0, kIdentityFieldSize);
    std::memset(password, 0, kIdentityFieldSize);
    if (value.empty()) return false;

    char* fields[] = {user, group, password};
    int separators = 0;
    bool fits = true;
    // Up to two ':' split the value; the password keeps any further ':'.
    while (separators < 2) {
        std::size_t colon = value.find(':');
        if (colon == std::string_view::npos) break;
        fits &= store(fields[separators], value.substr(0, colon));
        value.remove_prefix(colon + 1);
        ++separators;
    }
    fits &= store(fields[separators], value);

    bool all_empty = !user[0] && !group[0] && !password[0];
    return fits && !all_empty && !(password[0] && !user[0]);
}

void mask_password(char* value) {
    char* first = std::strchr(value, ':');
    char* second = first ? std::strchr(first + 1, ':') : nullptr;
    if (second) std::memset(second + 1, 'x', std::strlen(second + 1));
}

}  // namespace qorvel
