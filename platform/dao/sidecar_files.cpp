#include "platform/dao/sidecar_files.h"

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <system_error>

#include "platform/dao/error.h"

namespace dao {

void remove_logs(const std::string& path) {
  for (const char* const ending : {"-wal", "-shm", "-journal"}) {
    std::error_code ignored;
    std::filesystem::remove(path + ending, ignored);
  }
}

void make_new_file(const std::string& path) {
  std::FILE* const file = std::fopen(path.c_str(), "wbx");
  if (file == nullptr) {
    throw Error(errno == EEXIST ? "the file exists already"
                                : "unable to open database file: " + std::generic_category().message(errno));
  }
  std::fclose(file);
  remove_logs(path);
}

void remove_database_file(const std::string& path) {
  std::error_code ignored;
  std::filesystem::remove(path, ignored);
  remove_logs(path);
}

}  // namespace dao
