#include "import/format_by_content.h"

#include <cstddef>
#include <string>
#include <string_view>

#include "core/line_reader.h"
#include "core/text_fields.h"
#include "formats/csv/curve_table.h"
#include "formats/emtf_xml/emtf_xml.h"
#include "formats/j_format/j_format.h"
#include "formats/z_file/z_file.h"
#include "formats/zonge/zonge_avg_parser.h"

namespace Module_data_file {

namespace {

// The comments of a J file may be some hundred lines, the licence in front of an XML root likewise.
constexpr std::size_t bytes_looked_at = 65536;
constexpr std::size_t line_looked_at = 10000;  // bytes; no line that tells a format is longer

bool has_words(std::string_view upper, std::string_view first, std::string_view second) {
  return upper.find(first) != std::string_view::npos && upper.find(second) != std::string_view::npos;
}

/// What the lines so far have shown.
class Beginning {
 public:
  FileFormat format_after(std::string_view line) {
    const std::string_view text = trimmed(line);
    if (text.empty()) {
      before_.clear();
      return format_unknown;
    }
    const bool is_first = !has_text_;
    has_text_ = true;
    if (is_first && formats::csv::is_curve_table_header(text)) {
      return format_curve_table;
    }
    is_xml_ = is_xml_ || (is_first && text.starts_with('<'));
    if (is_xml_) {
      return formats::emtf_xml::begins_emtf_xml(text.substr(0, bytes_looked_at)) ? format_emtf_xml
                                                                                 : format_unknown;
    }
    return format_of_line(text.substr(0, line_looked_at));
  }

 private:
  FileFormat format_of_line(std::string_view text) {
    const bool is_j = formats::j_format::begins_block(before_, text);
    before_ = text;
    return is_j                                      ? format_j
           : is_z_file(text)                         ? format_z_file
           : formats::zonge::is_zonge_avg_line(text) ? format_zonge_avg
                                                     : format_unknown;
  }

  /// The words of its title may stand in any note; the line of its counts behind them doesn't.
  bool is_z_file(std::string_view text) {
    const std::string upper = upper_case(text);
    has_z_title_ =
        has_z_title_ || formats::z_file::begins_z_file(text) || has_words(upper, "COORDINATE", "DECLINATION");
    return has_z_title_ && has_words(upper, "NUMBER OF CHANNELS", "NUMBER OF FREQUENCIES");
  }

  std::string before_;  // the line before; empty if it is blank
  bool has_text_ = false;
  bool is_xml_ = false;
  bool has_z_title_ = false;
};

}  // namespace

FileFormat exchange_format_of(const std::string& file) {
  LineReader lines(file);
  Beginning beginning;
  FileFormat format = format_unknown;
  std::size_t looked_at = 0;  // the reader may be a chunk ahead of the lines
  std::string_view line;
  while (format == format_unknown && looked_at < bytes_looked_at && lines.next(line)) {
    looked_at += line.size() + 1;
    format = beginning.format_after(line);
  }
  return format;
}

}  // namespace Module_data_file
