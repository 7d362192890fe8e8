#include "formats/zonge/zonge_raw_table.h"

#include <algorithm>

#include "formats/zonge/zonge_raw_header.h"
#include "formats/zonge/zonge_raw_values.h"

namespace formats::zonge {

namespace {

bool is_channel_word(const RawToken& token) {
  return token.upper == "CH" || token.upper == "CHN" || token.upper.starts_with("CHAN");
}

}  // namespace

ZongeChannelTable::Column ZongeChannelTable::column_of(const RawToken& token) {
  const std::string_view word = token.upper;
  if (is_channel_word(token)) {
    return Column::channel;
  }
  if (word.starts_with("NAME") || word.starts_with("COMP")) {
    return Column::name;
  }
  if (word == "STN" || word.starts_with("STAT")) {
    return Column::station;
  }
  if (word.starts_with("GAIN")) {
    return Column::gain;
  }
  if (word.starts_with("NOTCH")) {
    return Column::notch;
  }
  if (word == "S/N" || word == "SNR") {
    return Column::signal_to_noise;
  }
  return word.starts_with("PASS") ? Column::passed : Column::other;
}

bool ZongeChannelTable::take(const RawLine& line, ZongeBlock& block) {
  const auto& tokens = line.tokens();
  const auto channel_word = std::ranges::find_if(tokens, is_channel_word);
  const bool any_numbers = std::ranges::any_of(tokens, [](const RawToken& token) { return token.is_number; });
  if (channel_word != tokens.end() && !any_numbers) {
    take_heading(line);
    return true;
  }
  if (channel_word == tokens.begin() && tokens.size() > 1) {
    take_keywords(line, block);
    return true;
  }
  constexpr std::size_t tokens_beside_name = 3;  // "8 Hz" alone is a frequency
  if (!columns_.empty() && !has_keyword(line) && tokens.size() > 1 &&
      (tokens.size() >= tokens_beside_name || !begins_with_frequency(line))) {
    take_row(line, block);
    return true;
  }
  columns_.clear();
  return false;
}

// A heading without columns of an input's set-up is that of the data, whose order is fixed.
void ZongeChannelTable::take_heading(const RawLine& line) {
  columns_.clear();
  bool of_inputs = false;
  for (const RawToken& token : line.tokens()) {
    columns_.push_back(column_of(token));
    of_inputs = of_inputs || columns_.back() == Column::notch || columns_.back() == Column::signal_to_noise ||
                columns_.back() == Column::passed || columns_.back() == Column::gain;
    if (token.upper.starts_with("MAG") || token.upper.starts_with("RES")) {
      columns_.clear();
      return;
    }
  }
  if (!of_inputs) {
    columns_.clear();
  }
}

void ZongeChannelTable::take_row(const RawLine& line, ZongeBlock& block) {
  const auto at = static_cast<std::size_t>(std::ranges::find(columns_, Column::channel) - columns_.begin());
  if (at >= line.size()) {
    account_.fault(block, "Channel Number is invalid ", "", line.number());
    return;
  }
  const std::int32_t channel = channel_number(line, line[at], block, account_);
  if (channel == 0) {
    return;
  }
  for (std::size_t index = 0; index < std::min(columns_.size(), line.size()); ++index) {
    take_value(columns_[index], line[index], channel, line, block);
  }
}

void ZongeChannelTable::take_keywords(const RawLine& line, ZongeBlock& block) {
  const std::int32_t channel = channel_number(line, line[1], block, account_);
  if (channel == 0) {
    return;
  }
  for (std::size_t index = 2; index < line.size(); ++index) {
    const Column column = column_of(line[index]);
    if (column != Column::other && column != Column::channel && index + 1 < line.size()) {
      take_value(column, line[++index], channel, line, block);
    } else if (!component_name(line[index]).empty()) {
      take_value(Column::name, line[index], channel, line, block);
    }
  }
}

void ZongeChannelTable::take_value(Column column, const RawToken& token, std::int32_t channel,
                                   const RawLine& line, ZongeBlock& block) {
  ZongeInput& input = survey_.inputs[static_cast<std::size_t>(channel)];
  const auto require_number = [&](std::string_view text) {
    if (!token.is_number) {
      account_.fault(block, text, token.text, line.number());
    }
    return token.is_number;
  };
  switch (column) {
    case Column::name:
      input.name = component_name(token);
      break;
    case Column::station:
      if (require_number("Station is invalid ")) {
        input.station = token.number;
      }
      break;
    case Column::gain:
      if (require_number("Gain value is invalid ")) {
        take_gain(channel, token.number, survey_, account_);
      }
      break;
    case Column::signal_to_noise:
      (void)require_number("S/N is invalid ");
      break;
    case Column::passed:
      (void)require_number("Passed is invalid ");
      break;
    default:
      break;
  }
}

}  // namespace formats::zonge
