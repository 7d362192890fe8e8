#include "tests/support/own_mounts.h"

#include <cerrno>
#include <fstream>
#include <string>
#include <system_error>

#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

namespace own_mounts {

namespace {

void check(int status, const char* what) {
  if (status != 0) {
    throw std::system_error(errno, std::generic_category(), what);
  }
}

void write(const char* file, const std::string& text) { std::ofstream(file) << text; }

/// The same user and group inside as outside.
void keep_identity(uid_t user, gid_t group) {
  write("/proc/self/setgroups", "deny");
  write("/proc/self/uid_map", std::to_string(user) + " " + std::to_string(user) + " 1");
  write("/proc/self/gid_map", std::to_string(group) + " " + std::to_string(group) + " 1");
}

/// A folder becomes a mount, so that it has attributes of its own.
void mount_on_itself(const std::filesystem::path& folder) {
  check(::mount(folder.c_str(), folder.c_str(), nullptr, MS_BIND, nullptr), "bind");
}

void change_attributes(const std::filesystem::path& folder, unsigned flags, std::uint64_t set,
                       std::uint64_t clear) {
  mount_attr attributes{};
  attributes.attr_set = set;
  attributes.attr_clr = clear;
  check(::mount_setattr(AT_FDCWD, folder.c_str(), flags, &attributes, sizeof attributes), "mount_setattr");
}

}  // namespace

bool enter() {
  const uid_t user = ::getuid();
  const gid_t group = ::getgid();
  if (::unshare(CLONE_NEWNS) != 0) {
    if (::unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0) {
      return false;
    }
    keep_identity(user, group);
  }
  return ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

void put_disk(const std::filesystem::path& folder, std::size_t bytes) {
  const std::string options = "size=" + std::to_string(bytes);
  check(::mount("tmpfs", folder.c_str(), "tmpfs", 0, options.c_str()), "tmpfs");
}

void make_read_only(const std::filesystem::path& folder) {
  mount_on_itself(folder);
  change_attributes(folder, 0, MOUNT_ATTR_RDONLY, 0);
}

void leave_writable_only(const std::filesystem::path& folder) {
  mount_on_itself(folder);
  change_attributes("/", AT_RECURSIVE, MOUNT_ATTR_RDONLY, 0);
  change_attributes(folder, 0, 0, MOUNT_ATTR_RDONLY);
}

}  // namespace own_mounts
