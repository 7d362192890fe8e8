#include "reduction/each_item.h"

#include <optional>
#include <utility>

#include "core/user_interface.h"
#include "database/survey_database.h"

namespace Module_averaged_data {

namespace {

/// The transaction that a group of items shares; none is open while the work writes nothing.
class GroupedCommits {
 public:
  explicit GroupedCommits(int items_per_commit) : items_per_commit_(items_per_commit) {}

  void begin_item() {
    if (items_per_commit_ > 0 && !transaction_) {
      transaction_.emplace(Module_database::open_survey().database);
    }
  }

  void end_item() {
    if (transaction_ && ++items_ == items_per_commit_) {
      commit();
    }
  }

  void commit() {
    if (transaction_) {
      transaction_->commit();
      transaction_.reset();
      items_ = 0;
    }
  }

  /// Keeps what was written before an item failed. That failure has been reported, and is mostly
  /// the reason for this one.
  void commit_after_failure() {
    try {
      commit();
    } catch (const dao::Error&) {  // NOLINT(bugprone-empty-catch)
    }
  }

 private:
  int items_per_commit_;
  int items_ = 0;
  std::optional<dao::Transaction> transaction_;
};

}  // namespace

WorkProgress::WorkProgress(std::string what, std::size_t count) : what_(std::move(what)), count_(count) {}

WorkProgress::~WorkProgress() { user_interface().show_progress("", -1); }

void WorkProgress::begin(std::string what, std::size_t count) {
  what_ = std::move(what);
  count_ = count;
  shown_ = -1;
}

void WorkProgress::rename(std::string what) {
  what_ = std::move(what);
  if (shown_ >= 0) {
    user_interface().show_progress(what_, shown_);
  }
}

void WorkProgress::show(std::size_t done, double part) {
  const double share = count_ == 0 ? 1.0 : (static_cast<double>(done) + part) / static_cast<double>(count_);
  const int percent = static_cast<int>(100.0 * share);
  if (percent != shown_) {
    user_interface().show_progress(what_, shown_ = percent);
  }
  user_interface().process_events();
}

Outcome each_item(WorkProgress& progress, const std::function<int(std::size_t)>& work,
                  const EachItemRules& rules) {
  GroupedCommits commits(rules.items_per_commit);
  for (std::size_t index = 0; index < progress.count(); ++index) {
    progress.show(index);
    if (rules.may_stop && user_interface().stop_requested()) {
      commits.commit();
      return Outcome::stopped;
    }
    commits.begin_item();
    if (work(index) != 0) {
      commits.commit_after_failure();
      return Outcome::failed;
    }
    commits.end_item();
  }
  commits.commit();
  return Outcome::finished;
}

}  // namespace Module_averaged_data
