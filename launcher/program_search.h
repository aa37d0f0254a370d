// Where execvp would find the program, without executing it: for --dry-run.
#pragma once

namespace qorvel {

// 0 when execvp would find an executable file for `name` (searched along PATH
// when it holds no '/'), else the errno execvp would fail with: EACCES when
// only files that cannot be executed were found, ENOENT or the lookup's error.
int find_program(const char* name);

}  // namespace qorvel
