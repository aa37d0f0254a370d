// Arbitrary bytes as a properties file. The section search and the lookups of
// a File read whole (with its indexes and its pass over plain lines) and of a
// caller's handle (read in chunks) must agree with reading the same rules line
// by line through a stream, in what they find and where they leave the stream;
// the lookups with substitution and the inherited read must stay in their
// buffers. The tests replay the seed corpus.
#include <strings.h>
#include <unistd.h>

#include <cctype>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "config/file.h"
#include "config/properties_reader.h"
#include "qorvel/config.h"

namespace {

constexpr std::uint32_t kWhole = PROP_STRING | PROP_WHOLE_LINE;
std::string g_path;

// The sanitizer sees a write past a value buffer; a value left unterminated is
// a fault of its own.
void check_terminated(const char* value) {
    if (strnlen(value, CFG_VALUE_SIZE) == CFG_VALUE_SIZE) std::abort();
}

std::string first_word(const char* line) {
    const char* start = line;
    while (std::isspace(static_cast<unsigned char>(*start))) ++start;
    const char* end = start;
    while (*end && !(std::isspace(static_cast<unsigned char>(*end)) && end[-1] != '\\')) ++end;
    std::string word(start, end);
    for (char& c : word) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return word;
}

// Every logical line read in turn: where each header word first ends, and some keys.
struct Reference {
    std::map<std::string, long> sections;
    std::vector<std::string> keys{"classpath", "jvmargs"};

    explicit Reference(std::FILE* f) {
        char line[2048], keyword[2048];
        while (cfg_getline(line, 2047, f) == 0) {
            std::string word = first_word(line);
            if (word[0] == '[') sections.try_emplace(word, std::ftell(f));
            if (keys.size() < 10 && line[0] != '\0' && line[0] != '#' && line[0] != '[') {
                cfg_getkeyword(keyword, line);
                keys.push_back(keyword);
            }
        }
    }
};

// What reading `f` from `offset` finds for `key`: the value cut at 1023
// characters and marked, or "" when absent; `f` stops where the reading does.
std::string stream_lookup(std::FILE* f, long offset, const char* key) {
    std::fseek(f, offset, SEEK_SET);
    char line[2048], keyword[2048];
    while (cfg_getline(line, 2048, f) == 0 && line[0] != '[') {
        if (line[0] == '\0' || line[0] == '#') continue;
        cfg_getkeyword(keyword, line);
        if (strcasecmp(keyword, key) == 0) {
            return std::string(line).substr(0, 1023) + '\x01';  // marks an empty value found
        }
    }
    return "";
}

// `h` must answer `key` as reading `f` from `offset` does, and leave its
// stream where that reading stops.
void lookup_alike(CFGHANDLE& h, std::FILE* f, long offset, const char* key) {
    std::string expected = stream_lookup(f, offset, key);
    char value[CFG_VALUE_SIZE];
    long rc =
        getPropValue(&h, key, value, sizeof value, kWhole, nullptr, PROP_NO_DEFAULT_NUMBER, 0);
    if ((rc == 0 ? std::string(value) + '\x01' : "") != expected) std::abort();
    if (std::ftell(h.fp) != std::ftell(f)) std::abort();
}

void substituted_lookup(CFGHANDLE h, const char* key) {
    char out[CFG_VALUE_SIZE] = "";
    getPropValue(&h, key, out, sizeof out, kWhole, nullptr, PROP_NO_DEFAULT_NUMBER, 1);
    check_terminated(out);
    long number = 0;
    getPropValue(&h, key, &number, sizeof number, PROP_INTEGER, nullptr, 7, 1);
}

// The enumeration through the image of `h` and through a handle whose stream
// the library did not open, which it reads as a stream.
void enumerate_alike(CFGHANDLE& h, std::FILE* f) {
    CFGHANDLE plain = h;
    plain.fp = f;
    std::fseek(h.fp, 0, SEEK_SET);
    std::fseek(f, 0, SEEK_SET);
    char a[64], b[64], whole[2048];
    for (int i = 0; i < 64; ++i) {
        long at = std::ftell(f);
        long ra = find_NextSection("", a, sizeof a, &h);
        long rb = find_NextSection("", b, sizeof b, &plain);
        if (ra != rb || std::ftell(h.fp) != std::ftell(f)) std::abort();
        if (ra != 0) break;
        if (std::strcmp(a, b) != 0 || h.sectionOffset != plain.sectionOffset) std::abort();
        // The whole name ends in the last component find_NextSection gives (cut to fit).
        std::fseek(plain.fp, at, SEEK_SET);
        if (find_NextHeader(whole, sizeof whole, &plain) != 0) std::abort();
        const char* last = std::strrchr(whole, '.');
        if (std::strncmp(last ? last + 1 : whole, a, sizeof a - 1) != 0 ||
            std::ftell(f) != std::ftell(h.fp)) {
            std::abort();
        }
    }
}

// The File the library's own readers use, read whole, against the stream.
void file_alike(const Reference& ref, std::FILE* f) {
    std::unique_ptr<qorvel::config::File> file;
    if (qorvel::config::File::open(g_path, file) != 0) std::abort();
    for (const auto& [word, offset] : ref.sections) {
        if (file->find_section(word) != static_cast<std::size_t>(offset)) std::abort();
        for (const std::string& key : ref.keys) {
            qorvel::config::Entry entry;
            bool found = file->find_entry(static_cast<std::size_t>(offset), key.c_str(), entry);
            if ((found ? entry.whole + '\x01' : "") != stream_lookup(f, offset, key.c_str())) {
                std::abort();
            }
        }
    }
    if (file->find_section("[no such section]") != std::string::npos) std::abort();
}

void search_alike(std::FILE* f) {
    Reference ref(f);
    CFGHANDLE h;
    if (opencfg(nullptr, nullptr, g_path.c_str(), &h) != 0) std::abort();
    for (const auto& [word, offset] : ref.sections) {
        if (word.back() != ']' || word.size() > CFG_SECTION_NAME_MAX + 2) continue;
        if (find_Section(word.substr(1, word.size() - 2).c_str(), &h) != 1) std::abort();
        if (h.sectionOffset != offset || std::ftell(h.fp) != offset) std::abort();
        for (const std::string& key : ref.keys) {
            lookup_alike(h, f, offset, key.c_str());
            substituted_lookup(h, key.c_str());
        }
    }
    if (find_Section("no such section", &h) != 0) std::abort();
    enumerate_alike(h, f);
    closecfg(&h);
    file_alike(ref, f);
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    setenv("HOME", "/home/fuzz", 1);
    setenv("LONG", std::string(2000, 'L').c_str(), 1);
    unsetenv("UNSET");
    g_path = "/tmp/qorvel_properties_fuzz_" + std::to_string(getpid());
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::FILE* out = std::fopen(g_path.c_str(), "wb");
    if (!out) return 0;
    std::fwrite(data, 1, size, out);
    std::fclose(out);
    std::FILE* f = std::fopen(g_path.c_str(), "r");
    search_alike(f);
    std::fclose(f);

    char cp[CFG_VALUE_SIZE] = "", args[CFG_VALUE_SIZE] = "";
    qorvel::PropertyRequest requests[] = {{"classpath", cp, sizeof cp},
                                          {"jvmargs", args, sizeof args}};
    qorvel::read_properties(1, g_path.c_str(), "a.b.c", requests);
    check_terminated(cp);
    check_terminated(args);
    return 0;
}
