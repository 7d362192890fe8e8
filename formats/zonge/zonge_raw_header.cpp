#include "formats/zonge/zonge_raw_header.h"

#include <algorithm>
#include <array>
#include <string>

#include "core/number_text.h"
#include "formats/zonge/zonge_raw_values.h"

namespace formats::zonge {

namespace {

bool is_frequency_unit(std::string_view unit) { return unit == "HZ" || unit == "KHZ" || unit == "MHZ"; }

// Takes the keywords of one line from left to right.
class KeywordReader {
 public:
  KeywordReader(const RawLine& line, ZongeSurvey& survey, ZongeBlock& block, ZongeAccount& account)
      : line_(line), survey_(survey), block_(block), account_(account) {}

  void read(std::size_t first);
  void take_operator();
  void take_transmitter();
  void take_transmitter_id() { pass_value(); }
  void take_receiver() { check_location("Receiver location is invalid "); }
  void take_a_spacing();
  void take_line();
  void take_base() {}  // "Base Frequency": the next word says it
  void take_frequency_word();
  void take_bursts() { check_count("Number of Bursts is invalid "); }
  void take_stacks() { check_count("Number of stacks is invalid "); }
  void take_samples() { check_count("Number of samples is invalid "); }
  void take_cycles() { check_count("Number of Cycles is invalid "); }
  void take_current() { check_count("Transmitter Current is invalid "); }
  void take_signal_to_noise() { check_list("S/N is invalid "); }
  void take_passed() { check_list("Passed is invalid "); }
  void take_notch() { pass_numbers(); }
  void take_gain();
  void take_time();
  void take_voltage();
  void take_robust() {}
  void take_version() { pass_value(); }
  void take_vector() { name_configuration("Vector"); }
  void take_tensor() { name_configuration("Tensor"); }
  void take_scalar() { name_configuration("AMT"); }
  void check_time(const RawToken& token);
  void check_voltage(const RawToken& token);

 private:
  [[nodiscard]] const RawToken* token_at(std::size_t index) const {
    return index < line_.size() ? &line_[index] : nullptr;
  }
  [[nodiscard]] const RawToken* value_token() const;
  void fault(std::string_view text, const RawToken* token) {
    account_.fault(block_, text, token == nullptr ? std::string_view() : token->text, line_.number());
  }
  void name_configuration(const char* configuration) {
    block_.names_configuration = true;
    take_configuration(configuration, survey_, account_);
  }
  void pass_value();
  void pass_numbers();
  void check_location(std::string_view text);
  void check_count(std::string_view text);
  void check_list(std::string_view text);
  void take_frequency(const RawToken* token);

