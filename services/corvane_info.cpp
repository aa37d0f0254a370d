// Web paths and installed-component flags from the "Corvane" section.
#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "config/lookup.h"
#include "config/no_throw.h"
#include "qorvel/services.h"
#include "services/service_read.h"
#include "util/bounded_text.h"

namespace {

constexpr int kComponentFlags = 7;
constexpr std::size_t kComponentsSize = 256;

long read_text(const qorvel::config::Section& section, const char* key, char* out,
               std::size_t size) {
    return qorvel::config::lookup_value(section, key, out, size, PROP_STRING, nullptr,
                                        PROP_NO_DEFAULT_NUMBER, 1);
}

long path_info(PathInfo* info) {
    qorvel::services::OpenFile opened;
    qorvel::config::Section section;
    long r = qorvel::services::open_section(opened, section, "ubroker.properties", "Corvane");
    if (r != 0) return r;
    if ((r = read_text(section, "RootPath", info->RootPath, sizeof info->RootPath)) != 0) return r;
    if ((r = read_text(section, "ScriptPath", info->ScriptPath, sizeof info->ScriptPath))) return r;
    const char* workDir = std::getenv("WRKDIR");
    qorvel::bounded_copy(info->WorkDir, workDir ? workDir : "");
    return 0;
}

long component_list(int64_t* flags) {
    qorvel::services::OpenFile opened;
    qorvel::config::Section section;
    long r = qorvel::services::open_section(opened, section, "ubroker.properties", "Corvane");
    if (r != 0) return r;
    char components[kComponentsSize] = {};
    if ((r = read_text(section, "Components", components, sizeof components)) != 0) return r;
    std::size_t length = std::strlen(components);
    for (int i = 0; i < kComponentFlags; ++i) {
        flags[i] = static_cast<std::size_t>(i) < length && components[i] == '1';
    }
    return 0;
}

}  // namespace

extern "C" long getCV_PathInfo(PathInfo* info) {
    if (!info) return EINVAL;
    return qorvel::or_on_oom(static_cast<long>(ENOMEM), [&] { return path_info(info); });
}

extern "C" long getComponentList(int64_t* flags) {
    if (!flags) return EINVAL;
    return qorvel::or_on_oom(static_cast<long>(ENOMEM), [&] { return component_list(flags); });
}
