#include "import/edi_parser.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "core/number_text.h"
#include "core/session_state.h"
#include "core/text_fields.h"
#include "import/edi_tags.h"
#include "import/remarks.h"

namespace Module_data_file {

namespace {

constexpr double largest_value = 1e30;      // beyond it a number is a file's mark for an absent value
constexpr std::size_t longest_number = 64;  // characters of a number in any known file, with room to spare

constexpr std::array<bool, 256> separator_table() {
  std::array<bool, 256> table{};
  for (std::size_t code = 0; code <= ' '; ++code) {
    table[code] = true;
  }
  for (const char separator : {',', '\'', ';'}) {
    table[static_cast<unsigned char>(separator)] = true;
  }
  return table;
}
constexpr std::array<bool, 256> separators = separator_table();

bool is_separator(char character) { return separators[static_cast<unsigned char>(character)]; }
bool is_blank(char character) { return static_cast<unsigned char>(character) <= ' '; }

const char* token_end(const char* place, const char* line_end) {
  return std::find_if(place, line_end, is_separator);
}

const char* skip_separators(const char* place, const char* line_end) {
  return std::find_if_not(place, line_end, is_separator);
}

std::size_t count_tokens(std::string_view line) {
  const char* place = line.data();
  const char* const line_end = place + line.size();
  std::size_t count = 0;
  while ((place = skip_separators(place, line_end)) != line_end) {
    place = token_end(place, line_end);
    ++count;
  }
  return count;
}

float single_or_absent(double value) {
  return std::abs(value) > largest_value ? no_data : static_cast<float>(value);
}

// Reads a token that is one whole number but for a plus sign or a Fortran exponent letter.
bool read_fortran_number(std::string_view token, double& value) {
  std::array<char, longest_number> text{};
  if (token.starts_with('+')) {
    token.remove_prefix(1);
  }
  if (token.empty() || token.size() > text.size()) {
    return false;
  }
  std::transform(token.begin(), token.end(), text.begin(),
                 [](char c) { return c == 'D' || c == 'd' ? 'E' : c; });
  const char* const text_end = text.data() + token.size();
  const auto [after, failure] = std::from_chars(text.data(), text_end, value);
  return after == text_end && failure == std::errc{};
}

// The text behind "key =" in a line of options in upper case; none if the line has no such key.
std::optional<std::string_view> option_text(std::string_view line, std::string_view key) {
  for (std::size_t place = line.find(key); place != std::string_view::npos;
       place = line.find(key, place + 1)) {
    if (place > 0 && !is_separator(line[place - 1])) {
      continue;
    }
    const std::string_view behind = trimmed(line.substr(place + key.size()));
    if (behind.starts_with('=')) {
      return trimmed(behind.substr(1));
    }
  }
  return std::nullopt;
}

std::string option_token(std::string_view line, std::string_view key) {
  std::string_view text = option_text(line, key).value_or(std::string_view());
  std::string token(next_token(text));
  std::erase(token, '"');
  return token.find('=') == std::string::npos ? token : std::string();  // "Z= AZM=0": nothing stands behind Z
}

double option_number(std::string_view line, std::string_view key) {
  const double value = numeric_value(option_token(line, key));
  return std::isfinite(value) ? value : 0.0;
}

std::string value_count(std::size_t count) {
  return std::to_string(count) + (count == 1 ? " value" : " values");
}

}  // namespace

void EdiSection::clear() {
  line_number = 0;
  SECTID.reset();
  local_hx.reset();
  frequencies.clear();
  for (auto& element : elements) {
    for (EdiValues& quantity : element) {
      quantity.present = false;
      quantity.values.clear();
    }
  }
}

EdiMtParser::EdiMtParser(LineReader& reader, FileReport& report) : reader_(reader), report_(report) {
  read_head();
}

// The next line that is neither blank nor a comment.
bool EdiMtParser::next_line() {
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

bool EdiMtParser::skip_to_tag() {
  while (next_line()) {
    if (at_tag()) {
      return true;
    }
  }
  return false;
}

void EdiMtParser::read_head() {
  while (skip_to_tag()) {
    const std::string tag = tag_name(line_);
    if (tag == "=MTSECT") {
      section_follows_ = has_sections_ = true;
      break;
    }
    if (tag == "HMEAS" || tag == "EMEAS") {
      add_channel(upper_case(line_), tag == "HMEAS");
    }
  }
  mark_local_channels();
}

void EdiMtParser::add_channel(const std::string& line, bool magnetic) {
  EdiChannel channel;
  channel.ID = option_token(line, "ID");
  channel.CHTYPE = option_token(line, "CHTYPE");
  channel.X = option_number(line, "X");
  channel.Y = option_number(line, "Y");
  channel.Z = option_number(line, "Z");
  if (magnetic) {
    channel.AZM = option_number(line, "AZM");
    channel.is_local = !reference_id_.empty() && numeric_value(channel.ID) == numeric_value(reference_id_);
    if (!channel.is_local) {
      reference_id_ = channel.ID;
    }
  }
  channels_.push_back(std::move(channel));
}

// The channels of the station itself come first, up to its electric ones; the remote reference follows.
void EdiMtParser::mark_local_channels() {
  const auto last_electric =
      std::find_if(channels_.rbegin(), channels_.rend(),
                   [](const EdiChannel& channel) { return channel.CHTYPE.starts_with('E'); });
  if (last_electric == channels_.rend()) {
    return;
  }
  const auto first_remote = last_electric.base();
  std::for_each(channels_.begin(), first_remote, [](EdiChannel& channel) { channel.is_local = true; });
  std::for_each(first_remote, channels_.end(), [](EdiChannel& channel) { channel.is_local = false; });
}

bool EdiMtParser::next_section(EdiSection& section) {
  section.clear();
  if (!section_follows_) {
    return false;
  }
  section_follows_ = false;
  ++section_number_;
  section.line_number = reader_.line_number();
  expected_ = unknown_count;
  has_frequencies_ = false;
  tags_seen_ = 0;
  if (!read_section_head(section)) {
    fail_in_section("in its head");
    return false;
  }
  if (!read_blocks(section)) {
    return false;
  }
  finish_section(section);
  return true;
}

bool EdiMtParser::read_section_head(EdiSection& section) {
  while (next_line()) {
    if (at_tag()) {
      return true;
    }
    read_head_line(section, upper_case(trimmed(line_)));
  }
  return false;
}

void EdiMtParser::read_head_line(EdiSection& section, const std::string& line) {
  if (const auto text = option_text(line, "SECTID")) {
    std::string_view id = *text;
    if (id.starts_with('"')) {
      id = id.substr(1, id.find('"', 1) - 1);
    }
    section.SECTID = std::string(id);
  }
  if (const auto text = option_text(line, "NFREQ")) {
    read_count(*text);
  }
  if (line.front() == 'H' || line.front() == 'E') {
    const std::size_t equals = line.find('=');
    std::string_view rest =
        equals == std::string::npos ? std::string_view() : trimmed(std::string_view(line).substr(equals + 1));
    const std::string_view id = next_token(rest);
    const auto channel = std::find_if(channels_.begin(), channels_.end(),
                                      [&](const EdiChannel& c) { return !id.empty() && c.ID == id; });
    if (channel != channels_.end() && channel->is_local && channel->CHTYPE == "HX") {
      section.local_hx = *channel;
    }
  }
}

void EdiMtParser::read_count(std::string_view text) {
  const std::string_view token = next_token(text);
  const double count = std::trunc(numeric_value(token));
  // Each value takes two bytes at least; a larger count is damage and must not decide how much is allocated.
  const double most = static_cast<double>(reader_.file_size()) / 2.0 + 1.0;
  if (token.empty() || !(token.front() >= '0' && token.front() <= '9') || count > most) {
    remark_unreadable(
        report_, reader_.line_number(),
        "NFREQ=" + in_quotes(token) + " is not a count; the values of >FREQ are counted instead");
    return;
  }
  expected_ = static_cast<std::size_t>(count);
}

// The current line is a tag line. False if the file ends inside a block.
bool EdiMtParser::read_blocks(EdiSection& section) {
  while (true) {
    const std::string name = tag_name(line_);
    const EdiTag* const tag = find_edi_tag(name);
    if (tag != nullptr && tag->kind == EdiTagKind::section) {
      section_follows_ = true;
      return true;
    }
    if (tag != nullptr && tag->kind == EdiTagKind::end_of_file) {
      if (next_line()) {
        remark_ignored(report_, reader_.line_number(), "lines behind >END are not read");
      }
      return true;
    }
    if (name.starts_with('=')) {
      remark_ignored(report_, reader_.line_number(), ">" + text_from_field_file(name) + " is not read");
      skip_to_section();
      return true;
    }
    bool more = false;
    if (tag == nullptr) {
      const std::int64_t tag_line = reader_.line_number();
      more = skip_to_tag();
      if (!more && reader_.line_number() == tag_line && is_cut_edi_tag(name)) {
        fail_in_section("inside tag >" + name);
        return false;
      }
      remark_ignored(report_, tag_line,
                     "block >" + text_from_field_file(name.substr(0, 40)) + " is not used");
    } else {
      const std::size_t mark = tag->index;
      if ((tags_seen_ >> mark & 1U) != 0) {
        remark_ignored(report_, reader_.line_number(),
                       "block >" + name + " comes again; the later one is used");
      }
      tags_seen_ |= std::uint64_t{1} << mark;
      const AfterBlock after = read_block(section, *tag);
      if (after == AfterBlock::cut) {
        return false;
      }
      more = after == AfterBlock::tag_line;
    }
    if (!more && !has_frequencies_) {
      fail_in_section("before block >FREQ");
      return false;
    }
    if (!more) {
      remark_unreadable(report_, reader_.line_number(), "the file ends without >END");
      return true;
    }
  }
}

EdiMtParser::AfterBlock EdiMtParser::read_block(EdiSection& section, const EdiTag& tag) {
  const std::int64_t first_line = reader_.line_number();
  const std::string name = ">" + std::string(tag.name);
  std::size_t count = 0;
  AfterBlock after = AfterBlock::tag_line;
  if (tag.kind == EdiTagKind::discarded) {
    after = skip_values(count);
  } else {
    scratch_.clear();
    after = read_values(scratch_);
    count = scratch_.size();
  }
  if (tag.kind == EdiTagKind::frequencies) {
    has_frequencies_ = true;
  }
  const bool count_known = expected_ != unknown_count;
  const bool short_of_values =
      count_known ? count < expected_ : has_frequencies_ && count < section.frequencies.size();
  if (after == AfterBlock::end_of_file &&
      (short_of_values || (!count_known && tag.kind == EdiTagKind::frequencies))) {
    fail_in_section("inside block " + name + " of line " + std::to_string(first_line));
    return AfterBlock::cut;
  }
  if (count_known && short_of_values && tag.kind != EdiTagKind::discarded) {
    remark_unreadable(report_, first_line,
                      "block " + name + " has " + std::to_string(count) + " of " + value_count(expected_) +
                          "; the rest is absent");
    scratch_.resize(expected_, no_data);
  }
  if (tag.kind == EdiTagKind::frequencies) {
    section.frequencies.swap(scratch_);
  } else if (tag.kind == EdiTagKind::values) {
    if (tag.second != quantity_count) {
      section.get(tag.element, tag.second).present = true;
      section.get(tag.element, tag.second).values = scratch_;
    }
    section.get(tag.element, tag.first).present = true;
    section.get(tag.element, tag.first).values.swap(scratch_);
  }
  return after;
}

EdiMtParser::AfterBlock EdiMtParser::read_values(std::vector<float>& values) {
  const std::string name = tag_name(line_);
  const std::int64_t first_line = reader_.line_number();
  std::size_t surplus = 0;
  if (expected_ != unknown_count) {
    values.reserve(expected_);
  }
  AfterBlock after = AfterBlock::end_of_file;
  while (next_line()) {
    if (at_tag()) {
      after = AfterBlock::tag_line;
      break;
    }
    take_values(values, surplus);
  }
  if (surplus > 0) {
    remark_ignored(
        report_, first_line,
        value_count(surplus) + " of block >" + name + " beyond the count of " + std::to_string(expected_));
  }
  return after;
}

// The values of blocks that are not used are counted, to know whether the file was cut inside one.
EdiMtParser::AfterBlock EdiMtParser::skip_values(std::size_t& count) {
  while (next_line()) {
    if (at_tag()) {
      return AfterBlock::tag_line;
    }
    count += count_tokens(line_);
  }
  return AfterBlock::end_of_file;
}

void EdiMtParser::take_values(std::vector<float>& values, std::size_t& surplus) {
  const char* place = line_.data();
  const char* const line_end = place + line_.size();
  while ((place = skip_separators(place, line_end)) != line_end) {
    if (values.size() == expected_) {
      surplus += count_tokens({place, static_cast<std::size_t>(line_end - place)});
      return;
    }
    double value = 0.0;
    const auto [after, failure] = std::from_chars(place, line_end, value);
    if (failure == std::errc{} && (after == line_end || is_separator(*after)) && std::isfinite(value)) {
      values.push_back(single_or_absent(value));
      place = after;
    } else {
      place = take_odd_value(place, line_end, values);
    }
  }
}

// Takes an item that is not simply a decimal number, and says what became of it.
const char* EdiMtParser::take_odd_value(const char* place, const char* line_end, std::vector<float>& values) {
  const char* const after = token_end(place, line_end);
  const std::string_view token(place, static_cast<std::size_t>(after - place));
  double value = 0.0;
  if (read_fortran_number(token, value) && std::isfinite(value)) {
    values.push_back(single_or_absent(value));
    return after;
  }
  const std::string letters = upper_case(token.substr(token.find_first_not_of("+-") == 1 ? 1 : 0));
  if (letters.starts_with("NAN") || letters.starts_with("INF")) {
    remark_unreadable(report_, reader_.line_number(), in_quotes(token) + " is not a number, taken as absent");
    values.push_back(no_data);
    return after;
  }
  value = numeric_value(token);  // an infinity if it is too large
  if (!is_numeric(token) && !std::isinf(value)) {
    remark_unreadable(report_, reader_.line_number(),
                      in_quotes(token) + " is not a number, taken as " + plain_text(value));
  }
  values.push_back(single_or_absent(value));
  return after;
}

// Passes over a section of another kind.
void EdiMtParser::skip_to_section() {
  while (skip_to_tag()) {
    const EdiTag* const tag = find_edi_tag(tag_name(line_));
    if (tag != nullptr && tag->kind == EdiTagKind::section) {
      section_follows_ = true;
      return;
    }
    if (tag != nullptr && tag->kind == EdiTagKind::end_of_file) {
      return;
    }
  }
}

// Brings all arrays to the length of the frequencies.
void EdiMtParser::finish_section(EdiSection& section) {
  if (!has_frequencies_) {
    remark_unreadable(report_, section.line_number,
                      "the section has no >FREQ block: its readings have no frequencies");
    section.frequencies.clear();
  }
  const std::size_t count = section.frequencies.size();
  for (auto& element : section.elements) {
    for (EdiValues& quantity : element) {
      if (quantity.present && quantity.values.size() != count) {
        if (has_frequencies_) {
          remark_unreadable(report_, section.line_number,
                            "a block of the section has " + value_count(quantity.values.size()) + " for " +
                                std::to_string(count) + " frequencies");
        }
        quantity.values.resize(count, no_data);
      }
    }
  }
}

void EdiMtParser::fail_in_section(std::string_view place) {
  report_.failure = "the file ends " + std::string(place) + "; section " + std::to_string(section_number_) +
                    " is not stored";
}

}  // namespace Module_data_file
