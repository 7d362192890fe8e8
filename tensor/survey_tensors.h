// survey_tensors.h: the tensors of a line, or of all lines of a survey, for what shows them together.
//
// Stations are in axes whose x is true north.
#pragma once
#include <map>
#include <string>
#include <vector>

#include "core/frequencies.h"
#include "reduction/each_item.h"
#include "tensor/line_tensors.h"
#include "tensor/site_map.h"

namespace Module_tensor {

/// The other lines of the open survey that have curves of the same reference type: with the same dipole, or
/// where a line has no curves with that one, with its shortest. Throws dao::Error.
std::vector<LineChoice> other_lines(const LineChoice& choice);

/// Keeps what was loaded until it is told that it has changed: a walk from line to line reads each once.
class SurveyTensors {
 public:
  void forget() { *this = {}; }
  /// The line that is shown now, as it is now. One of another reference type or dipole makes the others
  /// useless.
  void take(const LineTensors& line);
  /// Loads the other lines that haven't been loaded, with progress, and stops where the user wants it; what
  /// was loaded by then stays.
  Module_averaged_data::Outcome load_others(const Frequencies& frequencies);

  /// The line that was taken last, or all that are loaded, without frequencies that are switched off. Reads
  /// the places from the open survey.
  /// @return 0, or -1 after a message; the map is empty then
  [[nodiscard]] int make_map(bool all_lines, const Frequencies& frequencies, SiteMap& map) const;

  /// Lines that load_others was stopped at or failed before.
  [[nodiscard]] std::size_t left_out() const { return left_out_; }
  [[nodiscard]] const LineChoice& shown() const { return shown_; }

 private:
  LineChoice shown_;
  std::size_t left_out_ = 0;
  std::map<std::string, std::vector<StationTensor>> lines_;
};

}  // namespace Module_tensor
