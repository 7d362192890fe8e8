// tokens.h: statements of the dialect cut into words, literals and signs.
#pragma once
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/dao/error.h"

namespace dao {

struct Token {
  enum class Kind { word, bracketed_name, number, text, date, sign, end };
  Kind kind = Kind::end;
  std::string text;          // name, contents of a literal, or the sign
  double number = 0.0;       // value of a number; days since 30 December 1899 of a date
  std::int64_t integer = 0;  // value of a number without point and exponent
  bool is_integer = false;

  [[nodiscard]] bool is_sign(std::string_view sign) const { return kind == Kind::sign && text == sign; }
  [[nodiscard]] bool is_word(std::string_view word) const;  // in any case of letters
  [[nodiscard]] bool is_name() const { return kind == Kind::word || kind == Kind::bracketed_name; }
};

/// The error to throw for a statement that isn't in the dialect.
Error syntax_error(std::string_view statement);

/// Cuts a statement into tokens, the last of kind `end`. A text literal ends at the first apostrophe
/// that isn't written twice; anything but a blank or a sign right after it is a syntax error, like comments,
/// semicolons between tokens and characters that the dialect doesn't know. One semicolon at the end is
/// dropped.
std::vector<Token> tokens_of(std::string_view statement);

}  // namespace dao
