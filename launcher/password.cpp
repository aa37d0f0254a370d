#include "launcher/password.h"

#include <crypt.h>
#include <fcntl.h>
#include <pwd.h>
#include <shadow.h>
#include <string.h>
#include <sys/prctl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
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

// What the password check decided. Every refusal names its cause in a hint.
enum class Verdict {
    verified,
    no_entry,
    no_shadow,
    locked,
    unusable,
    mismatch,
    account_expired,
    password_expired,
};

struct Outcome {
    Verdict verdict;
    const char* debug_line;  // the authentication debug file's line
    const char* console;     // after "ERROR validating password:"; none when verified
    const char* hint;
};

constexpr Outcome kOutcomes[] = {
    {Verdict::verified, "IN qorvel - Password verified.\n", nullptr, nullptr},
    {Verdict::no_entry, "IN qorvel - ERROR validating password: Cannot access password entry.\n",
     "Cannot access password entry.\n", "no account has this name"},
    {Verdict::no_shadow,
     "IN qorvel - ERROR validating password: Cannot access shadow password entry.\n",
     "Cannot access shadow password entry.\n",
     "only the superuser can read the account's shadow entry"},
    {Verdict::locked, "IN qorvel - ERROR validating password: Cannot verify blank password.\n",
     "Cannot verify blank password.\n",
     "the account is locked; the superuser may start it with --no-password-check"},
    {Verdict::unusable, "IN qorvel - ERROR validating password: Cannot verify blank password.\n",
     "Cannot verify blank password.\n", "the account's password hash cannot be checked here"},
    {Verdict::mismatch, "IN qorvel - ERROR validating password: Password is invalid.\n",
     "Password does not match.\n", "the password is wrong"},
    {Verdict::account_expired, "IN qorvel - ERROR validating password: Account has expired.\n",
     "Account has expired.\n", "the account has expired"},
    {Verdict::password_expired, "IN qorvel - ERROR validating password: Password has expired.\n",
     "Password has expired.\n", "the password has expired; change it with passwd"},
};

// The table is indexed by verdict; the build checks that each row sits at its own.
constexpr bool rows_in_order() {
    for (std::size_t i = 0; i < std::size(kOutcomes); ++i) {
        if (static_cast<std::size_t>(kOutcomes[i].verdict) != i) return false;
    }
    return true;
}
static_assert(rows_in_order() &&
              std::size(kOutcomes) == static_cast<std::size_t>(Verdict::password_expired) + 1);

const Outcome& outcome_of(Verdict verdict) { return kOutcomes[static_cast<std::size_t>(verdict)]; }

// The user's entry as the check needs it; the hash is wiped with it.
struct Account {
    bool found = false;     // the user database knows the name
    bool readable = false;  // and its hash could be read
    std::string hash;
    long expire = -1, last_change = -1, max_age = -1;  // days, -1 when unset
    ~Account() { explicit_bzero(hash.data(), hash.size()); }
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

// "x" (either case) says the hash is in the shadow file, with the expiry dates.
void look_up(const char* user, Account& account) {
    const passwd* entry = getpwnam(user);
    if (entry == nullptr) return;
    account.found = true;
    std::string_view field = entry->pw_passwd != nullptr ? entry->pw_passwd : "";
    if (field == "x" || field == "X") {
        const spwd* shadow = getspnam(user);
        if (shadow == nullptr || shadow->sp_pwdp == nullptr) return;
        field = shadow->sp_pwdp;
        account.expire = shadow->sp_expire;
        account.last_change = shadow->sp_lstchg;
        account.max_age = shadow->sp_max;
    }
    account.hash.assign(field);
    account.readable = true;
}

enum class Hashing { matched, differed, failed };

Hashing hash_and_compare(const char* password, std::string_view setting, std::string_view stored) {
    std::string salt(setting);
    char* computed = crypt(password, salt.c_str());
    explicit_bzero(salt.data(), salt.size());
    // "*" is how crypt reports a setting it cannot use.
    if (computed == nullptr || computed[0] == '*' || (computed[0] == '\0' && password[0] != '\0')) {
        return Hashing::failed;
    }
    bool same = same_hash(computed, stored);
    explicit_bzero(computed, std::strlen(computed));
    return same ? Hashing::matched : Hashing::differed;
}

// Spends what a real check would, so the time a refusal takes does not tell
// whether the account exists or is locked: the method of a locked hash, else
// the system's default method.
void spend_dummy_check(const char* password, std::string_view stored) {
    std::string_view method =
        stored.substr(std::min(stored.find_first_not_of("!*"), stored.size()));
    const char* setting = crypt_gensalt(nullptr, 0, nullptr, 0);
    std::string chosen(method.starts_with('$') ? method : (setting ? setting : ""));
    hash_and_compare(password, chosen, "");
    explicit_bzero(chosen.data(), chosen.size());
}

bool is_locked(std::string_view hash) { return hash.starts_with('!') || hash.starts_with('*'); }

// Days since the epoch, as the shadow file counts them.
Verdict expiry(const Account& account) {
    long today = static_cast<long>(std::time(nullptr) / 86400);
    if (account.expire > 0 && today >= account.expire) return Verdict::account_expired;
    if (account.last_change > 0 && account.max_age >= 0 &&
        today >= account.last_change + account.max_age) {
        return Verdict::password_expired;
    }
    return Verdict::verified;
}

Verdict judge(const char* user, const char* password) {
    Account account;
    look_up(user, account);
    Hashing hashing = Hashing::failed;
    if (account.readable) {
        hashing = hash_and_compare(password, salt_of(account.hash), account.hash);
    }
    if (hashing == Hashing::failed) spend_dummy_check(password, account.hash);
    if (!account.found) return Verdict::no_entry;
    if (!account.readable) return Verdict::no_shadow;
    if (hashing == Hashing::failed)
        return is_locked(account.hash) ? Verdict::locked : Verdict::unusable;
    if (hashing == Hashing::differed) return Verdict::mismatch;
    return expiry(account);
}

}  // namespace

int validateUserPassword(const char* user, const char* password) {
    DebugFile debug = open_debug_file();
    const Outcome& outcome = outcome_of(judge(user, password));
    if (debug) std::fputs(outcome.debug_line, debug.get());
    if (outcome.verdict == Verdict::verified) return 1;
    outMessage(0, "%s%s", kRefused, outcome.console);
    outMessage(0, "Hint: %s: %s\n", user, outcome.hint);
    return 0;
}

void guard_secrets() { prctl(PR_SET_DUMPABLE, 0); }

void release_secrets() { prctl(PR_SET_DUMPABLE, 1); }

}  // namespace qorvel
