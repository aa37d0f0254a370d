// Web paths and installed-component flags from the "Corvane" section.
#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "qorvel/services.h"
#include "services/service_read.h"
#include "util/bounded_text.h"

namespace {

constexpr int kComponentFlags = 7;
constexpr std::size_t kComponentsSize = 256;

long read_text(const CFGHANDLE& handle, const char* key, char* out, std::size_t size) {
    return getPropValue(&handle, key, out, size, PROP_STRING, nullptr, PROP_NO_DEFAULT_NUMBER, 1);
}

}  // namespace

extern "C" long getCV_PathInfo(PathInfo* info) {
    if (!info) return EINVAL;
    qorvel::services::OpenFile opened;
    long r = opencfg("Corvane", nullptr, "ubroker.properties", &opened.handle);
    if (r != 0) return r;
    if ((r = read_text(opened.handle, "RootPath", info->RootPath, sizeof info->RootPath)) != 0) {
        return r;
    }
    if ((r = read_text(opened.handle, "ScriptPath", info->ScriptPath, sizeof info->ScriptPath))) {
        return r;
    }
    const char* workDir = std::getenv("WRKDIR");
    qorvel::bounded_copy(info->WorkDir, workDir ? workDir : "");
    return 0;
}

extern "C" long getComponentList(int64_t* flags) {
    if (!flags) return EINVAL;
    qorvel::services::OpenFile opened;
    long r = opencfg("Corvane", nullptr, "ubroker.properties", &opened.handle);
    if (r != 0) return r;
    char components[kComponentsSize] = {};
    r = read_text(opened.handle, "Components", components, sizeof components);
    if (r != 0) return r;
    std::size_t length = std::strlen(components);
    for (int i = 0; i < kComponentFlags; ++i) {
        flags[i] = static_cast<std::size_t>(i) < length && components[i] == '1';
    }
    return 0;
}
