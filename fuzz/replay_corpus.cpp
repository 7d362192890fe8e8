// Reads every file below the folders given, once, through a fuzz target; a crash or a sanitizer's report is
// the failure.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <vector>

namespace fs = std::filesystem;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

std::vector<fs::path> files_below(const fs::path& folder) {
  std::vector<fs::path> files;
  for (const auto& entry : fs::recursive_directory_iterator(folder)) {
    if (entry.is_regular_file()) files.push_back(entry.path());
  }
  std::ranges::sort(files);
  return files;
}

void replay(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  const std::vector<char> bytes{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  std::cout << path.filename().string()
            << std::endl;  // flushed: the last name printed is the one that failed
  LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
}

}  // namespace

int main(int argument_count, char** arguments) {
  try {
    std::size_t replayed = 0;
    for (int i = 1; i < argument_count; ++i) {
      for (const fs::path& path : files_below(arguments[i])) {
        replay(path);
        ++replayed;
      }
    }
    std::cout << replayed << " inputs replayed\n";
    return replayed > 0 ? 0 : 1;
  } catch (const std::exception& failure) {
    std::cerr << failure.what() << '\n';
    return 1;
  }
}
