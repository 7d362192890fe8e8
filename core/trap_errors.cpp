#include "core/trap_errors.h"

#include <filesystem>
#include <new>

std::string failure_text(const std::exception& failure) {
  if (const auto* const file = dynamic_cast<const std::filesystem::filesystem_error*>(&failure)) {
    const std::string& place = file->path2().empty() ? file->path1().string() : file->path2().string();
    return (place.empty() ? "" : place + ": ") + file->code().message();
  }
  if (dynamic_cast<const std::bad_alloc*>(&failure) != nullptr) {
    return "there is not enough memory";
  }
  return failure.what();
}

std::string failure_message(std::string_view fixed_text, const std::exception& failure) {
  const bool is_whole = dynamic_cast<const CompleteMessage*>(&failure) != nullptr;
  return (is_whole ? std::string() : std::string(fixed_text)) + failure_text(failure);
}
