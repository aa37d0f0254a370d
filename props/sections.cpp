// qorvel-props sections: the section names of a file, in file order, as the
// library enumerates them. A header no search reaches is listed too (a reader
// may still meet its lines), marked in -l and in the JSON.
#include <strings.h>

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
    for (const Header& header : file.headers()) {
        if (strncasecmp(header.name.c_str(), prefix.c_str(), prefix.size()) != 0) continue;
        out.push_back({{"name", header.name}, {"line", header.line}, {"reachable", header.reachable}});
        if (c.json) continue;
        if (c.has(kLines)) {
            std::printf("%5d  %s%s\n", header.line, header.name.c_str(),
                        header.reachable ? "" : "  (no search reaches it)");
        } else {
            std::printf("%s\n", header.name.c_str());
        }
    }
    return kSuccess;
}

}  // namespace props
