/* Service configuration library: the records of every kind of configured
 * service, their readers, error details and system error texts.
 *
 * Records, ErrDetail and every buffer belong to the caller. A reader clears
 * its record before reading into it, so after a failed read the record holds
 * what was read before the failure and zeros elsewhere. Each reader opens,
 * reads and closes its file within the call and may run beside other
 * readers, except readCfgValue_CV and getServiceList, which share
 * process-wide state.
 *
 * Null arguments: a reader handed a NULL record returns EINVAL (reported in
 * errDetail as a system error) before it opens anything, and a NULL CFGHANDLE
 * is refused with 10006 (CV_ERR_HANDLE); where an entry point has no status
 * for a NULL record, list or buffer its declaration says what it returns.
 * Nothing is written through a NULL argument. */
#ifndef QORVEL_SERVICES_H
#define QORVEL_SERVICES_H

#include <stddef.h>
#include <stdint.h>

#include "qorvel/config.h"
#include "qorvel/export.h"

#ifdef __cplusplus
#define QORVEL_PIN(cond, what) static_assert(cond, what)
#else
#define QORVEL_PIN(cond, what) _Static_assert(cond, what)
#endif

QORVEL_BEGIN_DECLS

/* Copies strerror(code) into `buf` (at most size - 1 characters). With `strip`
 * non-zero the text is cut at its first CR LF pair. Returns the length of the
 * text before that cut; 0 for a NULL buf. `reserved` is not consulted. */
QORVEL_API size_t fmtSystemMsg(unsigned int code, unsigned long reserved, char* buf, size_t size,
                               int strip);

/* fmtSystemMsg without cutting the line end. */
QORVEL_API size_t FormatSysMessage(unsigned int code, unsigned long reserved, char* buf,
                                   size_t size);

/* ---- Descriptors and info lists ----------------------------------------- */

/* Attribute bits of CfgInfo.flags, beside the lookup flags of config.h. */
#define PROP_DEFAULT_DIR 0x00010000u /* "." or "./" becomes the working directory */
#define PROP_HOSTNAME 0x00020000u
#define PROP_GROUPNAME 0x00100000u
#define PROP_VERSION 0x00200000u /* the value must be INFO_VERSION */
#define PROP_FILENAME 0x00400000u
#define PROP_DEFERRED 0x01000000u /* changes go to the deferred-update handler */

/* The record layout version stated by every infoVersion key. */
#define INFO_VERSION 9010

/* One property key: where its value goes and what it is when absent. */
typedef struct CfgInfo {
    const char* keyword;   /* NULL ends a table */
    void* value;           /* field of the caller's record; NULL until bound */
    uint64_t valueSize;    /* capacity of that field in bytes (8 for integers) */
    char defaultText[256]; /* default of a text key */
    int64_t defaultNum;    /* default of an integer key */
    uint32_t flags;        /* type | attributes */
} CfgInfo;
QORVEL_PIN(sizeof(CfgInfo) == 296, "CfgInfo layout");
QORVEL_PIN(offsetof(CfgInfo, defaultNum) == 280, "CfgInfo.defaultNum offset");

/* A heap copy of a descriptor table, bound to one record for one read. */
typedef CfgInfo* InfoList;

/* Copies `size` bytes of `table` (the whole table, terminator included) into
 * a new list. Returns 0, ENOMEM with *list NULL, or EINVAL for a NULL list or
 * table (nothing written). */
QORVEL_API long alloc_InfoList(InfoList* list, const CfgInfo* table, int size);

/* Releases a list made by alloc_InfoList; NULL is ignored. */
QORVEL_API void free_InfoList(InfoList list);

/* ---- Error details ------------------------------------------------------- */

/* Library result codes (0 is success). */
#define CV_ERR_DIRECTORY 10001L
#define CV_ERR_KEYWORD 10002L
#define CV_ERR_CONFIG_TYPE 10003L
#define CV_ERR_NO_SERVICE 10004L
#define CV_ERR_VERSION 10005L
#define CV_ERR_HANDLE 10006L
#define CV_ERR_NO_SERVICE_NAME 10007L
#define CV_ERR_KEYWORD_VALUE 10010L
#define CV_ERR_SYSTEM 10015L
#define CV_ERR_REPL_VERSION 10025L /* no row in the message table */
/* Message number of every report but the bad replication version. */
#define CV_MSG_NUMBER 6275u

