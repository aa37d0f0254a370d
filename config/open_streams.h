// The streams opencfg has opened and closecfg has not yet closed, each with
// the handle it was opened into. A handle is plain caller memory, often an
// uninitialised local, so its own fields cannot tell whether it holds a
// stream: only a stream recorded for that very handle is known to be open.
#pragma once

#include <cstdio>
#include <memory>

#include "config/file_image.h"
#include "qorvel/config.h"

namespace qorvel::open_streams {

// Records `stream` as opened into `handle`.
void add(const CFGHANDLE* handle, FILE* stream);

// The stream `handle` still holds from an earlier opencfg, taken off the
// record; nullptr when it holds none (or only garbage).
FILE* take(const CFGHANDLE* handle);

// Takes `stream` off the record, whichever copy of a handle closes it.
void remove(FILE* stream);

// The image of the file open on `stream`, mapped on first use and shared by
// every copy of its handle until it is closed; nullptr for a stream opencfg
// did not open, or a file that cannot be mapped (or no memory to map it).
std::shared_ptr<FileImage> image_of(FILE* stream) noexcept;

}  // namespace qorvel::open_streams
