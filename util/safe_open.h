// Opening files as a privileged process without being steered by another
// user's links or files in a shared directory such as /tmp.
#pragma once

#include <sys/types.h>

namespace qorvel {

// open(2), always close-on-exec, that resolves `path` one component at a time
// and refuses with EACCES, whatever the machine's sysctl settings say:
// - a symbolic link in a sticky world-writable directory that belongs neither
//   to the effective user nor to that directory's owner;
// - with O_CREAT, an existing file in such a directory that belongs to neither.
// With O_NOFOLLOW a link as the last component fails with ELOOP, as open does.
// Returns the descriptor, or -1 with errno set.
int open_guarded(const char* path, int flags, mode_t mode);

// For a file only the effective user may read or write (a log): opened through
// open_guarded with O_NOFOLLOW and O_CREAT, mode 0600 when created; an existing
// file is used only when it is a regular file of the effective user with one
// link (else EPERM). O_TRUNC truncates only after those checks passed.
int open_private(const char* path, int flags);

}  // namespace qorvel
