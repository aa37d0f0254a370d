#include "launcher/prop_file.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <new>
#include <span>
#include <string_view>

#include "config/properties_reader.h"
#include "launcher/console.h"
#include "launcher/settings.h"
#include "qorvel/config.h"
#include "util/bounded_text.h"

namespace qorvel {
namespace {

constexpr std::size_t kPartSize = 1024;
constexpr std::string_view kDefaultFile = "JavaTools.properties";
constexpr std::string_view kDefaultSection = "Common";

char env_tmp[kPartSize];  // the file part of the argument

struct PropArgument {
    char path[kPartSize] = "";
    char section[kPartSize] = "";
};

// Splits and expands "file::section". A section that cannot be expanded
// falls back to the default; a file part that cannot, or either part that
// does not fit its buffer, fails: a cut name would read some other file.
bool parse_argument(std::string_view arg, PropArgument& parsed) {
    std::string_view file = arg;
    if (std::size_t sep = arg.find("::"); sep != std::string_view::npos) {
        file = arg.substr(0, sep);
        char section[kPartSize];
        char expanded[QORVEL_EXPAND_MAX];
        if (!bounded_copy(section, arg.substr(sep + 2))) return false;
        if (expand_envvars(expanded, section) && !bounded_copy(parsed.section, expanded)) {
            return false;
        }
    }
    if (parsed.section[0] == '\0') bounded_copy(parsed.section, kDefaultSection);
    if (file.empty()) file = kDefaultFile;
    file.remove_prefix(std::min(file.find_first_not_of(' '), file.size()));

    char expanded[QORVEL_EXPAND_MAX];
    return bounded_copy(env_tmp, file) && expand_envvars(expanded, env_tmp) &&
           bounded_copy(parsed.path, expanded);
}

bool allocate(HeapText& setting, std::size_t size) {
    setting.reset(new (std::nothrow) char[size]());  // a key not found leaves it empty
    return setting != nullptr;
}

// Releases an empty value; logs a kept one.
void keep_if_set(HeapText& setting, const char* name) {
    if (setting[0] == '\0') {
        setting.reset();
    } else {
        trace("Processing -a option, %s = (%s) \n", name, setting.get());
    }
}

// A cut class path, option or policy would start the JVM with some other one.
bool all_whole(std::span<const PropertyRequest> requests, const PropArgument& parsed) {
    for (const PropertyRequest& request : requests) {
        if (request.cut_at == 0) continue;
        report(
            "Unable to set -a <property file> option, (%s) is longer than %zu characters in "
            "section (%s) of file (%s)\n",
            request.key, request.cut_at, parsed.section, parsed.path);
        return false;
    }
    return true;
}

// Why a properties file could not be read, in one line: a name that is no
// file here is also looked for under $VTX/properties.
void explain_read_failure(long rc, const char* file) {
    const char* vtx = std::getenv("VTX");
    if (rc == ENOENT && !vtx) {
        report("Hint: no file (%s) here, and VTX is unset, so $VTX/properties was not searched\n",
               file);
    } else if (rc == ENOENT) {
        report("Hint: no file (%s) here, nor in %s/properties\n", file, vtx);
    } else if (rc == CFG_BAD_VALUE) {
        report("Hint: a value's substitution could not complete\n");
    } else {
        report("Hint: the file (%s) cannot be read: %s\n", file,
               std::strerror(static_cast<int>(rc)));
    }
}

}  // namespace

PropFileResult processPropFile(const char* arg, const char* osname) {
    PropFileResult result;
    JvmSettings& values = result.values;
    PropArgument parsed;
    if (!parse_argument(arg, parsed)) {
        report("Unable to set -a <property file> option, error in argument: (%s)\n", arg);
        return {kPropFileFailed, {}};
    }
    trace("Processing -a option, propFile = (%s) section = (%s)\n", parsed.path, parsed.section);

    bool allocated = allocate(values.classpath, kPropClasspathSize);
    allocated &= allocate(values.jvmargs, kPropJvmargsSize);
    allocated &= allocate(values.policyfile, kPropPolicyfileSize);
    if (!allocated) {
        report("Unable to allocate memory while processing -a (%s)\n", arg);
        return {kPropNoMemory, {}};
    }

    // "Common" is read first, then "Common.<os>" overrides it.
    char section[kPartSize];
    bounded_copy(section, parsed.section);
    if (osname[0] != '\0' &&
        !bounded_format(section, sizeof section, "%s.%s", parsed.section, osname)) {
        report("Unable to set -a <property file> option, error in argument: (%s)\n", arg);
        return {kPropFileFailed, {}};
    }
    PropertyRequest requests[] = {
        {"classpath", values.classpath.get(), kPropClasspathSize},
        {"jvmargs", values.jvmargs.get(), kPropJvmargsSize},
        {"policyfile", values.policyfile.get(), kPropPolicyfileSize},
    };
    int levels = 0;
    if (long rc = read_properties(1, parsed.path, section, requests, &levels); rc != 0) {
        report("Unable to read properties from section (%s) in file (%s)\n", parsed.section,
               parsed.path);
        explain_read_failure(rc, parsed.path);
        return {kPropFileFailed, {}};
    }
    if (levels == 0) {  // most likely a misspelt section: the JVM would start without settings
        report("Warning: section (%s) is not in file (%s)\n", parsed.section, parsed.path);
    }
    if (!all_whole(requests, parsed)) return {EINVAL, {}};
    char* classpath = values.classpath.get();
    std::replace(classpath, classpath + std::strlen(classpath), ',', ':');
    keep_if_set(values.classpath, "classpath");
    keep_if_set(values.jvmargs, "jvmargs");
    keep_if_set(values.policyfile, "policyfile");
    return result;
}

}  // namespace qorvel