/* How a reader failed. Owned by the caller; readers accept NULL. */
typedef struct ErrDetail {
    int64_t code;     /* library result code, or 10015 for a system error */
    int64_t sysError; /* errno behind the failure, or 0 */
    uint64_t msgNumber;
    char where[256];   /* the step that failed */
    char message[256]; /* system text for sysError, or the table text */
} ErrDetail;
QORVEL_PIN(sizeof(ErrDetail) == 536, "ErrDetail layout");
QORVEL_PIN(offsetof(ErrDetail, message) == 280, "ErrDetail.message offset");

/* Clears *detail and records a failure (nothing when detail is NULL). The
 * message is the system text of sysError when it is 1 or more (or
 * `defaultMessage` if the system has no text), else `defaultMessage` when code
 * is 1 or more; either is cut at 255 characters. */
QORVEL_API void fill_ErrDetail(ErrDetail* detail, int64_t code, int64_t sysError,
                               uint64_t msgNumber, const char* where, const char* defaultMessage);

/* The constant message of a library code, or NULL when it has none. */
QORVEL_API const char* getCV_errorMsg(int64_t code);

/* Replaces a directory of exactly "." or "./" with the working directory
 * (unchanged if getcwd fails). `size` bounds the copy. A NULL dir is ignored. */
QORVEL_API void getdef_dir(char* dir, size_t size);

/* gethostname into *buffer (length bytes): 0, or -1 on failure (errno EINVAL
 * when buffer or *buffer is NULL). */
QORVEL_API int getLocal_HostName(char** buffer, size_t length);

/* There is no product registry key on this platform: returns 0. */
QORVEL_API long getProductRegKey_CV(void);

/* ---- Broker services ----------------------------------------------------- */

/* The service name that asks only for the defaults of a service type. */
#define UB_DEFAULTS_ONLY "GET_JUST_DEFAULT_UBPROPERTIES"

typedef struct UBSERVICEINFO {
    int64_t infoVersion;
    int64_t reserved; /* filled by no key; left zero */
    int64_t portNumber;
    int64_t srvrMinPort;
    int64_t srvrMaxPort;
    int64_t debuggerEnabled;
    int64_t srvrLoggingLevel;
    int64_t srvrLogAppend;
    int64_t srvrNumLogFiles;
    int64_t srvrStartupTimeout;
    char srvrLogEntryTypes[256];
    int64_t collectStatsData;
    int64_t flushStatsData;
    char workDir[255];
    char srvrLogFile[256];
    char ZELPATH[4096];
    char srvrStartupProc[256];
    char srvrShutdownProc[256];
    char srvrConnectProc[256];
    char srvrDisconnProc[256];
    char srvrActivateProc[256];
    char srvrDeactivateProc[256];
    char srvrStartupProcParam[1024];
    char hostName[50];
    char environment[64];
    char uuid[64];
    char operatingMode[64];
    char srvrExecFile[1024];
    char srvrStartupParam[1024];
    char srvrAppMode[64];
    char srvrDebug[64];
    char applicationURL[256];
    char userName[50];
    char groupName[50];
    char defaultCookiePath[255];
    char defaultCookieDomain[255];
    char stateTransport[255];
    char stateSavingMethod[255];
    char stateSavingDirectory[255];
    char cvRoot[255];
    char fileUploadDirectory[255];
    char keyAlias[256];
    char keyAliasPasswd[256];
    char keyStorePath[256];
    char keyStorePasswd[256];
    char sslAlgorithms[256];
    int64_t sslEnable;
    int64_t noSessionCache;
    int64_t sessionTimeout;
    int64_t binaryUploadMaxSize;
    char appServerKeepaliveCapabilities[256];
    int64_t serverASKActivityTimeout;
    int64_t serverASKResponseTimeout;
    int64_t srvrExecutionTimeLimit;
    int64_t brenixEnabled;
    char brenixGroup[256];
} UBSERVICEINFO;
QORVEL_PIN(sizeof(UBSERVICEINFO) == 13936, "UBSERVICEINFO layout");
QORVEL_PIN(offsetof(UBSERVICEINFO, srvrLogEntryTypes) == 80, "UBSERVICEINFO integers");
QORVEL_PIN(offsetof(UBSERVICEINFO, ZELPATH) == 863, "UBSERVICEINFO.ZELPATH offset");

