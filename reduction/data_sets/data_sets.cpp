#include "reduction/data_sets/data_sets.h"

#include <utility>

#include "core/number_text.h"
#include "core/session_state.h"

namespace Module_averaged_data {

DataSets& data_sets() {
  static DataSets data;
  return data;
}

void reset_data_sets() {
  data_sets() = {};
  session().repeat_count = 0;
}

void reset_repeat_data() {
  data_sets().repeats = {};
  session().repeat_count = 0;
}

int load_selected_profile() {
  return load_profile_data(selected_key(), session().frequencies, data_sets().profile);
}

int load_selected_station(const NeighbourOptions& options) {
  return load_station_data(selected_key(), options, session().frequencies, data_sets().station);
}

namespace {

int load_repeats(ReadingKey key) {
  reset_repeat_data();
  if (key.scan_rate == 0.0F) {
    const std::vector<float>& scan_rates = data_sets().station.scan_rates;
    if (scan_rates.empty()) {
      return 0;
    }
    key.scan_rate = scan_rates.front();
    session().current_scan_rate = decimal_of_single(key.scan_rate);
  }
  RepeatDataSet& repeats = data_sets().repeats;
  const int status = load_repeat_data(key, session().frequencies, repeats);
  session().repeat_count = repeats.repeat_count;
  return status;
}

}  // namespace

int load_selected_repeats() { return load_repeats(selected_key()); }

int load_repeats_of_shown_station() {
  ReadingKey key = data_sets().station.key;
  key.scan_rate = static_cast<float>(session().current_scan_rate);
  return load_repeats(std::move(key));
}

}  // namespace Module_averaged_data
