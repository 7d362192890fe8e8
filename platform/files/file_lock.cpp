#include "platform/files/file_lock.h"

#include <stdexcept>
#include <system_error>
#include <utility>

#ifndef _WIN32
#include <cerrno>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

#ifdef _WIN32

FileLock::FileLock(std::filesystem::path place) : place_(std::move(place)) {}
FileLock::~FileLock() = default;

#else

namespace {

/// False if an earlier holder has removed the file: then a lock on it keeps nobody out.
bool stands_at(int descriptor, const std::filesystem::path& place) {
  struct stat held {};
  struct stat standing {};
  return ::fstat(descriptor, &held) == 0 && ::stat(place.c_str(), &standing) == 0 &&
         held.st_dev == standing.st_dev && held.st_ino == standing.st_ino;
}

}  // namespace

FileLock::FileLock(std::filesystem::path place) : place_(std::move(place)) {
  for (;;) {
    descriptor_ = ::open(place_.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666);
    if (descriptor_ < 0) {
      throw std::runtime_error(place_.string() + ": " + std::generic_category().message(errno));
    }
    const int failure = ::flock(descriptor_, LOCK_EX | LOCK_NB) == 0 ? 0 : errno;
    if (failure == EWOULDBLOCK) {
      state_ = State::held_elsewhere;
      return;
    }
    if (failure != 0 || stands_at(descriptor_, place_)) {
      state_ = failure == 0 ? State::held : State::unsupported;
      return;
    }
    ::close(descriptor_);
  }
}

FileLock::~FileLock() {
  if (state_ != State::held_elsewhere) {
    std::error_code ignored;
    std::filesystem::remove(place_, ignored);
  }
  ::close(descriptor_);
}

#endif
