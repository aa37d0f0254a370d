// Scan rate of the properties reader over large generated files: a section
// search that has to read the whole file, and an inherited three-key read whose
// three levels sit at the end of the file.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cstdio>
#include <string>

#include "config/properties_reader.h"
#include "qorvel/config.h"

namespace {

// A file of about `bytes` bytes: broker-like sections of realistic keys, then
// the chain Last, Last.Server, Last.Server.node1.
std::string make_file(std::size_t bytes) {
    std::string path =
        "/tmp/qorvel_bench_" + std::to_string(getpid()) + "_" + std::to_string(bytes);
    FILE* f = std::fopen(path.c_str(), "w");
    std::size_t written = 0;
    for (int i = 0; written < bytes; ++i) {
        written += static_cast<std::size_t>(
            std::fprintf(f,
                         "# broker %d\n[UBroker.CV.broker%d]\n"
                         "    portNumber=%d\n    workDir=/srv/corvane/wrk/broker%d\n"
                         "    srvrLogFile=!{value-of:workDir}/broker%d.server.log\n"
                         "    brokerLogFile=${VTX}/logs/broker%d.broker.log\n"
                         "    PROPATH=${VTX}/tty,${VTX}/tty/adm.pl,\n        ${VTX}/bin\n"
                         "    environment=broker%d\n    maxSrvrInstance=%d\n    description=Broker "
                         "number %d\n\n",
                         i, i, 3000 + i, i, i, i, i, 10 + i % 7, i));
    }
    std::fprintf(f,
                 "[Last]\nclasspath=/opt/app/lib/a.jar\njvmargs=-Xmx256m\n"
                 "[Last.Server]\npolicyfile=/opt/app/server.policy\n"
                 "[Last.Server.node1]\njvmargs=-Xmx512m -Dnode=1\n");
    std::fclose(f);
    return path;
}

long file_size(const std::string& path) {
    FILE* f = std::fopen(path.c_str(), "r");
    std::fseek(f, 0, SEEK_END);
    long size = std::ftell(f);
    std::fclose(f);
    return size;
}

void BM_FindLastSection(benchmark::State& state) {
    std::string path = make_file(static_cast<std::size_t>(state.range(0)));
    CFGHANDLE h;
    opencfg(nullptr, nullptr, path.c_str(), &h);
    for (auto _ : state) benchmark::DoNotOptimize(find_Section("Last.Server.node1", &h));
    closecfg(&h);
    state.SetBytesProcessed(state.iterations() * file_size(path));
    std::remove(path.c_str());
}

void BM_InheritedThreeKeyRead(benchmark::State& state) {
    std::string path = make_file(static_cast<std::size_t>(state.range(0)));
    char cp[4096], args[2048], policy[2048];
    const qorvel::PropertyRequest requests[] = {{"classpath", cp, sizeof cp},
                                                {"jvmargs", args, sizeof args},
                                                {"policyfile", policy, sizeof policy}};
    for (auto _ : state) {
        cp[0] = args[0] = policy[0] = '\0';
        benchmark::DoNotOptimize(
            qorvel::read_properties(1, path.c_str(), "Last.Server.node1", requests));
    }
    // Each of the three levels is searched from the top of the file.
    state.SetBytesProcessed(state.iterations() * 3 * file_size(path));
    std::remove(path.c_str());
}

}  // namespace

BENCHMARK(BM_FindLastSection)->Arg(1 << 20)->Arg(10 << 20)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_InheritedThreeKeyRead)->Arg(1 << 20)->Arg(10 << 20)->Unit(benchmark::kMillisecond);
