// --pidfile: the id of the process that becomes the JVM, written atomically,
// one running instance per file.
#pragma once

#include <sys/types.h>

#include <string>

namespace qorvel {

inline constexpr int kAlreadyRunning = 17;  // EEXIST

// `name` made absolute against the current directory (as given when that
// cannot be read), so every later step means the same file.
std::string absolute_pidfile(const char* name);

// Refuses with kAlreadyRunning when `file` (absolute; empty without
// --pidfile) names a process that still runs; otherwise creates a temporary
// file (mode 0644) beside it, so a file that cannot be written fails the
// launch before anything starts. Returns 0 or the code, reported.
int prepare_pidfile(const std::string& file);

// The refusals of prepare_pidfile without creating anything: for --dry-run.
int check_pidfile(const std::string& file);

// In the process that becomes the JVM: writes its id into the temporary file
// and renames it to the pid file, replacing a stale one. Later calls do
// nothing. Returns 0 or the errno, reported.
int commit_pidfile();

// The parent of the daemon child: the child writes the file, so the parent
// keeps no descriptor on it.
void leave_pidfile_to_child();

// Removes what this process made of the pid file: the temporary file, or the
// pid file once committed while it still names us. For a launch that failed
// after prepare_pidfile.
void discard_pidfile();

// What --stop and --status find in a pid file (absolute).
struct PidfileOwner {
    int error = 0;        // errno when it could not be read; a missing directory is no file
    bool exists = false;  // the file is there
    pid_t pid = 0;        // the running process it names; 0 for a stale file
};
PidfileOwner find_owner(const std::string& file);

// After --stop: removes `file` while it still names `pid`, which has ended.
void remove_pidfile_of(const std::string& file, pid_t pid);

// The waiting parent, once the child has ended: removes the pid file while it
// still names that child, never a file another instance has taken over since.
void remove_pidfile(pid_t child);

}  // namespace qorvel
