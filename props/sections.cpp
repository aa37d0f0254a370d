// qorvel-props sections: the section names of a file, in file order.
#include <cstdio>

#include "commands.h"
#include "load.h"

namespace props {

int run_sections(Invocation& c) {
    FileText file;
    c.doc["file"] = c.operands[0];
    if (!load_operand(c, c.operands[0], file)) return kFailure;
    std::string prefix = c.operands.size() > 1 ? c.operands[1] : "";
    Json& out = c.doc["sections"] = Json::array();
    for (const LogicalLine& line : file.lines()) {
        std::string name = header_name(line.text);
        if (name.empty() || name.compare(0, prefix.size(), prefix) != 0) continue;
        if (c.json) {
            out.push_back({{"name", name}, {"line", line.number}});
        } else if (c.has(kLines)) {
            std::printf("%5d  %s\n", line.number, name.c_str());
        } else {
            std::printf("%s\n", name.c_str());
        }
    }
    return kSuccess;
}

}  // namespace props
