// ReadUBproperties over a broker file of 1,000 services, reading the last:
// the three-section chain and all 55 keys, most sections scanned end to end.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>

#include "qorvel/services.h"

namespace {

constexpr int kServices = 1000;

// The generated broker file; its directory goes when the program ends.
class BrokerFile {
  public:
    BrokerFile() {
        char pattern[] = "/tmp/qorvel_services_bench_XXXXXX";
        dir_ = mkdtemp(pattern);
        path_ = dir_ + "/ubroker.properties";
        std::ofstream out(path_);
        out << "[UBroker]\nportNumber=3000\nsrvrLogFile=ub.log\nworkDir=/var/ub\n"
            << "[UBroker.CV]\nsrvrExecFile=/opt/bin/_morvant -q\n";
        for (int i = 0; i < kServices; ++i) {
            out << "[UBroker.CV.svc" << i << "]\n"
                << "portNumber=" << 4000 + i << "\nsrvrLogFile=svc" << i << ".log\n"
                << "srvrStartupParam=-p web/objects/web-disp.p -db sports" << i << "\n"
                << "uuid=0a1b2c3d-" << i << "\n";
        }
    }
    ~BrokerFile() { std::filesystem::remove_all(dir_); }
    const std::string& path() const { return path_; }

  private:
    std::string dir_;
    std::string path_;
};

void BM_ReadLastBroker(benchmark::State& state) {
    static const BrokerFile file;
    const std::string& path = file.path();
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
