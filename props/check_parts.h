// The parts of check, each over one kind of trap; check.cpp walks the file
// and hands each line to them.
#pragma once

#include <qorvel/config.h>
#include <qorvel/services.h>

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "check.h"
#include "file_text.h"

namespace props {

using Findings = std::vector<Finding>;

// ---- The file's bytes (check_layout.cpp) ----

// Line ends, lines a ',' joins to a header or comment, lines cut at the
// length a reader takes.
void check_layout(const FileText& file, Findings& out);

// Whether `line` is the rest of a longer line a reader cut: no line of its own.
bool is_cut_rest(const FileText& file, const LogicalLine& line);

// ---- Environment references and alternatives (check_environment.cpp) ----

// Unset references outside an alternative list, and an alternative list whose
// reader's choice (`resolved`) differs from the first alternative that can be
// used. `handle` is on the entry's section.
void check_environment(const CFGHANDLE& handle, const std::string& key, std::string_view value,
                       std::string_view resolved, int line, Findings& out);

// ---- Service sections (check_services.cpp) ----

struct Family;  // the sections one kind of service reader walks

// The family reading `section`, or nullptr.
const Family* family_of(std::string_view section);

// Levels a reader of `section` needs that `exists` (lower-case names) lacks.
void check_levels(const Family& family, const std::string& section,
                  const std::function<bool(const std::string&)>& exists, int line, Findings& out);

// An unknown key, a number that does not read as written, a wrong
// infoVersion, a value longer than its record field.
void check_service_entry(const Family& family, const CFGHANDLE& handle, const std::string& key,
                         std::string_view resolved, int line, Findings& out);

}  // namespace props
