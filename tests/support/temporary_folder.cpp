#include "tests/support/temporary_folder.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <random>
#include <stdexcept>

namespace {

namespace fs = std::filesystem;

// In memory where there is room: on a disk most of the tests' time goes into waiting for it. A process that
// is killed leaves the same there; what a lost current leaves, no test can show.
fs::path parent_of_folders() {
  constexpr std::uintmax_t room = 1U << 30U;
  const fs::path in_memory = "/dev/shm";
  std::error_code none;
  const fs::space_info space = fs::space(in_memory, none);
  return !none && space.available >= room ? in_memory : fs::temp_directory_path();
}

}  // namespace

TemporaryFolder::TemporaryFolder() {
  constexpr std::size_t digits = 10;
  std::random_device random;
  do {
    std::string number = std::to_string(random());
    number.insert(0, digits - std::min(digits, number.size()),
                  '0');  // texts with the path are as long each time
    folder_ = parent_of_folders() / ("brenlox_test_" + number);
  } while (!std::filesystem::create_directory(folder_));
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(folder_, ignored);
}

std::string TemporaryFolder::write(std::string_view name, std::string_view contents) const {
  const std::filesystem::path file = folder_ / name;
  std::filesystem::create_directories(file.parent_path());
  std::ofstream stream(file, std::ios::binary);
  stream.write(contents.data(), static_cast<std::streamsize>(contents.size()));
  if (!stream) {
    throw std::runtime_error("can't write " + file.string());
  }
  return file.string();
}

std::string file_contents(const std::string& path) {
  std::ifstream stream(path, std::ios::binary);
  if (!stream) {
    throw std::runtime_error("can't read " + path);
  }
  return {std::istreambuf_iterator<char>(stream), {}};
}
