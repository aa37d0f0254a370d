// An open properties file: its bytes and what the searches and lookups have
// learnt of them. The library's own readers keep one for a whole read; the C
// functions wrap a caller's stream in one for the length of a call.
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace qorvel::config {

class File;

// The bytes of a File from an offset, as the logical-line rules read them.
class Cursor {
  public:
    Cursor(const File& file, std::size_t offset);
    int next() {
        if (at_ < end_) {
            ++pos_;
            return static_cast<unsigned char>(*at_++);
        }
        return refill();
    }
    bool ended() const { return ended_; }
    std::size_t position() const { return pos_; }
    // Passes over whole lines that can neither head a section, be cut nor be
    // joined to the next, without reading them one character at a time.
    void skip_plain_lines(int limit);
    // From a logical line's start, jumps to the start of the next line with a
    // "[" first, when every line passed over provably holds no header; stays
    // where it is when unsure (a long line, a join), for the rules to read on.
    void skip_to_candidate(int limit);
    // A header line the rules would read as it stands (short, not joined, no
    // escape in its first word): its first word, and the cursor after it.
    bool plain_header(int limit, std::string_view& word);

  private:
    int refill();

    const File& file_;
    std::size_t pos_;
    const char* at_ = nullptr;
    const char* end_ = nullptr;
    std::unique_ptr<char[]> chunk_;   // the window of a file read in chunks
    const char* short_to_ = nullptr;  // every line wholly before it is shorter than a limit
    bool ended_ = false;
};

// One entry of a section as a lookup finds it.
struct Entry {
    std::string whole;  // the value, cut at kWholeValueMax characters
    std::string word;   // its first word
    bool whole_cut = false;
};

class File {
  public:
    // Files up to this size are read whole with one read(): a properties file
    // is rarely more than a few hundred kilobytes, and 32 MiB bounds what one
    // open file may hold resident. Larger ones are read in 64 KiB chunks.
    static constexpr std::size_t kWholeReadMax = 32u << 20;
    static constexpr std::size_t kChunkSize = 64u << 10;
    static constexpr std::size_t kWholeValueMax = 1023;

    // Opens `path` into `fd`, refusing without blocking what is not a regular
    // file (EISDIR for a directory, EINVAL for anything else); its size goes
    // into `size` when given. 0 or an errno.
    static long open_regular(const char* path, int& fd, std::size_t* size = nullptr);
    // open_regular, then the whole file read when it is small enough.
    static long open(const std::string& path, std::unique_ptr<File>& file);
    // The file a caller's stream reads, through its descriptor, read whole
    // when small enough; the stream itself is neither read nor moved. `path`
    // names it in messages.
    static std::unique_ptr<File> over(std::FILE* stream, std::string_view path);
    ~File();
    File(const File&) = delete;
    File& operator=(const File&) = delete;

    const std::string& path() const { return path_; }

    // The offset after the header line of the first section whose first word
    // is `header` ("[name]", compared without case); npos when there is none.
    std::size_t find_section(std::string_view header);
    // The entry `key` (compared without case) of the section whose lines
    // begin at `offset`; the first one wins.
    bool find_entry(std::size_t offset, const char* key, Entry& entry);
    // From `from`, the next header whose name begins with `prefix`: its name
    // and the offset after it.
    bool next_section(std::size_t from, std::string_view prefix, std::string& name,
                      std::size_t& after);

    // Where a stream reading the same lines would stand after the last
    // search or lookup: what the C functions leave a caller's stream at.
    std::size_t stop() const { return stop_; }
    void set_stop(std::size_t stop) { stop_ = stop; }

  private:
    friend class Cursor;
    File(int fd, std::string path);
    bool read_whole(std::size_t size);
    // Bytes from `offset` into `chunk` (kChunkSize bytes), or the whole file's.
    std::string_view bytes_at(std::size_t offset, char* chunk) const;

    struct KeyedLine {
        std::string keyword;
        std::size_t start, end;
    };
    // The first kMaxIndexedEntries entries of a section; `end` is where its
    // reading stopped: the section's end when complete, else where to read on.
    static constexpr std::size_t kMaxIndexedEntries = 1024;
    struct Entries {
        std::vector<KeyedLine> lines;
        std::size_t end;
        bool complete = true;
    };
    const Entries& entries_at(std::size_t offset);
    bool scan_for(Cursor& in, const char* key, Entry& entry);

    int fd_;
    bool owns_fd_;
    std::string path_;
    std::unique_ptr<char[]> whole_;  // the file's bytes, when read whole
    std::size_t whole_size_ = 0;
    std::size_t stop_ = 0;
    // Headers met so far in a search from the top: each first word, folded to
    // lower case, with the offset after its first line, so that a file of many
    // sections is searched once however many searches it serves.
    std::unordered_map<std::string, std::size_t> headers_;
    std::size_t searched_to_ = 0;
    bool searched_all_ = false;
    std::unordered_map<std::size_t, Entries> entries_;
};

}  // namespace qorvel::config
