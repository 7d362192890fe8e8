#include "platform/files/settled_path.h"

#include <algorithm>
#include <system_error>

namespace fs = std::filesystem;

fs::path settled_path(const fs::path& given) {
  const fs::path whole = fs::absolute(given);
  if (std::find(whole.begin(), whole.end(), "..") == whole.end()) {
    return whole.lexically_normal();
  }
  std::error_code missing;
  const fs::path folder = fs::canonical(whole.parent_path(), missing);
  return missing ? whole : folder / whole.filename();
}
