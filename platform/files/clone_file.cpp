#include "platform/files/clone_file.h"

#ifdef __linux__
#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <unistd.h>
#endif

#ifdef __linux__

bool clone_file(const std::filesystem::path& original, const std::filesystem::path& copy) {
  const int from = ::open(original.c_str(), O_RDONLY | O_CLOEXEC);
  if (from < 0) {
    return false;
  }
  const int to = ::open(copy.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
  const bool cloned = to >= 0 && ::ioctl(to, FICLONE, from) == 0;
  ::close(from);
  return (to < 0 || ::close(to) == 0) && cloned;
}

#else

bool clone_file(const std::filesystem::path& /*original*/, const std::filesystem::path& /*copy*/) {
  return false;
}

#endif
