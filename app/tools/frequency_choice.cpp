#include "app/tools/frequency_choice.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "core/number_text.h"

namespace Module_Brenlox {

namespace {

/// @return whether the text is empty or a frequency
bool read_end(const std::string& text, double& end) {
  if (text.find_first_not_of(' ') == std::string::npos) {
    return true;
  }
  end = is_numeric(text) ? numeric_value(text) : 0.0;
  return end > 0.0;
}

std::string no_frequency(const std::string& end, const std::string& text) {
  return end + ": '" + text + "' is not a frequency above 0 Hz";
}

}  // namespace

FrequencyChoice::FrequencyChoice(Frequencies stored) : chosen_(std::move(stored)), stored_(chosen_.enabled) {}

void FrequencyChoice::change(Uses uses) {
  if (uses != chosen_.enabled) {
    earlier_.push_back(std::exchange(chosen_.enabled, std::move(uses)));
    undone_.clear();
  }
}

void FrequencyChoice::set_rows(std::size_t one, std::size_t other, bool use) {
  const auto [first, last] = std::minmax(one, other);
  Uses uses = chosen_.enabled;
  for (std::size_t row = first; row <= last && row < uses.size(); ++row) {
    uses[row] = use ? 1 : 0;
  }
  change(std::move(uses));
}

std::optional<RangeFault> FrequencyChoice::set_range(const std::string& from, const std::string& to,
                                                     bool use) {
  double low = 0.0;
  double high = std::numeric_limits<double>::infinity();
  if (!read_end(from, low)) {
    return RangeFault{true, no_frequency("From", from)};
  }
  if (!read_end(to, high)) {
    return RangeFault{false, no_frequency("To", to)};
  }
  if (low > high) {
    std::swap(low, high);
  }
  constexpr double tolerance = 1e-4;  // of the frequency
  Uses uses = chosen_.enabled;
  for (std::size_t row = 0; row < uses.size(); ++row) {
    const double frequency = decimal_of_single(chosen_.list[row]);
    if (frequency >= low * (1.0 - tolerance) && frequency <= high * (1.0 + tolerance)) {
      uses[row] = use ? 1 : 0;
    }
  }
  change(std::move(uses));
  return std::nullopt;
}

void FrequencyChoice::set_stored() { change(stored_); }

void FrequencyChoice::undo() {
  if (can_undo()) {
    undone_.push_back(std::exchange(chosen_.enabled, std::move(earlier_.back())));
    earlier_.pop_back();
  }
}

void FrequencyChoice::redo() {
  if (can_redo()) {
    earlier_.push_back(std::exchange(chosen_.enabled, std::move(undone_.back())));
    undone_.pop_back();
  }
}

}  // namespace Module_Brenlox
