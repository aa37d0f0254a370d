// Treats the input as a properties file: section search, enumeration,
// lookups with substitution and the inherited multi-key read.
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "config/properties_reader.h"
#include "qorvel/config.h"

namespace {

std::string g_path;

constexpr const char* kSections[] = {"Common", "Common.Linux", "S", "a.b.c", ""};
constexpr const char* kKeys[] = {"classpath", "jvmargs", "a", "k", "x"};

// A guard byte after each buffer catches any write past its end.
struct Guarded {
    char text[CFG_VALUE_SIZE];
    char guard = '\x5a';
};

void check(const Guarded& g) {
    if (g.guard != '\x5a' || strnlen(g.text, sizeof g.text) == sizeof g.text) std::abort();
}

void lookups(CFGHANDLE& h) {
    for (const char* key : kKeys) {
        Guarded out;
        getPropValue(&h, key, out.text, sizeof out.text, PROP_STRING | PROP_WHOLE_LINE, nullptr,
                     PROP_NO_DEFAULT_NUMBER, 1);
        check(out);
        long number = 0;
        getPropValue(&h, key, &number, sizeof number, PROP_INTEGER, nullptr, 7, 1);
    }
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    setenv("HOME", "/home/fuzz", 1);
    setenv("VTX", "/opt/vtx", 1);
    setenv("LONG", std::string(2000, 'L').c_str(), 1);
    unsetenv("UNSET");
    g_path = "/tmp/qorvel_properties_fuzz_" + std::to_string(getpid());
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FILE* f = std::fopen(g_path.c_str(), "wb");
    if (!f) return 0;
    std::fwrite(data, 1, size, f);
    std::fclose(f);

    CFGHANDLE h;
    if (opencfg(nullptr, nullptr, g_path.c_str(), &h) != 0) return 0;
    char name[32];
    for (int i = 0; i < 64 && find_NextSection("", name, sizeof name, &h) == 0; ++i) lookups(h);
    for (const char* section : kSections) {
        if (find_Section(section, &h)) lookups(h);
    }
    closecfg(&h);

    Guarded cp, args;
    cp.text[0] = args.text[0] = '\0';
    const qorvel::PropertyRequest requests[] = {{"classpath", cp.text, sizeof cp.text},
                                                {"jvmargs", args.text, sizeof args.text}};
    qorvel::read_properties(1, g_path.c_str(), "a.b.c", requests);
    check(cp);
    check(args);
    return 0;
}
