// Built against the installed tree through find_package: a cipher round trip.
#include <qorvel/connid.h>

#include <cstring>

int main() {
    char cipher[64];
    char plain[32];
    encryptConnId("host::broker::1::rest", cipher);
    decryptConnId(cipher, plain);
    return std::strcmp(plain, "host::broker::1::rest") == 0 ? 0 : 1;
}
