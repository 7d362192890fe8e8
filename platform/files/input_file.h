// input_file.h: a file opened for reading, whoever gave its path.
//
// Only regular files are read. A pipe, a socket or a device may keep its reader waiting for ever, already
// when it is opened, and then no stop is heard.
#pragma once
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>

class InputFile {
 public:
  /// Throws std::runtime_error with path and reason if there is no such file, if it is none that can be read
  /// ("is a folder, not a file"), or if the system refuses it. Opening never waits.
  explicit InputFile(const std::string& path);

  /// Reads up to `count` bytes; fewer only at the end. Throws std::runtime_error if the system can't.
  std::size_t read(char* place, std::size_t count);
  void rewind();
  [[nodiscard]] std::int64_t size() const { return size_; }  // bytes, when it was opened

 private:
  struct Close {
    void operator()(std::FILE* file) const { std::fclose(file); }
  };
  [[noreturn]] void refuse(const std::string& reason) const;

  std::string path_;
  std::unique_ptr<std::FILE, Close> file_;
  std::int64_t size_ = 0;
};

/// The whole of a file. Throws as above, also if it is longer than `most` bytes.
std::string read_whole_file(const std::string& path, std::int64_t most);
