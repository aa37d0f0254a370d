// The one table-driven read shared by every service reader: open the file,
// copy and bind the reader's table, walk its chain of sections.
#pragma once

#include <array>
#include <cstdarg>
#include <cstddef>
#include <memory>
#include <string>

#include "config/section.h"
#include "qorvel/services.h"
#include "services/tables.h"

namespace qorvel::services {

// A properties file a reader opened for itself, closed with it.
struct OpenFile {
    std::string path;  // as resolved, for messages
    std::unique_ptr<config::File> file;
};

struct ListDeleter {
    void operator()(CfgInfo* list) const { free_InfoList(list); }
};
using OwnedList = std::unique_ptr<CfgInfo, ListDeleter>;

// The section names of one read, most general first, each within `nameSize`
// bytes; a name that does not fit, or a ninth name, is refused. No name may be
// longer than a section search takes: one that could never be found is
// refused as too long instead of being reported missing.
class SectionChain {
  public:
    static constexpr std::size_t kMaxNames = 8;
    static constexpr std::size_t kMaxNameSize = CFG_SECTION_NAME_MAX + 1;

    explicit SectionChain(std::size_t nameSize = kMaxNameSize)
        : nameSize_(nameSize < kMaxNameSize ? nameSize : kMaxNameSize) {}
    bool add(const char* format, ...) __attribute__((format(printf, 2, 3)));
    bool vadd(const char* format, std::va_list args) __attribute__((format(printf, 2, 0)));
    std::size_t size() const { return count_; }
    const char* operator[](std::size_t i) const { return names_[i].data(); }

  private:
    std::size_t nameSize_;
    std::size_t count_ = 0;
    std::array<std::array<char, kMaxNameSize>, kMaxNames> names_{};
};

// Where an absent key's default comes from.
enum class Defaults {
    Table,      // the table's default
    Inherited,  // whatever an earlier section left in the record
};

struct ChainRules {
    Defaults first;  // defaults of the first section
    Defaults rest;   // defaults of the sections after it
    bool missingSectionEndsRead;
    const char* versionWhere;  // non-null: apply PROP_VERSION and PROP_DEFAULT_DIR
    bool cutComments;          // plain text values end at "#"
};

// Walks `chain` from `section`, reading every entry of the bound list; the
// section ends on the last one found.
long read_chain(config::Section& section, InfoList list, const SectionChain& chain,
                const ChainRules& rules, ErrDetail* errDetail);

// Opens the file as opencfg would; reports "opencfg of <path> for <openFor>".
long open_properties(OpenFile& file, const char* propertiesFile, const char* openFor,
                     ErrDetail* errDetail);

// Opens `propertiesFile` (NULL: "ubroker.properties" under $VTX) on section
// `name`: 0, 10004 when it is absent, or the opening's status.
long open_section(OpenFile& file, config::Section& section, const char* propertiesFile,
                  const char* name);

// A copy of `table` in *list; reports a failure under `allocWhere`.
long make_list(OwnedList& list, const DescriptorTable& table, const char* allocWhere,
               ErrDetail* errDetail);

struct ServiceRead {
    const DescriptorTable& table;
    void* record;
    const SectionChain& chain;
    ChainRules rules;
    const char* allocWhere;
};

// Lists, clears, binds and reads `read.record` from an open file.
long read_open_file(config::Section& section, const ServiceRead& read, ErrDetail* errDetail);

// open_properties, then read_open_file.
long read_service(const char* propertiesFile, const char* openFor, const ServiceRead& read,
                  ErrDetail* errDetail);

}  // namespace qorvel::services
