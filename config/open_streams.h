// The streams opencfg has opened and closecfg has not yet closed, each with
// the handle it was opened into and what the searches have learnt of its file.
// A handle is plain caller memory, often an uninitialised local, so its own
// fields cannot tell whether it holds a stream: only a stream recorded for
// that very handle is known to be open.
#pragma once

#include <cstdio>
#include <memory>
#include <string_view>

#include "config/file.h"
#include "qorvel/config.h"

namespace qorvel::open_streams {

// Records `stream` as opened into `handle`, with one snapshot of its file.
void add(const CFGHANDLE* handle, FILE* stream, std::string_view path);

// The stream `handle` still holds from an earlier opencfg, taken off the
// record; nullptr when it holds none (or only garbage).
FILE* take(const CFGHANDLE* handle);

// Takes `stream` off the record, whichever copy of a handle closes it.
void remove(FILE* stream);

// The File `stream` reads. A recorded stream's is kept until the stream is
// closed: the file as opened, whose index of sections and entries serves
// every call on the handle and its copies. Any other stream gets a File of
// its own. Throws std::bad_alloc.
std::shared_ptr<config::File> file_of(FILE* stream, std::string_view path);

}  // namespace qorvel::open_streams
