#include "launcher/rlimits.h"

#include <sys/resource.h>

#include <cerrno>
#include <charconv>
#include <cstring>
#include <string_view>

#include "launcher/console.h"
#include "launcher/options.h"

namespace qorvel {
namespace {

struct LimitName {
    const char* name;
    int resource;
};

constexpr LimitName kLimits[] = {
    {"core", RLIMIT_CORE},   {"cpu", RLIMIT_CPU},         {"data", RLIMIT_DATA},
    {"fsize", RLIMIT_FSIZE}, {"memlock", RLIMIT_MEMLOCK}, {"nofile", RLIMIT_NOFILE},
    {"nproc", RLIMIT_NPROC}, {"rss", RLIMIT_RSS},         {"stack", RLIMIT_STACK},
    {"as", RLIMIT_AS},
};

// A decimal number below RLIM_INFINITY, or "unlimited"; anything else, read
// as far as it goes, would set some other limit.
bool read_limit(std::string_view text, rlim_t& limit) {
    if (text == "unlimited") {
        limit = RLIM_INFINITY;
        return true;
    }
    unsigned long long value = 0;
    auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (text.empty() || error != std::errc() || end != text.data() + text.size() ||
        value >= RLIM_INFINITY) {
        return false;
    }
    limit = static_cast<rlim_t>(value);
    return true;
}

int refused(const char* text, const char* why) {
    outMessage(0, "Unable to set --rlimit option, %s: (%s)\n", why, text);
    return kBadOption;
}

std::string shown(rlim_t limit) {
    return limit == RLIM_INFINITY ? "unlimited" : std::to_string(limit);
}

}  // namespace

int parse_rlimit(LaunchSettings& launch, const char* text) {
    std::string_view value = text;
    std::size_t equals = value.find('=');
    const LimitName* found = nullptr;
    for (const LimitName& limit : kLimits) {
        if (equals != std::string_view::npos && value.substr(0, equals) == limit.name) {
            found = &limit;
        }
    }
    if (!found) {
        return refused(text,
                       "not NAME=SOFT[:HARD] with NAME one of core, cpu, data, fsize, memlock, "
                       "nofile, nproc, rss, stack, as");
    }
    std::string_view limits = value.substr(equals + 1);
    std::size_t colon = limits.find(':');
    ResourceLimit limit{found->resource, found->name, 0, 0, colon != std::string_view::npos};
    if (!read_limit(limits.substr(0, colon), limit.soft) ||
        (limit.hard_given && !read_limit(limits.substr(colon + 1), limit.hard))) {
        return refused(text, "a limit is not a number or unlimited");
    }
    if (limit.hard_given && limit.soft > limit.hard) {
        return refused(text, "the soft limit is above the hard one");
    }
    std::erase_if(launch.rlimits,
                  [&](const ResourceLimit& given) { return given.resource == limit.resource; });
    launch.rlimits.push_back(limit);
    trace("Enabled --rlimit option, %s\n", text);
    return 0;
}

int apply_rlimits(const LaunchSettings& launch) {
    for (const ResourceLimit& limit : launch.rlimits) {
        struct rlimit value {};
        int code = getrlimit(limit.resource, &value) == 0 ? 0 : errno;
        value.rlim_cur = limit.soft;
        if (limit.hard_given) value.rlim_max = limit.hard;
        if (code == 0 && setrlimit(limit.resource, &value) != 0) code = errno;
        if (code != 0) {
            if (verbose()) {
                outMessage(code, "Unable to set resource limit %s to %s:%s\n", limit.name,
                           shown(value.rlim_cur).c_str(), shown(value.rlim_max).c_str());
            }
            return code;
        }
    }
    return 0;
}

std::string describe_rlimits(const LaunchSettings& launch) {
    std::string text;
    for (const ResourceLimit& limit : launch.rlimits) {
        if (!text.empty()) text += ' ';
        text.append(limit.name).append("=").append(shown(limit.soft));
        if (limit.hard_given) text.append(":").append(shown(limit.hard));
    }
    return text.empty() ? "none" : text;
}

}  // namespace qorvel
