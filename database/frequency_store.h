// frequency_store.h: the list of all frequencies ever stored under a reference type. Frequencies that are
// absent, 0 or negative are in no list, also where an earlier version has stored them.
#pragma once
#include <cstdint>
#include <map>
#include <optional>
#include <span>

#include "core/frequencies.h"

namespace Module_database {

/// Merges a reading's frequencies (Hz, ascending) into the frequency list of its reference type: new ones are
/// enabled, flags of the others stay. A list of the same length whose entries all lie within 0.001 Hz counts
/// as the same list. The scan rate has no effect.
/// @return 0, or -1 after a message; the list is then as before
int add_reading_frequencies(std::int32_t reference_type, float scan_rate, std::span<const float> frequencies);

/// The same. Throws dao::Error.
void join_frequency_list(std::int32_t reference_type, std::span<const float> given);

/// The list of a reference type; empty if the type has none. Throws dao::Error.
Frequencies read_frequency_list(std::int32_t reference_type);

/// The same. @return nothing after a message
std::optional<Frequencies> load_reference_frequencies(std::int32_t reference_type);

/// Loads the list of the current reference type into session().frequencies.
/// @return 0, or -1 after a message; the session's list is then as before
[[nodiscard]] int load_selected_frequencies();

/// Stores the switches of a list in the row of its reference type. Nothing is done for an empty list, or if
/// the row is gone. @return 0, or -1 after a message; the row is then as before
[[nodiscard]] int save_frequency_selection(std::int32_t reference_type, const Frequencies& selection);

/// The lists of several reference types, each loaded when it is first asked for. For work on many keys that
/// adds no frequencies.
class FrequencyLists {
 public:
  /// Throws dao::Error.
  const Frequencies& of(std::int32_t reference_type);

 private:
  std::map<std::int32_t, Frequencies> lists_;
};

}  // namespace Module_database
