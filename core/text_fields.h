// text_fields.h: small tools for parsing field files and composing output files.
#pragma once
#include <cstddef>
#include <string>
#include <string_view>

/// The text without blanks, tabs and other control characters at its ends.
std::string_view trimmed(std::string_view text);

/// ASCII letters in upper case; other bytes as they are.
std::string upper_case(std::string_view text);

/// True if both texts are equal but for the case of ASCII letters.
bool equal_ignoring_case(std::string_view a, std::string_view b);

/// `text` with blanks put before it up to `width`; a longer text is cut to its first `width` characters.
std::string pad_field(std::string_view text, std::size_t width);

/// Takes the first item of `rest`, cut at blank, comma, apostrophe, semicolon or tab; `rest` keeps what
/// follows, trimmed.
/// @return the item; empty when nothing is left
std::string_view next_token(std::string_view& rest);

/// Takes the first word of `rest`, cut at blanks, tabs, line ends and other control characters only: "1,5" is
/// one word, and no number.
/// @return the word; empty when nothing is left
std::string_view next_word(std::string_view& rest);

/// Takes the next line of `text`, without its end, which is CR, LF or CR LF.
/// @return false at the end of the text
bool take_line(std::string_view& text, std::string_view& line);

/// The first word of a line and the rest, with blank, comma, apostrophe and semicolon as delimiters.
struct FirstToken {
  std::string token;
  std::string rest;
};
FirstToken first_token(std::string_view line);

/// True if the bytes are valid UTF-8.
bool is_valid_utf8(std::string_view bytes);

/// Text of a field file as UTF-8: bytes that are not valid UTF-8 are taken as Windows-1252.
std::string text_from_field_file(std::string_view bytes);
