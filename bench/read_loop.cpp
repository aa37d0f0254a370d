// Reads one broker service over and over and prints the peak resident size
// after the first tenth of the reads and after all of them. Built with
// LeakSanitizer (`make leak-check`), a leak fails the exit; a peak that grows
// between the two lines is memory kept from read to read.
#include <sys/resource.h>

#include <cstdio>
#include <cstdlib>
#include <memory>

#include "tests/temp_file.h"
#include "qorvel/services.h"

namespace {

constexpr const char* kBrokers =
    "[UBroker]\nportNumber=3000\nsrvrLogFile=ub.log\n"
    "[UBroker.CV]\nsrvrExecFile=/opt/bin/_morvant -q\n"
    "[UBroker.CV.web]\nportNumber=4000\nuuid=0a1b2c3d\n"
    "[UBroker.CV.app]\nportNumber=4001\n";

long peak_kib() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

}  // namespace

// Alternating the cached value's service makes every read refill the cache.
int main(int argc, char** argv) {
    const long reads = argc > 1 ? std::atol(argv[1]) : 100000;
    const qorvel::testing::TempFile file(kBrokers, "ubroker.properties");
    const char* path = file.path();
    auto record = std::make_unique<UBSERVICEINFO>();
    ErrDetail detail{};
    char value[UB_VALUE_SIZE];
    for (long i = 1; i <= reads; ++i) {
        if (ReadUBproperties(path, "CV", "web", record.get(), &detail) != 0 ||
            readCfgValue_CV(path, i % 2 ? "web" : "app", "portNumber", value) != 0) {
            std::fprintf(stderr, "read %ld failed\n", i);
            return 1;
        }
        if (i == reads / 10 || i == reads)
            std::printf("after %ld reads: peak %ld KiB\n", i, peak_kib());
    }
    return 0;
}
