#include "platform/files/safe_files.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <fstream>
#include <stdexcept>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#ifndef _WIN32
#include <fcntl.h>
#include <unistd.h>
#endif

#include "platform/files/clone_file.h"
#include "platform/files/files_in_use.h"

namespace fs = std::filesystem;

namespace safe_files {

namespace {

[[noreturn]] void fail(const fs::path& file, std::string_view what) {
  throw std::runtime_error(file.string() + ": " + std::string(what));
}

bool is_full(const std::error_code& reason) {
#ifdef EDQUOT
  if (reason.value() == EDQUOT) {
    return true;
  }
#endif
  return reason == std::errc::no_space_on_device;
}

[[noreturn]] void fail(const fs::path& file, const std::error_code& reason) {
  const std::string text = file.string() + ": " + reason.message();
  if (is_full(reason)) {
    throw DiskFull(text);
  }
  throw std::runtime_error(text);
}

std::error_code code_of(int number) { return {number, std::generic_category()}; }

// The contents must be on the disk before a rename makes them the only copy. A full or failing disk may show
// only here; the incomplete file is then removed.
void flush_to_disk(const fs::path& file) {
#ifndef _WIN32
  const int descriptor = ::open(file.c_str(), O_RDONLY | O_CLOEXEC);
  if (descriptor < 0) {
    return;
  }
  const int failure = ::fsync(descriptor) == 0 ? 0 : errno;
  ::close(descriptor);
  if (failure != 0 && failure != EINVAL) {  // some file systems have nothing to flush for a folder
    std::error_code ignored;
    if (fs::is_regular_file(file, ignored)) {
      fs::remove(file, ignored);
    }
    fail(file, code_of(failure));
  }
#else
  static_cast<void>(file);
#endif
}

fs::path neighbour_of(const fs::path& destination) {
  fs::path neighbour = destination;
  neighbour += ".writing";
  return neighbour;
}

void remove_quietly(const fs::path& file) {
  std::error_code ignored;
  fs::remove(file, ignored);
}

// The library's copying of files reports a full disk like any other input or output error.
void copy_bytes(const fs::path& source, const fs::path& destination, const Watch& watch) {
  errno = 0;
  std::ifstream from(source, std::ios::binary);
  if (!from) {
    fail(source, code_of(errno != 0 ? errno : EIO));
  }
  std::ofstream to(destination, std::ios::binary | std::ios::trunc);
  constexpr std::size_t chunk_size = 1U << 20U;
  const auto size = static_cast<double>(fs::file_size(source));
  std::vector<char> chunk(chunk_size);
  for (double copied = 0.0; from && to; copied += static_cast<double>(from.gcount())) {
    from.read(chunk.data(), static_cast<std::streamsize>(chunk.size()));
    to.write(chunk.data(), from.gcount());
    if (watch) {
      watch(std::min(1.0, copied / std::max(1.0, size)));
    }
  }
  to.close();
  if (!from.eof() || !to) {
    throw std::system_error(code_of(errno != 0 ? errno : EIO));
  }
}

void rename_over(const fs::path& source, const fs::path& destination) {
  std::error_code error;
  fs::rename(source, destination, error);
  if (error) {
    fail(destination, error);
  }
}

/// Moves a destination's finished neighbour into its place; one that can't be moved goes.
void move_neighbour_into_place(const fs::path& destination) {
  try {
    move_into_place(neighbour_of(destination), destination);
  } catch (const std::runtime_error&) {
    remove_quietly(neighbour_of(destination));
    throw;
  }
}

void flush_folder_of(const fs::path& file) {
  flush_to_disk(file.has_parent_path() ? file.parent_path() : fs::path("."));
}

/// @return why a file couldn't be written; empty if it could
std::string write_straight(const fs::path& file, std::string_view contents) {
  errno = 0;
  std::ofstream stream(file, std::ios::binary | std::ios::trunc);
  stream.write(contents.data(), static_cast<std::streamsize>(contents.size()));
  stream.close();
  if (stream) {
    return {};
  }
  return errno == 0 ? "the file can't be written" : std::generic_category().message(errno);
}

/// Writes the neighbour of a destination; a failure leaves none.
void write_neighbour(const fs::path& destination, std::string_view contents) {
  const fs::path neighbour = neighbour_of(destination);
  if (const std::string reason = write_straight(neighbour, contents); !reason.empty()) {
    remove_quietly(neighbour);
    fail(destination, reason);
  }
  flush_to_disk(neighbour);
}

/// Writes to a pipe or device. A pipe that nobody reads is refused: opened as usual it would wait for a
/// reader, and no stop would be heard.
void write_to_taker(const fs::path& destination, std::string_view contents) {
#ifndef _WIN32
  const int descriptor = ::open(destination.c_str(), O_WRONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
  if (descriptor < 0) {
    fail(destination, errno == ENXIO ? "nobody reads from it" : std::generic_category().message(errno));
  }
#endif
  const std::string reason = write_straight(destination, contents);
#ifndef _WIN32
  ::close(descriptor);
#endif
  if (!reason.empty()) {
    fail(destination, reason);
  }
}

/// A device or pipe takes bytes, but can't be replaced by a file.
bool only_takes_bytes(const fs::path& destination) {
  std::error_code ignored;
  const fs::file_status status = fs::status(destination, ignored);
  return fs::exists(status) && !fs::is_regular_file(status) && !fs::is_directory(status);
}

}  // namespace

void flush_file(const fs::path& file) {
  flush_to_disk(file);
  flush_folder_of(file);
}

void move_into_place(const fs::path& source, const fs::path& destination) {
  rename_over(source, destination);
  flush_folder_of(destination);
}

WaitingCopy::WaitingCopy(const fs::path& source, fs::path destination, const Watch& watch)
    : destination_(std::move(destination)) {
  const fs::path neighbour = neighbour_of(destination_);
  remove_quietly(neighbour);
  try {
    if (!clone_file(source, neighbour)) {
      copy_bytes(source, neighbour, watch);
    }
    fs::permissions(neighbour, fs::status(source).permissions());
  } catch (const std::system_error& error) {
    remove_quietly(neighbour);
    fail(destination_, error.code());
  } catch (...) {
    remove_quietly(neighbour);
    throw;
  }
  flush_to_disk(neighbour);
}

WaitingCopy::~WaitingCopy() {
  if (waits_) {
    remove_quietly(neighbour_of(destination_));
  }
}

void WaitingCopy::put_into_place() {
  waits_ = false;
  move_neighbour_into_place(destination_);
}

void copy_into_place(const fs::path& source, const fs::path& destination, const Watch& watch) {
  WaitingCopy(source, destination, watch).put_into_place();
}

void write_into_place(const fs::path& destination, std::string_view contents) {
  refuse_input(destination);
  if (only_takes_bytes(destination)) {
    write_to_taker(destination, contents);
    return;
  }
  write_neighbour(destination, contents);
  move_neighbour_into_place(destination);
}

void write_together(const std::vector<NewFile>& files) {
  try {
    for (const NewFile& file : files) {
      if (fs::is_directory(file.destination)) {
        fail(file.destination, "is a folder");
      }
      refuse_input(file.destination);
      write_neighbour(file.destination, file.contents);
    }
    for (const NewFile& file : files) {
      rename_over(neighbour_of(file.destination), file.destination);
    }
  } catch (...) {
    for (const NewFile& file : files) {
      remove_quietly(neighbour_of(file.destination));
    }
    throw;
  }
  std::vector<fs::path> folders;
  for (const NewFile& file : files) {
    if (std::ranges::find(folders, file.destination.parent_path()) == folders.end()) {
      folders.push_back(file.destination.parent_path());
      flush_folder_of(file.destination);
    }
  }
}

bool may_be_written(const fs::path& place) {
#ifdef _WIN32
  std::error_code failure;
  return (fs::status(place, failure).permissions() & fs::perms::owner_write) != fs::perms::none;
#else
  return ::faccessat(AT_FDCWD, place.c_str(), W_OK, AT_EACCESS) == 0;
#endif
}

bool same_contents(const fs::path& a, const fs::path& b) {
  std::error_code error;
  const auto size_a = fs::file_size(a, error);
  if (error || size_a != fs::file_size(b, error) || error) {
    return false;
  }
  std::ifstream stream_a(a, std::ios::binary);
  std::ifstream stream_b(b, std::ios::binary);
  std::array<char, 65536> chunk_a{};
  std::array<char, 65536> chunk_b{};
  while (stream_a && stream_b) {
    stream_a.read(chunk_a.data(), static_cast<std::streamsize>(chunk_a.size()));
    stream_b.read(chunk_b.data(), static_cast<std::streamsize>(chunk_b.size()));
    if (stream_a.gcount() != stream_b.gcount() ||
        !std::equal(chunk_a.begin(), chunk_a.begin() + stream_a.gcount(), chunk_b.begin())) {
      return false;
    }
  }
  return stream_a.eof() && stream_b.eof();
}

}  // namespace safe_files
