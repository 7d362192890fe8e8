#include "platform/files/files_in_use.h"

#include <algorithm>
#include <stdexcept>
#include <system_error>
#include <utility>

namespace fs = std::filesystem;

namespace safe_files {

namespace {

using Paths = std::vector<fs::path>;

std::vector<std::weak_ptr<const Paths>>& lists_in_use() {
  static std::vector<std::weak_ptr<const Paths>> lists;
  return lists;
}

}  // namespace

FilesInUse::FilesInUse(std::vector<fs::path> files)
    : files_(std::make_shared<const Paths>(std::move(files))) {
  std::erase_if(lists_in_use(), [](const std::weak_ptr<const Paths>& list) { return list.expired(); });
  lists_in_use().push_back(files_);
}

void refuse_input(const fs::path& destination) {
  std::error_code ignored;
  if (!fs::exists(destination, ignored)) {
    return;
  }
  const auto is_destination = [&](const fs::path& input) {
    std::error_code missing;
    return fs::equivalent(input, destination, missing);
  };
  for (const std::weak_ptr<const Paths>& list : lists_in_use()) {
    const std::shared_ptr<const Paths> inputs = list.lock();
    if (inputs && std::ranges::any_of(*inputs, is_destination)) {
      throw std::runtime_error(destination.string() + " is one of the input files and is not written over");
    }
  }
}

}  // namespace safe_files