/* Re-read handler: key, record in force, freshly read record; 0 = success. */
typedef int (*UpdateFunc)(const char* key, UBSERVICEINFO* current, UBSERVICEINFO* updated);

/* One handler of an update table; a pair whose name is NULL ends the table
 * and its func is what getUpdateFunction returns for an unknown name. */
typedef struct UpdateFuncEntry {
    UpdateFunc func;
    const char* name;
} UpdateFuncEntry;

/* Descriptor tables and binders, one of each per record.
 *
 * A table is constant data, one row per key in the order its reader reads
 * them, then an all-zero row (NULL keyword); its declared size counts both,
 * so sizeof gives alloc_InfoList's `size` and sizeof / sizeof(CfgInfo) - 1
 * the keys. Every `value` in a table is NULL: bind a copy, never the table.
 *
 * A binder walks `list` up to its NULL keyword and sets each entry's `value`
 * to the field of *record that the entry's key names (compared without regard
 * to case), or to NULL when the record has no such key; readers given such a
 * list skip that entry. It writes only those `value` pointers, so a list may
 * hold any subset of the keys in any order, and lists of one table may be
 * bound to different records at once. NULL list or record: nothing happens. */
QORVEL_API extern const CfgInfo UBcfg_info[56];
QORVEL_API void set_UBserviceInfo(InfoList list, UBSERVICEINFO* record);

/* Reads section "UBroker", "UBroker.<serviceType>" and (unless serviceName is
 * UB_DEFAULTS_ONLY) "UBroker.<serviceType>.<serviceName>" into *record, each
 * level overriding the one before. Every level must exist. Returns 0, 10004,
 * 10005 (a level states another infoVersion), 10007, ENAMETOOLONG (a section
 * name over CFG_SECTION_NAME_MAX characters, which no search could find), or
 * the failure of opening or of a key. */
QORVEL_API long ReadUBproperties(const char* propertiesFile, const char* serviceType,
                                 const char* serviceName, UBSERVICEINFO* record,
                                 ErrDetail* errDetail);

/* ReadUBproperties("ubroker.properties", "CV", serviceName, ...). */
QORVEL_API long readCfg_CV(const char* serviceName, UBSERVICEINFO* record, ErrDetail* errDetail);

/* Size that readCfgValue_CV's `out` must have: the widest broker key. */
#define UB_VALUE_SIZE 4096

/* The value of broker key `key` (any case) of CV service serviceName, as text
 * in `out` (UB_VALUE_SIZE bytes). The service's record is cached process-wide
 * and re-read only when serviceName differs from the cached one; a NULL
 * serviceName uses the cache as it is. A failed read empties the cache.
 * Returns 0, 2 for an unknown key, EINVAL for a NULL key or out (nothing read),
 * or the failure of the read. Not safe for concurrent use. */
QORVEL_API long readCfgValue_CV(const char* propertiesFile, const char* serviceName,
                                const char* key, char* out);

/* Re-reads the service and, for every key whose value differs from *current,
 * calls the handler "update_<key>" or else "update_<serviceType>_<key>"; keys
 * marked PROP_DEFERRED go to "updateDeferedProperty" and count in
 * *deferredCount when deferredCount is not NULL. *updateResult receives the
 * last non-zero handler result. Neither *current nor the file is changed.
 * A NULL current, updateTable or updateResult is refused with EINVAL before
 * anything is read; a failed allocation returns ENOMEM. */
QORVEL_API long UpdateUBproperties(const char* propertiesFile, const char* serviceType,
                                   const char* serviceName, UBSERVICEINFO* current,
                                   ErrDetail* errDetail, int64_t* deferredCount,
                                   const UpdateFuncEntry* updateTable, int64_t* updateResult);

/* The handler named exactly `name`, or the ending pair's func (also for a
 * NULL name); NULL for a NULL table. */
QORVEL_API UpdateFunc getUpdateFunction(const char* name, const UpdateFuncEntry* updateTable);

/* ---- Messengers and name servers ---------------------------------------- */

