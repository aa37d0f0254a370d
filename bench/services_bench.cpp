// ReadUBproperties over a broker file of 1,000 services, reading the last:
// the three-section chain and all 55 keys, most sections scanned end to end.
#include <benchmark/benchmark.h>

#include <filesystem>
#include <memory>
#include <sstream>
#include <string>

#include "tests/temp_file.h"
#include "qorvel/services.h"

namespace {

constexpr int kServices = 1000;

std::string broker_file_text() {
    std::ostringstream out;
    out << "[UBroker]\nportNumber=3000\nsrvrLogFile=ub.log\nworkDir=/var/ub\n"
        << "[UBroker.CV]\nsrvrExecFile=/opt/bin/_morvant -q\n";
    for (int i = 0; i < kServices; ++i) {
        out << "[UBroker.CV.svc" << i << "]\n"
            << "portNumber=" << 4000 + i << "\nsrvrLogFile=svc" << i << ".log\n"
            << "srvrStartupParam=-p web/objects/web-disp.p -db sports" << i << "\n"
            << "uuid=0a1b2c3d-" << i << "\n";
    }
    return out.str();
}

void BM_ReadLastBroker(benchmark::State& state) {
    // Static, so the file goes when the program ends.
    static const qorvel::testing::TempFile file(broker_file_text(), "ubroker.properties");
    const std::string path = file.path();
    const std::string last = "svc" + std::to_string(kServices - 1);
    auto record = std::make_unique<UBSERVICEINFO>();
    for (auto _ : state) {
        long rc = ReadUBproperties(path.c_str(), "CV", last.c_str(), record.get(), nullptr);
        if (rc != 0) state.SkipWithError("read failed");
        benchmark::DoNotOptimize(record->portNumber);
    }
    // Scan rate: the file's bytes once per read (each lookup rescans its
    // section; the section searches read the file from the top).
    state.SetBytesProcessed(state.iterations() *
                            static_cast<std::int64_t>(std::filesystem::file_size(path)));
    state.counters["reads/s"] =
        benchmark::Counter(static_cast<double>(state.iterations()), benchmark::Counter::kIsRate);
}
BENCHMARK(BM_ReadLastBroker)->Unit(benchmark::kMicrosecond);

}  // namespace
