#include "platform/files/input_file.h"

#include <array>
#include <cerrno>
#include <filesystem>
#include <stdexcept>
#include <system_error>

#ifndef _WIN32
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace fs = std::filesystem;

namespace {

const char* why_not_read(fs::file_type type) {
  switch (type) {
    case fs::file_type::directory:
      return "is a folder, not a file";
    case fs::file_type::fifo:
      return "is a pipe, not a file";
    case fs::file_type::socket:
      return "is a socket, not a file";
    case fs::file_type::block:
    case fs::file_type::character:
      return "is a device, not a file";
    default:
      return "is not a file";
  }
}

std::string with_system_reason(const char* what, int failure) {
  return failure == 0 ? what : std::string(what) + ": " + std::generic_category().message(failure);
}

#ifdef _WIN32

std::FILE* open_for_reading(const std::string& path) { return std::fopen(path.c_str(), "rb"); }

#else

// What stands at the path may have changed since it was looked at; nothing here waits for it.
std::FILE* open_for_reading(const std::string& path) {
  const int descriptor = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
  if (descriptor < 0) {
    return nullptr;
  }
  struct stat state {};
  std::FILE* const file =
      ::fstat(descriptor, &state) == 0 && S_ISREG(state.st_mode) ? ::fdopen(descriptor, "rb") : nullptr;
  if (file == nullptr) {
    ::close(descriptor);
  }
  return file;
}

#endif

}  // namespace

InputFile::InputFile(const std::string& path) : path_(path) {
  std::error_code failure;
  const fs::file_status status = fs::status(path, failure);
  if (status.type() == fs::file_type::not_found) {
    refuse("doesn't exist");
  }
  if (status.type() == fs::file_type::none) {
    refuse(with_system_reason("can't be opened", failure.value()));
  }
  if (status.type() != fs::file_type::regular) {
    refuse(why_not_read(status.type()));
  }
  errno = 0;
  file_.reset(open_for_reading(path));
  if (!file_) {
    refuse(with_system_reason("can't be opened", errno));
  }
  std::setvbuf(file_.get(), nullptr, _IONBF, 0);  // its users read large pieces
  const std::uintmax_t size = fs::file_size(path, failure);
  size_ = failure ? 0 : static_cast<std::int64_t>(size);
}

std::size_t InputFile::read(char* place, std::size_t count) {
  errno = 0;
  const std::size_t filled = std::fread(place, 1, count, file_.get());
  if (filled < count && std::ferror(file_.get()) != 0) {
    refuse(with_system_reason("can't be read", errno));
  }
  return filled;
}

void InputFile::rewind() { std::rewind(file_.get()); }

void InputFile::refuse(const std::string& reason) const { throw std::runtime_error(path_ + " " + reason); }

std::string read_whole_file(const std::string& path, std::int64_t most) {
  InputFile file(path);
  std::string bytes;
  std::array<char, 65536> chunk{};
  while (const std::size_t count = file.read(chunk.data(), chunk.size())) {
    bytes.append(chunk.data(), count);
    if (static_cast<std::int64_t>(bytes.size()) > most) {
      throw std::runtime_error(path + " is longer than the " + std::to_string(most >> 20) +
                               " MB that such a file may have");
    }
  }
  return bytes;
}
