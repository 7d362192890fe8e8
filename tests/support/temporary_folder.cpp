#include "tests/support/temporary_folder.h"

#include <fstream>
#include <iterator>
#include <random>
#include <stdexcept>

TemporaryFolder::TemporaryFolder() {
  std::random_device random;
  do {
    folder_ = std::filesystem::temp_directory_path() / ("brenlox_test_" + std::to_string(random()));
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
