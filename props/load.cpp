#include "load.h"

namespace props {

std::string cannot_read(const std::string& path, const std::string& why) {
    return "cannot read " + path + ": " + why;
}

bool load_operand(Invocation& c, const std::string& path, FileText& file) {
    std::string why;
    if (file.load(path, why)) return true;
    c.fail(cannot_read(path, why));
    return false;
}

}  // namespace props
