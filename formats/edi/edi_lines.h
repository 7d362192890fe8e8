// edi_lines.h: the lines of an EDI file that count, and the options on them.
//
// Blank lines and comments (">!...", "!...") are skipped. Options are written "KEY = value" in any spacing.
#pragma once
#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "core/line_reader.h"

namespace formats::edi {

/// Goes from line to line. `reader` must outlive it.
class EdiLines {
 public:
  explicit EdiLines(LineReader& reader) : reader_(reader) {}

  /// Goes to the next line that is neither blank nor a comment. @return false at the end of the file
  bool next() {
    while (reader_.next(line_)) {
      const char* const first = std::find_if_not(line_.data(), line_.data() + line_.size(), is_blank);
      line_.remove_prefix(static_cast<std::size_t>(first - line_.data()));
      if (!line_.empty() && line_.front() != '!' && !line_.starts_with(">!")) {
        return true;
      }
    }
    line_ = {};
    return false;
  }
  /// Goes to the next line that begins with ">".
  bool skip_to_tag();
  /// Goes back to the beginning of the file.
  void rewind();

  [[nodiscard]] std::string_view line() const { return line_; }  // leading blanks cut; empty at the end
  [[nodiscard]] bool at_tag() const { return line_.starts_with('>'); }
  /// The line lost bytes, and with them perhaps the ends of the lines behind it.
  [[nodiscard]] bool has_lost_bytes() const {
    return reader_.nul_bytes() > 0 && line_.find('?') != std::string_view::npos;
  }
  [[nodiscard]] std::int64_t line_number() const { return reader_.line_number(); }
  [[nodiscard]] std::int64_t file_size() const { return reader_.file_size(); }

 private:
  static bool is_blank(char character) { return static_cast<unsigned char>(character) <= ' '; }

  LineReader& reader_;
  std::string_view line_;
};

/// Tells the tags of a head from lines of its >INFO text that only look like tags (">=MTSECT holds the ..."):
/// the text ends where the sensors are defined. A file without their definitions shows a section only to a
/// second look with InfoText::no_text().
class InfoText {
 public:
  static InfoText no_text() {
    InfoText info;
    info.never_ = true;
    return info;
  }
  /// @param tag of the next line that begins with ">", in upper case without ">"
  /// @return true if the line is part of the text
  bool holds(std::string_view tag);
  [[nodiscard]] bool held_section() const { return held_section_; }

 private:
  bool never_ = false;
  bool inside_ = false;
  bool held_section_ = false;
};

/// Looks for the first section of a file by `find`, which is given an InfoText and tells whether there is
/// one; again from the first line on where only text of the head looked like one.
template <class Find>
bool find_first_section(EdiLines& lines, const Find& find) {
  InfoText info;
  if (find(info)) {
    return true;
  }
  if (!info.held_section()) {
    return false;
  }
  lines.rewind();
  InfoText no_text = InfoText::no_text();
  return find(no_text);
}

/// The text after "key =" in a line of options in upper case; none if the line has no such key.
std::optional<std::string_view> option_text(std::string_view line, std::string_view key);

/// The part of a line that is given as a part of the same line in upper case.
std::string_view as_written(std::string_view part, std::string_view upper, std::string_view line);

/// The first item of that text without quotes; empty if it is missing.
std::string option_item(std::string_view line, std::string_view key);

/// The number that item begins with; 0 if it is missing.
double option_number(std::string_view line, std::string_view key);

/// The value of SECTID in a line, as written, without its quotes; none if the line has none.
std::optional<std::string> sectid_option(std::string_view line);

}  // namespace formats::edi
