#include "formats/edi/edi_spectra_parser.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "core/absent_value.h"
#include "core/number_text.h"
#include "core/text_fields.h"
#include "formats/edi/edi_tags.h"
#include "formats/field_values.h"
#include "formats/file_report.h"

namespace formats::edi {

namespace {

constexpr double most_channels = 1000.0;  // a larger NCHAN is damage; stations have five to ten

bool begins_section(std::string_view tag) { return tag.starts_with("=SPEC"); }

bool ends_file(std::string_view tag) { return tag == "END"; }

std::size_t whole_count(std::string_view text, double most) {
  const double count = std::trunc(numeric_value(text));
  return count >= 0.0 && count <= most ? static_cast<std::size_t>(count) : 0;
}

std::string_view without_count(std::string_view line) { return line.substr(0, line.find("//")); }

}  // namespace

EdiSpectraParser::EdiSpectraParser(LineReader& reader, FileReport& report) : lines_(reader), report_(report) {
  has_sections_ = find_first_section(lines_, [this](InfoText& info) {
    channels_ = {};
    place_ = {};
    return find_section(info);
  });
  at_end_ = !has_sections_;
  channels_.mark_local();
}

// Reads the head up to the first section. False at the end of the file.
bool EdiSpectraParser::find_section(InfoText& info) {
  while (lines_.next()) {
    const std::string tag = lines_.at_tag() ? tag_name(lines_.line()) : std::string();
    if (lines_.at_tag() && info.holds(tag)) {
      continue;
    }
    if (begins_section(tag)) {
      return true;
    }
    place_.take_line(lines_.line(), lines_.line_number());
    if (lines_.at_tag()) {
      channels_.take(upper_case(lines_.line()), tag);
    }
  }
  return false;
}

// Goes on from the current line to the tag of a section.
bool EdiSpectraParser::go_to_section() {
  while (!at_end_) {
    if (lines_.at_tag()) {
      const std::string tag = tag_name(lines_.line());
      if (begins_section(tag)) {
        return true;
      }
      if (ends_file(tag)) {
        if (lines_.next()) {
          remark_ignored(report_, lines_.line_number(), "lines behind >END are not read");
        }
        at_end_ = true;
        return false;
      }
      if (tag.starts_with('=')) {
        remark_ignored(report_, lines_.line_number(), ">" + text_from_field_file(tag) + " is not read");
      }
    }
    at_end_ = !lines_.skip_to_tag();
  }
  return false;
}

bool EdiSpectraParser::next_section(SpectraSection& section) {
  SpectraBlock skipped;
  while (section_number_ > 0 && next_block(skipped)) {
  }
  section = {};
  if (is_cut_ || !go_to_section()) {
    return false;
  }
  section.number = ++section_number_;
  section.line_number = lines_.line_number();
  named_.clear();
  in_id_list_ = false;
  channel_count_ = 0;
  if (!read_section_head(section)) {
    fail_in_section("the file ends in its head");
    return false;
  }
  close_section_head(section);
  return true;
}

bool EdiSpectraParser::read_section_head(SpectraSection& section) {
  while (lines_.next()) {
    if (lines_.at_tag()) {
      return true;
    }
    const std::string_view as_written = trimmed(lines_.line());
    const std::string line = upper_case(as_written);
    if (line.starts_with("//")) {
      in_id_list_ = true;
      std::string_view rest = std::string_view(line).substr(2);
      next_token(rest);  // their count; the ids themselves are counted
      read_ids(rest);
    } else if (line.find('=') == std::string::npos) {
      if (in_id_list_) {
        read_ids(line);
      }
    } else {
      read_options(as_written, line, section);
    }
  }
  return false;
}

void EdiSpectraParser::read_ids(std::string_view text) {
  for (std::string_view id = next_token(text); !id.empty(); id = next_token(text)) {
    named_.push_back({"", std::string(id)});
  }
}

void EdiSpectraParser::read_options(std::string_view as_written, const std::string& line,
                                    SpectraSection& section) {
  if (auto id = sectid_option(as_written)) {
    section.SECTID = std::move(id);
    return;
  }
  section.NFREQ = option_text(line, "NFREQ") ? whole_count(option_item(line, "NFREQ"), 1e9) : section.NFREQ;
  if (option_text(line, "NCHAN")) {
    channel_count_ = whole_count(option_item(line, "NCHAN"), most_channels);
  }
  for (NamedChannel& channel : named_channels(line)) {
    named_.push_back(std::move(channel));
  }
}

void EdiSpectraParser::close_section_head(SpectraSection& section) {
  if (channel_count_ != 0 && channel_count_ != named_.size()) {
    remark_unreadable(report_, section.line_number,
                      "NCHAN=" + std::to_string(channel_count_) + ", but the section names " +
                          std::to_string(named_.size()) + " channels");
  }
  channel_count_ = std::max(channel_count_, named_.size());
  section.channel_count = channel_count_;
  section.roles = find_roles(named_, channels_.all());
  for (const NamedChannel& channel : section.roles.undefined) {
    remark_unreadable(report_, section.line_number, undefined_channel_text(channel));
  }
  section.local_hx = section.roles.local_hx;
}

bool EdiSpectraParser::next_block(SpectraBlock& block) {
  while (!at_end_ && !is_cut_) {
    const std::string tag = tag_name(lines_.line());
    if (tag == "SPECTRA") {
      read_block_options(block);
      read_matrix(block);
      return !is_cut_;
    }
    if (tag.starts_with('=') || ends_file(tag)) {
      return false;
    }
    remark_ignored(report_, lines_.line_number(),
                   "block >" + text_from_field_file(tag.substr(0, 40)) + " is not used");
    at_end_ = !lines_.skip_to_tag();
    if (at_end_) {
      remark_unreadable(report_, lines_.line_number(), "the file ends without >END");
    }
  }
  return false;
}

void EdiSpectraParser::read_block_options(SpectraBlock& block) {
  const std::string whole = upper_case(lines_.line());
  const std::string_view line = without_count(whole);
  block.line_number = lines_.line_number();
  const std::string item = option_item(line, "FREQ");
  double frequency = no_data;
  if (!item.empty()) {
    take_value(item.data(), item.data() + item.size(), frequency, report_, block.line_number);
  }
  block.has_FREQ = !is_absent(frequency);
  block.FREQ = block.has_FREQ ? frequency : 0.0;
  block.ROTSPEC = option_number(line, "ROTSPEC");
  const std::string rotation = option_item(line, "ROTSPEC");
  if (!rotation.empty() && !(is_numeric(rotation) && std::isfinite(numeric_value(rotation)))) {
    remark_unreadable(
        report_, block.line_number,
        "ROTSPEC=" + in_quotes(rotation) + " is not a number, taken as " + plain_text(block.ROTSPEC));
  }
  block.AVGT = 0.0;
  block.invalid_AVGT.reset();
  if (option_text(line, "AVGT")) {
    const std::string text = option_item(line, "AVGT");
    const double averages = numeric_value(text);
    if (is_numeric(text) && averages >= 0.0 && std::isfinite(averages)) {
      block.AVGT = averages;
    } else {
      block.invalid_AVGT = text;
    }
  }
}

bool EdiSpectraParser::read_values(std::size_t expected, std::vector<double>& values, std::size_t& surplus) {
  at_end_ = true;
  while (lines_.next()) {
    if (lines_.at_tag()) {
      at_end_ = false;
      break;
    }
    if (lines_.line().starts_with("//")) {
      continue;  // the count of values, on a line of its own
    }
    const char* place = lines_.line().data();
    const char* const line_end = place + lines_.line().size();
    while ((place = skip_separators(place, line_end)) != line_end) {
      if (values.size() == expected) {
        const std::string_view comma = surplus == 0 ? decimal_comma_number(lines_.line()) : "";
        if (!comma.empty() && expected > 0) {
          fail_in_section(in_quotes(comma) + " in line " + std::to_string(lines_.line_number()) +
                          " has a decimal comma, where these files have points");
          return false;
        }
        surplus += count_items({place, static_cast<std::size_t>(line_end - place)});
        break;
      }
      place = take_value(place, line_end, values.emplace_back(), report_, lines_.line_number());
    }
  }
  return true;
}

void EdiSpectraParser::read_matrix(SpectraBlock& block) {
  const std::size_t expected = channel_count_ * channel_count_;
  std::size_t surplus = 0;
  block.matrix.clear();
  if (!read_values(expected, block.matrix, surplus)) {
    return;
  }
  const bool all_there = std::ranges::none_of(block.matrix, is_absent);
  const std::size_t count = block.matrix.size();
  block.complete = all_there && count == expected;
  if (at_end_ && count < expected) {
    fail_in_section("the file ends inside block >SPECTRA of line " + std::to_string(block.line_number));
    return;
  }
  if (at_end_) {
    remark_unreadable(report_, lines_.line_number(), "the file ends without >END");
  }
  if (expected == 0) {
    return;
  }
  if (count < expected) {
    remark_unreadable(report_, block.line_number,
                      "block >SPECTRA has " + std::to_string(count) + " of " + std::to_string(expected) +
                          " values; the frequency is left out");
  } else if (!all_there) {
    remark_unreadable(report_, block.line_number,
                      "block >SPECTRA has absent values; the frequency is left out");
  }
  if (surplus > 0) {
    remark_ignored(report_, block.line_number,
                   std::to_string(surplus) + " values of block >SPECTRA beyond the count of " +
                       std::to_string(expected));
  }
}

void EdiSpectraParser::fail_in_section(const std::string& reason) {
  is_cut_ = true;
  report_.failure = reason + "; section " + std::to_string(section_number_) + " is not stored";
}

}  // namespace formats::edi
