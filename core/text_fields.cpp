#include "core/text_fields.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace {

constexpr std::string_view item_delimiters = " ,';\t";
constexpr std::string_view word_delimiters = " ,';";

char upper_case_letter(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

bool is_blank_or_control(char c) { return static_cast<unsigned char>(c) <= 0x20; }

bool is_continuation(char c) { return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U; }

/// Bytes of the UTF-8 character that starts at `position`, 0 if there is no valid one.
std::size_t utf8_length(std::string_view bytes, std::size_t position) {
  const auto at = [&](std::size_t i) { return static_cast<unsigned char>(bytes[i]); };
  const unsigned char lead = at(position);
  if (lead < 0x80) {
    return 1;
  }
  const std::size_t length = lead >= 0xC2 && lead <= 0xDF ? 2 : lead >= 0xE0 && lead <= 0xEF ? 3 : 4;
  if (lead < 0xC2 || lead > 0xF4 || bytes.size() - position < length) {
    return 0;
  }
  for (std::size_t i = 1; i < length; ++i) {
    if (!is_continuation(bytes[position + i])) {
      return 0;
    }
  }
  const unsigned char second = at(position + 1);
  const bool overlong = (lead == 0xE0 && second < 0xA0) || (lead == 0xF0 && second < 0x90);
  const bool surrogate = lead == 0xED && second >= 0xA0;
  const bool beyond_unicode = lead == 0xF4 && second >= 0x90;
  return overlong || surrogate || beyond_unicode ? 0 : length;
}

/// Windows-1252 from 0x80 to 0x9F; the five bytes without a character keep their code.
constexpr std::array<std::uint16_t, 32> windows_1252 = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

/// Appends a byte from 0x80 up as the UTF-8 of its Windows-1252 character.
void append_windows_1252(std::string& text, unsigned char byte) {
  const unsigned code = byte < 0xA0 ? windows_1252[byte - 0x80U] : byte;
  if (code >= 0x800) {
    text += static_cast<char>(0xE0U | (code >> 12U));
    text += static_cast<char>(0x80U | ((code >> 6U) & 0x3FU));
  } else {
    text += static_cast<char>(0xC0U | (code >> 6U));
  }
  text += static_cast<char>(0x80U | (code & 0x3FU));
}

}  // namespace

std::string_view trimmed(std::string_view text) {
  while (!text.empty() && is_blank_or_control(text.front())) {
    text.remove_prefix(1);
  }
  while (!text.empty() && is_blank_or_control(text.back())) {
    text.remove_suffix(1);
  }
  return text;
}

std::string upper_case(std::string_view text) {
  std::string result(text);
  std::ranges::transform(result, result.begin(), upper_case_letter);
  return result;
}

bool equal_ignoring_case(std::string_view a, std::string_view b) {
  return std::ranges::equal(a, b, {}, upper_case_letter, upper_case_letter);
}

std::string pad_field(std::string_view text, std::size_t width) {
  std::size_t characters = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (is_continuation(text[i])) {
      continue;
    }
    if (characters == width) {
      return std::string(text.substr(0, i));
    }
    ++characters;
  }
  std::string field(width - std::min(width, characters), ' ');
  return field += text;
}

std::string_view next_token(std::string_view& rest) {
  const std::size_t first = rest.find_first_not_of(item_delimiters);
  if (first == std::string_view::npos) {
    rest = {};
    return {};
  }
  const std::size_t end = std::min(rest.find_first_of(item_delimiters, first), rest.size());
  const std::string_view token = rest.substr(first, end - first);
  rest = end < rest.size() ? trimmed(rest.substr(end + 1)) : std::string_view{};
  return token;
}

std::string_view next_word(std::string_view& rest) {
  const auto first = std::ranges::find_if_not(rest, is_blank_or_control);
  const auto end = std::find_if(first, rest.end(), is_blank_or_control);
  const std::string_view word(first, end);
  rest = std::string_view(end, rest.end());
  return word;
}

bool take_line(std::string_view& text, std::string_view& line) {
  if (text.empty()) {
    return false;
  }
  const std::size_t end = std::min(text.find_first_of("\r\n"), text.size());
  line = text.substr(0, end);
  text.remove_prefix(end);
  text.remove_prefix(text.starts_with("\r\n") ? 2 : std::min<std::size_t>(1, text.size()));
  return true;
}

FirstToken first_token(std::string_view line) {
  const auto without_leading_blanks = [](std::string_view text) {
    return text.substr(std::min(text.find_first_not_of(' '), text.size()));
  };
  const std::string_view text = without_leading_blanks(line);
  const std::size_t end = std::min(text.find_first_of(word_delimiters), text.size());
  const std::string_view rest = text.substr(std::min(end + 1, text.size()));
  return {std::string(text.substr(0, end)), std::string(without_leading_blanks(rest))};
}

bool is_valid_utf8(std::string_view bytes) {
  for (std::size_t position = 0; position < bytes.size();) {
    const std::size_t length = utf8_length(bytes, position);
    if (length == 0) {
      return false;
    }
    position += length;
  }
  return true;
}

std::string text_from_field_file(std::string_view bytes) {
  if (is_valid_utf8(bytes)) {
    return std::string(bytes);
  }
  std::string text;
  text.reserve(bytes.size() + bytes.size() / 4);
  for (std::size_t position = 0; position < bytes.size();) {
    const std::size_t length = utf8_length(bytes, position);
    if (length == 0) {
      append_windows_1252(text, static_cast<unsigned char>(bytes[position]));
      ++position;
    } else {
      text.append(bytes, position, length);
      position += length;
    }
  }
  return text;
}
