// mask_commands.h: what the user types and clicks to mask readings, as edits.
//
// The buttons, options and check boxes stand in the order of the enumerations of masks.h. Nothing happens
// while session().updating_controls is set, nor for a text that isn't the number that it should be.
#pragma once
#include <string_view>

#include "reduction/edits/masks.h"

namespace Module_display_data {

/// @param frequency_text Hz; only read for commands that need a frequency
[[nodiscard]] Module_averaged_data::Edit clear_typed_frequencies(
    Module_averaged_data::FrequencyCommand command, std::string_view frequency_text,
    Module_averaged_data::OutlierField field);

/// @param count_text how many values go at each end; its fraction is cut off
[[nodiscard]] Module_averaged_data::Edit clip_typed_outliers(Module_averaged_data::ClipEnds ends,
                                                             std::string_view count_text,
                                                             Module_averaged_data::OutlierField field);

/// Whether a command can take its frequency, or a number of outliers, from a text.
[[nodiscard]] bool is_command_frequency(std::string_view text);
[[nodiscard]] bool is_outlier_count(std::string_view text);

/// Whether a text is a number that a static factor can be: above 0, and no larger than a Single holds.
[[nodiscard]] bool is_static_factor(std::string_view text);
[[nodiscard]] Module_averaged_data::Edit enter_static_factor(std::string_view text);

}  // namespace Module_display_data