typedef struct MsngrServiceInfo {
    int64_t infoVersion;
    char RootPath[255];
    char ScriptPath[255];
    char AllowMsngrCmds[2];
    char controllingNameServer[256];
    char workDir[255];
    char msngrExecFile[255];
    char msngrScriptFile[255];
    char Components[256];
    char useConnID[2];
    int64_t minNSClientPort;
    int64_t maxNSClientPort;
    int64_t nsClientPortRetryInterval;
    int64_t nsClientPortRetry;
    char Host[256];
    int64_t Port;
    int64_t registerNameServer;
    char logFile[256];
    int64_t logAppend;
    int64_t logThreshold;
    int64_t loggingLevel;
    char logEntryTypes[256];
    int64_t numLogFiles;
    int64_t sslEnable;
    int64_t noSessionReuse;
    int64_t noHostVerify;
    char certStorePath[256];
    char ipver[256];
} MsngrServiceInfo;
QORVEL_PIN(sizeof(MsngrServiceInfo) == 3184, "MsngrServiceInfo layout");

typedef struct NSserviceInfo {
    int64_t infoVersion;
    int64_t portNumber;
    int64_t brokerKeepAliveTimeout;
    int64_t autoStart;
    int64_t loggingLevel;
    int64_t logAppend;
    int64_t numLogFiles;
    int64_t neighborNameServers;
    char reserved[8184]; /* filled by no key; left zero */
    char hostName[50];
    char workDir[255];
    char classMain[255];
    char location[256];
    char srvrLogFile[255];
    char environment[64];
} NSserviceInfo;
QORVEL_PIN(sizeof(NSserviceInfo) == 9384, "NSserviceInfo layout");
QORVEL_PIN(offsetof(NSserviceInfo, hostName) == 8248, "NSserviceInfo reserved area");

typedef struct PathInfo {
    char RootPath[255];
    char ScriptPath[255];
    char WorkDir[1024]; /* $WRKDIR, cut to fit */
} PathInfo;
QORVEL_PIN(sizeof(PathInfo) == 1534, "PathInfo layout");

/* Messenger types. */
#define MSNGR_CGIIP 1
#define MSNGR_CVISA 2
#define MSNGR_CVNSA 3

/* The index that asks serviceEnum_CV for one look at the first service. */
#define SERVICE_ENUM_FIRST_ONLY 4294967295UL
/* Size that getServiceList's destination must have. */
#define SERVICE_LIST_SIZE 8192

QORVEL_API extern const CfgInfo MsngrCfg_info[29];
QORVEL_API extern const CfgInfo NScfg_info[15];
QORVEL_API void set_MsngrServiceInfo(InfoList list, MsngrServiceInfo* record);
QORVEL_API void set_NSserviceInfo(InfoList list, NSserviceInfo* record);

/* Reads "NameServer" then "NameServer.<serviceName>". Results as for
 * ReadUBproperties. */
QORVEL_API long ReadNSproperties(const char* propertiesFile, const char* serviceName,
                                 NSserviceInfo* record, ErrDetail* errDetail);

/* Reads "Corvane", "Corvane.Messengers" and "Corvane.Messengers.<name>".
 * A NULL name is refused with 10007. */
QORVEL_API long ReadMsngrProperties(const char* propertiesFile, const char* serviceName,
                                    MsngrServiceInfo* record, ErrDetail* errDetail);

/* Whether `clientAddress` may send messenger commands (AllowMsngrCmds, then
 * the comma list cvmAdmIPList) and whether connection IDs are used. The file
 * is $CORVANECNF, always read in the section of CGIIP whatever the type, or
 * else ubroker.properties in the section of the type. Flags may be NULL; a
 * NULL address leaves *allowCmds alone. Returns -1 for an unknown type (only
 * without $CORVANECNF), an open failure, or the status of the last key read
 * (2 when cvmAdmIPList is absent and useConnID was not asked for). */
QORVEL_API long getMsngrCtlSettings(const char* clientAddress, int messengerType,
                                    int64_t* allowCmds, int64_t* useConnIDFlag);
QORVEL_API long getMsngrCmdControl(const char* clientAddress, int messengerType,
                                   int64_t* allowCmds);
QORVEL_API long getMsngrCmdCtlUseConnID(const char* clientAddress, int messengerType,
                                        int64_t* allowCmds, int64_t* useConnIDFlag);

/* RootPath and ScriptPath of section "Corvane", and $WRKDIR. Returns 0, an
 * open failure, or 2 at the first absent key, whose field then holds the
 * key's name and after which nothing more is set. EINVAL for a NULL info,
 * before the file is opened. */
