#include "config/handle.h"

#include <unistd.h>

#include <cerrno>
#include <string>

#include "config/no_throw.h"
#include "config/open_streams.h"
#include "util/bounded_text.h"

namespace qorvel::config {
namespace {

// A directory or a FIFO opens for reading like a file: taken as a properties
// file, the one would hide a wrong path, the other would block for ever.
long open_stream(CFGHANDLE* handle) {
    int fd;
    if (long rc = File::open_regular(handle->fileName, fd); rc != 0) return rc;
    handle->fp = fdopen(fd, "r");
    if (!handle->fp) {
        int code = errno;
        close(fd);
        return code;
    }
    open_streams::add(handle, handle->fp, handle->fileName);
    return 0;
}

}  // namespace

long open_handle(const char* sectionName, const char* envVarName, const char* fileName,
                 CFGHANDLE* handle) {
    if (FILE* left = open_streams::take(handle)) std::fclose(left);
    handle->fileName[0] = '\0';
    handle->sectionHeader[0] = '\0';
    handle->sectionOffset = 0;
    handle->fp = nullptr;
    // Reporting such a name as absent would hide a section the file may hold.
    if (sectionName && std::strlen(sectionName) > CFG_SECTION_NAME_MAX) return ENAMETOOLONG;
    if (long rc = resolve_path(envVarName, fileName, handle->fileName); rc != 0) {
        handle->fileName[0] = '\0';
        return rc;
    }
    if (long rc = open_stream(handle); rc != 0) return rc;
    if (sectionName && !or_on_oom(false, [&] { return position_on(*handle, sectionName); })) {
        return CFG_NO_SECTION;
    }
    return 0;
}

void close_handle(CFGHANDLE* handle) {
    if (handle->fp) {
        open_streams::remove(handle->fp);
        std::fclose(handle->fp);
    }
    handle->fp = nullptr;
    handle->sectionHeader[0] = '\0';
    handle->sectionOffset = 0;
}

bool position_on(CFGHANDLE& handle, const char* name) {
    Section section;
    if (!read_handle(handle, section, [&](Section& s) { return find_section(s, name); })) {
        return false;
    }
    handle.sectionOffset = static_cast<long>(section.offset);
    bounded_copy(handle.sectionHeader, section.header);
    return true;
}

namespace {

// The next header from the stream's position (as a caller reading the stream
// may have moved it) whose name begins with `prefix`: its whole name, and the
// handle's sectionOffset after it. False at the end of the file.
bool next_header(CFGHANDLE& handle, const char* prefix, std::string& name) {
    long at = std::ftell(handle.fp);
    std::size_t after = 0;
    Section section;
    bool found = read_handle(handle, section, [&](Section& s) {
        return s.file->next_section(at > 0 ? static_cast<std::size_t>(at) : 0, prefix ? prefix : "",
                                    name, after);
    });
    if (found) handle.sectionOffset = static_cast<long>(after);
    return found;
}

}  // namespace

long next_section_on(CFGHANDLE& handle, const char* prefix, char* outName, std::size_t outSize) {
    std::string name;
    if (!next_header(handle, prefix, name)) return CFG_NO_MORE_SECTIONS;
    std::size_t dot = name.rfind('.');
    if (dot != std::string::npos) name.erase(0, dot + 1);
    if (outName && outSize > 0) bounded_copy(outName, outSize, name);
    return 0;
}

long next_header_on(CFGHANDLE& handle, char* outName, std::size_t outSize) {
    std::string name;
    if (!next_header(handle, "", name)) return CFG_NO_MORE_SECTIONS;
    bool whole = outName && outSize > 0 && bounded_copy(outName, outSize, name);
    return whole ? 0 : ERANGE;
}

}  // namespace qorvel::config
