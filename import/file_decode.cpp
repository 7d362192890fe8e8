#include "import/file_decode.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "core/calendar.h"
#include "core/line_reader.h"
#include "core/number_text.h"
#include "core/text_fields.h"
#include "core/user_interface.h"
#include "database/line_names.h"
#include "formats/edi/edi_lines.h"
#include "formats/edi/edi_tags.h"
#include "formats/head_dates.h"
#include "import/format_by_content.h"
#include "import/readers/site_files.h"

namespace Module_data_file {

using formats::FileReport;
using formats::head_date;
using formats::in_quotes;
using formats::remark_unreadable;

namespace {

constexpr const char* no_fault = "";

int shown(ShowFault show, const std::string& fault) {
  if (fault.empty()) {
    return 0;
  }
  if (show == ShowFault::yes) {
    user_interface().show_message(fault);
  }
  return -1;
}

std::string typed_line_fault(std::string& text, LineDirection direction) {
  Module_database::LineName line;
  std::string fault = Module_database::line_fault(text, direction, line);
  text = fault.empty() ? line.text : text;
  return fault;
}

std::string typed_value_fault(std::size_t row, ImportChoices& choices) {
  std::string& text = choices.decode[row].specified;
  if (row == decode_line_number) {
    return typed_line_fault(text, choices.line_direction);
  }
  const double value = numeric_value(text);
  if (row == decode_event) {
    return is_numeric(text) && std::isfinite(value) && value >= 0.0 ? no_fault
                                                                    : "The specified event value is invalid";
  }
  if (!is_numeric(text) || !std::isfinite(static_cast<float>(value))) {
    return "The specified Sample Rate is invalid";
  }
  if (value < 0.0) {
    return "The Sample Rate cannot be negative";
  }
  return value == 0.0 && choices.ReductionType != 2 ? "The Sample Rate cannot be zero for non-merged data"
                                                    : no_fault;
}

// The specified line is that of files in other folders; it may be missing.
std::string folder_lines_fault(ImportChoices& choices) {
  for (FolderLine& each : choices.folder_lines) {
    std::string fault = typed_line_fault(each.line, choices.line_direction);
    if (!fault.empty()) {
      return fault;
    }
  }
  return choices.decode[decode_line_number].specified.empty()
             ? no_fault
             : typed_value_fault(decode_line_number, choices);
}

std::string row_fault(std::size_t row, ImportChoices& choices) {
  const DecodeRow& decode = choices.decode[row];
  const std::string title(decode_row_titles[row]);
  if (row == decode_line_number && !decode.use_file_name && !choices.folder_lines.empty()) {
    return folder_lines_fault(choices);
  }
  if (decode.use_file_name) {
    if (decode.start_column < 1) {
      return "The start column for " + title + " is invalid";
    }
    return decode.width < 1 ? "The column width for " + title + " is invalid" : no_fault;
  }
  return decode.specified.empty() ? "The specified value for " + title + " is invalid"
                                  : typed_value_fault(row, choices);
}

// Characters from a column on, counted from 1 in whole characters.
std::string columns(std::string_view text, std::int32_t start, std::int32_t width) {
  std::string part;
  std::int32_t column = 0;
  for (const char byte : text) {
    const bool begins_character = (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U;
    column += begins_character ? 1 : 0;
    if (column >= start && column - start < width) {
      part += byte;
    }
  }
  return part;
}

std::string decoded_text(const DecodeRow& row, const std::string& file_name) {
  return row.use_file_name ? columns(file_name, row.start_column, row.width) : row.specified;
}

double decoded_number(const std::string& text, std::size_t row, FileReport& report) {
  if (is_numeric(text)) {
    return numeric_value(text);
  }
  remark_unreadable(
      report, 0,
      std::string(decode_row_titles[row]) + " " + in_quotes(text) + " is not a number, taken as 0");
  return 0.0;
}

// The line that the choices have for the file, else for all files in its folder, else the one for all others.
std::string line_by_folder(const std::string& file, const ImportChoices& choices) {
  for (const std::string& place : {settled_file(file), folder_of(file)}) {
    const auto found = std::ranges::find(choices.folder_lines, place, &FolderLine::folder);
    if (found != choices.folder_lines.end()) {
      return found->line;
    }
  }
  return choices.decode[decode_line_number].specified;
}

void decode_line_of(const std::string& file, ReadingRecord& record, SampleFields& sample,
                    FileReport& report) {
  const DecodeRow& decode = record.choices.decode[decode_line_number];
  if (!decode.use_file_name && !record.choices.folder_lines.empty()) {
    sample.line = line_by_folder(file, record.choices);
    return;
  }
  sample.line = decoded_text(decode, record.SurveyFile);
  if (decode.use_file_name) {
    sample.line = std::string(trimmed(sample.line));
    if (sample.line.empty()) {
      remark_unreadable(report, 0, "the file name has no text in the columns of the line");
    }
  }
}

void decode_name(const std::string& file, ReadingRecord& record, SampleFields& sample, FileReport& report) {
  const auto& decode = record.choices.decode;
  decode_line_of(file, record, sample, report);
  sample.event = decoded_text(decode[decode_event], record.SurveyFile);
  sample.rate = decoded_text(decode[decode_sample_rate], record.SurveyFile);
  record.LineNumber = sample.line;
  const double event = decoded_number(sample.event, decode_event, report);
  record.EventNumber = std::abs(event) < 2147483647.0 ? static_cast<std::int32_t>(event) : 0;
  record.SampleRate = static_cast<float>(decoded_number(sample.rate, decode_sample_rate, report));
}

void take_date(std::string_view line, double& days, const LineReader& reader, FileReport& report) {
  const std::size_t equals = line.find('=');
  const std::string_view text =
      equals == std::string_view::npos ? std::string_view() : trimmed(line.substr(equals + 1));
  if (const std::optional<double> date = head_date(text)) {
    days = *date;
  } else {
    days = start_date;
    remark_unreadable(report, reader.line_number(),
                      "date " + in_quotes(text) + " is not month/day/year, taken as 1 January 1900");
  }
}

// A reader takes all lengths for metres, whatever the head says.
void take_unit(std::string_view line, ReadingRecord& record, const LineReader& reader, FileReport& report) {
  const std::string unit = formats::edi::option_item(upper_case(line), "UNITS");
  if (unit == "FT" || unit == "FEET" || unit == "FOOT") {
    record.length_unit_factor = 0;  // the whole part of 0.3048; lengths are stored as they are
    formats::remark_ignored(report, reader.line_number(),
                            "UNITS=" + unit + ": lengths in feet are taken as metres, as they stand");
  }
}

FileFormat format_of_section(std::string_view tag) {
  return tag.starts_with("=MTSECT")        ? format_edi_mt
         : tag.starts_with("=SPECTRASECT") ? format_edi_spectra
                                           : format_unknown;
}

// FILEBY or PROGVERS of a head.
bool names_this_program(std::string_view line) {
  const std::string upper = upper_case(line);
  return formats::edi::option_item(upper, "FILEBY").starts_with("BRENLOX") ||
         formats::edi::option_item(upper, "PROGVERS").starts_with("BRENLOX");
}

void read_edi_options(LineReader& reader, ReadingRecord& record, FileReport& report) {
  formats::edi::InfoText info;
  FileFormat of_info_text = format_unknown;
  bool in_head = true;  // up to the tag behind >HEAD
  std::string_view bytes;
  while (reader.next(bytes)) {
    const std::string_view line = trimmed(bytes);
    if (line.starts_with('>') && !line.starts_with(">!")) {
      const std::string tag = formats::edi::tag_name(line);
      in_head = false;
      const bool is_text = info.holds(tag);
      const FileFormat format = format_of_section(tag);
      if (is_text) {
        of_info_text = of_info_text == format_unknown ? format : of_info_text;
      } else if (format != format_unknown) {
        record.file_format = format;
        return;
      }
    }
    record.is_own_edi = record.is_own_edi || (in_head && names_this_program(line));
    const std::string_view keyword = line.substr(0, 8);
    if (equal_ignoring_case(keyword.substr(0, 7), "ACQDATE")) {
      take_date(line, record.DateAnalysed, reader, report);
    } else if (equal_ignoring_case(keyword, "FILEDATE")) {
      take_date(line, record.DateCollected, reader, report);
    } else if (equal_ignoring_case(keyword.substr(0, 5), "UNITS")) {
      take_unit(line, record, reader, report);
    }
  }
  record.file_format = of_info_text;  // no sensors are defined behind the text, so it was a section
}

// Files of others have the date of the measurement in FILEDATE as a rule, those of this program in ACQDATE.
void read_edi_head(LineReader& reader, ReadingRecord& record, FileReport& report) {
  record.length_unit_factor = 1;
  read_edi_options(reader, record, report);
  if (record.is_own_edi) {
    std::swap(record.DateCollected, record.DateAnalysed);
  }
}

double date_in_columns(std::string_view line, std::array<std::int32_t, 3> starts) {
  const double year = numeric_value(columns(line, starts[0], 4));
  const double month = numeric_value(columns(line, starts[1], 2));
  const double day = numeric_value(columns(line, starts[2], 2));
  if (!(year >= 1.0 && year <= 9999.0)) {
    return start_date;
  }
  return day_count(static_cast<int>(year), static_cast<int>(month), static_cast<int>(day));
}

bool next_filled_line(LineReader& reader, std::string& line) {
  std::string_view bytes;
  while (reader.next(bytes)) {
    if (const std::string_view text = trimmed(bytes); !text.empty()) {
      line = upper_case(text);
      return true;
    }
  }
  return false;
}

void read_fixed_column_head(const std::string& line, ReadingRecord& record, SampleFields& sample) {
  record.file_format = format_fixed_columns;
  record.DateCollected = date_in_columns(line, {3, 7, 9});
  record.DateAnalysed = date_in_columns(line, {14, 18, 20});
  sample.station = trimmed(columns(line, 29, 6));
  if (is_numeric(sample.station)) {
    record.Station = numeric_value(sample.station);
  }
}

// The file is read here already: its date is needed before its readings are looked for in the survey.
void take_site_file(const std::string& file, ReadingRecord& record, FileReport& report) {
  if (is_site_file(record.file_format)) {
    record.site_file = std::make_shared<const formats::transfer_function::TransferFunction>(
        read_site_file(record.file_format, file, report));
    record.DateCollected = record.DateAnalysed = date_of_site(record.site_file->site, report);
  }
}

void read_file_head(const std::string& file, ReadingRecord& record, SampleFields& sample,
                    FileReport& report) {
  LineReader reader(file);
  std::string line;
  bool found = next_filled_line(reader, line);
  while (found && line.starts_with(">!")) {
    found = next_filled_line(reader, line);
  }
  if (!found) {
    throw std::runtime_error(file + " is empty");
  }
  if (line.starts_with(">HEAD")) {
    read_edi_head(reader, record, report);
  } else if (const FileFormat format = exchange_format_of(file); format != format_unknown) {
    record.file_format = format;
    take_site_file(file, record, report);
  } else if (line.find("FREQUENCY DOMAIN EM DATA") != std::string::npos) {
    record.file_format = format_em1dfm;
    record.DateCollected = record.DateAnalysed = day_count(today());
  } else if (line.size() == 4 && is_numeric(line)) {
    record.file_format = format_zonge_raw;
    if (next_filled_line(reader, line)) {
      record.DateCollected = record.DateAnalysed = date_in_columns(line, {10, 15, 18});
    }
  } else if (line.find("DC") != std::string::npos) {
    read_fixed_column_head(line, record, sample);
  } else {
    report.failure =
        "the file is of no known kind: not EDI, EMTF XML, a Z or J file, Zonge raw or averages, Em1dfm, a "
        "table of curves or fixed columns (DC in the first line)";
  }
}

}  // namespace

std::string folder_of(const std::string& file) {
  return std::filesystem::path(settled_file(file)).parent_path().string();
}

std::string settled_file(const std::string& file) {
  std::error_code failure;
  const std::filesystem::path absolute = std::filesystem::absolute(file, failure);
  return (failure ? std::filesystem::path(file) : absolute).lexically_normal().string();
}

std::string choices_fault(ImportChoices& choices) {
  if (choices.ReferenceType < 0) {
    return "You have not specified a data type";
  }
  if (choices.ReductionType < 0) {
    return "You have not specified the data reduction";
  }
  for (std::size_t row = 0; row < decode_row_titles.size(); ++row) {
    if (std::string fault = row_fault(row, choices); !fault.empty()) {
      return fault;
    }
  }
  return no_fault;
}

int decode_file_format(ShowFault show, ReadingRecord& record) {
  return shown(show, choices_fault(record.choices));
}

int decode_line(ShowFault show, std::string_view text, LineDirection direction, double& number,
                std::string& line) {
  Module_database::LineName name;
  const std::string fault = Module_database::line_fault(text, direction, name);
  if (fault.empty()) {
    number = name.number;
    line = name.text;
  }
  return shown(show, fault);
}

void decode_file_name(const std::string& file, ReadingRecord& record, SampleFields& sample,
                      FileReport& report) {
  sample = SampleFields{};
  record.SurveyFile = text_from_field_file(std::filesystem::path(file).filename().string());
  decode_name(file, record, sample, report);
}

void display_file_format(const std::string& file, ReadingRecord& record, SampleFields& sample,
                         FileReport& report) {
  decode_file_name(file, record, sample, report);
  record.file_format = format_unknown;
  record.is_own_edi = false;
  read_file_head(file, record, sample, report);
  sample.date = display_date(record.DateCollected);
}

int display_file_decode(const std::string& file, ReadingRecord& record, SampleFields& sample,
                        FileReport& report) {
  if (decode_file_format(ShowFault::yes, record) != 0) {
    return -1;
  }
  display_file_format(file, record, sample, report);
  return 0;
}

}  // namespace Module_data_file
