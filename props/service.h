// qorvel-props service: one record read through the library's own reader.
#pragma once

#include <qorvel/services.h>

#include <string>
#include <vector>

namespace props {

struct Field {
    std::string key;
    bool number;
    long long integer;  // when number
    std::string text;   // otherwise
};

struct ServiceRead {
    long result = 0;
    ErrDetail detail{};
    std::vector<Field> fields;  // in the table's order
};

// The kinds, one word per reader, with the names each takes ("broker TYPE NAME").
std::string service_kinds();

// Reads the record of `kind` from `file`; false with `error` set when the
// kind is unknown or takes another number of names.
bool read_service(const std::string& kind, const std::string& file,
                  const std::vector<std::string>& names, ServiceRead& out, std::string& error);

}  // namespace props
