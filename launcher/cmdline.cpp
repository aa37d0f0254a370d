#include "launcher/cmdline.h"

#include <cerrno>
#include <cstring>
#include <memory>
#include <new>
#include <string_view>

#include "launcher/console.h"
#include "launcher/settings.h"
#include "qorvel/config.h"
#include "util/bounded_text.h"

namespace qorvel {
namespace {

constexpr int kWordUnusable = 22;
constexpr int kLineTooLong = 7;

bool has_space(std::string_view text) {
    return text.find_first_of(" \t\n\v\f\r") != std::string_view::npos;
}

// Appends a settings-derived part after the program word; it must fit the
// caller's buffer, since a cut option would change the command.
bool append_setting(char* line, std::size_t lineSize, const char* plain, const char* quoted,
                    HeapText& setting) {
    if (!setting || setting[0] == '\0') return true;
    std::size_t used = std::strlen(line);
    bool fits = bounded_format(line + used, lineSize - used,
                               has_space(setting.get()) ? quoted : plain, setting.get());
    setting.reset();
    return fits;
}

bool append_settings(char* line, std::size_t lineSize, JvmSettings& jvm) {
    return append_setting(line, lineSize, " -classpath %s", " -classpath \"%s\"", jvm.classpath) &&
           append_setting(line, lineSize, " %s", " %s", jvm.jvmargs) &&
           append_setting(line, lineSize, " -Djava.security.policy=%s",
                          " -Djava.security.policy=\"%s\"", jvm.policyfile);
}

int too_long() {
    report("Error - generated command line is greater than %d characters\n",
           static_cast<int>(kCmdLineMax));
    return kLineTooLong;
}

}  // namespace

int chkForSpaces(const char* text) { return has_space(text) ? 1 : 0; }

int create_cmdLine(char* line, std::size_t lineSize, int count, const char* const* words,
                   JvmSettings& jvm) {
    std::unique_ptr<char[]> expanded(new (std::nothrow) char[QORVEL_EXPAND_MAX]);
    if (!expanded) return errno;
    if (lineSize == 0) return too_long();
    line[0] = '\0';
    for (int i = 0; i < count; ++i) {
        if (!expand_envvars(expanded.get(), words[i])) {
            report("Error parsing argument: (%s)\n", words[i]);
            return kWordUnusable;
        }
        if (std::strlen(line) + std::strlen(expanded.get()) > kCmdLineMax) return too_long();
        // A JVMARGS reference must split into separate options, so never quote it.
        bool quote = !std::strstr(words[i], "JVMARGS") && chkForSpaces(expanded.get());
        bool fits = bounded_append(line, lineSize, quote ? "\"" : "") &&
                    bounded_append(line, lineSize, expanded.get()) &&
                    bounded_append(line, lineSize, quote ? "\"" : "") &&
                    (i > 0 || append_settings(line, lineSize, jvm)) &&
                    bounded_append(line, lineSize, " ");
        if (!fits) return too_long();
    }
    return 0;
}

std::size_t getExec_cmdLine(const char* line, char* out, std::size_t outSize) {
    std::string_view text = line;
    std::string_view word;
    if (text.starts_with('"')) {
        text.remove_prefix(1);
        word = text.substr(0, text.find('"'));
    } else {
        word = text.substr(0, text.find(' '));
    }
    bounded_copy(out, outSize, word);
    return bounded_length(out, outSize);
}

}  // namespace qorvel
