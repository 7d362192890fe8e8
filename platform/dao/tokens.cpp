#include "platform/dao/tokens.h"

#include <charconv>
#include <chrono>
#include <cmath>
#include <system_error>
#include <utility>

#include <fast_float/fast_float.h>

#include "core/calendar.h"
#include "core/text_fields.h"

namespace dao {

namespace {

bool is_blank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }
bool is_digit(char c) { return c >= '0' && c <= '9'; }
bool is_word_start(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_'; }
bool is_word_part(char c) { return is_word_start(c) || is_digit(c); }

class Lexer {
 public:
  explicit Lexer(std::string_view statement) : statement_(statement) {}

  std::vector<Token> run() {
    std::vector<Token> tokens;
    constexpr std::size_t usual_length = 4;  // of a token, with the blank behind it
    tokens.reserve(statement_.size() / usual_length + 2);
    while (skip_blanks(), place_ < statement_.size()) {
      tokens.push_back(next());
    }
    if (!tokens.empty() && tokens.back().is_sign(";")) {
      tokens.pop_back();
    }
    for (const Token& token : tokens) {
      if (token.is_sign(";")) {
        fail();
      }
    }
    tokens.emplace_back();
    return tokens;
  }

 private:
  [[noreturn]] void fail() const { throw syntax_error(statement_); }

  static Token make(Token::Kind kind, std::string text) {
    Token token;
    token.kind = kind;
    token.text = std::move(text);
    return token;
  }

  [[nodiscard]] char at(std::size_t place) const {
    return place < statement_.size() ? statement_[place] : ' ';
  }

  void skip_blanks() {
    while (place_ < statement_.size() && is_blank(statement_[place_])) {
      ++place_;
    }
  }

  Token next() {
    const char c = statement_[place_];
    if (is_word_start(c)) {
      return word();
    }
    if (is_digit(c) || (c == '.' && is_digit(at(place_ + 1)))) {
      return number();
    }
    switch (c) {
      case '[':
        return make(Token::Kind::bracketed_name, enclosed(']'));
      case '\'':
        return text();
      case '#':
        return date();
      default:
        return sign();
    }
  }

  Token word() {
    const std::size_t first = place_;
    while (is_word_part(at(place_))) {
      ++place_;
    }
    return make(Token::Kind::word, std::string(statement_.substr(first, place_ - first)));
  }

  Token number() {
    const char* const first = statement_.data() + place_;
    const char* const last = statement_.data() + statement_.size();
    Token token;
    token.kind = Token::Kind::number;
    const auto [end, status] = fast_float::from_chars(first, last, token.number);
    if (status != std::errc() || !std::isfinite(token.number) || (end != last && is_word_part(*end))) {
      fail();
    }
    const auto [integer_end, integer_status] = std::from_chars(first, last, token.integer);
    token.is_integer = integer_status == std::errc() && integer_end == end;
    token.text.assign(first, end);
    place_ += token.text.size();
    return token;
  }

  // The contents up to the closing sign, which can't be part of them.
  std::string enclosed(char closing) {
    const std::size_t end = statement_.find(closing, place_ + 1);
    if (end == std::string_view::npos || end == place_ + 1) {
      fail();
    }
    std::string contents(statement_.substr(place_ + 1, end - place_ - 1));
    place_ = end + 1;
    return contents;
  }

  Token text() {
    Token token;
    token.kind = Token::Kind::text;
    std::size_t end = place_;
    do {  // each part with the apostrophe before it
      const std::size_t first = end;
      end = statement_.find('\'', first + 1);
      if (end == std::string_view::npos) {
        fail();
      }
      token.text += statement_.substr(first, end - first);
      ++end;
    } while (at(end) == '\'');
    token.text.erase(0, 1);
    place_ = end;
    const char behind = at(place_);
    const bool ends_here =
        is_blank(behind) || std::string_view("),;=<>").find(behind) != std::string_view::npos;
    if (!ends_here || !is_valid_utf8(token.text)) {
      fail();
    }
    return token;
  }

  Token date() {
    Token token = make(Token::Kind::date, enclosed('#'));
    const char* place = token.text.data();
    const char* const end = place + token.text.size();
    unsigned month = 0;
    unsigned day = 0;
    int year = 0;
    const auto take = [&](auto& part) {
      const auto [behind, status] = std::from_chars(place, end, part);
      place = behind;
      return status == std::errc();
    };
    const auto slash = [&] { return place != end && *place++ == '/'; };
    const bool whole = take(month) && slash() && take(day) && slash() && take(year) && place == end;
    const std::chrono::year_month_day date{std::chrono::year(year), std::chrono::month(month),
                                           std::chrono::day(day)};
    // The years that the dialect's dates can name.
    if (!whole || !date.ok() || year < 100 || year > 9999) {
      fail();
    }
    token.number = day_count(year, static_cast<int>(month), static_cast<int>(day));
    return token;
  }

  Token sign() {
    const std::string_view two = statement_.substr(place_, 2);
    if (two == "--" || two == "/*") {
      fail();  // the beginning of a comment
    }
    if (two == "<=" || two == ">=" || two == "<>") {
      place_ += 2;
      return make(Token::Kind::sign, std::string(two));
    }
    const char c = statement_[place_];
    if (std::string_view("(),=<>+-*/;").find(c) == std::string_view::npos) {
      fail();
    }
    ++place_;
    return make(Token::Kind::sign, std::string(1, c));
  }

  std::string_view statement_;
  std::size_t place_ = 0;
};

}  // namespace

bool Token::is_word(std::string_view word) const {
  return kind == Kind::word && equal_ignoring_case(text, word);
}

Error syntax_error(std::string_view statement) {
  constexpr std::size_t longest_quotation = 200;
  std::string quotation(statement.substr(0, longest_quotation));
  if (statement.size() > longest_quotation) {
    quotation += "...";
  }
  return Error("syntax error in \"" + quotation + "\"");
}

std::vector<Token> tokens_of(std::string_view statement) { return Lexer(statement).run(); }

}  // namespace dao
