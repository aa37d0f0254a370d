// Launch settings for the tests that build the JVM command.
#pragma once

#include <cstring>

#include "launcher/settings.h"
#include "util/bounded_text.h"

namespace qorvel {

inline HeapText heap(const char* text) {
    if (text == nullptr) return nullptr;
    HeapText copy(new char[std::strlen(text) + 1]);
    std::memcpy(copy.get(), text, std::strlen(text) + 1);
    return copy;
}

// Fresh settings with a silent console and the three property-file values.
inline void use_settings(const char* classpath, const char* jvmargs, const char* policyfile) {
    settings = LaunchSettings{};
    bounded_copy(settings.outputDesc, "none");
    settings.classpath = heap(classpath);
    settings.jvmargs = heap(jvmargs);
    settings.policyfile = heap(policyfile);
}

}  // namespace qorvel
