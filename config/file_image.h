// A properties file mapped into memory for the searches of the handles that
// share its stream, with the start of every section found in one pass.
#pragma once

#include <cstddef>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace qorvel {

class FileImage {
  public:
    // Maps the file open on `fd`; nullptr when it cannot be mapped. May throw
    // std::bad_alloc.
    static std::shared_ptr<FileImage> map(int fd);
    ~FileImage();
    FileImage(const FileImage&) = delete;
    FileImage& operator=(const FileImage&) = delete;

    const char* data() const { return data_; }
    std::size_t size() const { return size_; }

    // Where the lines of the first section whose header word is `header`
    // ("[name]", compared without regard to case) begin; -1 when none;
    // kUnanswered when memory ran out, and the stream must be read instead.
    // Each answer is kept, so the many searches of one read scan the file once.
    static constexpr long kUnanswered = -2;
    long section_offset(std::string_view header) noexcept;

    // The entries of the section whose lines begin at `offset`, as a lookup
    // reads them: each line's keyword and start, in file order, and where a
    // lookup that finds none leaves the stream. Built on first use and kept;
    // nullptr when memory ran out, and the stream must be read instead.
    struct Entry {
        std::string keyword;
        std::size_t start;
    };
    struct Entries {
        std::vector<Entry> entries;
        std::size_t end;
    };
    const Entries* entries_at(std::size_t offset) noexcept;

  private:
    enum class Uncut { Unknown, Yes, No };

    FileImage(const char* data, std::size_t size) : data_(data), size_(size) {}
    long search_by_brackets(std::string_view header) const;
    long search_line_by_line(std::string_view header) const;

    const char* data_;
    std::size_t size_;
    std::mutex lock_;
    Uncut uncut_ = Uncut::Unknown;                      // whether any logical line can be cut
    std::unordered_map<std::string, long> found_;       // lower-case header word -> offset
    std::unordered_map<std::size_t, Entries> entries_;  // section offset -> its entries
};

}  // namespace qorvel
