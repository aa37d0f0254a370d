// qorvel-props check: the findings of each file operand; a file that cannot
// be read is reported and the others are still checked.
#include <algorithm>
#include <cstdio>
#include <iostream>

#include "check.h"
#include "commands.h"
#include "load.h"

namespace props {

// 0 when clean, 1 with warnings only, 2 with errors or a file not read.
int run_check(Invocation& c) {
    int status = kSuccess;
    Json& files = c.doc["files"] = Json::array();
    for (const std::string& path : c.operands) {
        Json& entry = files.emplace_back(Json{{"file", path}});
        FileText file;
        std::string why;
        if (!file.load(path, why)) {
            std::string message = cannot_read(path, why);
            entry["error"] = message;
            std::cerr << "qorvel-props: " << message << '\n';
            status = kFailure;
            continue;
        }
        Json& findings = entry["findings"] = Json::array();
        for (const Finding& f : check_file(file)) {
            status = std::max(status, f.error ? 2 : 1);
            const char* severity = f.error ? "error" : "warning";
            findings.push_back({{"line", f.line}, {"severity", severity}, {"message", f.message}});
            if (!c.json) {
                std::printf("%s:%d: %s: %s\n", path.c_str(), f.line, severity, f.message.c_str());
            }
        }
    }
    return status;
}

}  // namespace props
