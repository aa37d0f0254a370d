#include "config/section.h"

#include <cerrno>
#include <cstdlib>
#include <string_view>

#include "config/file_access.h"
#include "qorvel/config.h"
#include "util/bounded_text.h"

namespace qorvel::config {

bool find_section(Section& section, const char* name) {
    if (!section.file || !name) return false;
    char header[CFG_SECTION_NAME_MAX + 3];
    // A cut header would match some other section.
    if (!bounded_format(header, sizeof header, "[%s]", name)) return false;
    std::size_t offset = section.file->find_section(header);
    if (offset == std::string_view::npos) return false;
    section.offset = offset;
    section.header = header;
    return true;
}

long resolve_path(const char* envVarName, const char* fileName, char* path) {
    const char* fromEnv = envVarName ? std::getenv(envVarName) : nullptr;
    const char* given = fromEnv && *fromEnv         ? fromEnv
                        : is_regular_file(fileName) ? fileName
                                                    : nullptr;
    if (given) return bounded_copy(path, CFG_PATH_SIZE, given) ? 0 : ENAMETOOLONG;
    char install[CFG_PATH_SIZE];
    if (long rc = install_path(install, sizeof install); rc != 0) return rc;
    // An absolute name is looked for under the install folder too; joined
    // without its leading "/" it reads as one path in messages.
    const char* name = fileName ? fileName : "ubroker.properties";
    while (*name == '/') ++name;
    bool fits =
        bounded_format(path, CFG_PATH_SIZE, "%s%c%s%c%s", install, '/', "properties", '/', name);
    return fits ? 0 : ENAMETOOLONG;
}

long open_file(const char* envVarName, const char* fileName, std::string& path,
               std::unique_ptr<File>& file) {
    char resolved[CFG_PATH_SIZE] = "";
    if (long rc = resolve_path(envVarName, fileName, resolved); rc != 0) return rc;
    path = resolved;
    return File::open(path, file);
}

}  // namespace qorvel::config
