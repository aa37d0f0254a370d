// qorvel-props check: what in a properties file a reader would silently
// ignore, misread or fail on.
#pragma once

#include <string>
#include <vector>

#include "file_text.h"

namespace props {

struct Finding {
    int line;
    bool error;  // else a warning
    std::string message;
};

// Every finding in `file`, ordered by line.
std::vector<Finding> check_file(const FileText& file);

}  // namespace props
