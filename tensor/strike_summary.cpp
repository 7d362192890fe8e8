#include "tensor/strike_summary.h"

#include <algorithm>
#include <cmath>

#include "core/number_text.h"

namespace Module_tensor {

using numerics::impedance::BandStrike;
using numerics::impedance::Estimate;
using numerics::impedance::StrikeChoices;
using numerics::impedance::StrikeMethod;

namespace {

/// What the points by a method depend on; choices that the method doesn't know are as by default.
StrikeChoices choices_of(const StrikeQuestion& question, StrikeMethod method) {
  StrikeChoices choices{method};
  if (method != StrikeMethod::tipper) {
    choices.skew_limit = question.choices.skew_limit;
    choices.least_ellipticity = question.choices.least_ellipticity;
  }
  if (method == StrikeMethod::phase_tensor_azimuth || method == StrikeMethod::phase_tensor_alpha) {
    choices.weights = question.choices.weights;
  }
  return choices;
}

std::size_t points_in(const StrikeStation& station, const FrequencyBand& band) {
  return static_cast<std::size_t>(std::ranges::count_if(
      station.tensors.points, [&](const TensorPoint& point) { return band.contains(point.frequency); }));
}

void add_stations(const std::vector<StrikeStation>& stations, const StrikeChoices& choices,
                  StrikeSummary& summary) {
  for (const StrikeStation& station : stations) {
    const StationStrike& added =
        summary.stations.emplace_back(station_strike(station, summary.band, choices));
    summary.masked_diagonals += added.masked_diagonals;
    summary.diagonals += 2 * points_in(station, summary.band);
  }
}

std::string count_text(std::size_t count) { return plain_text(static_cast<std::int64_t>(count)); }

/// Ends of data are no round numbers.
std::string short_text(double number, int digits) {
  const std::string picture = "0." + std::string(static_cast<std::size_t>(digits) - 1, '0') + "e+00";
  return plain_text(static_cast<float>(numeric_value(format_number(number, picture))));
}

/// An end of a band. None if the text is no frequency.
std::optional<double> read_end(std::string_view text, double otherwise) {
  if (text.find_first_not_of(' ') == std::string_view::npos) {
    return otherwise;
  }
  const double value = numeric_value(text);
  return is_numeric(text) && value > 0.0 && std::isfinite(value) ? std::optional(value) : std::nullopt;
}

std::string limits_text(const StrikeQuestion& question) {
  return "a skew beyond " + plain_text(question.choices.skew_limit) + " degrees or an ellipticity below " +
         plain_text(question.choices.least_ellipticity);
}

}  // namespace

const StrikeSummaries::Kept& StrikeSummaries::answers(const std::vector<StrikeStation>& stations,
                                                      const StrikeSummary& summary,
                                                      const StrikeQuestion& question, StrikeMethod method) {
  Kept& kept = kept_[static_cast<std::size_t>(method)];
  const StrikeChoices choices = choices_of(question, method);
  const bool same_points = kept.choices == choices;
  if (!same_points) {
    kept.choices = choices;
    kept.points = point_strikes(stations, choices);
  }
  const bool same_strikes = same_points && kept.band == summary.band;
  if (same_strikes && kept.bin_width == question.bin_width) {
    return kept;
  }
  kept.band = summary.band;
  kept.bin_width = question.bin_width;
  kept.answers.method = method;
  kept.answers.decades.resize(summary.decades.size());
  const auto fill = [&](const FrequencyBand& band, BandAnswer& answer) {
    const auto said = said_within(kept.points, band);
    if (!same_strikes) {
      answer.strike = numerics::impedance::band_strike(said, method);
    }
    answer.rose = strike_rose(said, method, question.bin_width, answer.strike.strike.value);
  };
  fill(summary.band, kept.answers.whole);
  for (std::size_t i = 0; i < summary.decades.size(); ++i) {
    fill(summary.decades[i], kept.answers.decades[i]);
  }
  return kept;
}

std::optional<StrikeSummary> StrikeSummaries::summary(const std::vector<StrikeStation>& stations,
                                                      const StrikeQuestion& question) {
  const auto whole = whole_band(stations);
  if (!whole) {
    return std::nullopt;
  }
  StrikeSummary summary;
  summary.band = question.band.value_or(*whole);
  summary.decades = decades_of(stations, summary.band);
  const StrikeMethod asked = question.choices.method;
  const StrikeMethod of_phase_tensors =
      asked == StrikeMethod::phase_tensor_alpha ? asked : StrikeMethod::phase_tensor_azimuth;
  for (const StrikeMethod method : {of_phase_tensors, StrikeMethod::swift_sum, StrikeMethod::tipper}) {
    summary.methods.push_back(answers(stations, summary, question, method).answers);
  }
  const auto best = std::ranges::find(summary.methods, asked, &MethodAnswers::method);
  summary.best = best->whole.strike;
  const Kept& arrows = kept_[static_cast<std::size_t>(StrikeMethod::tipper)];
  summary.votes = arrow_votes(said_within(arrows.points, summary.band), summary.best.strike.value);
  add_stations(stations, question.choices, summary);
  return summary;
}

std::optional<StrikeSummary> strike_summary(const std::vector<StrikeStation>& stations,
                                            const StrikeQuestion& question) {
  return StrikeSummaries().summary(stations, question);
}

std::string_view method_name(StrikeMethod method) {
  switch (method) {
    case StrikeMethod::phase_tensor_azimuth:
      return "Phase tensor";
    case StrikeMethod::phase_tensor_alpha:
      return "Phase tensor, alpha";
    case StrikeMethod::swift_sum:
      return "Swift";
    case StrikeMethod::tipper:
      return "Tipper";
  }
  return "";
}

std::string strike_text(const Estimate& strike) {
  return bearing_text(strike.value) + ", " + angle_text(strike.value) +
         (strike.has_error() ? " +- " + format_number(strike.error, "0.0") : "") + " degrees";
}

std::string frequencies_text(const FrequencyBand& band, int digits) {
  return short_text(band.lower, digits) + " - " + short_text(band.upper, digits);
}

std::string periods_text(const FrequencyBand& band, int digits) {
  return short_text(1.0 / band.upper, digits) + " - " + short_text(1.0 / band.lower, digits);
}

std::string band_text(const FrequencyBand& band) { return frequencies_text(band) + " Hz"; }

std::string period_text(const FrequencyBand& band) { return periods_text(band) + " s"; }

std::optional<FrequencyBand> read_band(std::string_view from, std::string_view to,
                                       const FrequencyBand& data) {
  const auto first = read_end(from, data.lower);
  const auto last = read_end(to, data.upper);
  if (!first || !last) {
    return std::nullopt;
  }
  return FrequencyBand{std::min(*first, *last), std::max(*first, *last)};
}

std::vector<std::string> data_sentences(const StrikeSummary& summary, const StrikeQuestion& question) {
  std::vector<std::string> sentences;
  const std::size_t all = summary.best.used + summary.best.left_out;
  if (question.choices.method == StrikeMethod::tipper) {
    sentences.push_back(count_text(summary.best.used) + " of " + count_text(all) +
                        " real arrows are long enough to have a direction.");
  } else {
    sentences.push_back(count_text(summary.best.used) + " of " + count_text(all) + " points; " +
                        count_text(summary.best.left_out) + " left out by " + limits_text(question) + ".");
  }
  if (summary.masked_diagonals > 0) {
    sentences.push_back(count_text(summary.masked_diagonals) + " of " + count_text(summary.diagonals) +
                        " diagonal values are masked and were taken all the same.");
  }
  return sentences;
}

}  // namespace Module_tensor
