// The streams opencfg has opened and closecfg has not yet closed, each with
// the handle it was opened into. A handle is plain caller memory, often an
// uninitialised local, so its own fields cannot tell whether it holds a
// stream: only a stream recorded for that very handle is known to be open.
#pragma once

#include <cstdio>

#include "qorvel/config.h"

namespace qorvel::open_streams {

// Records `stream` as opened into `handle`.
void add(const CFGHANDLE* handle, FILE* stream);

// The stream `handle` still holds from an earlier opencfg, taken off the
// record; nullptr when it holds none (or only garbage).
FILE* take(const CFGHANDLE* handle);

// Takes `stream` off the record, whichever copy of a handle closes it.
void remove(FILE* stream);

}  // namespace qorvel::open_streams
