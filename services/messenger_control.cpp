// Run-time questions of the messengers: may a client send commands, and are
// connection identifiers used.
#include <cerrno>
#include <cstdlib>
#include <string_view>

#include "config/lookup.h"
#include "config/no_throw.h"
#include "qorvel/services.h"
#include "services/service_read.h"

namespace {

constexpr std::size_t kSwitchSize = 4;
constexpr std::size_t kAddressListSize = 256;

const char* section_of(int messengerType) {
    switch (messengerType) {
        case MSNGR_CGIIP:
            return "Corvane.Messengers.CGIIP";
        case MSNGR_CVISA:
            return "Corvane.Messengers.CVISA";
        case MSNGR_CVNSA:
            return "Corvane.Messengers.CVNSA";
        default:
            return nullptr;
    }
}

// True when `address` is one of the comma-separated elements, exactly.
bool listed(std::string_view list, std::string_view address) {
    while (true) {
        std::size_t comma = list.find(',');
        if (list.substr(0, comma) == address) return true;
        if (comma == std::string_view::npos) return false;
        list.remove_prefix(comma + 1);
    }
}

long read_switch(const qorvel::config::Section& section, const char* key, char* out,
                 std::size_t size, const char* defaultText) {
    return qorvel::config::lookup_value(section, key, out, size, PROP_STRING, defaultText,
                                        PROP_NO_DEFAULT_NUMBER, 1);
}

long read_allow(const qorvel::config::Section& section, const char* clientAddress,
                int64_t* allowCmds) {
    *allowCmds = 0;
    char allow[kSwitchSize];
    long r = read_switch(section, "AllowMsngrCmds", allow, sizeof allow, "0");
    if (r == 0) *allowCmds = allow[0] == '1';
    if (*allowCmds != 1) return r;
    // Without an address list commands are allowed from everywhere.
    char addresses[kAddressListSize];
    r = read_switch(section, "cvmAdmIPList", addresses, sizeof addresses, nullptr);
    if (r == 0 && addresses[0] != '\0') *allowCmds = listed(addresses, clientAddress);
    return r;
}

long control_settings(const char* clientAddress, int messengerType, int64_t* allowCmds,
                      int64_t* useConnIDFlag) {
    const char* file = std::getenv("CORVANECNF");
    const char* name = file ? section_of(MSNGR_CGIIP) : section_of(messengerType);
    if (!file && !name) return -1;
    qorvel::services::OpenFile opened;
    qorvel::config::Section section;
    long r =
        qorvel::services::open_section(opened, section, file ? file : "ubroker.properties", name);
    if (r != 0) return r;

    long result = 0;
    if (allowCmds && clientAddress) result = read_allow(section, clientAddress, allowCmds);
    if (useConnIDFlag) {
        char use[kSwitchSize];
        result = read_switch(section, "useConnID", use, sizeof use, "0");
        if (result == 0) *useConnIDFlag = use[0] != '0';
    }
    return result;
}

}  // namespace

extern "C" long getMsngrCtlSettings(const char* clientAddress, int messengerType,
                                    int64_t* allowCmds, int64_t* useConnIDFlag) {
    return qorvel::or_on_oom(static_cast<long>(ENOMEM), [&] {
        return control_settings(clientAddress, messengerType, allowCmds, useConnIDFlag);
    });
}

extern "C" long getMsngrCmdControl(const char* clientAddress, int messengerType,
                                   int64_t* allowCmds) {
    return qorvel::or_on_oom(static_cast<long>(ENOMEM), [&] {
        return control_settings(clientAddress, messengerType, allowCmds, nullptr);
    });
}

extern "C" long getMsngrCmdCtlUseConnID(const char* clientAddress, int messengerType,
                                        int64_t* allowCmds, int64_t* useConnIDFlag) {
    return qorvel::or_on_oom(static_cast<long>(ENOMEM), [&] {
        return control_settings(clientAddress, messengerType, allowCmds, useConnIDFlag);
    });
}
