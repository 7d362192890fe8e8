#include "tensor/section_texts.h"

#include <array>
#include <cmath>

#include "core/file_names.h"
#include "core/number_text.h"

namespace Module_tensor {

namespace {

/// Four digits say what can be seen.
std::string short_number(double value) {
  constexpr int digits = 4;
  if (value == 0.0 || !std::isfinite(value)) {
    return plain_text(value);
  }
  const double unit = std::pow(10.0, std::floor(std::log10(std::abs(value))) - (digits - 1));
  return plain_text(decimal_of_single(static_cast<float>(std::round(value / unit) * unit)));
}

std::string value_text(const QuantityFacts& facts, const SectionPoint& point) {
  std::string text(facts.title);
  if (!point.has_value()) {
    return text + ": none";
  }
  text += " " + short_number(facts.is_logarithmic() ? std::pow(10.0, point.value) : point.value);
  if (std::isfinite(point.error)) {
    text += " \u00b1 " + short_number(point.error);
  }
  return facts.unit.empty() ? text : text + " " + std::string(facts.unit);
}

/// What is wrong with a limit by itself.
std::string limit_fault(const QuantityFacts& facts, const std::string& name, const std::string& text) {
  if (!is_numeric(text)) {
    return "The " + name + " limit is no number: " + text;
  }
  const double value = numeric_value(text);
  if (!std::isfinite(value) || (facts.is_logarithmic() && !(value > 0.0))) {
    return "The " + name + " limit must be above 0";
  }
  return {};
}

}  // namespace

std::string section_title(const std::string& survey_file, const std::string& line, SectionQuantity quantity) {
  return Module_util::file_stem(Module_util::file_name_only(survey_file)) + ", line " + line + ": " +
         std::string(facts_of(quantity).title);
}

std::string point_text(const PseudoSection& section, const SectionColumn& column, const SectionPoint& point,
                       const std::string& separator) {
  const QuantityFacts& facts = facts_of(section.quantity);
  std::string text = "Station " + station_text(column.station, column.name) + separator + "Period " +
                     short_number(1.0 / point.frequency) + " s (" + short_number(point.frequency) + " Hz)" +
                     separator;
  if (facts.axis == SectionAxis::depth && std::isfinite(point.depth)) {
    text += "Depth " + short_number(point.depth) + " m" + separator;
  }
  text += value_text(facts, point);
  return point.counts ? text : text + separator + "masked";
}

std::string empty_section_note(const PseudoSection& section, bool line_is_empty) {
  if (line_is_empty) {
    return "There is no line to show: open a survey, and choose a line that has merged curves";
  }
  if (facts_of(section.quantity).is_misfit()) {
    return "Rho+ has not been computed for this line";
  }
  if (section.quantity == SectionQuantity::tipper_magnitude) {
    return "No station of this line has a tipper";
  }
  return facts_of(section.quantity).curves[1] ? "No station of this line has all four elements at a frequency"
                                              : "No station of this line has this curve";
}

std::string range_text(const QuantityFacts& facts, double limit) {
  return short_number(facts.is_logarithmic() ? std::pow(10.0, limit) : limit);
}

std::optional<SectionRange> typed_range(const QuantityFacts& facts, const std::string& lower,
                                        const std::string& upper) {
  if (!is_numeric(lower) || !is_numeric(upper)) {
    return std::nullopt;
  }
  std::array limits{numeric_value(lower), numeric_value(upper)};
  for (double& limit : limits) {
    if (facts.is_logarithmic()) {
      limit = limit > 0.0 ? std::log10(limit) : std::nan("");
    }
  }
  constexpr double least_share = 1e-6;  // of the numbers: closer ones have no colours between them
  const double width = limits[1] - limits[0];
  const bool wide = width > least_share * std::max(std::abs(limits[0]), std::abs(limits[1]));
  return wide && std::isfinite(width) ? std::optional(SectionRange{limits[0], limits[1]}) : std::nullopt;
}

LimitFaults limit_faults(const QuantityFacts& facts, const std::string& lower, const std::string& upper) {
  LimitFaults faults{limit_fault(facts, "lower", lower), limit_fault(facts, "upper", upper)};
  if (faults.lower.empty() && faults.upper.empty() && !typed_range(facts, lower, upper)) {
    faults.upper = "The upper limit must be above the lower one";
  }
  return faults;
}

}  // namespace Module_tensor
