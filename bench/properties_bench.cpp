// Scan rate of the properties reader over large generated files: a section
// search that has to read the whole file, an inherited three-key read whose
// three levels sit at the end of the file, and a reference loop there.
#include <benchmark/benchmark.h>
#include <ini.h>

#include <fcntl.h>
#include <unistd.h>

#include <cstdint>
#include <cstring>
#include <cstdio>
#include <string>

#include "config/properties_reader.h"
#include "tests/temp_file.h"
#include "qorvel/config.h"

namespace {

// About `bytes` bytes of broker-like sections of realistic keys, then the
// chain Last, Last.Server, Last.Server.node1.
std::string make_text(std::size_t bytes) {
    std::string text;
    char section[512];
    for (int i = 0; text.size() < bytes; ++i) {
        std::snprintf(section, sizeof section,
                      "# broker %d\n[UBroker.CV.broker%d]\n"
                      "    portNumber=%d\n    workDir=/srv/corvane/wrk/broker%d\n"
                      "    srvrLogFile=!{value-of:workDir}/broker%d.server.log\n"
                      "    brokerLogFile=${VTX}/logs/broker%d.broker.log\n"
                      "    PROPATH=${VTX}/tty,${VTX}/tty/adm.pl,\n        ${VTX}/bin\n"
                      "    environment=broker%d\n    maxSrvrInstance=%d\n    description=Broker "
                      "number %d\n\n",
                      i, i, 3000 + i, i, i, i, i, 10 + i % 7, i);
        text += section;
    }
    return text +
           "[Last]\nclasspath=/opt/app/lib/a.jar\njvmargs=-Xmx256m\n"
           "[Last.Server]\npolicyfile=/opt/app/server.policy\n"
           "[Last.Server.node1]\njvmargs=-Xmx512m -Dnode=1\n";
}

// The practical limit: one read() of the whole file and a memchr over it.
void BM_ReadAndMemchr(benchmark::State& state) {
    const std::string text = make_text(static_cast<std::size_t>(state.range(0)));
    const qorvel::testing::TempFile file(text);
    std::string buffer(text.size(), '\0');
    for (auto _ : state) {
        int fd = open(file.path(), O_RDONLY);
        ssize_t got = read(fd, buffer.data(), buffer.size());
        close(fd);
        benchmark::DoNotOptimize(std::memchr(buffer.data(), '\x01', static_cast<std::size_t>(got)));
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}

// The peer: inih parsing the whole file, its handler doing nothing.
void BM_InihWholeFile(benchmark::State& state) {
    const std::string text = make_text(static_cast<std::size_t>(state.range(0)));
    const qorvel::testing::TempFile file(text);
    auto ignore = [](void*, const char*, const char*, const char*) { return 1; };
    for (auto _ : state) benchmark::DoNotOptimize(ini_parse(file.path(), ignore, nullptr));
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}

// A section search in a freshly opened file: the search that indexes it.
void BM_FindLastSection(benchmark::State& state) {
    const std::string text = make_text(static_cast<std::size_t>(state.range(0)));
    const qorvel::testing::TempFile file(text);
    for (auto _ : state) {
        CFGHANDLE h;
        opencfg(nullptr, nullptr, file.path(), &h);
        benchmark::DoNotOptimize(find_Section("Last.Server.node1", &h));
        closecfg(&h);
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}

void BM_InheritedThreeKeyRead(benchmark::State& state) {
    const std::string text = make_text(static_cast<std::size_t>(state.range(0)));
    const qorvel::testing::TempFile file(text);
    char cp[4096], args[2048], policy[2048];
    qorvel::PropertyRequest requests[] = {{"classpath", cp, sizeof cp},
                                          {"jvmargs", args, sizeof args},
                                          {"policyfile", policy, sizeof policy}};
    for (auto _ : state) {
        cp[0] = args[0] = policy[0] = '\0';
        benchmark::DoNotOptimize(
            qorvel::read_properties(1, file.path(), "Last.Server.node1", requests));
    }
    // The file's bytes once per read, as inih's rate counts them.
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}

// A value naming itself through another case of its section's name is not
// seen as a self-reference: the substitution must give up (10010) after one
// scan of the file for that reference, not one per pass.
void BM_SelfReferenceThroughOtherCase(benchmark::State& state) {
    const std::string text = make_text(static_cast<std::size_t>(state.range(0))) +
                             "[App.S04999]\nloop=!{value-of:app.s04999.loop}\n";
    const qorvel::testing::TempFile file(text);
    CFGHANDLE h;
    opencfg("App.S04999", nullptr, file.path(), &h);
    char value[CFG_VALUE_SIZE];
    for (auto _ : state) {
        if (getPropValue(&h, "loop", value, sizeof value, PROP_STRING, nullptr,
                         PROP_NO_DEFAULT_NUMBER, 1) != CFG_BAD_VALUE) {
            state.SkipWithError("the loop was not reported");
        }
    }
    closecfg(&h);
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}

}  // namespace

BENCHMARK(BM_ReadAndMemchr)->Arg(1 << 20)->Arg(10 << 20)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_InihWholeFile)->Arg(1 << 20)->Arg(10 << 20)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_FindLastSection)->Arg(1 << 20)->Arg(10 << 20)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_InheritedThreeKeyRead)->Arg(1 << 20)->Arg(10 << 20)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_SelfReferenceThroughOtherCase)->Arg(10 << 20)->Unit(benchmark::kMillisecond);
