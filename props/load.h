// Reading a FILE operand, with the one message every command gives when it
// cannot.
#pragma once

#include <string>

#include "commands.h"
#include "file_text.h"

namespace props {

// "cannot read PATH: why", the message of every command.
std::string cannot_read(const std::string& path, const std::string& why);

// Loads `path` into `file`; false after c.fail when it cannot be read.
bool load_operand(Invocation& c, const std::string& path, FileText& file);

}  // namespace props