QORVEL_API long getCV_PathInfo(PathInfo* info);

/* The seven flags of "Corvane"'s Components text: flags[i] is 1 when
 * character i is "1". The flags are unchanged on failure. EINVAL for NULL
 * flags, before the file is opened. */
QORVEL_API long getComponentList(int64_t* flags);

/* One step of enumerating the CV broker services: index 0 opens the file and
 * returns the first, 1, 2 ... the next ones from *context, which keeps the
 * file open until 259 (no further service) or a failure; the index
 * SERVICE_ENUM_FIRST_ONLY returns the first and closes. The name goes to
 * *name (size bytes). A caller that stops early must closecfg(context). One
 * context belongs to one thread at a time. A NULL context is refused with
 * 10006 (it may be NULL with SERVICE_ENUM_FIRST_ONLY, which does not use it);
 * a NULL name or *name with EINVAL. */
QORVEL_API long serviceEnum_CV(CFGHANDLE* context, unsigned long index, char** name, size_t size);

/* The CV broker services as one comma-separated text in *list, which must
 * hold SERVICE_LIST_SIZE bytes, and their number in *count. Returns 0, an
 * open failure, or ENOBUFS when the names do not all fit (*list then holds
 * those that do). Uses a process-wide enumeration context: not safe for
 * concurrent use. `reserved` is not consulted. EINVAL (nothing written) for a
 * NULL list, *list or count. */
QORVEL_API long getServiceList(char** list, long reserved, int64_t* count);

/* There is no default service on this platform: stores "" and returns 0. */
QORVEL_API long getDefault_Service(char** name);

/* ---- Connection-manager services ---------------------------------------- */

typedef struct CNFGserviceInfo {
    int64_t afterimagebuffers;
    char afterimagestall[8];
    char archivaldircreate[8];
    char archivaldir[1024];
    int64_t archivalinterval;
    int64_t baseindex;
    int64_t basetable;
    char beforeimagebufferedwrites[8];
    int64_t beforeimagebuffers;
    int64_t beforeimageclusterage;
    int64_t beforeimagedelaywrites;
    char beforeimagestall[8];
    int64_t bithold;
    int64_t blocksindatabasebuffers;
    char casetablename[64];
    char classpath[2048];
    char collationtable[64];
    char conversionmap[64];
    char crashprotection[8];
    char databasecodepage[64];
    char database[1024];
    int64_t dbservicecommareasize;
    char directio[8];
    char displayname[64];
    char eventlevel[64];
    int64_t groupdelay;
    int64_t hashtableentries;
    int64_t heapsize;
    int64_t indexrangesize;
    char internalcodepage[64];
    int64_t locktableentries;
    int64_t locktablehasttablesize;
    char logcharacterset[64];
    int64_t maximumareas;
    int64_t maxjtatransaction;
    int64_t maxprivbuffersperuser;
    int64_t maxservers;
    int64_t maxusers;
    int64_t nap;
    int64_t napinc;
    int64_t napmax;
    int64_t napsteps;
    int64_t pagewritermaxbuffers;
    int64_t pagewriterqueuedelay;
    int64_t pagewriterqueuemin;
    int64_t pagewriterscan;
    int64_t pagewriterscandelay;
    int64_t pendconnecttimeout;
    int64_t alternatebufferpool;
    int64_t semaphoresets;
    char servergroups[2048];
    int64_t sharedmemoryoverflowsize;
    char sharedmemorypin[8];
    char sharedmemorysegmentsize[64];
    int64_t spinlockretries;
    int64_t sqlcursors;
    int64_t sqlstack;
    int64_t sqlstmtcache;
    int64_t sqltempbuff;
    int64_t sqltempdisk;
    int64_t sqltemppgsize;
    int64_t sqlyearoffset;
    char ssldisablesessioncache[8];
    char sslenable[8];
    char sslkeyalias[256];
    char sslkeyaliaspassword[256];
    int64_t storageobjectcachesize;
    int64_t storageobjectsize;
    int64_t tablerangesize;
    int64_t txecommitlockskiplimit;
    char usemuxlatches[8];
    int64_t usercount;
    char vlmopt[8];
} CNFGserviceInfo;
QORVEL_PIN(sizeof(CNFGserviceInfo) == 7696, "CNFGserviceInfo layout");

