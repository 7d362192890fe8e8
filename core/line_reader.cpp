#include "core/line_reader.h"

#include <algorithm>
#include <cstring>
#include <stdexcept>

namespace {

constexpr std::size_t chunk_size = std::size_t{64} * 1024;
constexpr std::size_t longest_line =
    std::size_t{16} * 1024 * 1024;  // bytes; no field program writes such lines
constexpr std::string_view byte_order_mark = "\xEF\xBB\xBF";

}  // namespace

LineReader::LineReader(const std::string& path) : path_(path), file_(path) {
  // One byte more than a small file, so that the first read meets its end.
  constexpr std::int64_t least = 4096;
  const std::int64_t wanted = std::clamp(file_.size() + 1, least, std::int64_t{chunk_size});
  buffer_.resize(static_cast<std::size_t>(wanted));
  begin();
}

void LineReader::rewind() {
  file_.rewind();
  encoding_ = TextEncoding::bytes;
  undecoded_.clear();
  position_ = filled_ = 0;
  carriage_return_known_ = skip_line_feed_ = at_end_ = false;
  bytes_before_buffer_ = bytes_taken_ = nul_bytes_ = line_number_ = 0;
  begin();
}

// The first chunk tells what the file is.
void LineReader::begin() {
  read_bytes();
  const std::string_view first_bytes(buffer_.data(), filled_);
  if (const std::string_view kind = compression_of(first_bytes); !kind.empty()) {
    refuse("is a compressed file (" + std::string(kind) + "); unpack it first");
  }
  const bool has_nul = std::memchr(buffer_.data(), '\0', filled_) != nullptr;
  encoding_ = text_encoding(first_bytes);
  if (encoding_ != TextEncoding::bytes) {
    undecoded_.assign(first_bytes);
    filled_ = 0;
    read_utf16();
  } else if (has_nul && is_binary(first_bytes)) {
    refuse("is not a text file");
  }
  mark_nul_bytes(0);
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
  if (filled_ >= longest_line) {
    refuse("is not a text file: line " + std::to_string(line_number_ + 1) + " is longer than 16 MB");
  }
  if (filled_ == buffer_.size()) {
    buffer_.resize(buffer_.size() * 2);
  }
  const std::size_t filled_before = filled_;
  if (encoding_ == TextEncoding::bytes) {
    read_bytes();
  } else {
    read_utf16();
  }
  mark_nul_bytes(filled_before);
  return filled_ > filled_before;
}

// Fills the rest of the buffer from the file.
void LineReader::read_bytes() {
  const std::size_t room = buffer_.size() - filled_;
  const std::size_t added = file_.read(buffer_.data() + filled_, room);
  filled_ += added;
  bytes_taken_ += as_signed(added);
  at_end_ = added < room;
}

// Adds the next chunk of UTF-16 to the buffer.
void LineReader::read_utf16() {
  std::string text;
  decode_utf16(undecoded_, encoding_, at_end_, text);
  while (text.empty() && !at_end_) {
    const std::size_t kept = undecoded_.size();
    undecoded_.resize(kept + chunk_size);
    const std::size_t added = file_.read(undecoded_.data() + kept, chunk_size);
    undecoded_.resize(kept + added);
    bytes_taken_ += as_signed(added);
    at_end_ = added < chunk_size;
    decode_utf16(undecoded_, encoding_, at_end_, text);
  }
  buffer_.resize(std::max(buffer_.size(), filled_ + text.size()));
  std::memcpy(buffer_.data() + filled_, text.data(), text.size());
  filled_ += text.size();
}

void LineReader::mark_nul_bytes(std::size_t first) {
  char* place = buffer_.data() + first;
  char* const end = buffer_.data() + filled_;
  while ((place = static_cast<char*>(std::memchr(place, '\0', static_cast<std::size_t>(end - place)))) !=
         nullptr) {
    *place = '?';
    ++nul_bytes_;
  }
}
