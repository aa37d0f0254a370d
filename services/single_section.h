// The read of the replication, process-manager and SQL readers: one section,
// table defaults, no inheritance.
#pragma once

#include "qorvel/services.h"
#include "services/tables.h"

namespace qorvel::services {

// What one single-section read needs. A null `table` stands for a record
// version the reader does not know; it is refused once the file is open.
struct SingleSection {
    const char* readerName;   // where-text stem
    std::size_t sectionSize;  // capacity of the section name, NUL included
    const DescriptorTable* table;
    void* record;
};

// Reads the section named by `format` and its arguments into the record.
long read_single_section(const char* propertiesFile, const SingleSection& read,
                         ErrDetail* errDetail, const char* format, ...)
    __attribute__((format(printf, 4, 5)));

}  // namespace qorvel::services
