#include "launcher/help.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "launcher/console.h"
#include "launcher/options.h"

namespace qorvel {
namespace {

constexpr const char* kPurpose =
    "Use qorvel to setup a working environment prior to invoking the JVM";
constexpr int kSynopsisWidth = 28;

}  // namespace

bool answer_help(const char* word) {
    if (std::strcmp(word, "--version") == 0) {
        std::printf("qorvel %s\n", QORVEL_VERSION);
        return true;
    }
    if (std::strcmp(word, "--help") != 0) return false;
    std::printf("%s\n\nUsage: qorvel [options] program [program arguments]\n\n", kPurpose);
    for (const OptionRow& row : option_rows()) {
        std::printf("  %-*.*s%.*s\n", kSynopsisWidth, static_cast<int>(row.synopsis.size()),
                    row.synopsis.data(), static_cast<int>(row.help.size()), row.help.data());
    }
    std::printf("  %-*s%s\n", kSynopsisWidth, "--help, --version", "this text, or the version");
    return true;
}

void usage() {
    std::vector<const OptionRow*> listed;
    for (const OptionRow& row : option_rows()) {
        if (row.usage_rank > 0) listed.push_back(&row);
    }
    std::sort(listed.begin(), listed.end(),
              [](const OptionRow* a, const OptionRow* b) { return a->usage_rank < b->usage_rank; });
    std::string line = "Usage: qorvel";
    for (const OptionRow* row : listed) (line += ' ') += row->usage;
    outMessage(0, "%s\n\n", kPurpose);
    outMessage(0, "%s ...\n", line.c_str());
}

}  // namespace qorvel