typedef struct DBserviceInfo {
    char autostart[64]; /* the key fills at most 8 bytes */
    char configurations[2048];
    char databasename[1024];
    char defaultconfiguration[1024];
    char displayname[64];
} DBserviceInfo;
QORVEL_PIN(sizeof(DBserviceInfo) == 4224, "DBserviceInfo layout");

typedef struct SRVRGRPserviceInfo {
    char host[64];
    int64_t initialservers;
    int64_t maxclientsperserver;
    int64_t maxdynamicport;
    int64_t messagebuffersize;
    int64_t minclientsperserver;
    int64_t mindynamicport;
    char multithreaded[8];
    char networkclientsupport[8];
    int64_t numberofservers;
    char zelsqltrc[64];
    int64_t reportinginterval;
    char serverexe[1024];
    char port[64]; /* a port number or a service name */
    char type[64];
    char ipver[64];
    char configuration[1024];
    char displayname[64];
} SRVRGRPserviceInfo;
QORVEL_PIN(sizeof(SRVRGRPserviceInfo) == 2512, "SRVRGRPserviceInfo layout");

QORVEL_API extern const CfgInfo CNFGcfg_info[74];
QORVEL_API extern const CfgInfo DBcfg_info[6];
QORVEL_API extern const CfgInfo SRVRGRPcfg_info[19];
QORVEL_API void set_CNFGserviceInfo(InfoList list, CNFGserviceInfo* record);
QORVEL_API void set_DBserviceInfo(InfoList list, DBserviceInfo* record);
QORVEL_API void set_SRVRGRPserviceInfo(InfoList list, SRVRGRPserviceInfo* record);

/* Each reads the chain "<base>", "<base>.<part1>", "<base>.<part1>.<part2>" ...
 * built from the dotted serviceName (base "configuration", "database",
 * "servergroup"; at most seven parts, CFG_SECTION_NAME_MAX characters a name, else
 * ENAMETOOLONG). A missing level is recorded in errDetail and skipped; only a
 * missing last level makes the result 10004. With useTableDefaults non-zero
 * every existing level re-applies the table defaults; with zero a key keeps
 * the value of the most specific level that sets it. A plain text value is cut
 * at its first "#". */
QORVEL_API long ReadConfigProperties(const char* propertiesFile, const char* serviceName,
                                     CNFGserviceInfo* record, int useTableDefaults,
                                     ErrDetail* errDetail);
QORVEL_API long ReadDBProperties(const char* propertiesFile, const char* serviceName,
                                 DBserviceInfo* record, int useTableDefaults, ErrDetail* errDetail);
QORVEL_API long ReadSrvrGrpProperties(const char* propertiesFile, const char* serviceName,
                                      SRVRGRPserviceInfo* record, int useTableDefaults,
                                      ErrDetail* errDetail);

/* Refuses a NULL or empty serviceName with 10007 (where-text callerName) and
 * a NULL handle with 10006, else opens the file into *handle. `reserved` is
 * not consulted. */
QORVEL_API long OpenConManager(const char* propertiesFile, const char* serviceName,
                               ErrDetail* errDetail, long reserved, CFGHANDLE* handle,
                               const char* callerName);

/* Reads the chain of baseSection and serviceName through the bound `list`,
 * which it releases on every path. A NULL handle returns 10006, a NULL list
 * EINVAL. */
QORVEL_API long ReadConManager(const char* serviceName, ErrDetail* errDetail, InfoList list,
                               CFGHANDLE* handle, const char* baseSection, int useTableDefaults);

/* ---- Replication, process manager, SQL ---------------------------------- */

/* replVersion argument: which record the replication readers fill. */
#define REPL_VERSION_1 0
#define REPL_VERSION_2 1

typedef struct ReplServerProps {
    char control_agents[1024];
    char database[256];
    int64_t listener_minport;
    int64_t listener_maxport;
    char transition[12];
    int64_t transition_timeout;
    char vtx[1024];
    char flags[32];
} ReplServerProps;
QORVEL_PIN(sizeof(ReplServerProps) == 2376, "ReplServerProps layout");

