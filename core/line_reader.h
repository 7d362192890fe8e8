// line_reader.h: the lines of a text file, a chunk of the file at a time.
//
// Lines end with CR, LF or CR LF, mixed as they come; the last one may end with the file. A byte-order mark
// is skipped, and UTF-16 comes as UTF-8. A NUL byte, as a failing disk or transfer leaves it, comes as "?",
// which is part of no number.
#pragma once
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "core/text_encoding.h"
#include "platform/files/input_file.h"

class LineReader {
 public:
  /// Opens the file. Throws std::runtime_error with the file's name if it is missing, is no regular file,
  /// can't be read, or begins as a compressed file or another one that is no text does.
  explicit LineReader(const std::string& path);

  /// Gives the next line without its end; the view holds until the next call.
  /// @return false at the end of the file. Throws std::runtime_error if reading fails or a line is too long
  /// for a text file.
  bool next(std::string_view& line) {
    const char* const first = buffer_.data() + position_;
    const char* const line_end = find_line_end(first);
    if (line_end == nullptr) {
      return next_across_chunks(line);
    }
    take(line, first, line_end);
    return true;
  }

  [[nodiscard]] std::int64_t line_number() const { return line_number_; }  // of the last line, from 1
  [[nodiscard]] std::int64_t bytes_read() const {
    return encoding_ == TextEncoding::bytes ? bytes_before_buffer_ + as_signed(position_) : bytes_taken_;
  }
  [[nodiscard]] std::int64_t file_size() const { return file_.size(); }
  [[nodiscard]] std::int64_t nul_bytes() const { return nul_bytes_; }  // met so far

  /// Goes back to the file's first line.
  void rewind();

 private:
  static std::int64_t as_signed(std::size_t count) { return static_cast<std::int64_t>(count); }
  [[nodiscard]] const char* find_line_end(const char* first);
  void take(std::string_view& line, const char* first, const char* line_end);
  bool next_across_chunks(std::string_view& line);
  void begin();
  bool fill();
  void read_bytes();
  void read_utf16();
  void mark_nul_bytes(std::size_t first);
  [[noreturn]] void refuse(std::string_view reason) const;

  std::string path_;
  InputFile file_;
  TextEncoding encoding_ = TextEncoding::bytes;
  std::string undecoded_;  // bytes of UTF-16 that are not in the buffer yet
  std::vector<char> buffer_;
  std::size_t position_ = 0;              // of the next line in the buffer
  std::size_t filled_ = 0;                // bytes in the buffer
  std::size_t carriage_return_ = 0;       // the first CR at or after position_, filled_ if there is none
  bool carriage_return_known_ = false;    // carriage_return_ holds
  bool skip_line_feed_ = false;           // the line before ended with CR at the end of a chunk
  bool at_end_ = false;                   // the file has nothing more
  std::int64_t bytes_before_buffer_ = 0;  // of the file, before the buffer's first byte
  std::int64_t bytes_taken_ = 0;          // from the file
  std::int64_t nul_bytes_ = 0;
  std::int64_t line_number_ = 0;
};
