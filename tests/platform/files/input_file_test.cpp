// Files, and what only looks like one: none of it may keep the program waiting.
#include "platform/files/input_file.h"

#include <stdexcept>
#include <string>

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include "platform/files/safe_files.h"
#include "tests/support/temporary_folder.h"

namespace {

void make_socket(const std::string& path) {
  const int descriptor = ::socket(AF_UNIX, SOCK_STREAM, 0);
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  path.copy(address.sun_path, sizeof(address.sun_path) - 1);
  EXPECT_EQ(::bind(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof(address)), 0) << path;
  ::close(descriptor);
}

template <class Operation>
std::string failure_of(Operation&& operation) {
  ::alarm(20);  // what waits would wait for ever
  std::string failure;
  try {
    operation();
  } catch (const std::runtime_error& error) {
    failure = error.what();
  }
  ::alarm(0);
  return failure;
}

}  // namespace

TEST(Input_file, Takes_no_pipe_socket_or_device_and_waits_for_none) {
  const TemporaryFolder folder;
  const std::string pipe = folder.path("pipe.edi");
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  const std::string socket = folder.path("s.edi");
  make_socket(socket);
  const std::pair<std::string, const char*> cases[] = {{pipe, " is a pipe, not a file"},
                                                       {socket, " is a socket, not a file"},
                                                       {"/dev/zero", " is a device, not a file"},
                                                       {folder.folder().string(), " is a folder, not a file"},
                                                       {folder.path("none.edi"), " doesn't exist"}};
  for (const auto& [path, reason] : cases) {
    EXPECT_EQ(failure_of([&given = path] { InputFile file(given); }), path + reason);
  }
}

TEST(Input_file, Reads_again_from_the_beginning_and_no_more_than_the_limit) {
  const TemporaryFolder folder;
  const std::string path = folder.write("a.txt", "abc");
  InputFile file(path);
  std::string bytes(10, ' ');
  EXPECT_EQ(file.read(bytes.data(), 2), 2U);
  EXPECT_EQ(file.read(bytes.data(), 10), 1U);
  file.rewind();
  EXPECT_EQ(file.read(bytes.data(), 10), 3U);
  EXPECT_EQ(bytes.substr(0, 3), "abc");
  EXPECT_EQ(read_whole_file(path, 3), "abc");
  EXPECT_NE(failure_of([&] { static_cast<void>(read_whole_file(path, 2)); }).find("a.txt is longer than"),
            std::string::npos);
}

TEST(Safe_files, Do_not_wait_for_somebody_to_read_a_pipe) {
  const TemporaryFolder folder;
  const std::string pipe = folder.path("report.json");
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  EXPECT_EQ(failure_of([&] { safe_files::write_into_place(pipe, "{}"); }), pipe + ": nobody reads from it");
  EXPECT_EQ(failure_of([] { safe_files::write_into_place("/dev/null", "{}"); }), "");
}
