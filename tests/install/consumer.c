/* Built against the installed tree through pkg-config: one properties read. */
#include <qorvel/config.h>
#include <stdio.h>
#include <string.h>

int main(int argc, char** argv) {
    char value[64] = "";
    if (argc != 2) return 2;
    long rc = getPropertiesSized(1, 0, argv[1], "S", "k", value, sizeof value);
    return rc == 0 && strcmp(value, "installed") == 0 ? 0 : 1;
}
