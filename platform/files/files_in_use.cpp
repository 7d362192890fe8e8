#include "platform/files/files_in_use.h"

#include <algorithm>
#include <mutex>
#include <stdexcept>
#include <system_error>
#include <utility>

namespace fs = std::filesystem;

namespace safe_files {

namespace {

using Paths = std::vector<fs::path>;

/// An inversion puts its files into place in a thread of its own, while surveys are opened in another.
struct ListsInUse {
  std::mutex mutex;
  std::vector<std::weak_ptr<const Paths>> lists;
};

ListsInUse& lists_in_use() {
  static ListsInUse lists;
  return lists;
}

}  // namespace

FilesInUse::FilesInUse(std::vector<fs::path> files)
    : files_(std::make_shared<const Paths>(std::move(files))) {
  ListsInUse& known = lists_in_use();
  const std::scoped_lock lock(known.mutex);
  std::erase_if(known.lists, [](const std::weak_ptr<const Paths>& list) { return list.expired(); });
  known.lists.push_back(files_);
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
  ListsInUse& known = lists_in_use();
  const std::scoped_lock lock(known.mutex);
  for (const std::weak_ptr<const Paths>& list : known.lists) {
    const std::shared_ptr<const Paths> inputs = list.lock();
    if (inputs && std::ranges::any_of(*inputs, is_destination)) {
      throw std::runtime_error(destination.string() + " is one of the input files and is not written over");
    }
  }
}

}  // namespace safe_files
