#include "formats/edi/edi_parser.h"

#include <algorithm>
#include <cmath>

#include "core/absent_value.h"
#include "core/number_text.h"
#include "core/text_fields.h"
#include "formats/edi/edi_tags.h"
#include "formats/field_values.h"
#include "formats/file_report.h"

namespace formats::edi {

namespace {

std::string value_count(std::size_t count) {
  return std::to_string(count) + (count == 1 ? " value" : " values");
}

void take_singles(const std::vector<double>& numbers, std::vector<float>& values) {
  values.resize(numbers.size());
  std::ranges::transform(numbers, values.begin(), [](double number) { return static_cast<float>(number); });
}

void take_rests(const std::vector<double>& numbers, EdiValues& quantity) {
  quantity.rests.resize(numbers.size());
  std::ranges::transform(numbers, quantity.values, quantity.rests.begin(), [](double number, float value) {
    return static_cast<float>(number - static_cast<double>(value));
  });
}

}  // namespace

EdiMtParser::EdiMtParser(LineReader& reader, FileReport& report) : lines_(reader), report_(report) {
  has_sections_ = find_first_section(lines_, [this](InfoText& info) {
    channels_ = {};
    place_ = {};
    return find_section(info);
  });
  section_follows_ = has_sections_;
  channels_.mark_local();
}

// Reads the head up to the first section. False at the end of the file.
bool EdiMtParser::find_section(InfoText& info) {
  while (lines_.next()) {
    const std::string tag = lines_.at_tag() ? tag_name(lines_.line()) : std::string();
    if (lines_.at_tag() && info.holds(tag)) {
      continue;
    }
    if (tag == "=MTSECT") {
      return true;
    }
    place_.take_line(lines_.line(), lines_.line_number());
    if (lines_.at_tag()) {
      channels_.take(upper_case(lines_.line()), tag);
    }
  }
  return false;
}

bool EdiMtParser::next_section(EdiSection& section) {
  section.clear();
  if (!section_follows_) {
    return false;
  }
  section_follows_ = false;
  ++section_number_;
  section.line_number = lines_.line_number();
  expected_ = unknown_count;
  has_frequencies_ = false;
  tags_seen_ = 0;
  blocks_ = 0;
  if (!read_section_head(section)) {
    fail_in_section("the file ends in its head");
    return false;
  }
  if (!read_blocks(section)) {
    return false;
  }
  finish_section(section);
  return true;
}

bool EdiMtParser::read_section_head(EdiSection& section) {
  while (lines_.next()) {
    if (lines_.at_tag()) {
      return true;
    }
    read_head_line(section, trimmed(lines_.line()));
  }
  return false;
}

void EdiMtParser::read_head_line(EdiSection& section, std::string_view as_written) {
  const std::string line = upper_case(as_written);
  if (auto id = sectid_option(as_written)) {
    section.SECTID = std::move(id);
  }
  if (const auto text = option_text(line, "NFREQ")) {
    read_count(*text);
  }
  if (line.front() == 'H' || line.front() == 'E' || line.front() == 'R') {
    read_channels(section, line);
  }
}

void EdiMtParser::read_channels(EdiSection& section, std::string_view line) {
  for (const NamedChannel& named : named_channels(line)) {
    if (named.ID.empty()) {
      continue;
    }
    const EdiChannel* const channel = find_channel(channels_.all(), named.ID);
    if (channel == nullptr) {
      remark_unreadable(report_, lines_.line_number(), undefined_channel_text(named));
    } else if (channel->is_local && channel->CHTYPE == "HX" && !named.keyword.starts_with('R')) {
      section.local_hx = *channel;
    }
  }
}

void EdiMtParser::read_count(std::string_view text) {
  const std::string_view token = next_token(text);
  const double count = std::trunc(numeric_value(token));
  // Each value takes two bytes at least; a larger count is damage and must not decide how much is allocated.
  const double most = static_cast<double>(lines_.file_size()) / 2.0 + 1.0;
  if (token.empty() || !(token.front() >= '0' && token.front() <= '9') || count < 1.0 || count > most) {
    remark_unreadable(
        report_, lines_.line_number(),
        "NFREQ=" + in_quotes(token) + " is not a count; the values of >FREQ are counted instead");
    return;
  }
  expected_ = static_cast<std::size_t>(count);
}

// The current line is a tag line. False if the file ends inside a block.
bool EdiMtParser::read_blocks(EdiSection& section) {
  while (true) {
    const std::string name = tag_name(lines_.line());
    const EdiTag* const tag = find_edi_tag(name);
    if (tag != nullptr && tag->kind == EdiTagKind::section) {
      section_follows_ = true;
      return true;
    }
    if (tag != nullptr && tag->kind == EdiTagKind::end_of_file) {
      if (lines_.next()) {
        remark_ignored(report_, lines_.line_number(), "lines behind >END are not read");
      }
      return true;
    }
    if (name.starts_with('=')) {
      remark_ignored(report_, lines_.line_number(), ">" + text_from_field_file(name) + " is not read");
      skip_to_section();
      return true;
    }
    bool more = false;
    if (tag == nullptr) {
      const std::int64_t tag_line = lines_.line_number();
      more = lines_.skip_to_tag();
      if (!more && lines_.line_number() == tag_line && is_cut_edi_tag(name)) {
        fail_in_section("the file ends inside tag >" + name);
        return false;
      }
      remark_ignored(report_, tag_line,
                     "block >" + text_from_field_file(name.substr(0, 40)) + " is not used");
    } else {
      const std::size_t mark = tag->index;
      // A block of the tipper goes by several names.
      const bool has_tipper =
          tag->kind == EdiTagKind::tipper && section.get(tag->tipper, tag->quantity).present;
      if ((tags_seen_ >> mark & 1U) != 0 || has_tipper) {
        remark_ignored(report_, lines_.line_number(),
                       "block >" + name + " comes again; the later one is used");
      }
      tags_seen_ |= std::uint64_t{1} << mark;
      const AfterBlock after = read_block(section, *tag);
      if (after == AfterBlock::failed) {
        return false;
      }
      more = after == AfterBlock::tag_line;
    }
    if (!more && !has_frequencies_) {
      fail_in_section("the file ends before block >FREQ");
      return false;
    }
    if (!more) {
      remark_unreadable(report_, lines_.line_number(), "the file ends without >END");
      return true;
    }
  }
}

EdiMtParser::AfterBlock EdiMtParser::read_block(EdiSection& section, const EdiTag& tag) {
  const std::int64_t first_line = lines_.line_number();
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
  if (after == AfterBlock::failed) {
    return after;
  }
  if (tag.kind == EdiTagKind::frequencies) {
    has_frequencies_ = true;
  }
  const bool count_known = expected_ != unknown_count;
  const bool short_of_values =
      count_known ? count < expected_ : has_frequencies_ && count < section.frequencies.size();
  if (after == AfterBlock::end_of_file &&
      (short_of_values || (!count_known && tag.kind == EdiTagKind::frequencies))) {
    fail_in_section("the file ends inside block " + name + " of line " + std::to_string(first_line));
    return AfterBlock::failed;
  }
  if (count_known && short_of_values && tag.kind != EdiTagKind::discarded) {
    remark_unreadable(report_, first_line,
                      "block " + name + " has " + std::to_string(count) + " of " + value_count(expected_) +
                          (has_lost_bytes_ ? "; NUL bytes took line ends with them, so all of it is absent"
                                           : "; the rest is absent"));
    if (has_lost_bytes_) {
      scratch_.clear();
    }
    scratch_.resize(expected_, no_data);
  }
  take_block(section, tag);
  return after;
}

// Puts the values that were read last in their place.
void EdiMtParser::take_block(EdiSection& section, const EdiTag& tag) {
  const auto put = [&](EdiValues& quantity, bool is_calculated_with) {
    quantity.present = true;
    quantity.block = ++blocks_;
    take_singles(scratch_, quantity.values);
    if (is_calculated_with) {
      take_rests(scratch_, quantity);
    }
  };
  switch (tag.kind) {
    case EdiTagKind::frequencies:
      take_singles(scratch_, section.frequencies);
      break;
    case EdiTagKind::values:
      put(section.get(tag.element, tag.quantity),
          tag.quantity == quantity_phase || tag.quantity == quantity_resistivity_error);
      break;
    case EdiTagKind::tipper:
      put(section.get(tag.tipper, tag.quantity), tag.quantity == quantity_variance);
      break;
    case EdiTagKind::impedance_rotation:
      take_singles(scratch_, section.ZROT);
      break;
    case EdiTagKind::tipper_rotation:
      take_singles(scratch_, section.TROT);
      break;
    default:
      break;
  }
}

EdiMtParser::AfterBlock EdiMtParser::read_values(std::vector<double>& values) {
  const std::string name = tag_name(lines_.line());
  const std::int64_t first_line = lines_.line_number();
  std::size_t surplus = 0;
  if (expected_ != unknown_count) {
    values.reserve(expected_);
  }
  // Where the count isn't known, the numbers of >FREQ alone tell whether commas stand for points.
  const bool is_counted = expected_ == unknown_count && name == "FREQ";
  AfterBlock after = AfterBlock::end_of_file;
  has_lost_bytes_ = false;
  while (lines_.next()) {
    if (lines_.at_tag()) {
      after = AfterBlock::tag_line;
      break;
    }
    if (is_counted) {
      look_for_decimal_comma();
    }
    has_lost_bytes_ = has_lost_bytes_ || lines_.has_lost_bytes();
    take_values(values, surplus);
    if (!decimal_comma_.empty()) {
      fail_in_section(in_quotes(decimal_comma_) + " in line " + std::to_string(lines_.line_number()) +
                      " has a decimal comma, where these files have points");
      return AfterBlock::failed;
    }
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
  while (lines_.next()) {
    if (lines_.at_tag()) {
      return AfterBlock::tag_line;
    }
    count += count_items(lines_.line());
  }
  return AfterBlock::end_of_file;
}

void EdiMtParser::take_values(std::vector<double>& values, std::size_t& surplus) {
  const char* place = lines_.line().data();
  const char* const line_end = place + lines_.line().size();
  while ((place = skip_separators(place, line_end)) != line_end) {
    if (values.size() == expected_) {
      if (surplus == 0) {
        look_for_decimal_comma();  // each of them comes as two values
      }
      surplus += count_items({place, static_cast<std::size_t>(line_end - place)});
      return;
    }
    double value = 0.0;
    place = take_value(place, line_end, value, report_, lines_.line_number());
    values.push_back(value);
  }
}

void EdiMtParser::look_for_decimal_comma() { decimal_comma_ = decimal_comma_number(lines_.line()); }

// Skips a section of another kind.
void EdiMtParser::skip_to_section() {
  while (lines_.skip_to_tag()) {
    const EdiTag* const tag = find_edi_tag(tag_name(lines_.line()));
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
  remark_on_frequencies(section.frequencies, section.line_number, report_);
  for (auto& element : section.elements) {
    std::ranges::for_each(element, [&](EdiValues& quantity) { fit_to_frequencies(quantity, section); });
  }
  for (auto& element : section.tipper) {
    std::ranges::for_each(element, [&](EdiValues& quantity) { fit_to_frequencies(quantity, section); });
  }
}

void EdiMtParser::fit_to_frequencies(EdiValues& quantity, const EdiSection& section) {
  const std::size_t count = section.frequencies.size();
  if (!quantity.present || quantity.values.size() == count) {
    return;
  }
  if (has_frequencies_) {
    remark_unreadable(report_, section.line_number,
                      "a block of the section has " + value_count(quantity.values.size()) + " for " +
                          std::to_string(count) + " frequencies");
  }
  quantity.values.resize(count, no_data);
  if (!quantity.rests.empty()) {
    quantity.rests.resize(count, 0.0F);
  }
}

void EdiMtParser::fail_in_section(std::string_view reason) {
  report_.failure = std::string(reason) + "; section " + std::to_string(section_number_) + " is not stored";
}

}  // namespace formats::edi
