// inversion_files.h: the texts that an inversion leaves in its directory.
#pragma once
#include <span>
#include <string>

#include "formats/occam/data_file.h"
#include "numerics/occam_inversion/inversion.h"

namespace Module_occam {

inline constexpr const char* inversion_log_name = "LogFile.logfile";
inline constexpr const char* inversion_lock_name = "inversion.lock";  // held while an inversion runs

/// A response without a header: site, frequency number, data type, 0, datum, modelled value, their difference
/// over the error.
std::string plain_response_text(const ObservedData& data, std::span<const double> modelled);

/// The log of one iteration: a line a trial, then step and roughness.
class IterationLog {
 public:
  void begin(int iteration, double rms);
  void add(const numerics::occam_inversion::Trial& trial);
  /// The text of the iteration that ended.
  [[nodiscard]] std::string end(const numerics::occam_inversion::Iteration& iteration) const;

 private:
  std::string text_;
  double last_share_ = 1.0;
};

/// The last line of a log.
std::string log_ending(numerics::occam_inversion::Ending ending);

}  // namespace Module_occam
