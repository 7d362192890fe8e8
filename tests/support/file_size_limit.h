// file_size_limit.h: files of this process can't grow, as on a disk that is full.
#pragma once
#include <csignal>

#include <sys/resource.h>

/// While it exists, writing beyond so many bytes of a file fails with "File too large".
class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t bytes) : earlier_signal_(std::signal(SIGXFSZ, SIG_IGN)) {
    getrlimit(RLIMIT_FSIZE, &earlier_);
    const rlimit limit{bytes, earlier_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;
  ~FileSizeLimit() {
    setrlimit(RLIMIT_FSIZE, &earlier_);
    std::signal(SIGXFSZ, earlier_signal_);
  }

 private:
  using Handler = void (*)(int);
  Handler earlier_signal_;
  rlimit earlier_{};
};
