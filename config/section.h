// What a handle is to the C functions, for the library's own readers: an
// open file and the section a read stands in.
#pragma once

#include <cstddef>
#include <string>

#include "config/file.h"

namespace qorvel::config {

struct Section {
    explicit Section(File* in = nullptr) : file(in) {}
    File* file;
    std::size_t offset = 0;  // first byte after the header; 0 = the top
    std::string header;      // "[name]" of the section, or ""
};

// Positions `section` on the section `name`; false, with `section`
// unchanged, when it is absent or its name is over CFG_SECTION_NAME_MAX.
bool find_section(Section& section, const char* name);

// Resolves a properties file as opencfg does (the variable `envVarName` when
// set and not empty, the file as named when it is a regular file, else
// $VTX/properties/<fileName or "ubroker.properties">) into `path` (a
// CFG_PATH_SIZE buffer). 0, 2 when VTX is needed and unset, ENAMETOOLONG.
long resolve_path(const char* envVarName, const char* fileName, char* path);

// resolve_path, then File::open. `path` holds what was resolved.
long open_file(const char* envVarName, const char* fileName, std::string& path,
               std::unique_ptr<File>& file);

}  // namespace qorvel::config
