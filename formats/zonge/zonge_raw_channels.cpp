#include "formats/zonge/zonge_raw_channels.h"

#include <algorithm>
#include <cmath>

#include "core/number_text.h"
#include "formats/zonge/zonge_raw_values.h"
#include "numerics/constants.h"

namespace formats::zonge {

namespace {

// Goes along the values of a line; the first one that isn't a number is a fault and ends it.
class Values {
 public:
  Values(const RawLine& line, std::size_t first, ZongeBlock& block, ZongeAccount& account)
      : line_(line), place_(first), block_(block), account_(account) {}

  [[nodiscard]] std::size_t left() const { return line_.size() - std::min(place_, line_.size()); }
  [[nodiscard]] const RawToken& token() const { return line_[place_]; }
  void skip() { ++place_; }

  /// The next token if it is a number; null after a fault, and ever after.
  const RawToken* number(std::string_view fault_text) {
    if (failed_ || left() == 0) {
      return nullptr;
    }
    const RawToken& token = line_[place_++];
    if (!token.is_number) {
      failed_ = true;
      account_.fault(block_, fault_text, token.text, line_.number());
      return nullptr;
    }
    return &token;
  }
  [[nodiscard]] bool failed() const { return failed_; }

 private:
  const RawLine& line_;
  std::size_t place_;
  ZongeBlock& block_;
  ZongeAccount& account_;
  bool failed_ = false;
};

double degrees_of(const RawToken& token) {
  using numerics::degrees_per_radian;
  if (token.unit == "MR" || token.unit == "MRAD") {
    return token.number * degrees_per_radian / 1000.0;
  }
  return token.unit == "RAD" ? token.number * degrees_per_radian : token.number;
}

bool is_input_state(std::string_view word) {
  return word == "I" || word == "IN" || word == "O" || word == "OUT";
}

ZongeChannel* find_channel(ZongeBlock& block, std::int32_t number) {
  const auto found = std::ranges::find(block.channels, number, &ZongeChannel::number);
  return found == block.channels.end() ? nullptr : &*found;
}

// The value of a harmonic: a later line for the same one replaces the earlier.
void set_value(ZongeChannel& channel, const ZongeValue& value) {
  const auto found = std::ranges::find(channel.values, value.harmonic, &ZongeValue::harmonic);
  if (found == channel.values.end()) {
    channel.values.push_back(value);
  } else {
    *found = value;
  }
}

void store_channel(ZongeBlock& block, ZongeChannel read, const ZongeValue& value, ZongeAccount& account) {
  ZongeChannel* channel = find_channel(block, read.number);
  if (channel == nullptr) {
    channel = &block.channels.emplace_back(std::move(read));
  } else {
    if (channel->has_data_line) {
      account.ignored(read.line_number, "channel " + plain_text(read.number) + " stands twice in block " +
                                            plain_text(block.number) + "; the later line holds");
    }
    std::vector<ZongeValue> harmonics = std::move(channel->values);
    *channel = std::move(read);
    channel->values = std::move(harmonics);
  }
  set_value(*channel, value);
}

// A frequency that is a multiple of the base frequency gives a whole number: the rounding of the division
// must not make another harmonic of it.
double harmonic_of(const RawToken& token, const ZongeBlock& block) {
  if (token.unit.empty()) {
    return token.number;
  }
  if (!block.base_frequency) {
    return 0.0;
  }
  constexpr double rounding = 1e-9;
  const double harmonic = number_in_base_units(token) / *block.base_frequency;
  const double whole = std::round(harmonic);
  return std::abs(harmonic - whole) <= rounding * whole ? whole : harmonic;
}

// The channel that harmonics belong to; without a data line of its own it is as the header describes it.
ZongeChannel* channel_of_harmonics(const RawLine& line, std::int32_t number, const std::string& name,
                                   const ZongeSurvey& survey, ZongeBlock& block, ZongeAccount& account) {
  if (ZongeChannel* const known = find_channel(block, number)) {
    return known;
  }
  const ZongeInput& input = survey.inputs[static_cast<std::size_t>(number)];
  if (!input.station) {
    account.fault(block, "Station is invalid ", "", line.number());
    return nullptr;
  }
  ZongeChannel channel;
  channel.number = number;
  channel.name = name.empty() ? input.name : name;
  channel.station = *input.station;
  channel.line_number = line.number();
  return &block.channels.emplace_back(std::move(channel));
}

const char* magnetic_partner(std::string_view name) {
  if (name == "Ex") {
    return "Hy";
  }
  return name == "Ey" ? "Hx" : nullptr;
}

void pair_with_magnetic_field(ZongeBlock& block, ZongeAccount& account) {
  for (ZongeChannel& channel : block.channels) {
    const char* const partner = magnetic_partner(channel.name);
    if (partner == nullptr) {
      continue;
    }
    if (std::ranges::find(block.channels, partner, &ZongeChannel::name) != block.channels.end()) {
      channel.name += partner;
    } else {
      account.say("Channel " + channel.name + " has no matching " + partner +
                  " field on line : " + plain_text(channel.line_number));
    }
  }
}

}  // namespace

void read_data_line(const RawLine& line, ZongeSurvey& survey, ZongeBlock& block, ZongeAccount& account) {
  ZongeChannel channel;
  channel.number = channel_number(line, line[0], block, account);
  channel.line_number = line.number();
  channel.has_data_line = true;
  if (channel.number == 0) {
    return;
  }
  const ZongeInput& input = survey.inputs[static_cast<std::size_t>(channel.number)];
  channel.name = line.size() > 1 ? component_name(line[1]) : std::string();
  Values values(line, channel.name.empty() ? 1 : 2, block, account);
  if (channel.name.empty()) {
    channel.name = input.name;
  }
  // The gain after the resistivity also shows that a line cut short hasn't lost digits of the resistivity.
  constexpr std::size_t values_needed = 5;
  const auto numbers_and_faults = static_cast<std::size_t>(std::ranges::count_if(
      line.tokens(), [](const RawToken& token) { return !is_input_state(token.upper); }));
  if (values.left() < values_needed || numbers_and_faults + values.left() - line.size() < values_needed) {
    account.fault(block, "Reading data line does not contain enough data ", line.text(), line.number());
    return;
  }
  const RawToken* const station = values.number("Station is invalid ");
  (void)values.number("Magnitude value is invalid ");
  const RawToken* const phase = values.number("Phase value is invalid ");
  const RawToken* const resistivity = values.number("Resistivity value is invalid ");
  if (values.left() > 0 && is_input_state(values.token().upper)) {
    values.skip();
  }
  const RawToken* const gain = values.number("Gain value is invalid ");
  for (const char* const text : {"Standard Error value is invalid ", "Self Potential value is invalid ",
                                 "Contact Resistance value is invalid ", "External gain value is invalid "}) {
    (void)values.number(text);
  }
  if (values.failed()) {
    return;
  }
  take_gain(channel.number, gain->number, survey, account);
  channel.station = station->number;
  store_channel(block, std::move(channel), {1.0, number_in_base_units(*resistivity), degrees_of(*phase)},
                account);
}

void read_harmonic_line(const RawLine& line, std::size_t first, const ZongeSurvey& survey, ZongeBlock& block,
                        ZongeAccount& account) {
  constexpr std::size_t group = 4;  // harmonic, magnitude, phase, resistivity
  const std::int32_t number = channel_number(line, line[first], block, account);
  if (number == 0) {
    return;
  }
  const std::string name = first + 1 < line.size() ? component_name(line[first + 1]) : std::string();
  Values values(line, first + (name.empty() ? 1 : 2), block, account);
  if (values.left() == 0 || values.left() % group != 0) {
    account.fault(block, "Harmonic data line does not contain enough data ", line.text(), line.number());
    return;
  }
  ZongeChannel* const channel = channel_of_harmonics(line, number, name, survey, block, account);
  while (channel != nullptr && values.left() > 0) {
    constexpr std::string_view wrong_frequency = "The AMT reading frequency is invalid ";
    const RawToken* const frequency = values.number(wrong_frequency);
    (void)values.number("Magnitude value is invalid ");
    const RawToken* const phase = values.number("Phase value is invalid ");
    const RawToken* const resistivity = values.number("Res1 value is invalid ");
    if (values.failed()) {
      return;
    }
    const double harmonic = harmonic_of(*frequency, block);
    constexpr double smallest_harmonic = 1e-3;
    constexpr double largest_harmonic = 1e9;
    if (!(harmonic >= smallest_harmonic && harmonic <= largest_harmonic) ||
        channel->values.size() >= zonge_harmonic_limit) {
      account.fault(block, wrong_frequency, frequency->text, line.number());
      return;
    }
    set_value(*channel, {harmonic, number_in_base_units(*resistivity), degrees_of(*phase)});
  }
}

void complete_channels(ZongeSurvey& survey, ZongeBlock& block, ZongeAccount& account) {
  block.a_spacing = survey.a_spacing;
  if (block.channels.empty()) {
    return;
  }
  account.say_value(" Number of data channels", survey.channel_count,
                    static_cast<std::int64_t>(block.channels.size()));
  pair_with_magnetic_field(block, account);
  for (const ZongeChannel& channel : block.channels) {
    for (const ZongeValue& value : channel.values) {
      block.harmonics.push_back(value.harmonic);
    }
    if (channel.name.empty()) {
      account.ignored(channel.line_number,
                      "channel " + plain_text(channel.number) + " has no name, so it is not stored");
    }
  }
  std::sort(block.harmonics.begin(), block.harmonics.end());
  block.harmonics.erase(std::unique(block.harmonics.begin(), block.harmonics.end()), block.harmonics.end());
  if (!block.base_frequency) {
    account.fault(block, "Base Frequency is invalid ", "", block.line_number);
  }
}

}  // namespace formats::zonge
