#include "launcher/options.h"

#include "launcher/option_handlers.h"
#include "launcher/user_spec.h"

namespace qorvel {
namespace {

constexpr OptionRow flag(char letter, OptionHandler handler, std::string_view synopsis,
                         std::string_view help, int usage_rank) {
    return {letter, "", false, handler, synopsis, help, usage_rank, synopsis, nullptr};
}

constexpr OptionRow valued(char letter, OptionHandler handler, std::string_view synopsis,
                           std::string_view help, int usage_rank = 0, std::string_view usage = "",
                           void (*mask)(char*) = nullptr) {
    return {letter, "", true, handler, synopsis, help, usage_rank, usage, mask};
}

constexpr OptionRow long_option(std::string_view name, bool takes_value, OptionHandler handler,
                                std::string_view synopsis, std::string_view help) {
    return {'\0', name, takes_value, handler, synopsis, help, 0, "", nullptr};
}

constexpr OptionRow kRows[] = {
    valued('c', set_classpath, "-c classpath", "set CLASSPATH (environment references expanded)", 6,
           "-c classpath"),
    valued('w', set_work_dir, "-w directory", "working directory of the JVM", 5,
           "-w [Start in Directory]"),
    valued('e', read_env, "-e count", "read up to 60 NAME=value lines from standard input", 8,
           "-e [envCount]"),
    valued('0', set_stdin_file, "-0 file", "file that becomes standard input", 12,
           "-0 [stdin file]"),
    valued('1', set_stdout_file, "-1 file[::append]",
           "file that becomes standard output (appended to after ::)", 13, "-1 [stdout file]"),
    valued('2', set_stderr_file, "-2 file[::append]",
           "file that becomes standard error (appended to after ::)", 14, "-2 [stderr file]"),
    valued('o', set_console, "-o stderr|stdout|other",
           "console: plain on stderr, tagged on stdout, or none", 7, "-o [stdout|stderr]"),
    valued('m', set_console_mode, "-m silent|verbose", "hide or show progress and failure messages",
           9, "-m [silent|verbose]"),
    valued('u', set_identity, "-u user:group:password", "identity of the daemon child", 4,
           "-u [User:Group:Password]", mask_password),
    flag('d', set_daemon, "-d", "start the JVM in a daemon child; exit once it runs (0) or failed",
         2),
    flag('s', set_suspend, "-s", "with -d, wait for the child and exit with its status", 3),
    valued('r', set_umask, "-r mask",
           "octal file-creation mask of the daemon child (default: inherited)", 1, "-r umask"),
    valued('a', set_props, "-a file::section",
           "class path, JVM options and policy file from a section", 10,
           "-a [property-file::section]"),
    valued('x', set_classpath_from_props, "-x file::section",
           "like -a, with the class path put into CLASSPATH", 11, "-x [property-file::section]"),
    flag('g', taken_by_prescan, "-g", "append a debug log", 0),
    valued('l', taken_by_prescan, "-l file", "name of the debug log (default qorvel.log)"),
    long_option("pidfile", true, set_pidfile, "--pidfile=FILE",
                "write the JVM's process id to FILE; 17 while FILE's process runs"),
    long_option("password-file", true, set_password_file, "--password-file=FILE",
                "take the -u password from the first line of FILE"),
    long_option("dry-run", false, set_dry_run, "--dry-run",
                "check what the start checks, print what it would use, start nothing"),
    long_option("no-password-check", false, set_no_password_check, "--no-password-check",
                "as root, switch to -u's user without its password"),
    long_option("rlimit", true, add_rlimit, "--rlimit=NAME=SOFT[:HARD]",
                "resource limit of the JVM (core, nofile, nproc...), set before -u; repeatable"),
    long_option("stop", false, set_stop, "--stop",
                "with --pidfile: signal its process (group), SIGKILL after --timeout"),
    long_option("timeout", true, set_timeout, "--timeout=SECONDS",
                "--stop: seconds to wait before SIGKILL (default 30)"),
    long_option("signal", true, set_stop_signal, "--signal=NAME",
                "--stop: the first signal, as kill -l names it (default TERM)"),
    long_option("status", false, set_status, "--status",
                "with --pidfile: 0 running (its pid shown), 1 stale file, 3 no file"),
};

// The option string the launcher has always taken. Each letter row, written
// as an option string writes it ("c", or "c:" for a value), must be one of
// its letters, and each of its letters one row; their order means nothing.
constexpr std::string_view kOptionString = "dsgu:w:c:o:e:m:0:1:2:l:a:x:r:";

constexpr bool rows_match_option_string() {
    std::size_t letters = 0, rows = 0;
    for (const OptionRow& row : kRows) rows += row.letter != '\0';
    for (std::size_t i = 0; i < kOptionString.size(); ++i) {
        if (kOptionString[i] == ':') continue;
        ++letters;
        bool value = i + 1 < kOptionString.size() && kOptionString[i + 1] == ':';
        bool found = false;
        for (const OptionRow& row : kRows) {
            found |= row.letter == kOptionString[i] && row.takes_value == value;
        }
        if (!found) return false;
    }
    return letters == rows;
}
static_assert(rows_match_option_string(), "the letter rows differ from the option string");

}  // namespace

std::span<const OptionRow> option_rows() { return kRows; }

const OptionRow* find_letter(char letter) {
    for (const OptionRow& row : kRows) {
        if (letter != '\0' && row.letter == letter) return &row;
    }
    return nullptr;
}

const OptionRow* find_long(std::string_view name) {
    for (const OptionRow& row : kRows) {
        if (!name.empty() && row.name == name) return &row;
    }
    return nullptr;
}

}  // namespace qorvel
