#include "formats/zonge/zonge_raw_line.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "core/number_text.h"
#include "core/text_fields.h"

namespace formats::zonge {

namespace {

constexpr std::array<bool, 256> separator_table() {
  std::array<bool, 256> table{};
  for (std::size_t code = 0; code <= ' '; ++code) {
    table[code] = true;
  }
  for (const char separator : {',', '\'', ';', '='}) {
    table[static_cast<unsigned char>(separator)] = true;
  }
  return table;
}
constexpr std::array<bool, 256> separators = separator_table();

bool is_separator(char character) { return separators[static_cast<unsigned char>(character)]; }

// Units that may be a token of their own.
constexpr std::array<std::string_view, 28> unit_words{
    "M", "FT",  "FEET", "KM", "V",    "VOLTS", "MV",  "UV",   "NV",    "A",     "AMPS", "MA", "HZ", "KHZ",
    "S", "SEC", "DEG",  "MR", "MRAD", "RAD",   "OHM", "OHMS", "OHM-M", "OHM.M", "KOHM", "%",  "DB", "MHZ"};

bool may_begin_number(char character) {
  return (character >= '0' && character <= '9') || character == '.' || character == '-' || character == '+';
}

// What follows a number in its token: letters, not digits of a second number.
bool is_unit(std::string_view text) {
  const auto first = static_cast<unsigned char>(text.front());
  const bool begins_well = (first >= 'A' && first <= 'Z') || first == '%' || first >= 0x80;
  return begins_well && text.find_first_of("0123456789:") == std::string_view::npos;
}

}  // namespace

void RawLine::assign(std::string_view line, std::int64_t line_number) {
  text_ = trimmed(line);
  upper_ = text_;
  std::ranges::transform(upper_, upper_.begin(),
                         [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; });
  number_ = line_number;
  tokens_.clear();
}

void RawLine::tokenize() {
  tokens_.clear();
  const auto begin = text_.cbegin();
  for (auto place = begin; place != text_.cend();) {
    const auto first = std::find_if_not(place, text_.cend(), is_separator);
    const auto end = std::find_if(first, text_.cend(), is_separator);
    if (first != end) {
      add_token(static_cast<std::size_t>(first - begin), static_cast<std::size_t>(end - begin));
    }
    place = end;
  }
}

bool RawLine::joins_as_unit(std::size_t first, std::size_t end) const {
  if (tokens_.empty() || !tokens_.back().is_number || !tokens_.back().unit.empty()) {
    return false;
  }
  const std::string_view word = std::string_view(upper_).substr(first, end - first);
  if (std::ranges::find(unit_words, word) == unit_words.end()) {
    return false;
  }
  if (word == "HZ" && tokens_.size() == 1) {
    return false;  // also the vertical magnetic field of a channel: the reader of the line knows
  }
  const std::string_view behind = trimmed(std::string_view(upper_).substr(end));
  return word != "A" || !behind.starts_with("SP");  // "TX ID 3  A SPACING 100"
}

void RawLine::add_token(std::size_t first, std::size_t end) {
  const bool numeric = may_begin_number(text_[first]);
  if (!numeric && joins_as_unit(first, end)) {
    tokens_.back().unit = std::string_view(upper_).substr(first, end - first);
    return;
  }
  if (text_[end - 1] == ':' && end - first > 1) {
    --end;
  }
  RawToken token;
  token.text = std::string_view(text_).substr(first, end - first);
  token.upper = std::string_view(upper_).substr(first, end - first);
  if (numeric) {
    std::string_view rest;
    token.number = numeric_value(token.upper, rest);
    token.is_number =
        std::isfinite(token.number) && (rest.empty() || (rest.size() < token.upper.size() && is_unit(rest)));
    token.unit = token.is_number ? rest : std::string_view();
  }
  tokens_.push_back(token);
}

}  // namespace formats::zonge
