// The descriptor tables: every key of every service record, its type,
// capacity, default and attributes, in the order the readers read them.
#include "services/tables.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>

// The exported tables are C objects, so this file defines them at the global
// scope and each layout by its qualified name.
namespace {

using qorvel::services::DescriptorTable;

// One row as written below; `fieldSize` lets the build prove the capacity fits.
struct Key {
    const char* keyword;
    std::size_t offset;
    std::size_t fieldSize;
    std::uint64_t capacity;
    const char* defaultText;
    std::int64_t defaultNum;
    std::uint32_t flags;

    // The row as the exported table holds it: no field bound yet.
    constexpr operator CfgInfo() const {
        CfgInfo info{};
        info.keyword = keyword;
        info.valueSize = capacity;
        for (std::size_t c = 0; defaultText[c] != '\0'; ++c) info.defaultText[c] = defaultText[c];
        info.defaultNum = defaultNum;
        info.flags = flags;
        return info;
    }
};

constexpr std::size_t text_length(const char* text) {
    std::size_t n = 0;
    while (text[n] != '\0') ++n;
    return n;
}

// A row is sound when it is a number or a text, its value and its default
// fit the field it fills, and no other row fills that field.
template <std::size_t N>
constexpr bool rows_fit(const Key (&keys)[N]) {
    for (std::size_t i = 0; i < N; ++i) {
        const Key& k = keys[i];
        bool isInt = (k.flags & PROP_TYPE_MASK) == PROP_INTEGER;
        if (!isInt && (k.flags & PROP_TYPE_MASK) != PROP_STRING) return false;  // no reader for it
        if (isInt && (k.capacity != 8 || k.fieldSize != 8)) return false;
        if (k.capacity > k.fieldSize) return false;
        if (text_length(k.defaultText) >= k.capacity) return false;
        for (std::size_t j = 0; j < i; ++j) {
            if (keys[j].offset == k.offset) return false;
        }
    }
    return true;
}

template <std::size_t N>
constexpr std::array<std::size_t, N> offsets_of(const Key (&keys)[N]) {
    std::array<std::size_t, N> offsets{};
    for (std::size_t i = 0; i < N; ++i) offsets[i] = keys[i].offset;
    return offsets;
}

}  // namespace

#define QV_FIELD(R, member) offsetof(R, member), sizeof(static_cast<R*>(nullptr)->member)
#define INT(R, key, member, def, attrs) \
    Key { key, QV_FIELD(R, member), 8, "", def, PROP_INTEGER | (attrs) }
#define TEXT(R, key, member, cap, def, attrs) \
    Key { key, QV_FIELD(R, member), cap, def, 0, PROP_STRING | (attrs) }

