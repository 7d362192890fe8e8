#include "formats/zonge/zonge_raw_values.h"

#include <cmath>

#include "core/number_text.h"

namespace formats::zonge {

std::int32_t channel_number(const RawLine& line, const RawToken& token, ZongeBlock& block,
                            ZongeAccount& account) {
  if (!token.is_number || !token.unit.empty() || token.number != std::trunc(token.number)) {
    account.fault(block, "Channel Number is invalid ", token.text, line.number());
    return 0;
  }
  if (token.number < 1.0 || token.number > static_cast<double>(zonge_channel_limit)) {
    account.fault(block, "Invalid channel number " + shown_bytes(token.text) + " encountered : ", line.text(),
                  line.number());
    return 0;
  }
  return static_cast<std::int32_t>(token.number);
}

void take_gain(std::int32_t channel, double gain, ZongeSurvey& survey, ZongeAccount& account) {
  std::optional<double>& known = survey.inputs[static_cast<std::size_t>(channel)].gain;
  if (known != gain) {
    account.say_value(" Gain for input " + plain_text(channel), known, gain);
  }
}

std::string component_name(const RawToken& token) {
  const std::string_view word = token.upper;
  if (word == "EXHY" || word == "EYHX") {
    return word == "EXHY" ? "ExHy" : "EyHx";
  }
  if (word.size() < 2 || (word[0] != 'E' && word[0] != 'H') || word[1] < 'X' || word[1] > 'Z' ||
      word.find_first_not_of("0123456789", 2) != std::string_view::npos) {
    return {};
  }
  return {word[0], static_cast<char>(word[1] - 'A' + 'a')};
}

double number_in_base_units(const RawToken& token) {
  constexpr double thousand = 1000.0;
  if (token.unit.starts_with('K')) {
    return token.number * thousand;
  }
  return token.unit == "MHZ" ? token.number / thousand : token.number;
}

}  // namespace formats::zonge
