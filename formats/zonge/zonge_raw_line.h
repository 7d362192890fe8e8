// zonge_raw_line.h: one line of a raw receiver file, cut into tokens.
//
// Tokens are separated by blanks, commas, apostrophes, semicolons, tabs and equals signs; a colon at a
// token's end goes with the keyword before it ("A-SP: 100"). Units may be in the same token as their number
// ("100m", "12.4v", "4kHz") or in the next one ("100 m"). In "3 Hz" at a line's start the second token stays
// one of its own: it may be a channel's name.
#pragma once
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace formats::zonge {

struct RawToken {
  std::string_view text;   // as in the file, without its unit if that is a token of its own
  std::string_view upper;  // the same in upper case
  bool is_number = false;  // a number, alone or with a unit after it
  double number = 0.0;
  std::string_view unit;  // upper case; empty if there is none
};

class RawLine {
 public:
  /// Takes a line; tokens hold until the next call.
  void assign(std::string_view line, std::int64_t line_number);

  [[nodiscard]] const std::vector<RawToken>& tokens() const { return tokens_; }
  [[nodiscard]] std::size_t size() const { return tokens_.size(); }
  [[nodiscard]] const RawToken& operator[](std::size_t index) const { return tokens_[index]; }
  [[nodiscard]] std::string_view text() const { return text_; }    // trimmed
  [[nodiscard]] std::string_view upper() const { return upper_; }  // the same in upper case
  [[nodiscard]] std::int64_t number() const { return number_; }    // from 1

  /// Cuts the line into tokens; only lines of blocks that are read need it.
  void tokenize();

 private:
  void add_token(std::size_t first, std::size_t end);
  [[nodiscard]] bool joins_as_unit(std::size_t first, std::size_t end) const;

  std::string text_;
  std::string upper_;
  std::int64_t number_ = 0;
  std::vector<RawToken> tokens_;
};

}  // namespace formats::zonge
