// The version of the library that runs, for programs that compare it with
// the QORVEL_VERSION_* macros they were built with.
#include "qorvel/version.h"

extern "C" const char* qorvel_version(void) { return QORVEL_VERSION_STRING; }
