#include "import/readers/curve_table_reader.h"

#include <algorithm>
#include <map>
#include <tuple>

#include "core/absent_value.h"
#include "core/line_reader.h"
#include "core/number_text.h"
#include "core/scope_guard.h"
#include "core/text_fields.h"
#include "formats/csv/curve_table.h"
#include "formats/field_values.h"
#include "formats/head_dates.h"
#include "import/file_formats.h"
#include "import/readers/edi_curves.h"
#include "import/readers/reader_steps.h"
#include "import/readers/standard_errors.h"
#include "import/readers/station_places.h"
#include "import/readers/tipper_curves.h"

namespace Module_data_file {

using formats::remark_ignored;
using formats::remark_unreadable;
using formats::single_or_absent;
using formats::csv::CurvePoint;
using formats::csv::CurveRows;
using Module_database::Curve;

namespace {

constexpr std::string_view yx = tensor_data_types[2];

bool is_of_ey(std::string_view data_type) { return data_type.starts_with("Ey"); }

// What curves of one event have alike: within a file an event holds one reading of a data type and a rate.
using EventKey = std::tuple<std::string, double, int, double, int, double>;

// A merged reading is stored without its rate.
EventKey event_of(const CurveRows& rows, const std::string& line, std::int32_t ReductionType) {
  constexpr double none = -1.0;
  const bool is_merged = ReductionType == Module_database::reduction_merged;
  return {upper_case(line),
          rows.station,
          rows.reference_type.value_or(-1),
          rows.dipole.value_or(none),
          rows.event.value_or(-1),
          is_merged ? rows.scan_rate.value_or(none) : none};
}

// A table that says which points are masked says so of negative phases, too.
bool masks_all_of_yx(const std::vector<CurveRows>& curves) {
  bool any = false;
  for (const CurveRows& rows : curves) {
    for (std::size_t index = 0; rows.data_type == yx && index < rows.points.size(); ++index) {
      const CurvePoint& point = rows.points[index];
      if (point.phase >= 0.0 || point.phase_masked) {
        return false;
      }
      any = any || point.phase < 0.0;
    }
  }
  return any;
}

std::vector<float> phases_of_yx(const std::vector<CurveRows>& curves) {
  std::vector<float> phases;
  for (const CurveRows& rows : curves) {
    for (std::size_t index = 0; rows.data_type == yx && index < rows.points.size(); ++index) {
      phases.push_back(single_or_absent(rows.points[index].phase));
    }
  }
  return phases;
}

void fill_tipper_point(const CurvePoint& point, Curve& curve, std::size_t index) {
  set_tipper_point({point.resistivity, point.phase, single_or_absent(point.resistivity_error)}, curve, index);
}

void fill_point(const CurvePoint& point, Curve& curve, std::size_t index) {
  using namespace Module_database;
  curve.value(field_resistivity, index) = single_or_absent(point.resistivity);
  curve.value(field_phase, index) = single_or_absent(point.phase);
  for (const int unknown : {field_resistivity_deviation, field_phase_deviation, field_impedance_real,
                            field_impedance_imaginary}) {
    curve.value(unknown, index) = no_data;
  }
  curve.value(field_resistivity_error, index) = single_or_absent(point.resistivity_error);
  curve.value(field_phase_error, index) = single_or_absent(point.phase_error);
}

// What the table says of a point goes before the rule for points that nobody has looked at.
void set_mask(int field_number, const std::optional<bool>& masked, bool may_be_negative, Curve& curve,
              std::size_t index) {
  if (masked) {
    const bool is_value =
        curve.is_present(field_number, index) && (may_be_negative || curve.value(field_number, index) > 0.0F);
    curve.counts_at(field_number, index) = is_value && !*masked ? 1 : 0;
  }
}

void fill_curve(const CurveRows& rows, bool turn, Curve& curve) {
  using namespace Module_database;
  const bool tipper = is_tipper(rows.data_type);
  const bool is_resistivity = !tipper && rows.data_type != quadrature_data_type;
  curve.assign(rows.points.size());
  for (std::size_t index = 0; index < curve.count(); ++index) {
    curve.frequencies[index] = single_or_absent(rows.points[index].frequency);
    if (!tipper) {
      fill_point(rows.points[index], curve, index);
    }
  }
  if (turn && is_of_ey(rows.data_type)) {
    turn_sign(curve);
  }
  for (std::size_t index = 0; index < curve.count(); ++index) {
    const CurvePoint& point = rows.points[index];
    if (tipper) {
      fill_tipper_point(point, curve, index);
    } else {
      finish_point(curve, index);
      set_resistivity_error(point.resistivity_error, curve, index);
      set_phase_error(point.phase_error, curve, index);
    }
    set_mask(field_resistivity, point.resistivity_masked, !is_resistivity, curve, index);
    set_mask(field_phase, point.phase_masked, true, curve, index);
  }
}

StationPlace place_of(const CurveRows& rows) {
  StationPlace place;
  place.site = {rows.latitude, rows.longitude, rows.elevation, {}};
  if (rows.easting && rows.northing) {
    place.map = MapPosition{*rows.easting, *rows.northing};
  }
  return place;
}

class TableStore {
 public:
  TableStore(FileTask& task, const std::vector<CurveRows>& curves)
      : task_(task), curves_(curves), line_(task.record.LineNumber), rate_(task.record.SampleRate) {}

