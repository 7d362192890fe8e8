#include "display/point_texts.h"

#include <exception>

#include "core/number_text.h"
#include "core/session_state.h"
#include "core/text_fields.h"
#include "database/survey_database.h"
#include "display/raw_plot.h"
#include "display/selection.h"
#include "display/site_names.h"
#include "display/station_plot.h"
#include "reduction/data_sets/data_sets.h"

namespace Module_display_data {

namespace averaged = Module_averaged_data;
using Module_database::StoredReading;

namespace {

std::string frequency_text(float frequency) { return format_number(frequency, "0.0000"); }

bool masked(const StoredReading& reading, std::size_t point, Component component) {
  const bool component_used = component == Component::resistivity ? reading.UseResistivity : reading.UsePhase;
  return !reading.UseReading || !component_used ||
         reading.curve.counts_at(static_cast<int>(component) + 1, point) == 0;
}

std::string unit_of(Component component) { return component == Component::resistivity ? " ohm-m" : " deg"; }

std::string value_text(float value, Component component) {
  return format_number(value, "0.00") + unit_of(component);
}

/// "103.27", with its standard deviation where the reading has one.
std::string measured_text(const StoredReading& reading, std::size_t point, Component component,
                          float factor) {
  const int field = static_cast<int>(component) + 1;
  const int deviation_field = component == Component::resistivity
                                  ? Module_database::field_resistivity_deviation
                                  : Module_database::field_phase_deviation;
  const float deviation = has_deviations(reading) ? reading.curve.value(deviation_field, point) : 0.0F;
  std::string text = format_number(factor * reading.curve.value(field, point), "0.00");
  if (deviation > 0.0F) {
    text += " \u00b1 " + format_number(factor * deviation, "0.00");
  }
  return text + unit_of(component);
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
                               Component component, float factor) {
  std::string text = series + ": " + frequency_text(reading.curve.frequencies[point]) + " Hz, " +
                     measured_text(reading, point, component, factor);
  if (masked(reading, point, component)) {
    text += ", masked";
  }
  const std::string file = file_of(reading);
  return file.empty() ? text : text + "\n" + file;
}

bool in_repeats(std::size_t slot, std::size_t point) {
  const auto& slots = averaged::data_sets().repeats.slots;
  return slot < slots.size() && point < slots[slot].reading.curve.count();
}

bool in_station(std::size_t slot, std::size_t point) {
  const auto& slots = averaged::data_sets().station.slots;
  return slot < slots.size() && point < slots[slot].reading.curve.count();
}

}  // namespace

std::string raw_point_text(std::size_t slot, std::size_t point, Component component) {
  if (!in_repeats(slot, point)) {
    return {};
  }
  const StoredReading& reading = averaged::data_sets().repeats.slots[slot].reading;
  std::string series = raw_series_label(slot);
  if (slot > 0) {
    series += " (event " + format_number(reading.EventNumber, "0") + ")";
  }
  return reading_point_text(series, reading, point, component, 1.0F) + site_line();
}

std::string station_point_text(std::size_t slot, std::size_t point, Component component) {
  if (!in_station(slot, point)) {
    return {};
  }
  const auto& slots = averaged::data_sets().station.slots;
  const float factor = component == Component::resistivity ? slots.front().reading.ResOffset : 1.0F;
  const bool neighbour = slots[slot].kind == averaged::StationSlotKind::neighbour;  // its label names it
  return reading_point_text(station_series_label(slot), slots[slot].reading, point, component, factor) +
         (neighbour ? std::string() : site_line());
}

std::string profile_point_text(std::size_t frequency_index, std::size_t column, Component component) {
  const averaged::ProfileDataSet& data = averaged::data_sets().profile;
  if (frequency_index >= data.frequencies.size() || column >= data.columns.size()) {
    return {};
  }
  const averaged::ProfileColumn& at = data.columns[column];
  const bool resistivity = component == Component::resistivity;
  const float value =
      resistivity ? at.ResOffset * at.resistivity[frequency_index] : at.phase[frequency_index];
  const bool off = !at.UseReading || !(resistivity ? at.UseResistivity : at.UsePhase) ||
                   at.mask[frequency_index][static_cast<std::size_t>(component)] == 0;
  return with_site_name("Station " + plain_text(at.station), station_index_of(at.StationID)) + ": " +
         frequency_text(data.frequencies[frequency_index]) + " Hz, " + value_text(value, component) +
         (off ? ", masked" : "");
}

}  // namespace Module_display_data
