#include "launcher/password.h"

#include <crypt.h>
#include <fcntl.h>
#include <pwd.h>
#include <shadow.h>
#include <string.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>

#include "launcher/console.h"
#include "util/safe_open.h"

namespace qorvel {
namespace {

constexpr char kDefaultDebugFile[] = "./authdbg.log";
constexpr char kRefused[] = "ERROR validating password:";

struct FileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using DebugFile = std::unique_ptr<std::FILE, FileCloser>;

// Opened as a file of our own only (see open_private): the launcher runs as
// the superuser, often in a directory others can write. Left out, with a
// warning, when that is not possible.
DebugFile open_debug_file() {
    if (std::getenv("QRB_AUTH_DEBUG") == nullptr) return nullptr;
    const char* chosen = std::getenv("QRB_AUTH_DEBUG_FILE");
    const char* path = chosen != nullptr ? chosen : kDefaultDebugFile;
    int fd = open_private(path, O_WRONLY | O_APPEND);
    std::FILE* file = fd != -1 ? fdopen(fd, "a") : nullptr;
    if (file == nullptr) {
        int code = errno;
        if (fd != -1) close(fd);
        report("Warning: authentication debug file (%s) not written: %s\n", path,
               std::strerror(code));
    }
    return DebugFile(file);
}

// The stored hash, wiped before its memory is given back.
class StoredHash {
  public:
    ~StoredHash() { explicit_bzero(text_.data(), text_.size()); }
    std::string& text() { return text_; }

  private:
    std::string text_;
};

// Modern methods ("$5$", "$6$", "$y$", "$2b$" ...) take the whole stored hash
// as their setting; traditional and "$1$" hashes keep their salt prefix.
std::string_view salt_of(std::string_view stored) {
    if (stored.empty()) return stored;
    if (stored.starts_with("$1$")) return stored.substr(0, 11);
    if (stored.starts_with("$")) return stored;
    return stored.substr(0, 2);
}

// Compares over the computed hash's length without stopping at the first
// difference, so the time taken says nothing about the stored hash.
bool same_hash(std::string_view computed, std::string_view stored) {
    unsigned char difference = 0;
    for (std::size_t i = 0; i < computed.size(); ++i) {
        unsigned char theirs = i < stored.size() ? static_cast<unsigned char>(stored[i]) : 0;
        difference |= static_cast<unsigned char>(computed[i]) ^ theirs;
    }
    return difference == 0;
}

int refuse(std::FILE* debug, const char* debug_reason, const char* console_reason) {
    if (debug != nullptr) {
        std::fprintf(debug, "IN qorvel - ERROR validating password: %s", debug_reason);
    }
    outMessage(0, "%s%s", kRefused, console_reason);
    return 0;
}

// Looks up the stored hash; false (after refusing) when it cannot be read.
bool find_stored_hash(const char* user, std::FILE* debug, std::string& stored) {
    const passwd* entry = getpwnam(user);
    if (entry == nullptr) {
        refuse(debug, "Cannot access password entry.\n", "Cannot access password entry.\n");
        return false;
    }
    std::string_view field = entry->pw_passwd != nullptr ? entry->pw_passwd : "";
    if (field == "x" || field == "X") {
        const spwd* shadow = getspnam(user);
        if (shadow == nullptr || shadow->sp_pwdp == nullptr) {
            refuse(debug, "Cannot access shadow password entry.\n",
                   "Cannot access shadow password entry.\n");
            return false;
        }
        field = shadow->sp_pwdp;
    }
    stored.assign(field);
    return true;
}

}  // namespace

int validateUserPassword(const char* user, const char* password) {
    DebugFile debug = open_debug_file();
    StoredHash stored;
    if (!find_stored_hash(user, debug.get(), stored.text())) return 0;

    std::string salt(salt_of(stored.text()));
    char* computed = crypt(password, salt.c_str());
    explicit_bzero(salt.data(), salt.size());
    // "*" is how crypt reports a setting it cannot use.
    if (computed == nullptr || computed[0] == '*' || (computed[0] == '\0' && password[0] != '\0')) {
        return refuse(debug.get(), "Cannot verify blank password.\n",
                      "Cannot verify blank password.\n");
    }
    bool verified = same_hash(computed, stored.text());
    explicit_bzero(computed, std::strlen(computed));
    if (!verified) {
        return refuse(debug.get(), "Password is invalid.\n", "Password does not match.\n");
    }
    if (debug) std::fputs("IN qorvel - Password verified.\n", debug.get());
    return 1;
}

}  // namespace qorvel
