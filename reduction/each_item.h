// each_item.h: the same work on every key, station or file of a list, with progress, a way to stop, and
// commits in groups.
#pragma once
#include <cstddef>
#include <functional>
#include <string>

namespace Module_averaged_data {

/// How far a loop has come, as one percentage that is shown only when it changes; the window lives meanwhile.
/// The display ends with the object, so one that outlives several loops stays up between them.
class WorkProgress {
 public:
  /// @param count items of the list
  WorkProgress(std::string what, std::size_t count);
  WorkProgress(const WorkProgress&) = delete;
  WorkProgress& operator=(const WorkProgress&) = delete;
  ~WorkProgress();

  /// Begins another loop on the same display.
  void begin(std::string what, std::size_t count);

  /// Goes on with another text.
  void rename(std::string what);

  /// @param part share of the next item that is done, 0 to 1
  void show(std::size_t done, double part = 0.0);

  [[nodiscard]] std::size_t count() const { return count_; }

 private:
  std::string what_;
  std::size_t count_;
  int shown_ = -1;
};

enum class Outcome { finished, stopped, failed };

struct EachItemRules {
  // Items that share a transaction of the open survey. A commit waits for the disk, many times longer than an
  // item takes to compute; a group of some hundred makes the wait disappear and loses little when the power
  // fails. 0: the work writes nothing, or commits by itself.
  int items_per_commit = 0;
  bool may_stop = true;
};

/// Does the work on items 0 to progress.count() - 1 until one fails or the user asks to stop, which is looked
/// for before each item. What was written by then is committed in either case.
/// @param work  0, or -1 after a message
Outcome each_item(WorkProgress& progress, const std::function<int(std::size_t)>& work,
                  const EachItemRules& rules = {});

}  // namespace Module_averaged_data
