#include "file_text.h"

#include <qorvel/config.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <memory>

namespace props {
namespace {

constexpr int kLookupLimit = 2048;  // what a key lookup reads of one logical line

struct FileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

}  // namespace

bool FileText::load(const std::string& path) {
    path_ = path;
    std::ifstream in(path, std::ios::binary);
    if (!in) return false;
    bytes_.assign(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    line_starts_ = {0};
    for (std::size_t i = 0; i < bytes_.size(); ++i) {
        if (bytes_[i] == '\n') line_starts_.push_back(static_cast<long>(i + 1));
    }
    std::unique_ptr<std::FILE, FileCloser> file(std::fopen(path.c_str(), "re"));
    if (!file) return false;
    char buffer[kLookupLimit];
    for (;;) {
        long offset = std::ftell(file.get());
        if (cfg_getline(buffer, kLookupLimit, file.get()) != 0) break;
        lines_.push_back({buffer, offset, line_at(offset)});
    }
    return true;
}

int FileText::line_at(long offset) const {
    auto after = std::upper_bound(line_starts_.begin(), line_starts_.end(), offset);
    return static_cast<int>(after - line_starts_.begin());
}

std::string header_name(const std::string& line) {
    if (line.empty() || line[0] != '[') return "";
    std::size_t close = line.find(']');
    return line.substr(1, close == std::string::npos ? std::string::npos : close - 1);
}

EntryKey entry_key(const std::string& line) {
    std::string copy = line;
    std::string key(copy.size() + 1, '\0');
    cfg_getkeyword(key.data(), copy.data());
    key.resize(key.find('\0'));
    bool has_equals = false;
    for (std::size_t i = 0; i < line.size(); ++i) {
        if (line[i] == '=' && (i == 0 || line[i - 1] != '\\')) {
            has_equals = true;
            break;
        }
    }
    return {key, has_equals};
}

}  // namespace props
