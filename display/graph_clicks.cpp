#include "display/graph_clicks.h"

#include "core/number_text.h"
#include "core/scope_guard.h"
#include "core/session_state.h"
#include "core/text_fields.h"
#include "core/trap_errors.h"
#include "database/survey_database.h"
#include "display/both_modes.h"
#include "display/raw_plot.h"
#include "display/selection.h"
#include "display/station_plot.h"
#include "reduction/data_sets/data_sets.h"

namespace Module_display_data {

namespace {

namespace averaged = Module_averaged_data;
using averaged::StationSlot;
using averaged::StationSlotKind;

std::string shown_as(float frequency) { return format_number(frequency, "0.0000"); }

/// Name of the field file that a reading came from, and its event. A reading that is gone shows nothing.
void show_source(std::int32_t ID, PointClick& click) {
  click.failed |= trap_errors("An error occurred while looking for the reading: ", [&] {
                    dao::Recordset& readings = Module_database::open_survey().readings;
                    readings.find_first("ID = " + format_number(ID, "0"));
                    if (readings.no_match()) {
                      return;
                    }
                    click.event_text = readings.is_null("EventNumber")
                                           ? ""
                                           : format_number(readings.get_long("EventNumber"), "0");
                    const std::int32_t FileID = readings.get_long("FileID");
                    dao::Recordset& files = Module_database::open_survey().files;
                    if (FileID <= 0) {
                      return;
                    }
                    files.find_first("ID = " + format_number(FileID, "0"));
                    if (!files.no_match()) {
                      click.file_text = trimmed(files.get_text("SurveyFile"));
                    }
                  }) != 0;
}

template <class Toggle>
void turn_mask(PointClick& click, Toggle&& toggle) {
  if (session().updating_controls) {
    return;
  }
  const ScopedValue updating(session().updating_controls, true);
  const BusyPointer busy;
  click.edit = toggle();
  click.failed |= click.edit == Edit::failed;
}

/// Goes to the scan rate of an averaged series. @return false if it was the current one
bool go_to_scan_rate(const StationSlot& slot, PointClick& click) {
  const bool averaged_series = slot.kind == StationSlotKind::average || slot.kind == StationSlotKind::file;
  if (!averaged_series || slot.SampleRate == static_cast<float>(session().current_scan_rate)) {
    return false;
  }
  session().current_scan_rate = decimal_of_single(slot.SampleRate);
  click.failed |= averaged::load_repeats_of_shown_station() != 0;
  click.draw_raw = true;
  return true;
}

}  // namespace

PointClick click_raw_point(Component component, std::size_t series, std::size_t point) {
  PointClick click;
  const averaged::RepeatSlot* const slot = shown_repeat_slot(series);
  if (slot == nullptr || point >= slot->reading.curve.count()) {
    return click;
  }
  const averaged::StoredReading& reading = slot->reading;
  click.series_label = raw_series_label(series);
  click.frequency_text = shown_as(reading.curve.frequencies[point]);
  show_source(reading.ID, click);
  if (series >= averaged::data_sets().repeats.slots.size()) {
    click.data_type = other_mode().repeats.key.data_type;
    return click;
  }
  turn_mask(click, [&] { return averaged::toggle_repeat_point(series, point, component); });
  return click;
}

PointClick click_station_point(Component component, std::size_t series, std::size_t point,
                               const std::string& shown_frequency) {
  PointClick click;
  const StationSlot* const shown = shown_station_slot(series);
  if (shown == nullptr || point >= shown->reading.curve.count()) {
    return click;
  }
  const StationSlot& slot = *shown;
  click.series_label = station_series_label(series);
  click.frequency_text = shown_as(slot.reading.curve.frequencies[point]);
  show_source(slot.reading.ID, click);
  click.event_text.clear();
  if (series >= averaged::data_sets().station.slots.size()) {
    click.data_type = other_mode().station.key.data_type;
    return click;
  }
  const bool other_rate = go_to_scan_rate(slot, click);
  if (!other_rate && click.frequency_text == shown_frequency) {
    turn_mask(click, [&] { return averaged::toggle_station_point(series, point, component); });
  }
  return click;
}

PointClick click_profile_point(Component component, std::size_t series, std::size_t point,
                               const std::string& shown_frequency) {
  PointClick click;
  const auto& data = averaged::data_sets().profile;
  if (point >= data.columns.size() || series >= data.frequencies.size()) {
    return click;
  }
  click.frequency_text = shown_as(data.frequencies[series]);
  click.status_text = click.frequency_text;
  const std::int32_t station = station_index_of(data.columns[point].StationID);
  if (station != session().current_station_index) {
    click.station_to_display = station;
  } else if (click.frequency_text == shown_frequency) {
    turn_mask(click, [&] { return averaged::toggle_profile_point(point, series, component); });
  }
  return click;
}

}  // namespace Module_display_data