typedef struct ReplServerPropsV2 {
    ReplServerProps v1;
    int64_t minimum_polling_delay;
    int64_t maximum_polling_delay;
    char status_monitor[12];
    int64_t maximum_latency;
    char arguments[256];
    int64_t tcp_inactivity_timeout;
    char tcp_inactivity_action[12];
    char agent_shutdown_action[12];
    int64_t defer_agent_startup;
    int64_t repl_keep_alive;
    char schema_lock_action[12];
} ReplServerPropsV2;
QORVEL_PIN(sizeof(ReplServerPropsV2) == 2736, "ReplServerPropsV2 layout");
QORVEL_PIN(offsetof(ReplServerPropsV2, minimum_polling_delay) == sizeof(ReplServerProps),
           "version 2 begins with version 1");

typedef struct ReplControlAgentProps {
    char host[128]; /* the key fills at most 50 bytes */
    char database[256];
    char port[128];
    int64_t agentPort;
    int64_t critical;
    char replication_method[20];
    int64_t connect_timeout;
    int64_t maximum_message;
    char flags[32];
} ReplControlAgentProps;
QORVEL_PIN(sizeof(ReplControlAgentProps) == 600, "ReplControlAgentProps layout");

typedef struct ReplControlAgentPropsV2 {
    ReplControlAgentProps v1;
    char arguments[256];
    char ipver[16];
} ReplControlAgentPropsV2;
QORVEL_PIN(sizeof(ReplControlAgentPropsV2) == 872, "ReplControlAgentPropsV2 layout");
QORVEL_PIN(offsetof(ReplControlAgentPropsV2, arguments) == sizeof(ReplControlAgentProps),
           "version 2 begins with version 1");

typedef struct ReplAgentProps {
    char name[16];
    char database[256];
    int64_t listener_minport;
    int64_t listener_maxport;
    char vtx[1024];
    char flags[32];
} ReplAgentProps;
QORVEL_PIN(sizeof(ReplAgentProps) == 1344, "ReplAgentProps layout");

typedef struct ReplAgentPropsV2 {
    ReplAgentProps v1;
    int64_t minimum_polling_delay;
    int64_t maximum_polling_delay;
    char status_monitor[12];
    char arguments[256];
    int64_t tcp_inactivity_timeout;
    char tcp_inactivity_action[12];
    int64_t connect_timeout;
    char host[128]; /* the key fills at most 50 bytes */
    char ipver[16];
} ReplAgentPropsV2;
QORVEL_PIN(sizeof(ReplAgentPropsV2) == 1808, "ReplAgentPropsV2 layout");
QORVEL_PIN(offsetof(ReplAgentPropsV2, minimum_polling_delay) == sizeof(ReplAgentProps),
           "version 2 begins with version 1");

typedef struct ReplTransitionProps {
    char responsibility[15];
    char source_startup_arguments[256];
    char source_secondary_broker_startup_arguments[256];
    char target_startup_arguments[256];
    char target_secondary_broker_startup_arguments[256];
    char normal_startup_arguments[256];
    char normal_secondary_broker_startup_arguments[256];
    char source_ai_area_path[256];
    int64_t restart_after_transition; /* the switches are -1 when not set */
    int64_t start_secondary_broker;
    int64_t auto_begin_ai;
    int64_t auto_end_ai;
    int64_t auto_add_ai_areas;
    int64_t auto_apply_ai_areas;
    char ai_structure_file[256];
    char transition_to_agents[256];
    char database_role[15];
    char backup_method[15];
    char backup_arguments[256];
    char incremental_backup_arguments[256];
    char recovery_backup_arguments[256];
    char flags[32];
} ReplTransitionProps;
QORVEL_PIN(sizeof(ReplTransitionProps) == 3200, "ReplTransitionProps layout");
QORVEL_PIN(offsetof(ReplTransitionProps, restart_after_transition) == 1808,
           "ReplTransitionProps switches");

typedef struct PMMGRProps {
    int64_t minport;
    int64_t maxport;
    char install_dir[1024];
    char arguments[1024];
    char install_date[80];
    char version[20];
    char executable[80];
    char flags[32];
    char rocket_dll[128];
    char vst_worker[128];
} PMMGRProps;
QORVEL_PIN(sizeof(PMMGRProps) == 2536, "PMMGRProps layout");

typedef struct SQLConfigurationList {
    char configuration_names_list[1024];
} SQLConfigurationList;
QORVEL_PIN(sizeof(SQLConfigurationList) == 1024, "SQLConfigurationList layout");

