#include "formats/fixed_column/fixed_column_parser.h"

#include <algorithm>

#include "core/absent_value.h"
#include "core/number_text.h"
#include "core/text_fields.h"
#include "formats/field_values.h"

namespace formats::fixed_column {

namespace {

constexpr std::size_t value_width = 10;
constexpr std::size_t frequency_column = 1;
constexpr std::size_t scalar_column = 71;
constexpr std::size_t first_impedance_column = 81;  // real and imaginary part of each element
constexpr std::size_t first_variance_column = 161;
constexpr int lines_of_record = 3;
constexpr double impedance_scale = 1e4;
constexpr double variance_scale = impedance_scale * impedance_scale;

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
  [[nodiscard]] bool has_frequency() const {
    return !columns_of(text_, frequency_column, value_width).empty();
  }

 private:
  // An empty field is 0, as is everything that a record cut short lacks. A field is one number: what
  // separates the items of other formats ("1,5") is no part of one.
  double value_at(std::size_t column) {
    const std::string_view field = columns_of(text_, column, value_width);
    double value = 0.0;
    if (std::ranges::any_of(field, is_separator)) {
      remark_unreadable(report_, lines_.line_number(),
                        in_quotes(field) + " is not a number, taken as absent");
      value = no_data;
    } else if (!field.empty()) {
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

}  // namespace

Head read_head(std::string_view line) {
  Head head;
  head.filter = text_from_field_file(columns_of(line, 24, 5));
  head.dipole = single_in(line, 48, 5);
  head.station_spacing = single_in(line, 53, 5);
  head.orientation = single_in(line, 62, 5);
  head.has_orientation = !columns_of(line, 62, 5).empty();
  return head;
}

std::vector<TensorRecord> read_records(LineReader& reader, FileReport& report) {
  std::vector<TensorRecord> records;
  RecordReader lines(reader, report);
  TensorRecord record;
  std::vector<float> frequencies;
  while (lines.next(record)) {
    if (lines.has_frequency() && !is_absent(record.frequency)) {
      records.push_back(record);
      frequencies.push_back(static_cast<float>(record.frequency));
    } else if (!lines.is_blank()) {
      remark_unreadable(report, reader.line_number(), "a record has no frequency and is left out");
    }
  }
  remark_on_frequencies(frequencies, 0, report);
  return records;
}

}  // namespace formats::fixed_column
