// strike_summary.h: all that a line's data say of its strike, as the strike window and its pictures show it.
#pragma once
#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tensor/strike_direction.h"

namespace Module_tensor {

struct StrikeQuestion {
  std::optional<FrequencyBand> band;  // none: all frequencies
  numerics::impedance::StrikeChoices choices;
  double bin_width = 10.0;  // of the roses, degrees
};

/// A method's strike and rose in one band.
struct BandAnswer {
  numerics::impedance::BandStrike strike;
  Rose rose;
};

struct MethodAnswers {
  numerics::impedance::StrikeMethod method = numerics::impedance::StrikeMethod::phase_tensor_azimuth;
  BandAnswer whole;
  std::vector<BandAnswer> decades;  // in the order of the summary's
};

struct StrikeSummary {
  FrequencyBand band;                    // as asked for, or that of all data
  std::vector<FrequencyBand> decades;    // with data, ascending
  std::vector<MethodAnswers> methods;    // phase tensor, by the quantity that was asked for; Swift; tipper
  numerics::impedance::BandStrike best;  // by the method asked for
  ArrowVotes votes;                      // on it
  std::vector<StationStrike> stations;   // by the method asked for, in the order of the line
  std::size_t masked_diagonals = 0;      // of the band's tensors, elements taken in spite of a mask
  std::size_t diagonals = 0;             // of the band's tensors
};

/// None where no station has a tensor or tipper.
std::optional<StrikeSummary> strike_summary(const std::vector<StrikeStation>& stations,
                                            const StrikeQuestion& question);

/// The same for one question after the other on the same stations: what a changed choice leaves as it was is
/// kept.
class StrikeSummaries {
 public:
  /// For other stations.
  void forget() { *this = {}; }
  std::optional<StrikeSummary> summary(const std::vector<StrikeStation>& stations,
                                       const StrikeQuestion& question);

 private:
  /// Of a method, with what it was made for.
  struct Kept {
    std::optional<numerics::impedance::StrikeChoices> choices;
    std::optional<FrequencyBand> band;
    double bin_width = 0.0;
    std::vector<PointStrike> points;
    MethodAnswers answers;
  };
  const Kept& answers(const std::vector<StrikeStation>& stations, const StrikeSummary& summary,
                      const StrikeQuestion& question, numerics::impedance::StrikeMethod method);

  std::array<Kept, 4> kept_;  // by StrikeMethod
};

/// "Phase tensor", "Swift" and so on.
std::string_view method_name(numerics::impedance::StrikeMethod method);

/// "N27W, -27.3 +- 1.2 degrees".
std::string strike_text(const numerics::impedance::Estimate& strike);
/// "0.01 - 10", with so many digits at most.
std::string frequencies_text(const FrequencyBand& band, int digits = 4);  // Hz
std::string periods_text(const FrequencyBand& band, int digits = 4);      // s
/// "0.01 - 10 Hz"
std::string band_text(const FrequencyBand& band);
/// "0.1 - 100 s"
std::string period_text(const FrequencyBand& band);

/// A band from what was typed, in any order; nothing typed is the end of the data.
/// @return none if a text isn't a frequency above 0
std::optional<FrequencyBand> read_band(std::string_view from, std::string_view to, const FrequencyBand& data);

/// What the limits and masks have done to the data of the best strike, in sentences.
std::vector<std::string> data_sentences(const StrikeSummary& summary, const StrikeQuestion& question);

}  // namespace Module_tensor
