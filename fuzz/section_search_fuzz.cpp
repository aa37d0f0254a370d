// Arbitrary bytes as a properties file: the indexed section search and the
// lookups in the file's image must agree with a plain line-by-line reading of
// the same rules through the stream, in what they find and in where they
// leave the stream.
#include <strings.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>
#include <vector>

#include "qorvel/config.h"

namespace {

std::string g_path;

std::string lower(std::string text) {
    for (char& c : text) c = static_cast<char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
    return text;
}

bool is_space(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\v' || c == '\f' || c == '\r';
}

std::string first_word(const char* line) {
    std::string text = line;
    std::size_t i = 0;
    while (i < text.size() && is_space(text[i])) ++i;
    std::size_t j = i;
    while (j < text.size() && !(is_space(text[j]) && (j == 0 || text[j - 1] != '\\'))) ++j;
    return text.substr(i, j - i);
}

// The reference: every logical line read one after the other.
struct Reference {
    std::map<std::string, long> sections;  // first offset of each header word
    std::vector<std::string> keys;

    explicit Reference(std::FILE* f) {
        char line[2048];
        while (cfg_getline(line, 2047, f) == 0) {
            std::string word = first_word(line);
            if (!word.empty() && word[0] == '[') sections.try_emplace(lower(word), std::ftell(f));
            char keyword[2048];
            if (keys.size() < 8 && line[0] != '\0' && line[0] != '#' && line[0] != '[') {
                cfg_getkeyword(keyword, line);
                keys.push_back(keyword);
            }
        }
    }
};

// The lookup of `key` from `offset` by reading; "" when absent. `end` gets the
// stream position it stops at.
std::string reference_lookup(std::FILE* f, long offset, const std::string& key, long& end) {
    std::fseek(f, offset, SEEK_SET);
    char line[2048], keyword[2048];
    std::string found;
    while (cfg_getline(line, 2048, f) == 0) {
        if (line[0] == '[') break;
        if (line[0] == '\0' || line[0] == '#') continue;
        cfg_getkeyword(keyword, line);
        if (strcasecmp(keyword, key.c_str()) == 0) {
            found = std::string(line).substr(0, 1023);
            found += '\x01';  // marks "found", also for an empty value
            break;
        }
    }
    end = std::ftell(f);
    return found;
}

// The enumeration from the top: through the image of `h`, and through a
// handle whose stream the library did not open (and so reads as a stream).
void enumerate_alike(CFGHANDLE& h, std::FILE* f) {
    CFGHANDLE plain = h;
    plain.fp = f;
    std::fseek(h.fp, 0, SEEK_SET);
    std::fseek(f, 0, SEEK_SET);
    char a[64], b[64];
    for (int i = 0; i < 64; ++i) {
        long ra = find_NextSection("", a, sizeof a, &h);
        long rb = find_NextSection("", b, sizeof b, &plain);
        if (ra != rb || std::ftell(h.fp) != std::ftell(f)) std::abort();
        if (ra != 0) break;
        if (std::string(a) != b || h.sectionOffset != plain.sectionOffset) std::abort();
    }
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    g_path = "/tmp/qorvel_section_search_fuzz_" + std::to_string(getpid());
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::FILE* out = std::fopen(g_path.c_str(), "wb");
    if (!out) return 0;
    std::fwrite(data, 1, size, out);
    std::fclose(out);
    std::FILE* f = std::fopen(g_path.c_str(), "r");
    Reference ref(f);

    CFGHANDLE h;
    if (opencfg(nullptr, nullptr, g_path.c_str(), &h) != 0) std::abort();
    for (const auto& [word, offset] : ref.sections) {
        if (word.size() < 2 || word.back() != ']') continue;
        std::string name = word.substr(1, word.size() - 2);
        if (name.size() > CFG_SECTION_NAME_MAX) continue;
        if (find_Section(name.c_str(), &h) != 1 || h.sectionOffset != offset) std::abort();
        if (std::ftell(h.fp) != offset) std::abort();
        for (const std::string& key : ref.keys) {
            long ref_end = 0;
            std::string expected = reference_lookup(f, offset, key, ref_end);
            char value[CFG_VALUE_SIZE];
            long rc =
                getPropValue(&h, key.c_str(), value, sizeof value, PROP_STRING | PROP_WHOLE_LINE,
                             nullptr, PROP_NO_DEFAULT_NUMBER, 0);
            std::string got = rc == 0 ? std::string(value) + '\x01' : "";
            if (got != expected || std::ftell(h.fp) != ref_end) std::abort();
        }
    }
    if (find_Section("no such section", &h) != 0) std::abort();
    enumerate_alike(h, f);
    closecfg(&h);
    std::fclose(f);
    return 0;
}
