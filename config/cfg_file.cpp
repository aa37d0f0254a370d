// Opening a properties file, and finding its sections by name or by prefix.
#include <strings.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string_view>

#include "config/logical_line.h"
#include "config/open_streams.h"
#include "config/text_split.h"
#include "qorvel/config.h"
#include "util/bounded_text.h"

// The handle is shared with C callers and copied byte for byte: pin its layout.
static_assert(offsetof(CFGHANDLE, fileName) == 0, "a handle pointer doubles as its path");
static_assert(offsetof(CFGHANDLE, sectionOffset) == CFG_PATH_SIZE + CFG_HEADER_SIZE);
static_assert(sizeof(CFGHANDLE) == CFG_PATH_SIZE + CFG_HEADER_SIZE + sizeof(long) + sizeof(FILE*));

namespace {

constexpr std::size_t kLineSize = 2048;
constexpr std::size_t kHeaderTextSize = CFG_SECTION_NAME_MAX + 3;

// Fills handle->fileName from the variable, the given file or $VTX/properties.
long resolve_path(const char* envVarName, const char* fileName, CFGHANDLE* handle) {
    const char* fromEnv = envVarName ? std::getenv(envVarName) : nullptr;
    const char* chosen = fromEnv && *fromEnv ? fromEnv : is_afile(fileName) ? fileName : nullptr;
    if (chosen) return qorvel::bounded_copy(handle->fileName, chosen) ? 0 : ENAMETOOLONG;

    char install[CFG_PATH_SIZE];
    char* installPtr = install;
    if (long rc = getInstallPath(&installPtr, sizeof install); rc != 0) return rc;
    bool fits =
        qorvel::bounded_format(handle->fileName, sizeof handle->fileName, "%s%c%s%c%s", install,
                               '/', "properties", '/', fileName ? fileName : "ubroker.properties");
    return fits ? 0 : ENAMETOOLONG;
}

// A directory opens for reading like a file but holds no lines: taken as an
// empty properties file, it would hide a wrong path behind missing settings.
long open_stream(CFGHANDLE* handle) {
    handle->fp = std::fopen(handle->fileName, "re");  // close-on-exec
    if (!handle->fp) return errno;
    struct stat info;
    if (fstat(fileno(handle->fp), &info) == 0 && S_ISDIR(info.st_mode)) {
        std::fclose(handle->fp);
        handle->fp = nullptr;
        return EISDIR;
    }
    qorvel::open_streams::add(handle, handle->fp);
    // The library reads a mapped file from its image and only positions the
    // stream: unbuffered, a positioning costs no read-ahead.
    if (qorvel::open_streams::image_of(handle->fp)) setvbuf(handle->fp, nullptr, _IONBF, 0);
    return 0;
}

}  // namespace

extern "C" long opencfg(const char* sectionName, const char* envVarName, const char* fileName,
                        CFGHANDLE* handle) {
    if (FILE* left = qorvel::open_streams::take(handle)) std::fclose(left);
    handle->fileName[0] = '\0';
    handle->sectionHeader[0] = '\0';
    handle->sectionOffset = 0;
    handle->fp = nullptr;
    // Reporting such a name as absent would hide a section the file may hold.
    if (sectionName && std::strlen(sectionName) > CFG_SECTION_NAME_MAX) return ENAMETOOLONG;
    if (long rc = resolve_path(envVarName, fileName, handle); rc != 0) {
        handle->fileName[0] = '\0';
        return rc;
    }
    if (long rc = open_stream(handle); rc != 0) return rc;
    if (sectionName && !find_Section(sectionName, handle)) return CFG_NO_SECTION;
    return 0;
}

extern "C" void closecfg(CFGHANDLE* handle) {
    if (handle->fp) {
        qorvel::open_streams::remove(handle->fp);
        std::fclose(handle->fp);
    }
    handle->fp = nullptr;
    handle->sectionHeader[0] = '\0';
    handle->sectionOffset = 0;
}

