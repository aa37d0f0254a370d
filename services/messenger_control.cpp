// Run-time questions of the messengers: may a client send commands, and are
// connection identifiers used.
#include <cstdlib>
#include <string_view>

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

long read_allow(const CFGHANDLE& handle, const char* clientAddress, int64_t* allowCmds) {
    *allowCmds = 0;
    char allow[kSwitchSize];
    long r = getPropValue(&handle, "AllowMsngrCmds", allow, sizeof allow, PROP_STRING, "0",
                          PROP_NO_DEFAULT_NUMBER, 1);
    if (r == 0) *allowCmds = allow[0] == '1';
    if (*allowCmds != 1) return r;
    // Without an address list commands are allowed from everywhere.
    char addresses[kAddressListSize];
    r = getPropValue(&handle, "cvmAdmIPList", addresses, sizeof addresses, PROP_STRING, nullptr,
                     PROP_NO_DEFAULT_NUMBER, 1);
    if (r == 0 && addresses[0] != '\0') *allowCmds = listed(addresses, clientAddress);
    return r;
}

}  // namespace

extern "C" long getMsngrCtlSettings(const char* clientAddress, int messengerType,
                                    int64_t* allowCmds, int64_t* useConnIDFlag) {
    const char* file = std::getenv("CORVANECNF");
    const char* section = file ? section_of(MSNGR_CGIIP) : section_of(messengerType);
    if (!file && !section) return -1;
    qorvel::services::OpenFile opened;
    long r = opencfg(section, nullptr, file ? file : "ubroker.properties", &opened.handle);
    if (r != 0) return r;

    long result = 0;
    if (allowCmds && clientAddress) result = read_allow(opened.handle, clientAddress, allowCmds);
    if (useConnIDFlag) {
        char use[kSwitchSize];
        result = getPropValue(&opened.handle, "useConnID", use, sizeof use, PROP_STRING, "0",
                              PROP_NO_DEFAULT_NUMBER, 1);
        if (result == 0) *useConnIDFlag = use[0] != '0';
    }
    return result;
}

extern "C" long getMsngrCmdControl(const char* clientAddress, int messengerType,
                                   int64_t* allowCmds) {
    return getMsngrCtlSettings(clientAddress, messengerType, allowCmds, nullptr);
}

extern "C" long getMsngrCmdCtlUseConnID(const char* clientAddress, int messengerType,
                                        int64_t* allowCmds, int64_t* useConnIDFlag) {
    return getMsngrCtlSettings(clientAddress, messengerType, allowCmds, useConnIDFlag);
}
