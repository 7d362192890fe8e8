#include "platform/dao/sidecar_files.h"

#include <cerrno>
#include <filesystem>
#include <system_error>

#include <fcntl.h>
#include <unistd.h>

#include "platform/dao/error.h"

namespace dao {

void remove_logs(const std::string& path) {
  for (const char* const ending : {"-wal", "-shm", "-journal"}) {
    std::error_code ignored;
    std::filesystem::remove(path + ending, ignored);
  }
}

void make_new_file(const std::string& path) {
  const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
  if (file < 0) {
    throw Error(errno == EEXIST ? "the file exists already"
                                : "unable to open database file: " + std::generic_category().message(errno));
  }
  ::close(file);
  remove_logs(path);
}

void remove_database_file(const std::string& path) {
  std::error_code ignored;
  std::filesystem::remove(path, ignored);
  remove_logs(path);
}

}  // namespace dao
