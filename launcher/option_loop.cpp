#include "launcher/option_loop.h"

#include <strings.h>
#include <unistd.h>

#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string_view>

#include "config/expand_envvars.h"
#include "launcher/console.h"
#include "launcher/env_lines.h"
#include "launcher/getopt.h"
#include "launcher/pidfile.h"
#include "launcher/prop_file.h"
#include "launcher/settings.h"
#include "launcher/user_spec.h"
#include "qorvel/config.h"
#include "util/bounded_text.h"

namespace qorvel {
namespace {

constexpr std::size_t kClasspathSize = 4096;
constexpr std::size_t kStagingSize = 1024;
constexpr std::size_t kRedirectSlack = 1024;  // room an expansion may add to a file name

// putenv keeps a pointer to it, so it lives as long as the process.
char env_classpath[kClasspathSize];

int set_work_dir(const char* arg) {
    char expanded[QORVEL_EXPAND_MAX];
    // A cut directory would be some other directory: refuse instead.
    if (!expand_envvars(expanded, arg) || !bounded_copy(settings.workDir, expanded)) {
        report("Unabled to set -w <workDir> option, error in argument: (%s)\n", arg);
        return kWorkDirFailed;
    }
    trace("Enabled -w option, cwd = (%s)\n", settings.workDir);
    return 0;
}

int set_classpath(const char* arg) {
    char expanded[QORVEL_EXPAND_MAX];
    Expansion result = expand_references(expanded, arg);
    if (result == Expansion::kFailed) {
        report("Unabled to set -c <classpath> option, error in argument: (%s)\n", arg);
        return kClasspathFailed;
    }
    if (result == Expansion::kCut) {  // a cut class path would load some other set of classes
        report("Unable to set -c <classpath> option, longer than %d characters: (%s)\n",
               QORVEL_EXPAND_MAX - 1, arg);
        return EINVAL;
    }
    bounded_format(env_classpath, sizeof env_classpath, "%s=%s", "CLASSPATH", expanded);
    putenv(env_classpath);
    trace("Enabled -c option, set (%s)\n", env_classpath);
    return 0;
}

// -x: like -a, but the class path goes into the environment instead of the
// JVM's arguments.
int set_classpath_from_props(const char* arg) {
    if (int rc = processPropFile(arg)) {
        report("Unable to set -x option, error in argument: (%s)\n", arg);
        return rc == EINVAL ? rc : kClasspathFailed;
    }
    if (!settings.classpath) {
        trace("-x option but no CLASSPATH found");
        return 0;
    }
    // A cut class path would load some other set of classes: refuse it.
    if (!bounded_format(env_classpath, sizeof env_classpath, "%s=%s", "CLASSPATH",
                        settings.classpath.get())) {
        report("Unable to set -x option, error in argument: (%s)\n", arg);
        return kClasspathFailed;
    }
    putenv(env_classpath);
    trace("Enabled -x option, set (%s)\n", env_classpath);
    settings.classpath.reset();
    return 0;
}

void set_console_mode(const char* arg) {
    if (strcasecmp(arg, "silent") == 0) {
        settings.fOption = (settings.fOption & ~VERBOSE_MODE) | SILENT_MODE;
        trace("Enabled -m option, SILENT_MODE\n");
    } else if (strcasecmp(arg, "verbose") == 0) {
        settings.fOption = (settings.fOption & ~SILENT_MODE) | VERBOSE_MODE;
        trace("Enabled -m option, VERBOSE_MODE\n");
    }
}

// Expands a redirection file name into a fresh heap buffer with room for the
// name plus kRedirectSlack. Returns 0, kNoMemory or kRedirectFailed.
int expand_file_name(const char* name, HeapText& target) {
    std::size_t size = std::strlen(name) + kRedirectSlack + 1;
    HeapText buffer(new (std::nothrow) char[size]);
    if (!buffer) return kNoMemory;
    char expanded[QORVEL_EXPAND_MAX];
    if (expand_references(expanded, name) != Expansion::kWhole ||
        !bounded_copy(buffer.get(), size, expanded)) {
        return kRedirectFailed;
    }
    target = std::move(buffer);
    return 0;
}

int set_stdin_file(const char* arg) {
    int rc = expand_file_name(arg, settings.file_stdin);
    if (rc == kRedirectFailed) {
        report("Unabled to set -0 <file_stdin> option, error in argument: (%s)\n", arg);
    }
    if (rc == 0) trace("Enabled -0 option, file_stdin = (%s)\n", settings.file_stdin.get());
    return rc;
}

// -1 and -2: "file" keeps the stream's open flags, "file::anything" selects append.
int set_output_file(const char* arg, int stream) {
    bool is_stdout = stream == 1;
    HeapText& file = is_stdout ? settings.file_stdout : settings.file_stderr;
    int& oflags = is_stdout ? settings.oflags_stdout : settings.oflags_stderr;
    const char* name = is_stdout ? "stdout" : "stderr";

    std::string_view file_part = arg;
    if (std::size_t sep = file_part.find("::"); sep != std::string_view::npos) {
        file_part = file_part.substr(0, sep);
        oflags = OFLAGS_APPEND;
    }
    // The file part alone is expanded, so it needs a terminated copy of its own;
    // a cut name would open some other file.
    char staged[kStagingSize];
    int rc = bounded_copy(staged, file_part) ? expand_file_name(staged, file) : kRedirectFailed;
    if (rc == kNoMemory) report("Unable to allocate memory for %s file name\n", name);
    if (rc == kRedirectFailed) {
        report("Unabled to set -%d <file_%s> option, error in argument: (%s)\n", stream, name, arg);
    }
    if (rc == 0) {
        trace("Enabled -%d option, file_%s = (%s) oflags_%s = (%s)\n", stream, name, file.get(),
              name, oflags == OFLAGS_APPEND ? "append" : "create");
    }
    return rc;
}

int set_identity(char* arg) {
    bool valid = split_user_spec(arg, settings.user, settings.group, settings.password);
    mask_password(arg);  // the settings hold it now
    if (valid) return 0;
    // Shown in every mode: a launch under the wrong identity must never pass quietly.
    outMessage(0, "Format error in -u parameter\n");
    outMessage(0, "syntax is -u User:Group:Password\n");
    return kUserFormat;
}

// A mask is one to four octal digits, at most 0777: anything else, read as
// far as it goes, would quietly give the JVM some other mask, often 0.
bool set_umask(const char* arg) {
    std::string_view text = arg;
    int mask = 0;
    auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), mask, 8);
    if (text.empty() || text.size() > 4 || error != std::errc() ||
        end != text.data() + text.size() || mask > 0777) {
        outMessage(0, "Unable to set -r <umask> option, not an octal mask up to 0777: (%s)\n", arg);
        return false;
    }
    settings.umask_value = mask;
    trace("Enabled -r option, umask = (0%o) (only valid with -d)\n", static_cast<unsigned>(mask));
    return true;
}