  /// @return false after a failure to store, whose message was shown
  bool store() {
    set_up_header();
    task_.report.all_yx_phases_negative = masks_all_of_yx(curves_);
    turn_ = turns_ey(task_.record, [&] { return mostly_in_third_quadrant(phases_of_yx(curves_)); });
    for (std::size_t index = 0; index < curves_.size(); ++index) {
      if (!take(curves_[index])) {
        return false;
      }
      if (task_.progress) {  // the second half; the first was reading
        const auto count = static_cast<std::int64_t>(curves_.size());
        task_.progress(count + static_cast<std::int64_t>(index), 2 * count);
      }
    }
    task_.report.sections = static_cast<std::int32_t>(events_.size());
    return true;
  }

 private:
  void set_up_header();
  void take_date();
  bool take(const CurveRows& rows);
  bool take_line(const CurveRows& rows);
  bool take_curve(const CurveRows& rows);

  FileTask& task_;
  const std::vector<CurveRows>& curves_;
  std::string line_;  // of the import
  float rate_;
  bool turn_ = false;
  std::map<EventKey, std::int32_t> events_;
};

// The header's row is about all curves; what it has only once is that of the first.
void TableStore::set_up_header() {
  ReadingRecord& record = task_.record;
  const CurveRows& first = curves_.front();
  record.EventNumber = 0;
  record.Station = first.station;
  record.DipoleLength = record.StationSpacing = static_cast<float>(first.dipole.value_or(usual_dipole));
  record.Orientation = static_cast<float>(first.azimuth.value_or(0.0));
  record.Filter = filter_curve_table;
  take_date();
}

void TableStore::take_date() {
  const CurveRows* dated = nullptr;
  for (const CurveRows& rows : curves_) {
    if (rows.date.empty()) {
      continue;
    }
    if (dated == nullptr) {
      dated = &rows;
    } else if (rows.date != dated->date) {
      remark_ignored(task_.report, rows.line_number,
                     "the date " + formats::in_quotes(rows.date) + " differs from the table's first, " +
                         dated->date + ", which all of its readings have",
                     "dates that differ within a table");
    }
  }
  if (dated == nullptr) {
    return;
  }
  if (const std::optional<double> date = formats::head_date(dated->date)) {
    task_.record.DateCollected = task_.record.DateAnalysed = *date;
  } else {
    remark_unreadable(
        task_.report, dated->line_number,
        "date " + formats::in_quotes(dated->date) + " is not year-month-day, taken as 1 January 1900");
  }
}

bool TableStore::take(const CurveRows& rows) {
  ReadingRecord& record = task_.record;
  if (!take_line(rows)) {
    return true;
  }
  const ScopedValue reference(record.choices.ReferenceType,
                              std::int32_t{rows.reference_type.value_or(record.choices.ReferenceType)});
  record.Station = rows.station;
  record.SampleRate = rows.scan_rate.value_or(0.0) > 0.0 ? static_cast<float>(*rows.scan_rate) : rate_;
  record.DipoleLength = rows.dipole.value_or(0.0) > 0.0 ? static_cast<float>(*rows.dipole) : usual_dipole;
  record.site_name = rows.site;
  record.axes = {};
  if (rows.azimuth) {
    record.axes.HxAzimuth = static_cast<float>(*rows.azimuth);
  }
  record.EventNumber = events_
                           .try_emplace(event_of(rows, record.LineNumber, record.choices.ReductionType),
                                        static_cast<std::int32_t>(events_.size()))
                           .first->second;
  find_station_at(place_of(rows), task_);
  return take_curve(rows);
}

// @return false if the survey can't have such a line; the report says so
bool TableStore::take_line(const CurveRows& rows) {
  task_.record.LineNumber = line_;
  task_.record.line_in_file = rows.line;
  if (rows.line.empty()) {
    return true;
  }
  const auto line = line_of_file(rows.line, task_.record.choices.line_direction);
  if (!line) {
    remark_unreadable(
        task_.report, rows.line_number,
        "line " + formats::in_quotes(rows.line) + " is longer than 32 characters; its curve is left out");
    return false;
  }
  task_.record.LineNumber = *line;
  return true;
}

bool TableStore::take_curve(const CurveRows& rows) {
  ReadingRecord& record = task_.record;
  const bool turn = turn_ && is_of_ey(rows.data_type);
  fill_curve(rows, turn, record.curve);
  record.axes.EyTurned = turn ? Module_database::ey_turned : Module_database::ey_not_known;
  if (!store_header_once(task_) || !take_reading(task_, rows.data_type)) {
    return false;
  }
  task_.report.sections_turned += turn && rows.data_type == yx ? 1 : 0;
  task_.report.frequencies =
      std::max(task_.report.frequencies, static_cast<std::int32_t>(record.curve.count()));
  add_to_scan_list(record, {rows.data_type});
  return true;
}

int read_table(FileTask& task) {
  LineReader lines(task.file);
  const std::vector<CurveRows> curves = formats::csv::read_curve_table(lines, task.report, [&] {
    if (task.progress) {
      task.progress(lines.bytes_read(), 2 * lines.file_size());
    }
  });
  remark_on_nul_bytes(lines, task.report);
  return curves.empty() || TableStore(task, curves).store() ? 0 : -1;
}

}  // namespace

int read_curves(FileTask& task) {
  return run_reader(task, [&] { return read_table(task); });
}

}  // namespace Module_data_file
