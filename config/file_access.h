// File tests private to the configuration library.
#pragma once

namespace qorvel::cfg {

// 1 when `path` (symbolic links followed) is a regular file, else 0.
int is_afile(const char* path);

}  // namespace qorvel::cfg
