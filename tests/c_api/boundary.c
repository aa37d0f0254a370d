/* A C caller at the library's boundary: the documented buffer sizes, lists
 * the caller builds itself from the exported tables, and in-place calls. Built
 * with the sanitizers, any write past a caller's buffer ends the run. */
#include <errno.h>
#include <qorvel/config.h>
#include <qorvel/connid.h>
#include <qorvel/log.h>
#include <qorvel/services.h>
#include <qorvel/version.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

static int failures;

#ifdef QORVEL_INTERPOSE
/* A program's own function under an exported name must not change what the
 * library does: were the library to call this one, no file would be found. */
int is_afile(const char* path) {
    (void)path;
    return 0;
}
#endif

static void check(int ok, int line, const char* text) {
    if (!ok) fprintf(stderr, "%s:%d: %s\n", __FILE__, line, text);
    failures += !ok;
}
#define CHECK(cond) check((cond) != 0, __LINE__, #cond)

/* [Common] holds a class path of 3,019 characters, joined from three keys by
 * references (its leading unset variable fails environment expansion, which
 * would cut it at 2,047), and a 5-character jvmargs; [database.d] a database. */
static void write_properties(const char* path) {
    FILE* f = fopen(path, "w");
    fputs(
        "[Common]\njvmargs=-Dx=1\nclasspath=${QORVEL_UNSET_VAR}!{value-of:Common.a}!{value-of:"
        "Common.b}"
        "!{value-of:Common.c}\nport=3090\n",
        f);
    for (int k = 0; k < 3; ++k) {
        fprintf(f, "%c=", 'a' + k);
        for (int i = 0; i < 1000; ++i) fputc('x', f);
        fputc('\n', f);
    }
    fputs("[database]\n[database.d]\ndatabasename=/db/d\ndisplayname=D\n", f);
    fclose(f);
}

static void read_section_keys(const char* file) {
    char classpath[4096] = "", jvmargs[2048] = "", policyfile[2048] = "";
    CHECK(getProperties(3, 1, file, "Common", "classpath", classpath, "jvmargs", jvmargs,
                        "policyfile", policyfile) == 0);
    CHECK(strlen(classpath) == 3019 && strcmp(jvmargs, "-Dx=1") == 0 && policyfile[0] == '\0');

    char small[16] = "default";
    CHECK(getPropertiesSized(1, 1, file, "Common", "classpath", small, sizeof small) == 0);
    CHECK(strcmp(small, "${QORVEL_UNSET_") == 0);

    CFGHANDLE h;
    long port = 0, absent = 0;
    CHECK(opencfg("Common", NULL, file, &h) == 0);
    CHECK(getPropValue(&h, "PORT", &port, sizeof port, PROP_INTEGER, NULL, 7, 1) == 0);
    CHECK(getPropValue(&h, "absent", &absent, sizeof absent, PROP_INTEGER, NULL, 7, 1) == 0);
    CHECK(port == 3090 && absent == 7);
    char value[CFG_VALUE_SIZE] = "?${QORVEL_UNSET_VAR}?b?";
    CHECK(filterValue(&h, "k", value, value) == 1 && strcmp(value, "b") == 0);
    CHECK(filterValue(&h, "k", value, NULL) == 1 && value[0] == '\0');
    CHECK(filterValue(&h, "k", NULL, "x") == 0);
    closecfg(&h);
}

/* Lists the caller builds: a binder fills only their entries, by key. */
static void bind_own_lists(const char* file) {
    struct {
        char before[64];
        UBSERVICEINFO record;
        char after[64];
    } guarded;
    memset(&guarded, 'g', sizeof guarded);
    CfgInfo one[2] = {UBcfg_info[0], {0}};
    one[0].keyword = "portNumber";
    InfoList list = NULL;
    CHECK(alloc_InfoList(&list, one, (int)sizeof one) == 0);
    set_UBserviceInfo(list, &guarded.record);
    CHECK(list[0].value == &guarded.record.portNumber && list[1].value == NULL);
    CHECK(guarded.before[63] == 'g' && guarded.after[0] == 'g');
    free_InfoList(list);

    CfgInfo three[4] = {DBcfg_info[4], DBcfg_info[2], DBcfg_info[2], {0}};
    three[2].keyword = "noSuchKey";
    DBserviceInfo db;
    memset(&db, 0, sizeof db);
    CHECK(alloc_InfoList(&list, three, (int)sizeof three) == 0);
    set_DBserviceInfo(list, &db);
    CHECK(list[0].value == db.displayname && list[1].value == db.databasename);
    CHECK(list[2].value == NULL);
    CFGHANDLE h;
    ErrDetail detail;
    CHECK(OpenConManager(file, "d", &detail, 0, &h, "boundary") == 0);
    CHECK(ReadConManager("d", &detail, list, &h, "database", 1) == 0);
    CHECK(alloc_InfoList(&list, three, (int)sizeof three) == 0);
    CHECK(ReadConManager("d", &detail, list, &h, "", 1) == 0); /* reads nothing, frees the list */
    closecfg(&h);
    CHECK(strcmp(db.displayname, "D") == 0 && strcmp(db.databasename, "/db/d") == 0);

    /* Both SQL configuration records are one text: either binder binds either key. */
    CfgInfo sql[3] = {SQLConfigList_info[0], SQLConfig_info[0], {0}};
    SQLConfigurationList names;
    CHECK(alloc_InfoList(&list, sql, (int)sizeof sql) == 0);
    set_SQLConfigurationList(list, &names);
    CHECK(list[0].value == &names && list[1].value == &names);
    free_InfoList(list);
}

