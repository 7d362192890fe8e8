#include "import/readers/em1dfm_reader.h"

#include <algorithm>

#include "core/absent_value.h"
#include "core/line_reader.h"
#include "formats/em1dfm/em1dfm_parser.h"
#include "import/readers/reader_steps.h"

namespace Module_data_file {

namespace {

using formats::em1dfm::Point;
using formats::em1dfm::Station;

void set_up_header(ReadingRecord& record) {
  record.EventNumber = 0;
  record.DipoleLength = usual_dipole;
  record.Station = 0.0;
  record.StationSpacing = record.DipoleLength;
  record.Filter = "Em1dfm";
}

void fill_record(const Station& station, ReadingRecord& record) {
  record.LineNumber = station.line;
  record.Station = station.station;
  record.MapX = station.x;
  record.MapY = station.y;
  record.Elevation = station.elevation;
  Module_database::Curve& curve = record.curve;
  curve.assign(station.points.size());
  for (std::size_t index = 0; index < curve.count(); ++index) {
    const Point& point = station.points[index];
    curve.frequencies[index] = point.frequency;
    for (std::size_t place = 0; place < point.values.size(); ++place) {
      curve.value(static_cast<int>(place) + 1, index) = point.values[place];
    }
    for (int field_number = 9; field_number <= 13; ++field_number) {
      curve.value(field_number, index) = no_data;
    }
    finish_point(curve, index);
  }
}

// False after a failed store.
bool take_station(const Station& station, FileTask& task) {
  ReadingRecord& record = task.record;
  fill_record(station, record);
  if (task.is_import()) {
    find_station_of_record(record);
  }
  if (!take_reading(task, quadrature_data_type)) {
    return false;
  }
  add_to_scan_list(record, {quadrature_data_type});
  ++task.report.sections;
  task.report.frequencies =
      std::max(task.report.frequencies, static_cast<std::int32_t>(record.curve.count()));
  ++record.EventNumber;  // within a file an event holds one reading of a kind
  return true;
}

int read_stations(FileTask& task) {
  LineReader lines(task.file);
  formats::em1dfm::Em1dfmParser parser(lines, task.report);
  Station station;
  while (parser.next_station(station)) {
    if (!take_station(station, task)) {
      return -1;
    }
    task.show_progress(lines);
  }
  remark_on_nul_bytes(lines, task.report);
  return 0;
}

}  // namespace

int read_em1dfm(FileTask& task) {
  return run_reader(task, [&] {
    set_up_header(task.record);
    if (task.is_import() && store_header_block(task.record, task.notes) != 0) {
      return -1;
    }
    return read_stations(task);
  });
}

}  // namespace Module_data_file
