#include "display/mask_commands.h"

#include <algorithm>
#include <cmath>

#include "core/number_text.h"
#include "core/scope_guard.h"
#include "core/session_state.h"

namespace Module_display_data {

using Module_averaged_data::Edit;

namespace {

/// The number that a text holds; 0 for any other text.
double typed_number(std::string_view text) { return is_numeric(text) ? numeric_value(text) : 0.0; }

}  // namespace

Edit clear_typed_frequencies(Module_averaged_data::FrequencyCommand command, std::string_view frequency_text,
                             Module_averaged_data::OutlierField field) {
  if (session().updating_controls) {
    return Edit::nothing;
  }
  const ScopedValue updating(session().updating_controls, true);
  return Module_averaged_data::clear_frequencies(command, typed_number(frequency_text), field);
}

Edit clip_typed_outliers(Module_averaged_data::ClipEnds ends, std::string_view count_text,
                         Module_averaged_data::OutlierField field) {
  constexpr double max_count = 1e6;  // more than any station has repeats
  const double count = std::min(typed_number(count_text), max_count);
  if (session().updating_controls || !(count >= 1.0)) {
    return Edit::nothing;
  }
  const ScopedValue updating(session().updating_controls, true);
  return Module_averaged_data::clip_outliers(ends, static_cast<int>(count), field);
}

bool is_command_frequency(std::string_view text) { return typed_number(text) > 0.0; }

bool is_outlier_count(std::string_view text) { return typed_number(text) >= 1.0; }

bool is_static_factor(std::string_view text) {
  const auto factor = static_cast<float>(typed_number(text));
  return factor > 0.0F && std::isfinite(factor);
}

Edit enter_static_factor(std::string_view text) {
  if (session().updating_controls) {
    return Edit::nothing;
  }
  return Module_averaged_data::set_static_factor(static_cast<float>(typed_number(text)));
}

}  // namespace Module_display_data
