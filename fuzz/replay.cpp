// Runs a fuzz target once over every file of the folders it is given, so the
// tests replay a seed corpus under their own sanitizers.
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
extern "C" __attribute__((weak)) int LLVMFuzzerInitialize(int* argc, char*** argv);

int main(int argc, char** argv) {
    if (LLVMFuzzerInitialize) LLVMFuzzerInitialize(&argc, &argv);
    int inputs = 0;
    for (int i = 1; i < argc; ++i) {
        for (const auto& entry : std::filesystem::directory_iterator(argv[i])) {
            std::ifstream in(entry.path(), std::ios::binary);
            std::string bytes(std::istreambuf_iterator<char>(in), {});
            LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()),
                                   bytes.size());
            ++inputs;
        }
    }
    return inputs > 0 ? 0 : 1;  // an empty corpus proves nothing
}
