// masks.h: what the user switches: points, readings, components of readings, the static factor.
//
// Every edit works on the data sets as they are loaded, stores the change at once, keeps the earlier values
// to be undone and computes average and merged curve again; see reading_edits.h. After Edit::changed all
// graphs are to be drawn again.
#pragma once
#include "reduction/edits/reading_edits.h"

namespace Module_averaged_data {

enum class Component { resistivity = 0, phase = 1 };
enum class OutlierField { resistivity = 0, phase = 1, both = 2 };

enum class FrequencyCommand {
  mask_up_to = 0,
  mask_from = 1,
  mask_at = 2,
  reset_up_to = 3,
  reset_from = 4,
  reset_at = 5,
  reset_all = 6,
  mask_negative_phases = 7  // acts on phases whatever field is chosen, and as mask_up_to with 0 Hz
};

enum class ClipEnds { top = 0, bottom = 1, both = 2 };

enum class UseFlag { reading = 0, resistivity = 1, phase = 2 };

/// Sets or resets masks of all repeats by frequency.
/// @param frequency Hz; unless it is above 0, the commands that need one do nothing
[[nodiscard]] Edit clear_frequencies(FrequencyCommand command, double frequency, OutlierField field);

/// Masks the highest, the lowest or both extreme values over the repeats at each point. The repeats are
/// compared point by point, not frequency by frequency. Points at which nothing would be left are
/// skipped.
/// @param count how many values go at each end; nothing is done unless it is above 0
[[nodiscard]] Edit clip_outliers(ClipEnds ends, int count, OutlierField field);

/// Inverts the mask of a point. Slots, points and columns count from 0; nothing is done for one that isn't
/// there or has no value.
[[nodiscard]] Edit toggle_repeat_point(std::size_t slot, std::size_t point, Component component);

/// The same on the station's curves. Neighbours and further merged curves can't be masked.
[[nodiscard]] Edit toggle_station_point(std::size_t slot, std::size_t point, Component component);

/// The same on a merged curve as it was read for a key, whether a data set shows it or not.
[[nodiscard]] Edit toggle_merged_point(const StoredReading& merged, std::size_t point, Component component,
                                       const ReadingKey& key);

/// The same on the profile; `frequency_index` is a place in the profile's frequencies.
[[nodiscard]] Edit toggle_profile_point(std::size_t column, std::size_t frequency_index, Component component);

/// Switches a repeat (slot from 1) or the average (slot 0) of the repeat data set, or a component of it.
[[nodiscard]] Edit set_repeat_use(std::size_t slot, UseFlag flag, bool use);

/// Switches the merged curve of the current profile column, or a component of it.
[[nodiscard]] Edit set_merged_use(UseFlag flag, bool use);

/// Sets the static factor of the merged curve of the current profile column. It acts on display and output;
/// nothing is computed again. Nothing is done for a value that isn't above 0 or isn't finite, for the present
/// value, or without a current station.
[[nodiscard]] Edit set_static_factor(float factor);

}  // namespace Module_averaged_data
