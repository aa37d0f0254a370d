// qorvel-props: what a properties file resolves to, through the library's
// public interface alone. A table of six commands and a few options needs no
// argument-parsing library.
#include <iostream>

#include "command_table.h"

namespace props {

int Invocation::fail(const std::string& message, int status) {
    std::cerr << "qorvel-props: " << message << '\n';
    doc["error"] = message;
    return status;
}

}  // namespace props

int main(int argc, char** argv) {
    props::Invocation c;
    int status = props::dispatch(argc, argv, c);
    if (c.json && c.doc.size() > 1) props::print_json(c.doc);
    return status;
}