typedef struct SQLConfigurationProperties {
    char database_id_list[1024];
} SQLConfigurationProperties;
QORVEL_PIN(sizeof(SQLConfigurationProperties) == 1024, "SQLConfigurationProperties layout");

typedef struct SQLDbProperties {
    char name[32];
    char catalog[32];
    char location[300];
} SQLDbProperties;
QORVEL_PIN(sizeof(SQLDbProperties) == 364, "SQLDbProperties layout");

/* A version 2 table begins with the rows of its version 1 table. */
QORVEL_API extern const CfgInfo replServer_info[9];
QORVEL_API extern const CfgInfo replServerV2_info[20];
QORVEL_API extern const CfgInfo replControlAgent_info[10];
QORVEL_API extern const CfgInfo replControlAgentV2_info[12];
QORVEL_API extern const CfgInfo replAgent_info[7];
QORVEL_API extern const CfgInfo replAgentV2_info[16];
QORVEL_API extern const CfgInfo replTransition_info[23];
QORVEL_API extern const CfgInfo pmmgr_info[11];
QORVEL_API extern const CfgInfo SQLConfigList_info[2];
QORVEL_API extern const CfgInfo SQLConfig_info[2];
QORVEL_API extern const CfgInfo SQLDatabase_info[4];
QORVEL_API void set_ReplServerProps(InfoList list, ReplServerProps* record);
QORVEL_API void set_ReplServerPropsV2(InfoList list, ReplServerPropsV2* record);
QORVEL_API void set_ReplControlAgentProps(InfoList list, ReplControlAgentProps* record);
QORVEL_API void set_ReplControlAgentPropsV2(InfoList list, ReplControlAgentPropsV2* record);
QORVEL_API void set_ReplAgentProps(InfoList list, ReplAgentProps* record);
QORVEL_API void set_ReplAgentPropsV2(InfoList list, ReplAgentPropsV2* record);
QORVEL_API void set_ReplTransitionProps(InfoList list, ReplTransitionProps* record);
QORVEL_API void set_PMMGRProps(InfoList list, PMMGRProps* record);
QORVEL_API void set_SQLConfigurationList(InfoList list, SQLConfigurationList* record);
QORVEL_API void set_SQLConfigurationProperties(InfoList list, SQLConfigurationProperties* record);
QORVEL_API void set_SQLDbProperties(InfoList list, SQLDbProperties* record);

/* Each reads one section with the table defaults. The replication readers
 * fill a version 1 record (replVersion REPL_VERSION_1) or a version 2 record
 * (REPL_VERSION_2) and refuse other versions with 10025 once the file is open.
 * Section names are "server", "control-agent.<agentName>" (49 characters at
 * most), "agent", "transition", the given process-manager section (63),
 * "sql-configuration", "configuration.<configName>" (239, as far as a section
 * search takes) and "database.<dbName>" (54); longer names are refused with
 * ENAMETOOLONG.
 * `reserved` arguments are not consulted. */
QORVEL_API long ReadReplServerProperties(const char* propertiesFile, void* record, int replVersion,
                                         ErrDetail* errDetail);
QORVEL_API long ReadReplControlAgentProperties(const char* propertiesFile, const char* agentName,
                                               void* record, int replVersion, ErrDetail* errDetail);
QORVEL_API long ReadReplAgentProperties(const char* propertiesFile, void* record, int replVersion,
                                        ErrDetail* errDetail);
QORVEL_API long ReadReplTransitionProperties(const char* propertiesFile,
                                             ReplTransitionProps* record, long reserved,
                                             ErrDetail* errDetail);
QORVEL_API long ReadPMMGRProperties(const char* propertiesFile, const char* sectionName,
                                    PMMGRProps* record, long reserved, ErrDetail* errDetail);
QORVEL_API long ReadSQLConfigList(const char* propertiesFile, SQLConfigurationList* record,
                                  ErrDetail* errDetail);
QORVEL_API long ReadSQLConfigProperties(const char* propertiesFile, const char* configName,
                                        SQLConfigurationProperties* record, ErrDetail* errDetail);
QORVEL_API long ReadSQLDbProperties(const char* propertiesFile, const char* dbName,
                                    SQLDbProperties* record, ErrDetail* errDetail);

QORVEL_END_DECLS

#endif
