// Test helpers: properties files written at test time and removed afterwards.
#pragma once

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace qorvel::testing {

// A file holding `text` at `name` under a fresh directory.
class TempFile {
  public:
    explicit TempFile(const std::string& text, const std::string& name = "test.properties") {
        char pattern[] = "/tmp/qorvel_test_XXXXXX";
        dir_ = mkdtemp(pattern);
        path_ = dir_ + "/" + name;
        std::filesystem::create_directories(std::filesystem::path(path_).parent_path());
        std::ofstream(path_) << text;
    }
    ~TempFile() { std::filesystem::remove_all(dir_); }
    TempFile(const TempFile&) = delete;
    TempFile& operator=(const TempFile&) = delete;

    const char* path() const { return path_.c_str(); }
    const std::string& dir() const { return dir_; }

  private:
    std::string dir_;
    std::string path_;
};

// An installation whose properties/ubroker.properties holds `text`; VTX
// points at it for the helper's lifetime.
class TempInstall {
  public:
    explicit TempInstall(const std::string& text) : file_(text, "properties/ubroker.properties") {
        if (const char* old = std::getenv("VTX")) oldVtx_ = old;
        setenv("VTX", file_.dir().c_str(), 1);
    }
    ~TempInstall() { oldVtx_.empty() ? unsetenv("VTX") : setenv("VTX", oldVtx_.c_str(), 1); }

    const std::string& dir() const { return file_.dir(); }

  private:
    TempFile file_;
    std::string oldVtx_;
};

}  // namespace qorvel::testing
