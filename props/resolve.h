// What a section resolves to through its levels ("a", "a.b", "a.b.c", the
// deeper overriding), read exactly as getProperties reads it.
#pragma once

#include <string>
#include <vector>

#include "file_text.h"

namespace props {

struct Level {
    std::string name;
    bool found = false;
    int line = 0;  // of its header
};

struct Setting {
    std::string key;    // as written where it was found
    std::string value;  // after substitution unless raw
    std::string level;  // the level it came from
    int line = 0;
    bool failed = false;  // the substitution could not complete
};

struct Resolution {
    std::vector<Level> levels;
    std::vector<Setting> settings;  // in the order keys first appear
};

// The level names of `section`: its dotted components joined one by one;
// empty components are skipped, and a name without any is its own level.
std::vector<std::string> level_names(const std::string& section);

// Resolves `section` of `file`.
void resolve(const FileText& file, const std::string& section, bool raw, Resolution& out);

// The setting of `key` (without regard to case), or nullptr.
const Setting* find_setting(const Resolution& resolution, const std::string& key);

}  // namespace props
