// The C handle as the library's code meets it: opened into caller memory,
// read through a File over its stream for the length of one call, and left
// where reading its lines one by one would have left it.
#pragma once

#include <cstddef>
#include <cstdio>
#include <cstring>

#include "config/open_streams.h"
#include "config/section.h"
#include "qorvel/config.h"

namespace qorvel::config {

// opencfg, closecfg, find_Section, find_NextSection and find_NextHeader;
// `handle` is not null.
long open_handle(const char* sectionName, const char* envVarName, const char* fileName,
                 CFGHANDLE* handle);
void close_handle(CFGHANDLE* handle);
bool position_on(CFGHANDLE& handle, const char* name);
long next_section_on(CFGHANDLE& handle, const char* prefix, char* outName, std::size_t outSize);
long next_header_on(CFGHANDLE& handle, char* outName, std::size_t outSize);

// Runs `read` on the handle's file, with `section` taken from the handle, and
// leaves the stream where reading its lines would have left it. A handle
// without a stream reads as a file with nothing in it. `section` must not be
// used to reach the file once this returns.
template <typename Read>
auto read_handle(const CFGHANDLE& handle, Section& section, Read read) {
    section.offset = handle.sectionOffset > 0 ? static_cast<std::size_t>(handle.sectionOffset) : 0;
    section.header.assign(handle.sectionHeader, strnlen(handle.sectionHeader, CFG_HEADER_SIZE));
    if (!handle.fp) return read(section);
    std::shared_ptr<File> file =
        open_streams::file_of(handle.fp, {handle.fileName, strnlen(handle.fileName, CFG_PATH_SIZE)});
    long before = std::ftell(handle.fp);
    file->set_stop(before > 0 ? static_cast<std::size_t>(before) : 0);
    section.file = file.get();
    auto result = read(section);
    section.file = nullptr;
    std::fseek(handle.fp, static_cast<long>(file->stop()), SEEK_SET);
    return result;
}

}  // namespace qorvel::config
