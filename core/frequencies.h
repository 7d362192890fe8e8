// frequencies.h: all frequencies of a reference type, and which of them take part in graphs and output.
#pragma once
#include <cstddef>
#include <cstdint>
#include <vector>

struct Frequencies {
  std::vector<float> list;            // Hz, ascending, each once
  std::vector<std::int32_t> enabled;  // for each frequency: 1 in use, 0 left out of graphs and output

  [[nodiscard]] std::size_t count() const { return list.size(); }
  [[nodiscard]] bool empty() const { return list.empty(); }

  /// The index of exactly this frequency, Hz; -1 if it isn't listed.
  [[nodiscard]] std::int32_t position(float frequency) const;

  /// The same; -1 also for a frequency that is switched off.
  [[nodiscard]] std::int32_t enabled_position(float frequency) const;

  /// Whether the frequency at an index is in use; false for an index that isn't there.
  [[nodiscard]] bool is_enabled(std::int32_t index) const;

  /// How many frequencies are in use.
  [[nodiscard]] std::size_t enabled_count() const;
};
