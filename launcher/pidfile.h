// --pidfile: the id of the process that becomes the JVM, written atomically.
#pragma once

namespace qorvel {

// Creates a temporary file (mode 0644) beside settings.pidfile, so a file that
// cannot be written fails the launch before anything starts. Returns 0 (also
// without --pidfile) or the errno, reported.
int prepare_pidfile();

// In the process that becomes the JVM: writes its id into the temporary file
// and renames it to settings.pidfile. Later calls do nothing. Returns 0 or
// the errno, reported.
int commit_pidfile();

// Removes what this process made of the pid file: the temporary file, or the
// pid file once committed. For a launch that failed after prepare_pidfile.
void discard_pidfile();

// The waiting parent: removes the pid file once the child has ended.
void remove_pidfile();

}  // namespace qorvel
