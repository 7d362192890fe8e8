#include "display/point_texts.h"

#include <algorithm>
#include <exception>

#include "core/number_text.h"
#include "core/session_state.h"
#include "core/text_fields.h"
#include "database/survey_database.h"
#include "display/both_modes.h"
#include "display/raw_plot.h"
#include "display/selection.h"
#include "display/site_names.h"
#include "display/station_plot.h"
#include "reduction/data_sets/data_sets.h"

namespace Module_display_data {

namespace averaged = Module_averaged_data;
using averaged::ErrorSource;
using averaged::PointError;
using Module_database::StoredReading;

namespace {

constexpr float few_hundredths = 0.1F;  // two decimals would show one digit of a smaller error

std::string frequency_text(float frequency) { return format_number(frequency, "0.0000"); }

bool masked(const StoredReading& reading, std::size_t point, Component component) {
  const bool component_used = component == Component::resistivity ? reading.UseResistivity : reading.UsePhase;
  return !reading.UseReading || !component_used ||
         reading.curve.counts_at(static_cast<int>(component) + 1, point) == 0;
}

std::string unit_of(Component component) { return component == Component::resistivity ? " ohm-m" : " deg"; }

std::string source_text(ErrorSource source, std::size_t repeats) {
  if (source == ErrorSource::file) {
    return "error of the file";
  }
  return "standard deviation of " +
         (repeats > 1 ? plain_text(static_cast<std::int64_t>(repeats)) : std::string("the")) + " repeats";
}

/// "103.27 ohm-m", or "103.27 \u00b1 3.20 ohm-m (error of the file)".
/// @param factor on both
/// @param repeats how many a standard deviation is of; 0: not known
std::string value_text(float value, const PointError& error, Component component, float factor,
                       std::size_t repeats) {
  const std::string text = format_number(factor * value, "0.00");
  if (error.source == ErrorSource::none) {
    return text + unit_of(component);
  }
  const float size = factor * error.value;
  return text + " \u00b1 " + format_number(size, size < few_hundredths ? "0.0000" : "0.00") +
         unit_of(component) + " (" + source_text(error.source, repeats) + ")";
}

/// How many of the repeats that are loaded count at a frequency.
std::size_t repeats_at(float frequency, Component component) {
  const int field = static_cast<int>(component) + 1;
  std::size_t count = 0;
  const auto& slots = averaged::data_sets().repeats.slots;
  for (std::size_t slot = 1; slot < slots.size(); ++slot) {
    const StoredReading& repeat = slots[slot].reading;
    const auto& list = repeat.curve.frequencies;
    const auto found = std::ranges::find(list, frequency);
    const bool used =
        repeat.UseReading && (component == Component::resistivity ? repeat.UseResistivity : repeat.UsePhase);
    if (used && found != list.end() &&
        repeat.curve.point_counts(field, static_cast<std::size_t>(found - list.begin()))) {
      ++count;
    }
  }
  return count;
}

/// Whether the repeats behind a curve of the station are those that are loaded. Those of a merged curve are
/// where the station has one scan rate.
bool are_loaded(const averaged::StationSlot& slot) {
  const averaged::RepeatDataSet& repeats = averaged::data_sets().repeats;
  const averaged::StationDataSet& station = averaged::data_sets().station;
  const bool one_rate = station.scan_rates.size() == 1;
  const float rate = slot.kind == averaged::StationSlotKind::merged && one_rate ? station.scan_rates.front()
                                                                                : slot.SampleRate;
  return averaged::same_station(repeats.key, station.key) && repeats.key.scan_rate == rate;
}

/// Name of the field file that a reading came from; empty for a derived one. A tool tip without it is better
/// than a message at each move of the pointer.
std::string file_of(const StoredReading& reading) {
  if (reading.FileID <= 0) {
    return {};
  }
  try {
    dao::Recordset& files = Module_database::open_survey().files;
    files.find_first("ID = " + format_number(reading.FileID, "0"));
    return files.no_match() ? std::string() : std::string(trimmed(files.get_text("SurveyFile")));
  } catch (const std::exception&) {
    return {};
  }
}

/// The displayed station in a line of its own, if its site has a name.
std::string site_line() {
  const std::int32_t index = session().current_station_index;
  return site_name(index).empty()
             ? std::string()
             : with_site_name("\nStation " + plain_text(session().current_station), index);
}

std::string reading_point_text(const std::string& series, const StoredReading& reading, std::size_t point,
                               Component component, float factor, std::size_t repeats) {
  const auto field = static_cast<Module_database::Field>(static_cast<int>(component) + 1);
  std::string text = series + ": " + frequency_text(reading.curve.frequencies[point]) + " Hz, " +
                     value_text(reading.curve.value(field, point),
                                averaged::point_error(reading, field, point), component, factor, repeats);
  if (masked(reading, point, component)) {
    text += ", masked";
  }
  const std::string file = file_of(reading);
  return file.empty() ? text : text + "\n" + file;
}

/// Which averages under the merged curve of a station are switched off, in a line of its own. Where all are,
/// the merged curve itself is named so.
std::string support_text(const std::string& data_type, double station) {
  const bool own = data_type == averaged::data_sets().profile.key.data_type;
  std::string rates;
  for (const averaged::UnsupportedCurve& curve :
       own ? averaged::data_sets().unsupported : other_mode().unsupported) {
    if (curve.data_type == data_type && curve.station == station && curve.in_use && curve.scan_rate > 0.0F) {
      rates += (rates.empty() ? "" : ", ") + plain_text(curve.scan_rate);
    }
  }
  return rates.empty() || is_unsupported_curve(data_type, station, 0.0F)
             ? std::string()
             : "\nThe average of " + rates + " Hz rests on no reading in use";
}

}  // namespace

std::string raw_point_text(std::size_t slot, std::size_t point, Component component) {
  const averaged::RepeatSlot* const shown = shown_repeat_slot(slot);
  if (shown == nullptr || point >= shown->reading.curve.count()) {
    return {};
  }
  const StoredReading& reading = shown->reading;
  const std::size_t own = averaged::data_sets().repeats.slots.size();
  std::string series = raw_series_label(slot);
  if (slot != 0 && slot != own) {  // the averages
    series += " (event " + format_number(reading.EventNumber, "0") + ")";
  }
  return reading_point_text(series, reading, point, component, 1.0F,
                            slot < own ? repeats_at(reading.curve.frequencies[point], component) : 0) +
         site_line();
}

std::string station_point_text(std::size_t slot, std::size_t point, Component component) {
  const averaged::StationSlot* const shown = shown_station_slot(slot);
  if (shown == nullptr || point >= shown->reading.curve.count()) {
    return {};
  }
  const bool own = slot < averaged::data_sets().station.slots.size();
  const auto& slots = own ? averaged::data_sets().station.slots : other_mode().station.slots;
  const float factor = component == Component::resistivity ? slots.front().reading.ResOffset : 1.0F;
  const StoredReading& reading = shown->reading;
  const std::size_t repeats =
      own && are_loaded(*shown) ? repeats_at(reading.curve.frequencies[point], component) : 0;
  const bool neighbour = shown->kind == averaged::StationSlotKind::neighbour;  // its label names it
  const bool merged = neighbour || shown->kind == averaged::StationSlotKind::merged;
  const std::string& data_type = (own ? averaged::data_sets().station : other_mode().station).key.data_type;
  return reading_point_text(station_series_label(slot), reading, point, component, factor, repeats) +
         (merged ? support_text(data_type, shown->station) : std::string()) +
         (neighbour ? std::string() : site_line());
}

std::string profile_point_text(std::size_t frequency_index, std::size_t column, Component component) {
  const averaged::ProfileDataSet& data = averaged::data_sets().profile;
  if (frequency_index >= data.frequencies.size() || column >= data.columns.size()) {
    return {};
  }
  const averaged::ProfileColumn& at = data.columns[column];
  const bool resistivity = component == Component::resistivity;
  const float value = resistivity ? at.resistivity[frequency_index] : at.phase[frequency_index];
  const averaged::PointError& error = at.errors[frequency_index][static_cast<std::size_t>(component)];
  const float factor = resistivity ? at.ResOffset : 1.0F;
  const bool off = !at.UseReading || !(resistivity ? at.UseResistivity : at.UsePhase) ||
                   at.mask[frequency_index][static_cast<std::size_t>(component)] == 0;
  return with_site_name("Station " + plain_text(at.station), station_index_of(at.StationID)) + ": " +
         frequency_text(data.frequencies[frequency_index]) + " Hz, " +
         value_text(value, error, component, factor, 0) + (off ? ", masked" : "") +
         (is_unsupported_curve(data.key.data_type, at.station, 0.0F) ? nothing_in_use : "") +
         support_text(data.key.data_type, at.station);
}

}  // namespace Module_display_data
