#include "import/readers/fixed_column_reader.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <string_view>
#include <vector>

#include "core/line_reader.h"
#include "core/number_text.h"
#include "core/session_state.h"
#include "core/text_fields.h"
#include "formats/field_values.h"
#include "formats/fixed_column/fixed_column_parser.h"
#include "import/readers/reader_steps.h"
#include "numerics/impedance/apparent_resistivity.h"

namespace Module_data_file {

namespace {

using formats::FileReport;
using formats::single_or_absent;
using formats::fixed_column::element_total;
using formats::fixed_column::Head;
using formats::fixed_column::record_over_field_unit;
using formats::fixed_column::scan_rate_over_last_frequency;
using formats::fixed_column::TensorRecord;
using Module_database::Curve;

constexpr double largest_rate_difference = 0.1;  // Hz

void take_head(const Head& head, ReadingRecord& record) {
  record.Filter = head.filter;
  record.DipoleLength = head.dipole;
  record.StationSpacing = head.station_spacing;
  record.Orientation = head.orientation;
}

// 0 without a frequency above 0.
double last_frequency(const std::vector<TensorRecord>& records) {
  const auto has_frequency = [](const TensorRecord& record) { return record.frequency > 0.0; };
  const auto record = std::find_if(records.rbegin(), records.rend(), has_frequency);
  return record == records.rend() ? 0.0 : record->frequency;
}

void fill_element(const std::vector<TensorRecord>& records, std::size_t element, Curve& curve) {
  curve.assign(records.size());
  for (std::size_t index = 0; index < records.size(); ++index) {
    const TensorRecord& record = records[index];
    TensorPoint point;
    point.frequency = record.frequency;
    point.real = record.real[element];
    point.imaginary = record.imaginary[element];
    point.resistivity =
        numerics::impedance::apparent_resistivity({point.real, point.imaginary}, record.frequency) /
        (record_over_field_unit * record_over_field_unit);
    point.magnitude_part = record.imaginary.back();
    point.scalar = record.scalar;
    curve.frequencies[index] = static_cast<float>(record.frequency);
    set_tensor_point(point, curve, index);
    curve.value(Module_database::field_resistivity_error, index) = single_or_absent(record.variance[element]);
    curve.value(Module_database::field_phase_error, index) = single_or_absent(record.variance[element]);
    finish_point(curve, index);
  }
}

int take_records(const std::vector<TensorRecord>& records, FileTask& task) {
  static_assert(tensor_data_types.size() == element_total);
  if (task.is_import()) {
    if (store_header_block(task.record, task.notes) != 0) {
      return -1;
    }
    find_station_of_record(task.record, MapPlace::of_survey_grid);
  }
  for (std::size_t element = 0; element < element_total; ++element) {
    fill_element(records, element, task.record.curve);
    if (!take_reading(task, tensor_data_types[element])) {
      return -1;
    }
  }
  return 0;
}

int read_file(FileTask& task) {
  ReadingRecord& record = task.record;
  FileReport& report = task.report;
  LineReader lines(task.file);
  std::string_view line;
  while (lines.next(line) && trimmed(line).empty()) {
  }
  const Head head = formats::fixed_column::read_head(line);
  take_head(head, record);
  const std::vector<TensorRecord> records = formats::fixed_column::read_records(lines, report);
  task.show_progress(lines);
  const double last = last_frequency(records);
  if (record.choices.own_rate_of_fixed_columns && planned_section(record) == nullptr) {
    record.SampleRate = static_cast<float>(scan_rate_over_last_frequency * last);
  }
  report.failure = fixed_columns_fault(last, record.SampleRate);
  remark_on_nul_bytes(lines, report);
  if (!report.failure.empty()) {
    return 0;
  }
  if (record.Station == station_not_set) {
    record.Station = 0.0;
    record.site = record.SurveyFile;  // another file without a station is another site
    remark_unreadable(report, 1, "the head line has no station, taken as station 0");
  }
  if (take_records(records, task) != 0) {
    return -1;
  }
  report.sections = 1;
  report.frequencies = static_cast<std::int32_t>(records.size());
  add_tensor_to_scan_list(record);
  return 0;
}

}  // namespace

std::string fixed_columns_fault(double last_frequency, float scan_rate) {
  if (last_frequency <= 0.0) {
    return "there is no record of three lines that begins with a frequency above 0";
  }
  if (std::abs(decimal_of_single(scan_rate) - scan_rate_over_last_frequency * last_frequency) <=
      largest_rate_difference) {
    return {};
  }
  return "the scan rate of " + plain_text(scan_rate) + " Hz is not 4 times the last frequency of " +
         plain_text(last_frequency) + " Hz";
}

int read_fixed_columns(FileTask& task) {
  return run_reader(task, [&] { return read_file(task); });
}

}  // namespace Module_data_file
