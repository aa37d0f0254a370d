// The library's result codes and their messages.
#include <cstdint>

#include "qorvel/services.h"

namespace {

struct CvErrMsg {
    std::int64_t code;
    char message[256];
};

// Ends with a row of code 0; callers look codes up, never index.
constexpr CvErrMsg cv_errmsg[] = {
    {10001, "Directory Name is invalid"},
    {10002, "Configuration Keyword in invalid"},
    {10003, "Specified Configuration Type is invalid"},
    {10004, "Specified Service Name does not exist"},
    {10005, "UBSERVICEINFO struct is incorrect version"},
    {10006, "getRegValue has an invalid hKey"},
    {10007, "ServiceName cannot be NULL or blank"},
    {10008, "Specified Agent Instance is invalid"},
    {10009, "Web Server ScriptPath cannot be blank"},
    {10010, "Specified Keyword Value is invalid"},
    {10011, "Broker Shared Memory version is incorrect"},
    {10012, "Broker Process no longer running"},
    {10013, "Broker Shared Memory segment already exists"},
    {10014, "Broker Semaphore already exists"},
    {10015, "A system specific error occurred"},
    {10016, "Username is not valid"},
    {10017, "Domain controller invalid or not available"},
    {10018, "Call to NetUseGetLocalGroup failed"},
    {10019, "Unable to open security policy"},
    {10020, "Unable to get account SID"},
    {10021, "Unable to modify account"},
    {10022, "Unable to validate user/password pair"},
    {0, ""},
};

}  // namespace

extern "C" const char* getCV_errorMsg(int64_t code) {
    for (const CvErrMsg* row = cv_errmsg; row->code != 0; ++row) {
        if (row->code == code) return row->message;
    }
    return nullptr;
}