  const RawLine& line_;
  ZongeSurvey& survey_;
  ZongeBlock& block_;
  ZongeAccount& account_;
  std::size_t place_ = 0;   // of the current token
  std::size_t unused_ = 0;  // tokens from here on belong to no keyword yet
};

enum class Match { whole, beginning };

struct Keyword {
  std::string_view word;
  Match match;
  void (KeywordReader::*take)();
};

constexpr std::array<Keyword, 30> keywords{{
    {"OPER", Match::beginning, &KeywordReader::take_operator},
    {"TX", Match::whole, &KeywordReader::take_transmitter},
    {"TXID", Match::whole, &KeywordReader::take_transmitter_id},
    {"RX", Match::whole, &KeywordReader::take_receiver},
    {"A-SP", Match::beginning, &KeywordReader::take_a_spacing},
    {"ASP", Match::beginning, &KeywordReader::take_a_spacing},
    {"A", Match::whole, &KeywordReader::take_a_spacing},
    {"LINE", Match::whole, &KeywordReader::take_line},
    {"BASE", Match::whole, &KeywordReader::take_base},
    {"FREQ", Match::beginning, &KeywordReader::take_frequency_word},
    {"BURST", Match::beginning, &KeywordReader::take_bursts},
    {"STACK", Match::beginning, &KeywordReader::take_stacks},
    {"SAMPL", Match::beginning, &KeywordReader::take_samples},
    {"CYC", Match::beginning, &KeywordReader::take_cycles},
    {"CURR", Match::beginning, &KeywordReader::take_current},
    {"S/N", Match::whole, &KeywordReader::take_signal_to_noise},
    {"SNR", Match::whole, &KeywordReader::take_signal_to_noise},
    {"PASS", Match::beginning, &KeywordReader::take_passed},
    {"NOTCH", Match::beginning, &KeywordReader::take_notch},
    {"GAIN", Match::beginning, &KeywordReader::take_gain},
    {"TIME", Match::whole, &KeywordReader::take_time},
    {"VOLT", Match::beginning, &KeywordReader::take_voltage},
    {"BATT", Match::beginning, &KeywordReader::take_voltage},
    {"ROBUST", Match::beginning, &KeywordReader::take_robust},
    {"EPROM", Match::whole, &KeywordReader::take_version},
    {"VEC", Match::beginning, &KeywordReader::take_vector},
    {"TEN", Match::beginning, &KeywordReader::take_tensor},
    {"SCALAR", Match::whole, &KeywordReader::take_scalar},
    {"CONFIG", Match::beginning, &KeywordReader::take_base},
    {"ID", Match::whole, &KeywordReader::take_transmitter_id},
}};

const Keyword* find_keyword(const RawToken& token) {
  if (token.is_number) {
    return nullptr;
  }
  const auto found = std::ranges::find_if(keywords, [&](const Keyword& keyword) {
    return keyword.match == Match::whole ? token.upper == keyword.word
                                         : token.upper.starts_with(keyword.word);
  });
  return found == keywords.end() ? nullptr : &*found;
}

void KeywordReader::read(std::size_t first) {
  unused_ = first;
  for (place_ = first; place_ < line_.size(); ++place_) {
    if (place_ < unused_) {
      continue;
    }
    if (const Keyword* const keyword = find_keyword(line_[place_])) {
      (this->*keyword->take)();
      unused_ = std::max(unused_, place_ + 1);
    } else if ((place_ == 0 && begins_with_frequency(line_)) ||
               (line_[place_].is_number && is_frequency_unit(line_[place_].unit))) {
      take_frequency(&line_[place_]);
      unused_ = place_ + 1;
    }
  }
}

// The token after the keyword if it can be its value: another keyword can't.
const RawToken* KeywordReader::value_token() const {
  const RawToken* const next = token_at(place_ + 1);
  return next != nullptr && find_keyword(*next) == nullptr ? next : nullptr;
}

void KeywordReader::pass_value() {
  if (value_token() != nullptr) {
    unused_ = place_ + 2;
  }
}

void KeywordReader::pass_numbers() {
  unused_ = place_ + 1;
  while (unused_ < line_.size() && line_[unused_].is_number) {
    ++unused_;
  }
}

void KeywordReader::take_operator() {
  block_.is_header = true;
  pass_value();
}

void KeywordReader::take_transmitter() {
  const RawToken* const next = token_at(place_ + 1);
  if (next != nullptr && (next->upper == "ID" || next->upper.starts_with("CURR"))) {
    return;  // that word is the keyword
  }
  check_location("Transmitter location is invalid ");
}

// A natural-source block may leave the place blank.
void KeywordReader::check_location(std::string_view text) {
  const RawToken* const value = value_token();
  if (value != nullptr && !value->is_number) {
    fault(text, value);
  }
  pass_value();
}

void KeywordReader::take_a_spacing() {
  if (line_[place_].upper == "A") {
    const RawToken* const next = token_at(place_ + 1);
    if (next == nullptr || !next->upper.starts_with("SP")) {
      return;
    }
    ++place_;
  }
  const RawToken* const value = value_token();
  pass_value();
  constexpr double smallest_spacing = 1e-6;
  constexpr double largest_spacing = 1e9;
  const double spacing = value != nullptr && value->is_number ? number_in_base_units(*value) : 0.0;
  if (value == nullptr || !value->is_number || spacing > largest_spacing) {
    fault("A Spacing is invalid : ", value);
    return;
  }
  if (spacing < smallest_spacing) {
    fault("A Spacing is not positive : ", value);
    return;
  }
  if (value->unit == "FT" || value->unit == "FEET") {
    account_.ignored(line_.number(), "lengths in feet are taken as they stand");
  }
  account_.say_value(" A spacing", survey_.a_spacing, spacing);
}

void KeywordReader::take_line() {
  while (value_token() != nullptr && (value_token()->upper == "NUMBER" || value_token()->upper == "NO")) {
    ++place_;
  }
  if (const RawToken* const value = value_token()) {
    account_.say_value(" Line number", survey_.line, shown_bytes(value->text));
    pass_value();
  }
}

void KeywordReader::take_frequency_word() {
  const RawToken* const value = value_token();
  pass_value();
  take_frequency(value);
}

void KeywordReader::take_frequency(const RawToken* token) {
  const double frequency = token != nullptr && token->is_number ? number_in_base_units(*token) : 0.0;
  constexpr double smallest_frequency = 1e-9;  // Hz, far beyond any receiver, as is the largest
  constexpr double largest_frequency = 1e9;
  if (!(frequency >= smallest_frequency && frequency <= largest_frequency)) {
    fault("Base Frequency is invalid ", token);
    return;
  }
  block_.base_frequency = frequency;
  account_.say_value(" Frequency", survey_.frequency, frequency);
}

// "64 Bursts" or "Bursts 64": the number before the word, if no other word has it, else the one after it.
void KeywordReader::check_count(std::string_view text) {
  const bool stands_before = place_ > 0 && place_ - 1 >= unused_ && line_[place_ - 1].is_number;
  const RawToken* const value = stands_before ? &line_[place_ - 1] : value_token();
  if (!stands_before) {
    pass_value();
  }
  if (value == nullptr || !value->is_number || value->number < 0.0) {
    fault(text, value);
  }
}

void KeywordReader::check_list(std::string_view text) {
  const RawToken* const value = value_token();
  if (value == nullptr || !value->is_number) {
    fault(text, value);
  }
  pass_numbers();
}

// A list of gains runs over the inputs from the first.
void KeywordReader::take_gain() {
  const RawToken* const value = value_token();
  if (value == nullptr || !value->is_number) {
    fault("Gain value is invalid ", value);
    return;
  }
  pass_numbers();
  for (std::size_t input = 1; input < unused_ - place_ && input <= zonge_channel_limit; ++input) {
    zonge::take_gain(static_cast<std::int32_t>(input), line_[place_ + input].number, survey_, account_);
  }
}

void KeywordReader::take_time() {
  if (const RawToken* const value = value_token()) {
    check_time(*value);
    pass_value();
  }
}

void KeywordReader::take_voltage() {
  const bool stands_before = place_ > 0 && place_ - 1 >= unused_ && line_[place_ - 1].is_number;
  const RawToken* const value = stands_before ? &line_[place_ - 1] : value_token();
  if (value != nullptr) {
    check_voltage(*value);
  }
  if (!stands_before) {
    pass_value();
  }
}

// Hours and minutes, seconds if they are given.
void KeywordReader::check_time(const RawToken& token) {
  constexpr std::array<double, 3> limits{24.0, 60.0, 60.0};
  std::string_view rest = token.text;
  std::size_t parts = 0;
  bool valid = true;
  while (valid && parts < limits.size() && !rest.empty()) {
    const std::size_t colon = std::min(rest.find(':'), rest.size());
    const std::string_view part = rest.substr(0, colon);
    valid = is_numeric(part) && part.front() != '-' && numeric_value(part) < limits[parts];
    rest.remove_prefix(std::min(colon + 1, rest.size()));
    ++parts;
  }
  if (!valid || parts < 2 || !rest.empty()) {
    fault("Survey Time is invalid ", &token);
  }
}

void KeywordReader::check_voltage(const RawToken& token) {
  if (!token.is_number || !(token.unit.empty() || token.unit.starts_with('V'))) {
    fault("Survey Voltage is invalid ", &token);
  }
}

bool looks_like_date(std::string_view text) {
  return std::ranges::count_if(text, [](char c) { return c == '-' || c == '/'; }) == 2 &&
         std::ranges::any_of(text, [](char c) { return c >= '0' && c <= '9'; });
}

bool begins_with_digit(std::string_view text) { return text.front() >= '0' && text.front() <= '9'; }

}  // namespace

void take_configuration(const char* configuration, ZongeSurvey& survey, ZongeAccount& account) {
  if (survey.configuration.empty()) {
    account.say(std::string("Survey Configuration is ") + configuration);
  } else if (survey.configuration != configuration) {
    account.say("Survey Configuration has changed from " + survey.configuration + " to : " + configuration);
  }
  survey.configuration = configuration;
}

bool has_keyword(const RawLine& line) {
  return std::ranges::any_of(line.tokens(),
                             [](const RawToken& token) { return find_keyword(token) != nullptr; });
}

bool begins_with_frequency(const RawLine& line) {
  const auto& tokens = line.tokens();
  return !tokens.empty() && tokens[0].is_number &&
         (is_frequency_unit(tokens[0].unit) || (tokens.size() > 1 && tokens[1].upper == "HZ"));
}

void read_keyword_line(const RawLine& line, ZongeSurvey& survey, ZongeBlock& block, ZongeAccount& account) {
  KeywordReader(line, survey, block, account).read(0);
}

void read_type_line(const RawLine& line, ZongeSurvey& survey, ZongeBlock& block, ZongeAccount& account) {
  KeywordReader reader(line, survey, block, account);
  const auto& tokens = line.tokens();
  const auto date = std::ranges::find_if(
      tokens, [](const RawToken& token) { return !token.is_number && looks_like_date(token.upper); });
  auto place = date == tokens.end() ? tokens.begin() : date;
  const auto take_next = [&](auto&& fits) {
    const bool found = tokens.end() - place > 1 && fits(place[1]);
    place += found ? 1 : 0;
    return found;
  };
  if (date != tokens.end()) {
    if (take_next([](const RawToken& token) {
          return token.upper.find(':') != std::string_view::npos ||
                 (begins_with_digit(token.upper) && !token.unit.starts_with('V'));
        })) {
      reader.check_time(*place);
    }
    if (take_next([](const RawToken& token) { return begins_with_digit(token.upper); })) {
      reader.check_voltage(*place);
    }
  }
  reader.read(static_cast<std::size_t>(place - tokens.begin()) + 1);
}

}  // namespace formats::zonge
