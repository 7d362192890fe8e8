#include "platform/dao/jet/library_silence.h"

#include <cstdio>

#ifdef _WIN32

namespace dao {

LibrarySilence::LibrarySilence() = default;
LibrarySilence::~LibrarySilence() = default;

}  // namespace dao

#else

#include <fcntl.h>
#include <unistd.h>

namespace dao {

LibrarySilence::LibrarySilence() {
  std::fflush(stderr);
  const int nowhere = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
  if (nowhere < 0) {
    return;
  }
  standard_error_ = ::fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 3);
  if (standard_error_ >= 0) {
    ::dup2(nowhere, STDERR_FILENO);
  }
  ::close(nowhere);
}

LibrarySilence::~LibrarySilence() {
  if (standard_error_ >= 0) {
    std::fflush(stderr);
    ::dup2(standard_error_, STDERR_FILENO);
    ::close(standard_error_);
  }
}

}  // namespace dao

#endif