// Acts on one option; returns 0 or a failure code. Faulty letters set `bad`.
int apply_option(int letter, char* arg, bool& bad) {
    switch (letter) {
        case 'd':
            settings.fOption |= DAEMON_START;
            trace("Enabled -d option, DAEMON_START\n");
            return 0;
        case 's':
            settings.fOption |= SUSPEND_AFTER_START;
            trace("Enabled -s option, SUSPEND_AFTER_START\n");
            return 0;
        case 'g':  // decided by the pre-scans
        case 'l':
            return 0;
        case 'a':
            return processPropFile(arg);
        case 'x':
            return set_classpath_from_props(arg);
        case 'u':
            return set_identity(arg);
        case 'w':
            return set_work_dir(arg);
        case 'c':
            return set_classpath(arg);
        case 'o':
            bounded_copy(settings.outputDesc, arg);
            trace("Enabled -o option, outputDesc = (%s)\n", settings.outputDesc);
            return 0;
        case 'e':
            read_env_lines(arg, stdin);
            return 0;
        case 'm':
            set_console_mode(arg);
            return 0;
        case '0':
            return set_stdin_file(arg);
        case '1':
            return set_output_file(arg, 1);
        case '2':
            return set_output_file(arg, 2);
        case 'r':
            if (!set_umask(arg)) {
                settings.fOption = -1;
                bad = true;
            }
            return 0;
        default:
            settings.fOption = -1;  // every bit reads as set from here on
            bad = true;
            return 0;
    }
}

// The value of `word` when it is "name=value" with a value, else nullptr.
const char* long_value(std::string_view word, std::string_view name) {
    if (!word.starts_with(name) || word.size() <= name.size() || word[name.size()] != '=') {
        return nullptr;
    }
    const char* value = word.data() + name.size() + 1;
    return *value != '\0' ? value : nullptr;
}

// Acts on "--name[=value]"; an unknown or incomplete one is a bad option.
void apply_long_option(const char* program, const char* word, bool& bad) {
    if (const char* file = long_value(word, "pidfile")) {
        settings.pidfile = absolute_pidfile(file);
        trace("Enabled --pidfile option, file = (%s)\n", settings.pidfile.c_str());
    } else if (const char* secret = long_value(word, "password-file")) {
        settings.passwordFile = secret;
        trace("Enabled --password-file option, file = (%s)\n", secret);
    } else if (std::string_view(word) == "dry-run") {
        settings.dryRun = true;
        trace("Enabled --dry-run option\n");
    } else if (std::string_view(word) == "no-password-check" && getuid() == 0) {
        settings.noPasswordCheck = true;
        trace("Enabled --no-password-check option\n");
    } else if (std::string_view(word) == "no-password-check") {
        // Only the superuser may waive the check; anyone else needs the password.
        if (opt::opterr) {
            std::fprintf(stderr, "%s: --no-password-check is for the superuser only\n", program);
        }
        settings.fOption = -1;
        bad = true;
    } else {
        if (opt::opterr) std::fprintf(stderr, "%s: unrecognized option '--%s'\n", program, word);
        settings.fOption = -1;
        bad = true;
    }
}

}  // namespace

int scan_options(int argc, char** argv) {
    trace("FCN: processConfig() - process Configuration/Startup options.\n");
    opt::opterr = 1;
    opt::optind = 0;
    bool bad = false;
    for (int letter; (letter = opt::getopt(argc, argv, opt::kOptionString)) != -1;) {
        if (letter == opt::kLongOption) {
            apply_long_option(argv[0], opt::optarg, bad);
        } else if (int rc = apply_option(letter, opt::optarg, bad); rc != 0) {
            return rc;
        }
    }
    return bad ? kBadOption : 0;
}

}  // namespace qorvel