namespace {

// The search through the file's image; -1 when the section is absent,
// kUnanswered when the stream has no image (or no memory) and must be read.
long indexed_search(FILE* stream, std::string_view header) {
    auto image = qorvel::open_streams::image_of(stream);
    return image ? image->section_offset(header) : qorvel::FileImage::kUnanswered;
}

}  // namespace

extern "C" int find_Section(const char* sectionName, CFGHANDLE* handle) {
    if (!handle || !handle->fp || !sectionName) return 0;
    char header[kHeaderTextSize];
    // A cut header would match some other section.
    if (!qorvel::bounded_format(header, sizeof header, "[%s]", sectionName)) return 0;
    std::string_view wanted = header;

    if (long offset = indexed_search(handle->fp, wanted);
        offset != qorvel::FileImage::kUnanswered) {
        // The shared stream ends where a reading search would have left it.
        std::fseek(handle->fp, offset >= 0 ? offset : 0, offset >= 0 ? SEEK_SET : SEEK_END);
        if (offset < 0) return 0;
        handle->sectionOffset = offset;
        qorvel::bounded_copy(handle->sectionHeader, wanted);
        return 1;
    }
    std::fseek(handle->fp, 0, SEEK_SET);
    char line[kLineSize];
    while (cfg_getline(line, qorvel::cfg::kSearchLimit, handle->fp) == 0) {
        if (line[0] == '\0' || line[0] == '#') continue;
        std::string_view word = qorvel::cfg::first_word(line);
        if (word.size() == wanted.size() && strncasecmp(word.data(), header, wanted.size()) == 0) {
            handle->sectionOffset = std::ftell(handle->fp);
            qorvel::bounded_copy(handle->sectionHeader, wanted);
            return 1;
        }
    }
    return 0;
}

namespace {

// The section name of a header line: the keyword's text after "[", leading
// "]" skipped, up to the next "]".
std::string_view header_name(char* line, char* keyword) {
    cfg_getkeyword(keyword, line);
    std::string_view name = keyword[0] == '[' ? keyword + 1 : keyword;
    std::size_t start = name.find_first_not_of(']');
    if (start == std::string_view::npos) return {};
    name.remove_prefix(start);
    return name.substr(0, name.find(']'));
}

}  // namespace

namespace {

// The next header from `in` whose name begins with `wanted`; its name in
// `name` and the offset after it in `offset`. False at the end.
template <typename Source>
bool next_header(Source& in, std::string_view wanted, std::string_view& name, char* line,
                 char* keyword) {
    while (qorvel::cfg::read_logical_line(line, qorvel::cfg::kSearchLimit, in) == 0) {
        if (line[0] != '[') continue;
        name = header_name(line, keyword);
        if (!name.empty() && name.substr(0, wanted.size()) == wanted) return true;
    }
    return false;
}

}  // namespace

extern "C" long find_NextSection(const char* prefix, char* outName, size_t outSize,
                                 CFGHANDLE* handle) {
    if (!handle || !handle->fp) return CFG_NO_MORE_SECTIONS;
    std::string_view wanted = prefix ? prefix : "";
    char line[kLineSize];
    char keyword[kLineSize];
    std::string_view name;
    bool found;
    long after;  // where the stream stands once the search is done
    if (auto image = qorvel::open_streams::image_of(handle->fp)) {
        long at = std::ftell(handle->fp);
        auto start = static_cast<std::size_t>(at < 0 ? 0 : at);
        qorvel::cfg::MemorySource in{image->data(), image->size(), std::min(start, image->size())};
        found = next_header(in, wanted, name, line, keyword);
        after = static_cast<long>(in.pos);
        std::fseek(handle->fp, after, SEEK_SET);
    } else {
        qorvel::cfg::StreamSource in{handle->fp};
        found = next_header(in, wanted, name, line, keyword);
        after = found ? std::ftell(handle->fp) : 0;
    }
    if (!found) return CFG_NO_MORE_SECTIONS;
    handle->sectionOffset = after;
    std::size_t dot = name.rfind('.');
    if (dot != std::string_view::npos) name.remove_prefix(dot + 1);
    if (outName && outSize > 0) qorvel::bounded_copy(outName, outSize, name);
    return 0;
}
