// file_lock.h: one process at a time does what must not be done twice at once.
#pragma once
#include <filesystem>

/// Holds a file of its own, locked, for its life; other processes, and other holders in this one, are kept
/// out. The lock goes with its process, however that ends; a file left behind by a crash locks nothing.
class FileLock {
 public:
  enum class State {
    held,
    held_elsewhere,
    unsupported,  // the file system knows no locks
  };

  /// Makes the file `place`, or takes one left behind. Throws std::runtime_error with the system's
  /// description if it can't be made.
  explicit FileLock(std::filesystem::path place);
  FileLock(const FileLock&) = delete;
  FileLock& operator=(const FileLock&) = delete;
  /// Removes the file if this was its holder.
  ~FileLock();

  [[nodiscard]] State state() const { return state_; }

 private:
  std::filesystem::path place_;
  int descriptor_ = -1;
  State state_ = State::unsupported;
};