// Defines the exported table `name` (its rows, then the all-zero terminator)
// and `name_layout`, which adds where each key lives in a Record. The header
// declares each table with its size, which must be the rows written here and
// the terminator.
#define QV_TABLE(name, Record, ...)                                    \
    constexpr Key name##_keys[] = {__VA_ARGS__};                       \
    static_assert(rows_fit(name##_keys));                              \
    constexpr auto name##_offsets = offsets_of(name##_keys);           \
    extern "C" const CfgInfo name[] = {__VA_ARGS__, CfgInfo{}};        \
    static_assert(std::size(name) == std::size(name##_keys) + 1);      \
    const DescriptorTable qorvel::services::name##_layout {            \
        std::span<const CfgInfo>(name), name##_offsets, sizeof(Record) \
    }

// The rows stay one to a line, as the keys are documented.
// clang-format off
// ---- Broker ---------------------------------------------------------------
using UB = UBSERVICEINFO;
QV_TABLE(UBcfg_info, UBSERVICEINFO,
    INT(UB, "infoVersion", infoVersion, INFO_VERSION, PROP_VERSION),
    INT(UB, "srvrLoggingLevel", srvrLoggingLevel, 2, 0),
    TEXT(UB, "srvrLogEntryTypes", srvrLogEntryTypes, 256, "", 0),
    INT(UB, "srvrLogAppend", srvrLogAppend, 2, 0),
    INT(UB, "debuggerEnabled", debuggerEnabled, 0, 0),
    TEXT(UB, "workDir", workDir, 255, "./", PROP_DEFAULT_DIR),
    TEXT(UB, "srvrLogFile", srvrLogFile, 256, "", PROP_FILENAME),
    TEXT(UB, "ZELPATH", ZELPATH, 4096, "", PROP_WHOLE_LINE),
    TEXT(UB, "srvrStartupProc", srvrStartupProc, 256, "", PROP_FILENAME),
    TEXT(UB, "srvrShutdownProc", srvrShutdownProc, 256, "", PROP_FILENAME),
    TEXT(UB, "srvrConnectProc", srvrConnectProc, 256, "", PROP_FILENAME | PROP_DEFERRED),
    TEXT(UB, "srvrDisconnProc", srvrDisconnProc, 256, "", PROP_FILENAME | PROP_DEFERRED),
    TEXT(UB, "srvrActivateProc", srvrActivateProc, 256, "", PROP_FILENAME | PROP_DEFERRED),
    TEXT(UB, "srvrDeactivateProc", srvrDeactivateProc, 256, "", PROP_FILENAME | PROP_DEFERRED),
    TEXT(UB, "srvrStartupProcParam", srvrStartupProcParam, 1024, "", PROP_WHOLE_LINE),
    TEXT(UB, "environment", environment, 64, "", 0),
    TEXT(UB, "uuid", uuid, 64, "", 0),
    TEXT(UB, "operatingMode", operatingMode, 64, "", 0),
    TEXT(UB, "srvrExecFile", srvrExecFile, 1024, "_morvant", PROP_WHOLE_LINE),
    TEXT(UB, "srvrStartupParam", srvrStartupParam, 1024,
         "-p web/objects/web-disp.p -cpstream iso8859-1 -weblogerror ", PROP_WHOLE_LINE),
    TEXT(UB, "srvrAppMode", srvrAppMode, 64, "", 0),
    TEXT(UB, "srvrDebug", srvrDebug, 64, "Enabled", 0),
    TEXT(UB, "applicationURL", applicationURL, 256, "", 0),
    TEXT(UB, "userName", userName, 50, "", 0),
    TEXT(UB, "groupName", groupName, 50, "", PROP_GROUPNAME),
    TEXT(UB, "defaultCookiePath", defaultCookiePath, 255, "", 0),
    TEXT(UB, "defaultCookieDomain", defaultCookieDomain, 255, "", 0),
    TEXT(UB, "stateTransport", stateTransport, 255, "Cookies", 0),
    TEXT(UB, "stateSavingMethod", stateSavingMethod, 255, "Browser", 0),
    TEXT(UB, "stateSavingDirectory", stateSavingDirectory, 255, "", 0),
    INT(UB, "portNumber", portNumber, 3000, 0),
    INT(UB, "srvrMinPort", srvrMinPort, 3202, 0),
    INT(UB, "srvrMaxPort", srvrMaxPort, 3502, 0),
    INT(UB, "srvrNumLogFiles", srvrNumLogFiles, 3, 0),
    INT(UB, "srvrStartupTimeout", srvrStartupTimeout, 2, 0),
    TEXT(UB, "cvRoot", cvRoot, 255, "", 0),
    TEXT(UB, "fileUploadDirectory", fileUploadDirectory, 255, "", 0),
    INT(UB, "collectStatsData", collectStatsData, 2, 0),
    INT(UB, "flushStatsData", flushStatsData, 255, 0),
    TEXT(UB, "keyAlias", keyAlias, 256, "", 0),
    TEXT(UB, "keyAliasPasswd", keyAliasPasswd, 256, "", 0),
    TEXT(UB, "keyStorePath", keyStorePath, 256, "", 0),
    TEXT(UB, "keyStorePasswd", keyStorePasswd, 256, "", 0),
    TEXT(UB, "sslAlgorithms", sslAlgorithms, 256, "", 0),
    INT(UB, "sslEnable", sslEnable, 0, 0),
    INT(UB, "noSessionCache", noSessionCache, 0, 0),
    INT(UB, "sessionTimeout", sessionTimeout, 300, 0),
    INT(UB, "binaryUploadMaxSize", binaryUploadMaxSize, 0, 0),
    TEXT(UB, "hostName", hostName, 50, "", PROP_HOSTNAME),
    TEXT(UB, "appServerKeepaliveCapabilities", appServerKeepaliveCapabilities, 256, "", 0),
    INT(UB, "serverASKActivityTimeout", serverASKActivityTimeout, 0, 0),
    INT(UB, "serverASKResponseTimeout", serverASKResponseTimeout, 0, 0),
    INT(UB, "srvrExecutionTimeLimit", srvrExecutionTimeLimit, 0, 0),
    INT(UB, "brenixEnabled", brenixEnabled, 0, 0),
    TEXT(UB, "brenixGroup", brenixGroup, 256, "", 0));

// ---- Name server and messengers -------------------------------------------
using NS = NSserviceInfo;
QV_TABLE(NScfg_info, NSserviceInfo,
    INT(NS, "infoVersion", infoVersion, INFO_VERSION, PROP_VERSION),
    INT(NS, "portNumber", portNumber, 0, 0),
    INT(NS, "brokerKeepAliveTimeout", brokerKeepAliveTimeout, 0, 0),
    INT(NS, "loggingLevel", loggingLevel, 0, 0),
    INT(NS, "logAppend", logAppend, 0, 0),
    INT(NS, "autoStart", autoStart, 0, 0),
    TEXT(NS, "hostName", hostName, 50, "", PROP_HOSTNAME),
    TEXT(NS, "workDir", workDir, 255, "./", PROP_DEFAULT_DIR),
    TEXT(NS, "classMain", classMain, 255, "", PROP_WHOLE_LINE),
    TEXT(NS, "location", location, 256, "", 0),
    TEXT(NS, "srvrLogFile", srvrLogFile, 255, "", 0),
    TEXT(NS, "environment", environment, 64, "", 0),
    INT(NS, "neighborNameServers", neighborNameServers, 0, 0),
    INT(NS, "numLogFiles", numLogFiles, 3, 0));

using MS = MsngrServiceInfo;
QV_TABLE(MsngrCfg_info, MsngrServiceInfo,
    INT(MS, "infoVersion", infoVersion, INFO_VERSION, PROP_VERSION),
    TEXT(MS, "RootPath", RootPath, 255, "", 0),
    TEXT(MS, "ScriptPath", ScriptPath, 255, "", 0),
    TEXT(MS, "AllowMsngrCmds", AllowMsngrCmds, 2, "", 0),
    TEXT(MS, "controllingNameServer", controllingNameServer, 256, "", 0),
    TEXT(MS, "workDir", workDir, 255, "./", PROP_DEFAULT_DIR),
    TEXT(MS, "msngrExecFile", msngrExecFile, 255, "", 0),
    TEXT(MS, "msngrScriptFile", msngrScriptFile, 255, "", 0),
    TEXT(MS, "Components", Components, 256, "", 0),
    TEXT(MS, "useConnID", useConnID, 2, "", 0),
    INT(MS, "minNSClientPort", minNSClientPort, 0, 0),
    INT(MS, "maxNSClientPort", maxNSClientPort, 0, 0),
    INT(MS, "nsClientPortRetryInterval", nsClientPortRetryInterval, 0, 0),
    INT(MS, "nsClientPortRetry", nsClientPortRetry, 0, 0),
    TEXT(MS, "Host", Host, 256, "", 0),
    INT(MS, "Port", Port, 0, 0),
    INT(MS, "registerNameServer", registerNameServer, 0, 0),
    TEXT(MS, "logFile", logFile, 256, "", 0),
    INT(MS, "logAppend", logAppend, 0, 0),
    INT(MS, "logThreshold", logThreshold, 0, 0),
    INT(MS, "loggingLevel", loggingLevel, 0, 0),
    TEXT(MS, "logEntryTypes", logEntryTypes, 256, "", 0),
    INT(MS, "numLogFiles", numLogFiles, 3, 0),
    INT(MS, "sslEnable", sslEnable, 0, 0),
    INT(MS, "noSessionReuse", noSessionReuse, 0, 0),
    INT(MS, "noHostVerify", noHostVerify, 0, 0),
    TEXT(MS, "certStorePath", certStorePath, 256, "", 0),
    TEXT(MS, "ipver", ipver, 256, "IPv4", 0));

// ---- Connection manager ---------------------------------------------------
using CN = CNFGserviceInfo;
QV_TABLE(CNFGcfg_info, CNFGserviceInfo,
    INT(CN, "afterimagebuffers", afterimagebuffers, 1, 0),
    TEXT(CN, "afterimagestall", afterimagestall, 8, "false", 0),
    TEXT(CN, "beforeimagebufferedwrites", beforeimagebufferedwrites, 8, "false", 0),
    INT(CN, "beforeimagebuffers", beforeimagebuffers, 5, 0),
    INT(CN, "beforeimageclusterage", beforeimageclusterage, 60, 0),
    INT(CN, "beforeimagedelaywrites", beforeimagedelaywrites, 3, 0),
    TEXT(CN, "beforeimagestall", beforeimagestall, 8, "false", 0),
    INT(CN, "bithold", bithold, 3, 0),
    INT(CN, "blocksindatabasebuffers", blocksindatabasebuffers, 0, 0),
    TEXT(CN, "casetablename", casetablename, 64, "basic", 0),
    TEXT(CN, "collationtable", collationtable, 64, "basic", 0),
    TEXT(CN, "conversionmap", conversionmap, 64, "convmap.cp", PROP_WHOLE_LINE),
    TEXT(CN, "crashprotection", crashprotection, 8, "true", 0),
    TEXT(CN, "databasecodepage", databasecodepage, 64, "BASIC", 0),
    TEXT(CN, "directio", directio, 8, "false", 0),
    INT(CN, "hashtableentries", hashtableentries, 0, 0),
    TEXT(CN, "internalcodepage", internalcodepage, 64, "iso8859-1", 0),
    INT(CN, "locktableentries", locktableentries, 8192, 0),
    TEXT(CN, "logcharacterset", logcharacterset, 64, "iso8859-1", 0),
    INT(CN, "maxservers", maxservers, 4, 0),
    INT(CN, "maxusers", maxusers, 20, 0),
    INT(CN, "nap", nap, 1, 0),
    INT(CN, "napmax", napmax, 1, 0),
    INT(CN, "pagewritermaxbuffers", pagewritermaxbuffers, 25, 0),
    INT(CN, "pagewriterqueuedelay", pagewriterqueuedelay, 100, 0),
    INT(CN, "pagewriterqueuemin", pagewriterqueuemin, 1, 0),
    INT(CN, "pagewriterscan", pagewriterscan, 1, 0),
    INT(CN, "pagewriterscandelay", pagewriterscandelay, 1, 0),
    INT(CN, "semaphoresets", semaphoresets, 1, 0),
    INT(CN, "sharedmemoryoverflowsize", sharedmemoryoverflowsize, 0, 0),
    INT(CN, "spinlockretries", spinlockretries, 0, 0),
    INT(CN, "sqlyearoffset", sqlyearoffset, 0, 0),
    INT(CN, "storageobjectsize", storageobjectsize, 1024, 0),
    TEXT(CN, "database", database, 1024, "", 0),
    TEXT(CN, "displayname", displayname, 64, "", 0),
    TEXT(CN, "servergroups", servergroups, 2048, "", PROP_WHOLE_LINE),
    INT(CN, "maxprivbuffersperuser", maxprivbuffersperuser, 0, 0),
    TEXT(CN, "archivaldir", archivaldir, 1024, "", 0),
    TEXT(CN, "archivaldircreate", archivaldircreate, 8, "false", 0),
    INT(CN, "archivalinterval", archivalinterval, 0, 0),
    INT(CN, "maximumareas", maximumareas, 0, 0),
    TEXT(CN, "sharedmemorysegmentsize", sharedmemorysegmentsize, 64, "", 0),
    TEXT(CN, "sharedmemorypin", sharedmemorypin, 8, "false", 0),
    INT(CN, "storageobjectcachesize", storageobjectcachesize, 0, 0),
    INT(CN, "locktablehasttablesize", locktablehasttablesize, 0, 0),
    TEXT(CN, "usemuxlatches", usemuxlatches, 8, "false", 0),
    INT(CN, "txecommitlockskiplimit", txecommitlockskiplimit, 0, 0),
    INT(CN, "napinc", napinc, 0, 0),
    INT(CN, "napsteps", napsteps, 0, 0),
    INT(CN, "dbservicecommareasize", dbservicecommareasize, 0, 0),
    INT(CN, "pendconnecttimeout", pendconnecttimeout, 0, 0),
    TEXT(CN, "eventlevel", eventlevel, 64, "", 0),
    INT(CN, "baseindex", baseindex, 0, 0),
    INT(CN, "indexrangesize", indexrangesize, 0, 0),
    INT(CN, "basetable", basetable, 0, 0),
    INT(CN, "tablerangesize", tablerangesize, 0, 0),
    TEXT(CN, "classpath", classpath, 2048, "", 0),
    INT(CN, "sqlcursors", sqlcursors, 0, 0),
    INT(CN, "sqlstack", sqlstack, 0, 0),
    INT(CN, "sqlstmtcache", sqlstmtcache, 0, 0),
    INT(CN, "sqltempbuff", sqltempbuff, 0, 0),
    INT(CN, "sqltempdisk", sqltempdisk, 0, 0),
    INT(CN, "sqltemppgsize", sqltemppgsize, 0, 0),
    INT(CN, "maxjtatransaction", maxjtatransaction, 0, 0),
    TEXT(CN, "sslenable", sslenable, 8, "false", 0),
    TEXT(CN, "sslkeyalias", sslkeyalias, 256, "", 0),
    TEXT(CN, "sslkeyaliaspassword", sslkeyaliaspassword, 256, "", 0),
    TEXT(CN, "ssldisablesessioncache", ssldisablesessioncache, 8, "false", 0),
    INT(CN, "groupdelay", groupdelay, 0, 0),
    INT(CN, "heapsize", heapsize, 0, 0),
    INT(CN, "usercount", usercount, 0, 0),
    TEXT(CN, "vlmopt", vlmopt, 8, "false", 0),
    INT(CN, "alternatebufferpool", alternatebufferpool, 0, 0));

using DB = DBserviceInfo;
QV_TABLE(DBcfg_info, DBserviceInfo,
    TEXT(DB, "autostart", autostart, 8, "false", 0),
    TEXT(DB, "configurations", configurations, 2048, "", 0),
    TEXT(DB, "databasename", databasename, 1024, "", PROP_WHOLE_LINE),
    TEXT(DB, "defaultconfiguration", defaultconfiguration, 1024, "", 0),
    TEXT(DB, "displayname", displayname, 64, "", 0));

using SG = SRVRGRPserviceInfo;
QV_TABLE(SRVRGRPcfg_info, SRVRGRPserviceInfo,
    TEXT(SG, "configuration", configuration, 1024, "", 0),
    TEXT(SG, "displayname", displayname, 64, "", 0),
    TEXT(SG, "host", host, 64, "localhost", 0),
    INT(SG, "initialservers", initialservers, 0, 0),
    INT(SG, "maxclientsperserver", maxclientsperserver, 0, 0),
    INT(SG, "maxdynamicport", maxdynamicport, 0, 0),
    INT(SG, "messagebuffersize", messagebuffersize, 1024, 0),
    INT(SG, "minclientsperserver", minclientsperserver, 1, 0),
    INT(SG, "mindynamicport", mindynamicport, 0, 0),
    TEXT(SG, "multithreaded", multithreaded, 8, "false", 0),
    TEXT(SG, "networkclientsupport", networkclientsupport, 8, "true", 0),
    INT(SG, "numberofservers", numberofservers, 0, 0),
    TEXT(SG, "port", port, 64, "", 0),
    TEXT(SG, "zelsqltrc", zelsqltrc, 64, "nnnnnnnnnnn", 0),
    INT(SG, "reportinginterval", reportinginterval, 1, 0),
    TEXT(SG, "serverexe", serverexe, 1024, "", 0),
    TEXT(SG, "type", type, 64, "4gl", 0),
    TEXT(SG, "ipver", ipver, 64, "ipv4", 0));

// ---- Replication: a version 2 table is its version 1 table plus new keys,
// and a version 2 record begins with the version 1 record at offset 0.
using RS = ReplServerPropsV2;
#define QV_REPL_SERVER_KEYS                                                             \
    TEXT(ReplServerProps, "control-agents", control_agents, 1024, "", PROP_WHOLE_LINE), \
    TEXT(ReplServerProps, "database", database, 256, "", PROP_WHOLE_LINE),              \
    INT(ReplServerProps, "listener-minport", listener_minport, -1, 0),                  \
    INT(ReplServerProps, "listener-maxport", listener_maxport, -1, 0),                  \
    TEXT(ReplServerProps, "transition", transition, 12, "manual", 0),                   \
    INT(ReplServerProps, "transition-timeout", transition_timeout, 1200, 0),            \
    TEXT(ReplServerProps, "vtx", vtx, 1024, "", PROP_WHOLE_LINE),                       \
    TEXT(ReplServerProps, "flags", flags, 32, "", 0)
QV_TABLE(replServer_info, ReplServerProps, QV_REPL_SERVER_KEYS);
QV_TABLE(replServerV2_info, ReplServerPropsV2, QV_REPL_SERVER_KEYS,
    INT(RS, "minimum-polling-delay", minimum_polling_delay, 0, 0),
    INT(RS, "maximum-polling-delay", maximum_polling_delay, 0, 0),
    TEXT(RS, "status-monitor", status_monitor, 12, "", 0),
    INT(RS, "maximum-latency", maximum_latency, 0, 0),
    TEXT(RS, "arguments", arguments, 256, "", PROP_WHOLE_LINE),
    INT(RS, "tcp-inactivity-timeout", tcp_inactivity_timeout, -1, 0),
    TEXT(RS, "tcp-inactivity-action", tcp_inactivity_action, 12, "", 0),
    TEXT(RS, "agent-shutdown-action", agent_shutdown_action, 12, "", 0),
    INT(RS, "defer-agent-startup", defer_agent_startup, 0, 0),
    INT(RS, "repl-keep-alive", repl_keep_alive, -1, 0),
    TEXT(RS, "schema-lock-action", schema_lock_action, 12, "wait", 0));
static_assert(offsetof(RS, v1) == 0);

using RC = ReplControlAgentPropsV2;
#define QV_REPL_CONTROL_AGENT_KEYS                                                         \
    TEXT(ReplControlAgentProps, "host", host, 50, "", PROP_HOSTNAME),                      \
    TEXT(ReplControlAgentProps, "database", database, 256, "", PROP_WHOLE_LINE),           \
    TEXT(ReplControlAgentProps, "port", port, 128, "", 0),                                 \
    INT(ReplControlAgentProps, "agentPort", agentPort, 0, 0),                              \
    INT(ReplControlAgentProps, "critical", critical, 1, 0),                                \
    TEXT(ReplControlAgentProps, "replication-method", replication_method, 20, "async", 0), \
    INT(ReplControlAgentProps, "connect-timeout", connect_timeout, 120, 0),                \
    INT(ReplControlAgentProps, "maximum-message", maximum_message, 129, 0),                \
    TEXT(ReplControlAgentProps, "flags", flags, 32, "", 0)
QV_TABLE(replControlAgent_info, ReplControlAgentProps, QV_REPL_CONTROL_AGENT_KEYS);
QV_TABLE(replControlAgentV2_info, ReplControlAgentPropsV2, QV_REPL_CONTROL_AGENT_KEYS,
    TEXT(RC, "arguments", arguments, 256, "", PROP_WHOLE_LINE),
    TEXT(RC, "ipver", ipver, 16, "ipv4", 0));
static_assert(offsetof(RC, v1) == 0);

using RA = ReplAgentPropsV2;
#define QV_REPL_AGENT_KEYS                                                \
    TEXT(ReplAgentProps, "name", name, 16, "", 0),                        \
    TEXT(ReplAgentProps, "database", database, 256, "", PROP_WHOLE_LINE), \
    INT(ReplAgentProps, "listener-minport", listener_minport, -1, 0),     \
    INT(ReplAgentProps, "listener-maxport", listener_maxport, -1, 0),     \
    TEXT(ReplAgentProps, "vtx", vtx, 1024, "", PROP_WHOLE_LINE),          \
    TEXT(ReplAgentProps, "flags", flags, 32, "", 0)
QV_TABLE(replAgent_info, ReplAgentProps, QV_REPL_AGENT_KEYS);
QV_TABLE(replAgentV2_info, ReplAgentPropsV2, QV_REPL_AGENT_KEYS,
    INT(RA, "minimum-polling-delay", minimum_polling_delay, 0, 0),
    INT(RA, "maximum-polling-delay", maximum_polling_delay, 0, 0),
    TEXT(RA, "status-monitor", status_monitor, 12, "", 0),
    TEXT(RA, "arguments", arguments, 256, "", PROP_WHOLE_LINE),
    INT(RA, "tcp-inactivity-timeout", tcp_inactivity_timeout, -1, 0),
    TEXT(RA, "tcp-inactivity-action", tcp_inactivity_action, 12, "", 0),
    INT(RA, "connect-timeout", connect_timeout, 0, 0),
    TEXT(RA, "host", host, 50, "", PROP_HOSTNAME),
    TEXT(RA, "ipver", ipver, 16, "ipv4", 0));
static_assert(offsetof(RA, v1) == 0);

using RT = ReplTransitionProps;
QV_TABLE(replTransition_info, ReplTransitionProps,
    TEXT(RT, "responsibility", responsibility, 14, "", 0),
    TEXT(RT, "source-startup-arguments", source_startup_arguments, 254, "", PROP_WHOLE_LINE),
    TEXT(RT, "target-startup-arguments", target_startup_arguments, 254, "", PROP_WHOLE_LINE),
    TEXT(RT, "normal-startup-arguments", normal_startup_arguments, 254, "", PROP_WHOLE_LINE),
    TEXT(RT, "source-ai-area-path", source_ai_area_path, 254, "", PROP_WHOLE_LINE),
    INT(RT, "restart-after-transition", restart_after_transition, -1, 0),
    INT(RT, "auto-begin-ai", auto_begin_ai, -1, 0),
    INT(RT, "auto-end-ai", auto_end_ai, -1, 0),
    INT(RT, "auto-apply-ai-areas", auto_apply_ai_areas, -1, 0),
    TEXT(RT, "ai-structure-file", ai_structure_file, 254, "", PROP_WHOLE_LINE),
    INT(RT, "auto-add-ai-areas", auto_add_ai_areas, -1, 0),
    TEXT(RT, "transition-to-agents", transition_to_agents, 254, "", PROP_WHOLE_LINE),
    TEXT(RT, "database-role", database_role, 14, "normal", 0),
    TEXT(RT, "backup-method", backup_method, 14, "mark", 0),
    TEXT(RT, "backup-arguments", backup_arguments, 254, "", PROP_WHOLE_LINE),
    TEXT(RT, "incremental-backup-arguments", incremental_backup_arguments, 254, "",
         PROP_WHOLE_LINE),
    TEXT(RT, "recovery-backup-arguments", recovery_backup_arguments, 254, "", PROP_WHOLE_LINE),
    TEXT(RT, "flags", flags, 32, "", 0),
    TEXT(RT, "source-secondary-broker-startup-arguments", source_secondary_broker_startup_arguments,
         254, "", PROP_WHOLE_LINE),
    TEXT(RT, "target-secondary-broker-startup-arguments", target_secondary_broker_startup_arguments,
         254, "", PROP_WHOLE_LINE),
    TEXT(RT, "normal-secondary-broker-startup-arguments", normal_secondary_broker_startup_arguments,
         254, "", PROP_WHOLE_LINE),
    INT(RT, "start-secondary-broker", start_secondary_broker, -1, 0));

// ---- Process manager and SQL ----------------------------------------------
using PM = PMMGRProps;
QV_TABLE(pmmgr_info, PMMGRProps,
    TEXT(PM, "install-dir", install_dir, 1024, "", PROP_WHOLE_LINE),
    TEXT(PM, "arguments", arguments, 1024, "", PROP_WHOLE_LINE),
    TEXT(PM, "install-date", install_date, 80, "", 0),
    TEXT(PM, "version", version, 20, "", 0),
    TEXT(PM, "executable", executable, 80, "", PROP_WHOLE_LINE),
    TEXT(PM, "flags", flags, 32, "", 0),
    TEXT(PM, "rocket-dll", rocket_dll, 128, "", PROP_WHOLE_LINE),
    TEXT(PM, "vst-worker", vst_worker, 128, "", PROP_WHOLE_LINE),
    INT(PM, "minport", minport, 0, 0),
    INT(PM, "maxport", maxport, 0, 0));

QV_TABLE(SQLConfigList_info, SQLConfigurationList,
    TEXT(SQLConfigurationList, "configuration-names-list", configuration_names_list, 1024, "",
         PROP_WHOLE_LINE));
QV_TABLE(SQLConfig_info, SQLConfigurationProperties,
    TEXT(SQLConfigurationProperties, "database-id-list", database_id_list, 1024, "",
         PROP_WHOLE_LINE));
QV_TABLE(SQLDatabase_info, SQLDbProperties,
    TEXT(SQLDbProperties, "name", name, 32, "", 0),
    TEXT(SQLDbProperties, "catalog", catalog, 32, "", 0),
    TEXT(SQLDbProperties, "location", location, 300, "", PROP_WHOLE_LINE));
// clang-format on

#undef TEXT
#undef INT
#undef QV_FIELD
#undef QV_TABLE
