// frequency_list_of.h: the frequencies of a reference type, while a line of it is written.
#pragma once
#include <cstdint>

namespace Module_output {

/// Loads the frequency list of a reference type into the session for its own life, and leaves that of the
/// main selection behind.
class FrequencyListOf {
 public:
  explicit FrequencyListOf(std::int32_t reference_type);
  FrequencyListOf(const FrequencyListOf&) = delete;
  FrequencyListOf& operator=(const FrequencyListOf&) = delete;
  ~FrequencyListOf();

  const int status;  // 0, or -1 after a message
};

/// Place of a frequency (Hz) in the session's list, from 0. @return -1 if it isn't listed or is switched off
std::int32_t enabled_position(float frequency);

}  // namespace Module_output
