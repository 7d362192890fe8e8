#include "output/frequency_list_of.h"

#include <span>

#include "core/search_sort.h"
#include "core/session_state.h"
#include "database/frequency_store.h"

namespace Module_output {

FrequencyListOf::FrequencyListOf(std::int32_t reference_type)
    : status(Module_database::load_reference_frequencies(reference_type)) {}

FrequencyListOf::~FrequencyListOf() {
  if (session().current_reference_type >= 0) {
    (void)Module_database::load_reference_frequencies(session().current_reference_type);
  }
}

std::int32_t enabled_position(float frequency) {
  const auto count = static_cast<std::size_t>(session().frequency_count);
  const auto position =
      basSearchSort::search_sorted(std::span<const float>(session().frequency_list).first(count), frequency);
  const bool enabled = position >= 0 && session().frequency_enabled[static_cast<std::size_t>(position)] == 1;
  return enabled ? static_cast<std::int32_t>(position) : -1;
}

}  // namespace Module_output
