// file_lock.h: a lock that lets one process at a time do something.
#pragma once
#include <filesystem>

/// Holds a locked file of its own for its life; other processes, and other holders in this one, are kept out.
/// The lock ends with its process, however that ends; a file left by a crash locks nothing.
class FileLock {
 public:
  enum class State {
    held,
    held_elsewhere,
    unsupported,  // the file system has no locks
  };

  /// Creates the file `place`, or uses one that a crash left. Throws std::runtime_error with the system's
  /// description if it can't be created.
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
