// inversion_files.h: the texts that an inversion leaves in its directory.
#pragma once
#include <span>
#include <string>

#include "formats/occam/data_file.h"
#include "numerics/occam_inversion/inversion.h"
#include "occam/inversion/site_shifts.h"

namespace Module_occam {

inline constexpr const char* inversion_log_name = "LogFile.logfile";
inline constexpr const char* inversion_lock_name = "inversion.lock";  // while an inversion works

/// A response without a header: site, frequency number, data type, 0, datum, modelled value, their difference
/// over the error. Behind the rows stand those of sums of static shifts, of site and frequency 0.
/// @param modelled  of the rows, then of the sums
std::string plain_response_text(const ObservedData& data, std::span<const ShiftDatum> sums,
                                std::span<const double> modelled);

/// The log of one iteration: a line a trial, then step and roughness.
class IterationLog {
 public:
  /// @param smooths  the target was reached before
  void begin(int iteration, double rms, bool smooths, bool tells_trials);
  void add(const numerics::occam_inversion::Trial& trial);
  /// The text of the iteration that ended.
  /// @param blocks  how many parameters are resistivities
  [[nodiscard]] std::string end(const numerics::occam_inversion::Iteration& iteration,
                                std::size_t blocks) const;
  /// The text of one that came to no model; empty without a trial.
  [[nodiscard]] std::string broken_off() const { return has_trials_ ? text_ + "\n" : ""; }

 private:
  std::string text_;
  double last_share_ = 1.0;
  bool smooths_ = false;
  bool tells_trials_ = true;
  bool has_trials_ = false;
};

/// The shifts that were found, a line each.
std::string shift_log(const StaticsFile& statics, const std::string& file_name);

/// The last line of a log.
std::string log_ending(numerics::occam_inversion::Ending ending);

}  // namespace Module_occam
