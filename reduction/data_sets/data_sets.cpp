#include "reduction/data_sets/data_sets.h"

#include <algorithm>
#include <utility>

#include "core/number_text.h"
#include "core/session_state.h"
#include "core/trap_errors.h"

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

bool is_unsupported(double station, float scan_rate) {
  return std::ranges::any_of(data_sets().unsupported, [&](const UnsupportedCurve& curve) {
    return curve.station == station && curve.scan_rate == scan_rate;
  });
}

int load_selected_profile() {
  const ReadingKey key = selected_key();
  data_sets().unsupported.clear();
  if (load_profile_data(key, session().frequencies, data_sets().profile) != 0) {
    return -1;
  }
  return trap_errors("An error occurred while reading the line: ", [&] {
    data_sets().unsupported = unsupported_curves({key.line, key.reference_type, key.data_type, key.dipole});
  });
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
