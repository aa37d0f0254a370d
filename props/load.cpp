#include "load.h"

#include <cerrno>
#include <cstring>

namespace props {

std::string cannot_read(const std::string& path) {
    return "cannot read " + path + (errno != 0 ? std::string(": ") + std::strerror(errno) : "");
}

bool load_operand(Invocation& c, const std::string& path, FileText& file) {
    errno = 0;
    if (file.load(path)) return true;
    c.fail(cannot_read(path));
    return false;
}

}  // namespace props
