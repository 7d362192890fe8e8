#include "reduction/skipped_groups.h"

#include <exception>

#include "core/number_text.h"
#include "core/user_interface.h"

namespace Module_averaged_data {

namespace {

constexpr std::size_t named_groups = 3;

/// "line 200E, station 100, ExHy, 64 Hz"; a merged curve has no scan rate.
std::string name_of(const Module_database::ReadingKey& group) {
  return "line " + group.line + ", station " + plain_text(group.station) + ", " + group.data_type + ", " +
         (group.scan_rate > 0.0F ? plain_text(group.scan_rate) + " Hz" : "merged");
}

}  // namespace

void SkippedGroups::attempt(const Module_database::ReadingKey& group, const std::function<void()>& work) {
  try {
    work();
  } catch (const std::exception& failure) {
    note(name_of(group) + ": " + failure.what());
  }
}

void SkippedGroups::note(const std::string& what) {
  if (++count_ <= named_groups) {
    first_.push_back(what);
  }
}

void SkippedGroups::tell(const std::string& fixed_text) const {
  if (count_ == 0) {
    return;
  }
  std::string text = fixed_text + plain_text(static_cast<std::int64_t>(count_)) +
                     (count_ == 1 ? " group of readings was skipped and keeps its earlier curve"
                                  : " groups of readings were skipped and keep their earlier curves");
  for (const std::string& group : first_) {
    text += "\n" + group;
  }
  if (count_ > named_groups) {
    text += "\nand " + plain_text(static_cast<std::int64_t>(count_ - named_groups)) + " more";
  }
  user_interface().show_message(text);
}

}  // namespace Module_averaged_data
