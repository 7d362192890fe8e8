// safe_files.h: putting a file into place so that a crash at any moment leaves either the earlier file or the
// new one.
#pragma once
#include <filesystem>
#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace safe_files {

/// Hears now and then which part of the work, 0 to 1, is done. What it throws stops the work and is passed
/// on.
using Watch = std::function<void(double part)>;

/// There is no room left on the disk, or none for this user.
class DiskFull : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// A copy that is on the disk beside its destination, where the file system can as a clone that shares the
/// blocks. It waits to take the destination's place by one rename, and goes if it is given up. What a crash
/// leaves of one is cleared by the next to the same destination.
class WaitingCopy {
 public:
  /// Throws std::runtime_error with the system's description, DiskFull among them; nothing is left then.
  WaitingCopy(const std::filesystem::path& source, std::filesystem::path destination,
              const Watch& watch = {});
  WaitingCopy(const WaitingCopy&) = delete;
  WaitingCopy& operator=(const WaitingCopy&) = delete;
  ~WaitingCopy();

  /// Throws as above; the destination is then as before.
  void put_into_place();

 private:
  std::filesystem::path destination_;
  bool waits_ = true;
};

/// Copies `source` over `destination` in this way, at once. Throws as above; the destination is then as
/// before.
void copy_into_place(const std::filesystem::path& source, const std::filesystem::path& destination,
                     const Watch& watch = {});

/// Moves the finished file `source` over `destination` (same folder) by one rename; the earlier destination
/// is replaced.
void move_into_place(const std::filesystem::path& source, const std::filesystem::path& destination);

/// Writes `contents` to `destination` in the same way; to a device or pipe straight. Throws for a file that
/// is being read (files_in_use.h).
void write_into_place(const std::filesystem::path& destination, std::string_view contents);

/// Puts a finished file, and its name in the folder, on the disk itself. Throws as above; a file whose
/// contents didn't get there is removed.
void flush_file(const std::filesystem::path& file);

struct NewFile {
  std::filesystem::path destination;
  std::string contents;
};

/// Writes files that belong together: all are on the disk beside their destinations before the first one is
/// moved into place. Throws as above; unless a move itself has failed, all destinations are then as before.
void write_together(const std::vector<NewFile>& files);

/// Whether this process may write to a file or folder that exists.
bool may_be_written(const std::filesystem::path& place);

/// True if both files can be read and hold the same bytes.
bool same_contents(const std::filesystem::path& a, const std::filesystem::path& b);

}  // namespace safe_files
