// Test helper: a properties file written at test time and removed afterwards.
#pragma once

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>

namespace qorvel::testing {

class TempFile {
  public:
    explicit TempFile(const std::string& text, const char* dir = nullptr) {
        path_ = std::string(dir ? dir : "/tmp") + "/qorvel_cfg_XXXXXX";
        int fd = mkstemp(path_.data());
        if (fd >= 0) {
            if (write(fd, text.data(), text.size()) != static_cast<ssize_t>(text.size()))
                path_.clear();
            close(fd);
        }
    }
    ~TempFile() { std::remove(path_.c_str()); }
    TempFile(const TempFile&) = delete;
    TempFile& operator=(const TempFile&) = delete;

    const char* path() const { return path_.c_str(); }
    // The name without its directory.
    const char* name() const { return path_.c_str() + path_.rfind('/') + 1; }

  private:
    std::string path_;
};

}  // namespace qorvel::testing
