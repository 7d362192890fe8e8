#include "tests/kills/killed_process.h"

#include <cerrno>
#include <cstdarg>
#include <map>
#include <new>

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <linux/fs.h>
#include <signal.h>
#include <sqlite3.h>
#include <sys/mman.h>
#include <sys/sendfile.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

/// What child and parent see both.
struct Shared {
  std::int64_t last = 0;
  std::int64_t operations = 0;
  int progress = 0;
};

Shared* shared = nullptr;
sqlite3_vfs* engine_files = nullptr;
const sqlite3_io_methods* engine_methods = nullptr;

bool counting = false;  // in the child only
bool clones_files = false;

void begin_operation() {
  if (counting && ++shared->operations == shared->last) {
    raise(SIGKILL);
  }
}

int write_file(sqlite3_file* file, const void* data, int size, sqlite3_int64 offset) {
  begin_operation();
  return engine_methods->xWrite(file, data, size, offset);
}

int truncate_file(sqlite3_file* file, sqlite3_int64 size) {
  begin_operation();
  return engine_methods->xTruncate(file, size);
}

int sync_file(sqlite3_file* file, int flags) {
  begin_operation();
  return engine_methods->xSync(file, flags);
}

int delete_file(sqlite3_vfs* /*files*/, const char* name, int sync_folder) {
  begin_operation();
  return engine_files->xDelete(engine_files, name, sync_folder);
}

int open_file(sqlite3_vfs* /*files*/, sqlite3_filename name, sqlite3_file* file, int flags, int* out_flags) {
  // Files of different locking have tables of their own, with the same writing in each.
  static std::map<const sqlite3_io_methods*, sqlite3_io_methods> counted;
  const int result = engine_files->xOpen(engine_files, name, file, flags, out_flags);
  if (result == SQLITE_OK && file->pMethods != nullptr) {
    engine_methods = file->pMethods;
    sqlite3_io_methods& methods = counted.try_emplace(engine_methods, *engine_methods).first->second;
    methods.xWrite = write_file;
    methods.xTruncate = truncate_file;
    methods.xSync = sync_file;
    file->pMethods = &methods;
  }
  return result;
}

void count_operations() {
  counting = true;
  engine_files = sqlite3_vfs_find(nullptr);
  static sqlite3_vfs counted = *engine_files;
  counted.zName = "counted";
  counted.xOpen = open_file;
  counted.xDelete = delete_file;
  sqlite3_vfs_register(&counted, 1);
}

}  // namespace

// The program's own writing goes past the engine: what it puts into place counts where it reaches the disk.
extern "C" int rename(const char* from, const char* to) noexcept {
  using Rename = int (*)(const char*, const char*);
  static const auto next = reinterpret_cast<Rename>(dlsym(RTLD_NEXT, "rename"));
  begin_operation();
  return next(from, to);
}

extern "C" int fsync(int descriptor) {
  using Sync = int (*)(int);
  static const auto next = reinterpret_cast<Sync>(dlsym(RTLD_NEXT, "fsync"));
  begin_operation();
  return next(descriptor);
}

// A clone is there all at once, as a killed process sees it.
extern "C" int ioctl(int descriptor, unsigned long request, ...) noexcept {
  va_list arguments;
  va_start(arguments, request);
  void* const argument = va_arg(arguments, void*);
  va_end(arguments);
  if (request != FICLONE) {
    using Control = int (*)(int, unsigned long, ...);
    static const auto next = reinterpret_cast<Control>(dlsym(RTLD_NEXT, "ioctl"));
    return next(descriptor, request, argument);
  }
  if (!clones_files) {
    errno = EOPNOTSUPP;
    return -1;
  }
  begin_operation();
  const int original = static_cast<int>(reinterpret_cast<std::intptr_t>(argument));
  constexpr std::size_t more_than_any_test_has = 1U << 30U;
  return sendfile(descriptor, original, nullptr, more_than_any_test_has) < 0 ? -1 : 0;
}

void let_files_be_cloned(bool possible) { clones_files = possible; }

KilledProcess run_until_operation(std::int64_t last, const std::function<void(const TellProgress&)>& work) {
  void* const memory =
      mmap(nullptr, sizeof(Shared), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  EXPECT_NE(memory, MAP_FAILED);
  shared = new (memory) Shared;
  shared->last = last;
  const pid_t child = fork();
  if (child == 0) {
    count_operations();
    work([](int progress) { shared->progress = progress; });
    _exit(0);
  }
  int status = 0;
  waitpid(child, &status, 0);
  const KilledProcess process{WIFSIGNALED(status), shared->progress, shared->operations};
  munmap(memory, sizeof(Shared));
  return process;
}

void expect_sound_database(const std::string& survey) {
  const std::string command = "sqlite3 -readonly '" + survey + "' 'PRAGMA integrity_check'";
  FILE* const answer = popen(command.c_str(), "r");
  ASSERT_NE(answer, nullptr);
  char line[256] = "";
  (void)!fgets(line, sizeof line, answer);
  pclose(answer);
  EXPECT_STREQ(line, "ok\n");
}
