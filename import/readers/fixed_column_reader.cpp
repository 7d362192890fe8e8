#include "import/readers/fixed_column_reader.h"

#include <array>
#include <cmath>
#include <string_view>
#include <vector>

#include "core/absent_value.h"
#include "core/line_reader.h"
#include "core/number_text.h"
#include "core/session_state.h"
#include "core/text_fields.h"
#include "formats/field_values.h"
#include "formats/remarks.h"
#include "import/readers/reader_steps.h"
#include "import/reading_record.h"

namespace Module_data_file {

namespace {

using Module_database::Curve;

constexpr std::size_t value_width = 10;
constexpr std::size_t frequency_column = 1;
constexpr std::size_t scalar_column = 71;
constexpr std::size_t first_impedance_column = 81;  // xx, xy, yx, yy: real and imaginary part of each
constexpr std::size_t first_variance_column = 161;
constexpr int lines_of_record = 3;
constexpr double impedance_scale = 1e4;
constexpr double variance_scale = 1e8;
constexpr std::size_t element_total = tensor_data_types.size();

// The highest frequency stands last, a quarter of the scan rate.
constexpr double scan_rate_over_frequency = 4.0;
constexpr double largest_rate_difference = 0.1;  // Hz

struct TensorRecord {
  double frequency = 0.0;  // Hz
  double scalar = 0.0;
  std::array<double, element_total> real{};
  std::array<double, element_total> imaginary{};
  std::array<double, element_total> variance{};
};

std::string_view columns_of(std::string_view text, std::size_t column, std::size_t width) {
  return column > text.size() ? std::string_view() : trimmed(text.substr(column - 1, width));
}

float single_in(std::string_view text, std::size_t column, std::size_t width) {
  const float value = single_or_absent(numeric_value(columns_of(text, column, width)));
  return is_absent(value) ? 0.0F : value;
}

double scaled(double value, double scale) { return is_absent(value) ? value : value * scale; }

class RecordReader {
 public:
  RecordReader(LineReader& lines, FileReport& report) : lines_(lines), report_(report) {}

  // Takes the next three lines. False at the end of the file.
  bool next(TensorRecord& record) {
    std::string_view bytes;
    text_.clear();
    int count = 0;
    while (count < lines_of_record && lines_.next(bytes)) {
      text_ += bytes;
      ++count;
    }
    if (count == 0) {
      return false;
    }
    if (count < lines_of_record) {
      remark_unreadable(report_, lines_.line_number(), "the file ends inside the three lines of a frequency");
    }
    decode(record);
    return true;
  }
  [[nodiscard]] bool is_blank() const { return trimmed(text_).empty(); }

 private:
  // An empty field is 0, as is all behind the end of a record that is cut short.
  double value_at(std::size_t column) {
    const std::string_view field = columns_of(text_, column, value_width);
    double value = 0.0;
    if (!field.empty()) {
      take_value(field.data(), field.data() + field.size(), value, report_, lines_.line_number());
    }
    return value;
  }

  void decode(TensorRecord& record) {
    record.frequency = value_at(frequency_column);
    record.scalar = value_at(scalar_column);
    for (std::size_t element = 0; element < element_total; ++element) {
      const std::size_t column = first_impedance_column + 2 * element * value_width;
      record.real[element] = scaled(value_at(column), impedance_scale);
      record.imaginary[element] = scaled(value_at(column + value_width), impedance_scale);
      record.variance[element] =
          scaled(value_at(first_variance_column + element * value_width), variance_scale);
    }
  }

  LineReader& lines_;
  FileReport& report_;
  std::string text_;
};

void take_head(std::string_view head, ReadingRecord& record) {
  record.Filter = text_from_field_file(columns_of(head, 24, 5));
  record.DipoleLength = single_in(head, 48, 5);
  record.StationSpacing = single_in(head, 53, 5);
  record.Orientation = single_in(head, 62, 5);
}

std::vector<TensorRecord> read_records(LineReader& lines, FileReport& report) {
  std::vector<TensorRecord> records;
  RecordReader reader(lines, report);
  TensorRecord record;
  while (reader.next(record)) {
    if (record.frequency > 0.0) {
      records.push_back(record);
    } else if (!reader.is_blank()) {
      remark_unreadable(report, lines.line_number(), "a record has no frequency above 0 and is left out");
    }
  }
  return records;
}

// Empty if nothing keeps the records from being stored.
std::string why_not_stored(const std::vector<TensorRecord>& records, float scan_rate) {
  if (records.empty()) {
    return "there is no record of three lines that begins with a frequency";
  }
  const double last = records.back().frequency;
  if (std::abs(decimal_of_single(scan_rate) - scan_rate_over_frequency * last) <= largest_rate_difference) {
    return {};
  }
  return "the scan rate of " + plain_text(scan_rate) + " Hz is not 4 times the last frequency of " +
         plain_text(last) + " Hz";
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
        0.2 * (point.real * point.real + point.imaginary * point.imaginary) / record.frequency / 4.0;
    point.magnitude_part = record.imaginary.back();
    point.scalar = record.scalar;
    curve.frequencies[index] = static_cast<float>(record.frequency);
    set_tensor_point(point, curve, index);
    curve.value(Module_database::field_resistivity_error, index) = single_or_absent(record.variance[element]);
    curve.value(Module_database::field_phase_error, index) = single_or_absent(record.variance[element]);
    finish_point(curve, index);
  }
}

int take_records(ImportMode mode, const std::vector<TensorRecord>& records, FileReport& report,
                 StoreNotes& notes) {
  ReadingRecord& record = reading_record();
  if (mode == ImportMode::import) {
    if (store_header_block(notes) != 0) {
      return -1;
    }
    find_station_of_record(record, MapPlace::of_survey_grid);
  }
  for (std::size_t element = 0; element < element_total; ++element) {
    fill_element(records, element, record.curve);
    if (!take_reading(mode, tensor_data_types[element], report, notes)) {
      return -1;
    }
  }
  return 0;
}

int read_file(ImportMode mode, const std::string& file, FileReport& report, StoreNotes& notes,
              const FileProgress& progress) {
  ReadingRecord& record = reading_record();
  LineReader lines(file);
  std::string_view head;
  while (lines.next(head) && trimmed(head).empty()) {
  }
  const bool has_mark = head.find("DC") != std::string_view::npos;  // of heads of this format
  take_head(head, record);
  const std::vector<TensorRecord> records = read_records(lines, report);
  if (progress) {
    progress(lines.bytes_read(), lines.file_size());
  }
  report.failure = why_not_stored(records, record.SampleRate);
  if (!report.failure.empty()) {
    if (!has_mark) {
      // Every word of some other text would be a remark.
      report.unreadable.clear();
      report.remarks_dropped = 0;
      report.failure =
          "not an EDI file, its first line doesn't begin with >HEAD; as a file of fixed columns, " +
          report.failure;
    }
    return 0;
  }
  if (record.Station == station_not_set) {
    record.Station = 0.0;
    remark_unreadable(report, 1, "the head line has no station, taken as station 0");
  }
  if (take_records(mode, records, report, notes) != 0) {
    return -1;
  }
  report.sections = 1;
  report.frequencies = static_cast<std::int32_t>(records.size());
  add_tensor_to_scan_list(record);
  return 0;
}

}  // namespace

int read_fixed_columns(ImportMode mode, const std::string& file, FileReport& report, StoreNotes& notes,
                       const FileProgress& progress) {
  return run_reader(report, notes, [&] { return read_file(mode, file, report, notes, progress); });
}

}  // namespace Module_data_file
