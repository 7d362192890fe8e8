// skipped_groups.h: the groups of readings that a long reduction could not reduce and went past.
#pragma once
#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "database/reading.h"

namespace Module_averaged_data {

/// One damaged reading must not keep the averages of a whole survey from being computed. The user is told
/// once, at the end.
class SkippedGroups {
 public:
  /// Does the work on a group; a failure is noted.
  void attempt(const Module_database::ReadingKey& group, const std::function<void()>& work);

  /// Notes a group that can't even be named by its key.
  void note(const std::string& what);

  [[nodiscard]] std::size_t count() const { return count_; }

  /// Shows the count, and the first three by name with their reasons, behind a text; nothing if there are
  /// none.
  void tell(const std::string& fixed_text) const;

 private:
  std::size_t count_ = 0;
  std::vector<std::string> first_;  // as told
};

}  // namespace Module_averaged_data
