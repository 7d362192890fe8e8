#include "formats/csv/csv_records.h"

#include <algorithm>
#include <cstddef>

#include "core/number_text.h"
#include "core/text_fields.h"

namespace formats::csv {

namespace {

constexpr std::size_t longest_record = std::size_t{64} * 1024;  // bytes
constexpr std::size_t most_fields = 1000;
constexpr std::string_view formula_signs = "=+-@";

// One that begins with apostrophes and then like a formula counts, so that csv_text takes off only what
// csv_field has put on.
bool looks_like_formula(std::string_view text) {
  const std::size_t first = text.find_first_not_of('\'');
  return first != std::string_view::npos && formula_signs.find(text[first]) != std::string_view::npos &&
         !is_numeric(text);
}

std::string count_text(std::size_t count) { return plain_text(static_cast<std::int64_t>(count)); }

enum class Cut { whole, open_quote, too_many_fields };

// Takes the quoted part of a field from its opening quote on. @return false without a closing one
bool take_quoted(std::string_view line, std::size_t& place, std::string& field) {
  while (true) {
    const std::size_t quote = line.find('"', ++place);
    if (quote == std::string_view::npos) {
      return false;
    }
    field += line.substr(place, quote - place);
    place = quote + 1;
    if (place == line.size() || line[place] != '"') {
      return true;
    }
    field += '"';
  }
}

Cut cut_fields(std::string_view line, char separator, std::vector<std::string>& fields) {
  fields.clear();
  for (std::size_t place = 0; fields.size() < most_fields; ++place) {
    std::string& field = fields.emplace_back();
    if (place < line.size() && line[place] == '"' && !take_quoted(line, place, field)) {
      return Cut::open_quote;
    }
    const std::size_t end = std::min(line.find(separator, place), line.size());
    field += line.substr(place, end - place);
    if (end == line.size()) {
      return Cut::whole;
    }
    place = end;
  }
  return Cut::too_many_fields;
}

}  // namespace

bool CsvRecords::next(CsvRecord& record) {
  std::string_view line;
  while (!ended_ && lines_.next(line)) {
    if (trimmed(line).empty()) {
      continue;
    }
    record.line_number = lines_.line_number();
    record.fields.clear();
    record.fault.clear();
    take_lines(line, record);
    return true;
  }
  return false;
}

void CsvRecords::take_lines(std::string_view line, CsvRecord& record) {
  if (line.size() > longest_record) {
    record.fields.clear();
    record.fault = "the row is longer than " + count_text(longest_record) + " bytes";
    return;
  }
  Cut cut = cut_fields(line, separator_, record.fields);
  std::string whole(cut == Cut::open_quote ? line : std::string_view());
  while (cut == Cut::open_quote && whole.size() <= longest_record && lines_.next(line)) {
    whole += '\n';
    whole += line;
    // Doubled quotes leave the field open, and so does a field that ends where another one begins.
    const bool may_close = std::ranges::count(line, '"') % 2 == 1;
    if (may_close && whole.size() <= longest_record) {
      cut = cut_fields(whole, separator_, record.fields);
    }
  }
  ended_ = cut == Cut::open_quote;
  if (ended_) {
    record.fault = "a quote is opened and not closed";
  } else if (cut == Cut::too_many_fields) {
    record.fault = "the row has more than " + count_text(most_fields) + " fields";
  }
}

std::vector<std::string> csv_fields(std::string_view line, char separator) {
  std::vector<std::string> fields;
  (void)cut_fields(line, separator, fields);
  return fields;
}

std::string csv_field(std::string_view text) {
  std::string field = looks_like_formula(text) ? "'" : "";
  field += text;
  if (field.find_first_of(",\"\r\n") == std::string::npos && trimmed(field).size() == field.size()) {
    return field;
  }
  std::string quoted = "\"";
  for (const char character : field) {
    quoted += character;
    quoted += character == '"' ? "\"" : "";
  }
  return quoted + '"';
}

std::string_view csv_text(std::string_view field) {
  const bool is_marked = field.starts_with('\'') && looks_like_formula(field.substr(1));
  return is_marked ? field.substr(1) : field;
}

}  // namespace formats::csv
