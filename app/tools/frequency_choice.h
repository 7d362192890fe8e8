// frequency_choice.h: which frequencies are to be used, while they are being chosen: with undo, and with what
// is stored to compare with. Rows are places in the list, from 0.
#pragma once
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "core/frequencies.h"

namespace Module_Brenlox {

/// Which end of a typed range is wrong, and why: a sentence that names it.
struct RangeFault {
  bool at_from = false;
  std::string text;
};

class FrequencyChoice {
 public:
  /// @param stored  as the survey has it
  explicit FrequencyChoice(Frequencies stored);

  [[nodiscard]] const Frequencies& frequencies() const { return chosen_; }
  [[nodiscard]] bool is_used(std::size_t row) const { return chosen_.enabled[row] == 1; }
  /// Whether the choice differs from what is stored.
  [[nodiscard]] bool differs() const { return chosen_.enabled != stored_; }
  [[nodiscard]] bool can_undo() const { return !earlier_.empty(); }
  [[nodiscard]] bool can_redo() const { return !undone_.empty(); }

  // Steps that can be undone; one that changes nothing is none.
  /// The rows from one to the other, in either order.
  void set_rows(std::size_t one, std::size_t other, bool use);
  /// The frequencies between two typed ones, Hz, both included, in either order; frequencies are shown and
  /// typed with few digits, so that the ends have a tolerance. An empty text is the end of the list.
  /// @return what is wrong with the texts; none if nothing is
  [[nodiscard]] std::optional<RangeFault> set_range(const std::string& from, const std::string& to, bool use);
  /// Back to what is stored.
  void set_stored();
  void undo();
  void redo();

  /// The choice is what is stored now.
  void saved() { stored_ = chosen_.enabled; }

 private:
  using Uses = std::vector<std::int32_t>;
  void change(Uses uses);

  Frequencies chosen_;
  Uses stored_;
  std::vector<Uses> earlier_;  // the newest last
  std::vector<Uses> undone_;
};

}  // namespace Module_Brenlox