/* A NULL record, list or handle is refused with a status, never dereferenced. */
static void refuse_null_arguments(const char* file) {
    ErrDetail detail;
    int64_t result, count;
    char* none = NULL;
    InfoList list = NULL;
    CHECK(alloc_InfoList(&list, DBcfg_info, (int)sizeof DBcfg_info) == 0);
    const struct {
        long got, expected;
        const char* call;
    } rows[] = {
#define ROW(call, expected) {(long)(call), expected, #call}
        ROW(ReadUBproperties(file, "CV", "s", NULL, &detail), EINVAL),
        ROW(ReadConfigProperties(file, "c", NULL, 1, &detail), EINVAL),
        ROW(ReadSQLConfigList(file, NULL, &detail), EINVAL),
        ROW(UpdateUBproperties(file, "CV", "s", NULL, NULL, NULL, NULL, &result), EINVAL),
        ROW(alloc_InfoList(NULL, UBcfg_info, (int)sizeof UBcfg_info), EINVAL),
        ROW(OpenConManager(file, "d", &detail, 0, NULL, "boundary"), CV_ERR_HANDLE),
        ROW(ReadConManager("d", &detail, list, NULL, "database", 1), CV_ERR_HANDLE),
        ROW(serviceEnum_CV(NULL, 1, &none, 8), CV_ERR_HANDLE),
        ROW(serviceEnum_CV(NULL, SERVICE_ENUM_FIRST_ONLY, &none, 8), EINVAL),
        ROW(getServiceList(&none, 0, &count), EINVAL),
        ROW(getCV_PathInfo(NULL), EINVAL),
        ROW(makeConnIDInfo("a::b", NULL) + encryptIDInConnIDInfo(NULL), 2 * EINVAL),
        ROW(cv_crypto("k", NULL, 4, NULL) + decryptAndFillConnIDInfo("41", NULL), 0),
        ROW(InitTrace(16, NULL) + random_event(NULL, 3), 0),
#undef ROW
    };
    for (size_t i = 0; i < sizeof rows / sizeof rows[0]; ++i) {
        check(rows[i].got == rows[i].expected, __LINE__, rows[i].call);
    }
    getdef_dir(NULL, 8);
    FILE* sink = fopen("/dev/null", "w");
    LogRequest(sink, 0, 1, NULL, "no block");
    fclose(sink);
}

/* The macros a program is built with name the library it runs with. */
static void check_version(void) {
    char built[32];
    snprintf(built, sizeof built, "%d.%d.%d", QORVEL_VERSION_MAJOR, QORVEL_VERSION_MINOR,
             QORVEL_VERSION_PATCH);
    CHECK(strcmp(qorvel_version(), built) == 0);
}

static void call_in_place(void) {
    char text[64];
    CHECK(encryptConnId("host::broker::7::rest", text) == 42);
    CHECK(decryptConnId(text, text) == 21 && strcmp(text, "host::broker::7::rest") == 0);
    static CONNIDINFO info;
    encryptConnId("a::b::3::c", info.connId);
    CHECK(decryptAndFillConnIDInfo(info.connId, &info) == 10);
    CHECK(strcmp(info.connId, "a::b::3::c") == 0 && info.idNumber == 3);

    char name[32] = "";
    CHECK(OpenLogfile(1, NULL, name) == NULL && ExtendLogfile(1, NULL) == NULL);
}

int main(void) {
    char dir[] = "/tmp/qorvel_c_api_XXXXXX";
    if (!mkdtemp(dir)) return 2;
    char file[64];
    snprintf(file, sizeof file, "%s/boundary.properties", dir);
    write_properties(file);
    read_section_keys(file);
    bind_own_lists(file);
    refuse_null_arguments(file);
    call_in_place();
    check_version();
    unlink(file);
    rmdir(dir);
    if (failures == 0) puts("ok");
    return failures == 0 ? 0 : 1;
}
