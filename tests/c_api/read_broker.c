/* A C caller of the shared library: reads one broker record through the
 * public header. Argument: a properties file with service UBroker.CV.demo. */
#include <qorvel/services.h>
#include <stdio.h>
#include <string.h>

int main(int argc, char** argv) {
    static UBSERVICEINFO record;
    ErrDetail detail;
    long rc;
    if (argc != 2) return 2;
    rc = ReadUBproperties(argv[1], "CV", "demo", &record, &detail);
    if (rc != 0) {
        fprintf(stderr, "read failed: %ld %s: %s\n", rc, detail.where, detail.message);
        return 1;
    }
    if (record.infoVersion != INFO_VERSION || record.portNumber != 3999 ||
        strcmp(record.srvrExecFile, "_morvant") != 0 || strcmp(record.uuid, "c-caller") != 0) {
        fprintf(stderr, "unexpected record: %lld %s %s\n", (long long)record.portNumber,
                record.srvrExecFile, record.uuid);
        return 1;
    }
    rc = ReadUBproperties(argv[1], "CV", "absent", &record, &detail);
    if (rc != CV_ERR_NO_SERVICE || strcmp(detail.message, getCV_errorMsg(rc)) != 0) return 1;
    puts("ok");
    return 0;
}
