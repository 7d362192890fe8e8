#include "fuzz/input_file.h"

#include <filesystem>
#include <fstream>
#include <random>
#include <stdexcept>

namespace fs = std::filesystem;

namespace {

class Folder {
 public:
  Folder() {
    const fs::path in_memory = "/dev/shm";
    const fs::path parent = fs::is_directory(in_memory) ? in_memory : fs::temp_directory_path();
    std::random_device random;
    do {
      path_ = parent / ("brenlox_fuzz_" + std::to_string(random()));
    } while (!fs::create_directory(path_));
  }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;
  ~Folder() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
  }
  [[nodiscard]] const fs::path& path() const { return path_; }

 private:
  fs::path path_;
};

const fs::path& folder() {
  static const Folder made;
  return made.path();
}

}  // namespace

std::string input_folder() { return folder().string(); }

std::string write_input_file(const std::uint8_t* data, std::size_t size, const std::string& name) {
  const fs::path path = folder() / name;
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  file.write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
  file.close();
  if (!file) throw std::runtime_error("The input can't be written to " + path.string());
  return path.string();
}
