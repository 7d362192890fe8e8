// frequency_store.h: the list of all frequencies ever stored under a reference type.
#pragma once
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace Module_database {

/// Merges a reading's frequencies (Hz, ascending) into the frequency list of its reference type: new ones are
/// enabled, flags of the others stay. A list of the same length whose entries all lie within 0.001 Hz counts
/// as the same list. The scan rate has no effect.
/// @return 0, or -1 after a message; the list is then as before
int add_reading_frequencies(std::int32_t reference_type, float scan_rate, std::span<const float> frequencies);

/// Loads the list of a reference type into session().frequency_count, frequency_list and frequency_enabled;
/// the count is 0 if the type has none.
/// @return 0, or -1 after a message; the arrays are then as before
[[nodiscard]] int load_reference_frequencies(std::int32_t reference_type);

/// The frequencies of a reference type with their switches, as people edit them.
struct FrequencySelection {
  std::vector<float> frequencies;   // Hz, ascending
  std::vector<std::int32_t> flags;  // 1: selected, 0: left out of graphs and output
};

/// The stored selection of a reference type; nothing if it has none, or after a message.
std::optional<FrequencySelection> read_frequency_selection(std::int32_t reference_type);

/// Stores a selection in the row of its reference type. Nothing is done for one without frequencies, or if
/// the row is gone. @return 0, or -1 after a message; the row is then as before
[[nodiscard]] int save_frequency_selection(std::int32_t reference_type, const FrequencySelection& selection);

}  // namespace Module_database
