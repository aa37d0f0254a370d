// Paths: what a name on disk is, and the installation directory.
#pragma once

#include <cstddef>

namespace qorvel::config {

// Whether `path` (links followed) is a regular file, or a directory.
bool is_regular_file(const char* path);
bool is_directory_path(const char* path);

// $VTX into `buffer` (size bytes): 0, 2 when unset, ENAMETOOLONG when it does
// not fit; the buffer is untouched on failure.
long install_path(char* buffer, std::size_t size);

}  // namespace qorvel::config
