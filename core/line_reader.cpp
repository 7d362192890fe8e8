#include "core/line_reader.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <stdexcept>
#include <system_error>

namespace {

constexpr std::size_t chunk_size = std::size_t{64} * 1024;
constexpr std::size_t longest_line =
    std::size_t{16} * 1024 * 1024;  // bytes; no field program writes such lines
constexpr std::string_view byte_order_mark = "\xEF\xBB\xBF";

}  // namespace

LineReader::LineReader(const std::string& path) : path_(path) {
  std::error_code failure;
  const std::filesystem::file_status status = std::filesystem::status(path, failure);
  if (status.type() == std::filesystem::file_type::not_found) {
    refuse("doesn't exist");
  }
  if (std::filesystem::is_directory(status)) {
    refuse("is a folder, not a file");
  }
  errno = 0;
  stream_.open(path, std::ios::binary);
  if (!stream_) {
    refuse(errno == 0 ? "can't be opened" : "can't be opened: " + std::generic_category().message(errno));
  }
  const std::uintmax_t size = std::filesystem::file_size(path, failure);
  file_size_ = failure ? 0 : static_cast<std::int64_t>(size);
  buffer_.resize(chunk_size);
  fill();
  if (std::memchr(buffer_.data(), '\0', filled_) != nullptr) {
    refuse("is not a text file");
  }
  if (std::string_view(buffer_.data(), filled_).starts_with(byte_order_mark)) {
    position_ = byte_order_mark.size();
  }
}

void LineReader::refuse(std::string_view reason) const {
  throw std::runtime_error(path_ + " " + std::string(reason));
}

// Where the line that begins at `first` ends in the buffer; null if its end isn't there. The place of the
// next CR is remembered, so that files without any are not searched for it again and again.
const char* LineReader::find_line_end(const char* first) {
  if (position_ >= filled_ || skip_line_feed_) {
    return nullptr;
  }
  const char* const buffer_end = buffer_.data() + filled_;
  if (!carriage_return_known_ || carriage_return_ < position_) {
    const void* const found = std::memchr(first, '\r', static_cast<std::size_t>(buffer_end - first));
    carriage_return_ = found == nullptr
                           ? filled_
                           : static_cast<std::size_t>(static_cast<const char*>(found) - buffer_.data());
    carriage_return_known_ = true;
  }
  const char* const carriage_return = buffer_.data() + carriage_return_;
  const void* const line_feed = std::memchr(first, '\n', static_cast<std::size_t>(carriage_return - first));
  if (line_feed != nullptr) {
    return static_cast<const char*>(line_feed);
  }
  return carriage_return == buffer_end ? nullptr : carriage_return;
}

void LineReader::take(std::string_view& line, const char* first, const char* line_end) {
  line = {first, static_cast<std::size_t>(line_end - first)};
  position_ += line.size() + 1;
  if (*line_end == '\r') {
    if (position_ == filled_) {
      skip_line_feed_ = true;
    } else if (buffer_[position_] == '\n') {
      ++position_;
    }
  }
  ++line_number_;
}

bool LineReader::next_across_chunks(std::string_view& line) {
  while (true) {
    if (skip_line_feed_ && position_ < filled_) {
      position_ += buffer_[position_] == '\n' ? 1 : 0;
      skip_line_feed_ = false;
    }
    const char* const first = buffer_.data() + position_;
    if (const char* const line_end = find_line_end(first); line_end != nullptr) {
      take(line, first, line_end);
      return true;
    }
    if (fill()) {
      continue;
    }
    if (position_ >= filled_) {
      return false;
    }
    line = {buffer_.data() + position_, filled_ - position_};
    position_ = filled_;
    ++line_number_;
    return true;
  }
}

// Moves the unfinished line to the buffer's start and reads on after it. False at the end of the file.
bool LineReader::fill() {
  if (at_end_) {
    return false;
  }
  const std::size_t kept = filled_ - position_;
  std::memmove(buffer_.data(), buffer_.data() + position_, kept);
  bytes_before_buffer_ += as_signed(position_);
  position_ = 0;
  filled_ = kept;
  carriage_return_known_ = false;
  if (filled_ == buffer_.size()) {
    if (filled_ >= longest_line) {
      refuse("is not a text file: line " + std::to_string(line_number_ + 1) + " is longer than 16 MB");
    }
    buffer_.resize(buffer_.size() * 2);
  }
  errno = 0;
  stream_.read(buffer_.data() + filled_, static_cast<std::streamsize>(buffer_.size() - filled_));
  if (stream_.bad()) {
    refuse("can't be read" + (errno == 0 ? std::string() : ": " + std::generic_category().message(errno)));
  }
  const std::size_t added = static_cast<std::size_t>(stream_.gcount());
  filled_ += added;
  at_end_ = stream_.eof();
  return added > 0;
}
