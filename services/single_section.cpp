// The single-section read.
#include "services/single_section.h"

#include <cerrno>
#include <cstdarg>

#include "config/no_throw.h"
#include "services/error_detail.h"
#include "services/service_read.h"
#include "util/bounded_text.h"

namespace qorvel::services {

long read_single_section(const char* propertiesFile, const SingleSection& read,
                         ErrDetail* errDetail, const char* format, ...) {
    if (!read.record) return refuse_null(errDetail, read.readerName);
    SectionChain chain(read.sectionSize);
    std::va_list args;
    va_start(args, format);
    bool fits = chain.vadd(format, args);
    va_end(args);
    char where[sizeof errDetail->where];
    if (!fits) {
        bounded_format(where, sizeof where, "%s section name", read.readerName);
        report_system(errDetail, ENAMETOOLONG, where);
        return ENAMETOOLONG;
    }

    return or_on_oom(static_cast<long>(ENOMEM), [&] {
        OpenFile opened;
        if (long r = open_properties(opened, propertiesFile, "service ", errDetail); r != 0)
            return r;
        if (!read.table) {
            fill_ErrDetail(errDetail, CV_ERR_REPL_VERSION, 0, 0,
                           "Invalid Velmor Replication version specified", " ");
            return CV_ERR_REPL_VERSION;
        }
        bounded_format(where, sizeof where, "%s memory allocation", read.readerName);
        ServiceRead service{*read.table, read.record, chain,
                            ChainRules{Defaults::Table, Defaults::Table, true, nullptr, false},
                            where};
        config::Section section(opened.file.get());
        return read_open_file(section, service, errDetail);
    });
}

}  // namespace qorvel::services
