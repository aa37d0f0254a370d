// qorvel-props service: one record as the library's reader fills it.
#include <cstdio>
#include <iostream>

#include "commands.h"
#include "service.h"

namespace props {
namespace {

// The reader's account of a failure, or of what it passed over.
std::string detail_text(const ErrDetail& d) {
    return "code " + std::to_string(d.code) + ", system error " + std::to_string(d.sysError) +
           ", " + d.where + ": " + d.message;
}

Json detail_json(const ErrDetail& d) {
    return {{"code", d.code}, {"sysError", d.sysError}, {"where", d.where}, {"message", d.message}};
}

void print_fields(Invocation& c, const std::vector<Field>& fields) {
    Json& out = c.doc["fields"] = Json::object();
    for (const Field& f : fields) {
        out[f.key] = f.number ? Json(f.integer) : Json(f.text);
        if (c.json) continue;
        if (f.number) std::printf("%s = %lld\n", f.key.c_str(), f.integer);
        if (!f.number) std::printf("%s = %s\n", f.key.c_str(), f.text.c_str());
    }
}

}  // namespace

int run_service(Invocation& c) {
    const std::string& kind = c.operands[0];
    const std::string& path = c.operands[1];
    std::vector<std::string> names(c.operands.begin() + 2, c.operands.end());
    c.doc["kind"] = kind;
    c.doc["file"] = path;
    c.doc["names"] = names;
    ServiceRead read;
    std::string error;
    if (!read_service(kind, path, names, read, error)) return c.fail(error);
    c.doc["result"] = read.result;
    c.doc["detail"] = read.detail.code != 0 ? detail_json(read.detail) : Json(nullptr);
    // The reader's code is no exit status: 10004 would be 20 once cut to eight
    // bits. A system error is the file that cannot be read.
    if (read.result != 0) {
        return c.fail(path + " read failed: " + detail_text(read.detail),
                      read.detail.code == CV_ERR_SYSTEM ? kFailure : kNo);
    }
    if (read.detail.code != 0) {
        std::cerr << "qorvel-props: note: " << path << ": " << detail_text(read.detail) << '\n';
    }
    print_fields(c, read.fields);
    return kSuccess;
}

}  // namespace props
