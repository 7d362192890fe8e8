#include "formats/zonge/zonge_raw_parser.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "core/number_text.h"
#include "formats/zonge/zonge_raw_channels.h"
#include "formats/zonge/zonge_raw_header.h"

namespace formats::zonge {

namespace {

struct BlockWord {
  std::string_view beginning;
  std::string_view name;     // in the account; empty for MT data
  bool has_headers = false;  // an operator's line makes it a header
};

constexpr std::array<BlockWord, 9> block_words{{{"SYNC", "Synchronisation", true},
                                                {"CSHA", "", true},
                                                {"CSAM", "", true},
                                                {"AMT", "", true},
                                                {"CR", "Complex Resistivity", true},
                                                {"RIP", "Reference Phase IP", true},
                                                {"TDIP", "Time Domain IP", true},
                                                {"TEM", "Time Domain EM", false},
                                                {"NANO", "Time Domain EM", false}}};

const BlockWord* find_block_word(std::string_view upper_line) {
  const auto found = std::ranges::find_if(
      block_words, [&](const BlockWord& word) { return upper_line.starts_with(word.beginning); });
  return found == block_words.end() ? nullptr : &*found;
}

// The first four characters are a type word: without a number above it, a longer word that only begins like
// one ("CRES") doesn't count.
bool is_type_line(std::string_view upper_line) {
  const std::string_view first = upper_line.substr(0, 4);
  const BlockWord* const word = find_block_word(first);
  return word != nullptr && (first.size() == word->beginning.size() || first[word->beginning.size()] <= ' ');
}

bool is_number_line(std::string_view text) {
  constexpr std::size_t fewest_digits = 4;
  constexpr std::size_t most_digits = 9;
  return text.size() >= fewest_digits && text.size() <= most_digits &&
         text.find_first_not_of("0123456789") == std::string_view::npos;
}

// "3 Hz 150 0.01 45 0 ..." is a channel once the block's frequency is known.
bool is_vertical_field(const RawLine& line, const ZongeBlock& block) {
  constexpr std::size_t numbers_behind = 4;
  const auto& tokens = line.tokens();
  return block.base_frequency && tokens[0].unit.empty() && tokens.size() >= 2 + numbers_behind &&
         std::all_of(tokens.begin() + 2, tokens.begin() + 2 + numbers_behind,
                     [](const RawToken& token) { return token.is_number; });
}

bool has_word(std::string_view upper_line, std::string_view word) {
  const std::size_t place = upper_line.find(word);
  return place != std::string_view::npos && (place == 0 || upper_line[place - 1] <= ' ');
}

}  // namespace

struct ZongeRawParser::Traits {
  const BlockWord* word = nullptr;  // null: no known type
  bool has_operator = false;
  bool has_transmitter = false;
  bool is_system_check = false;
  bool is_calibration = false;

  [[nodiscard]] bool is_check() const { return is_system_check || is_calibration; }
  [[nodiscard]] bool is_mt() const { return word != nullptr && word->name.empty() && !is_check(); }
  [[nodiscard]] std::string account_text() const;
};

std::string ZongeRawParser::Traits::account_text() const {
  if (is_check()) {
    return is_system_check ? " - System Check Block" : " - Calibration Block";
  }
  const bool synchronisation_of_neither_kind =
      word == &block_words.front() && !has_operator && !has_transmitter;
  if (word == nullptr || synchronisation_of_neither_kind) {
    return " - Non-MT Block";
  }
  return " - " + std::string(word->name) + (word->has_headers && has_operator ? " Header" : "") + " Block";
}

// The next line that is not blank.
bool ZongeRawParser::next_line() {
  blank_before_ = false;
  std::string_view bytes;
  while (reader_.next(bytes)) {
    line_.assign(bytes, reader_.line_number());
    if (!line_.text().empty()) {
      return true;
    }
    blank_before_ = true;
  }
  return false;
}

bool ZongeRawParser::begins_block() const {
  return is_number_line(line_.text()) || is_type_line(line_.upper());
}

// Goes on to the line with the type; a number without one is a block of unknown type.
void ZongeRawParser::read_numbered_start(ZongeBlock& block) {
  block.number = last_number_ + 1;
  numbered_ = is_number_line(line_.text());
  if (numbered_) {
    block.number = static_cast<std::int64_t>(numeric_value(line_.text()));
    line_waits_ = next_line() && is_number_line(line_.text());
  }
  last_number_ = block.number;
}

bool ZongeRawParser::next_block(ZongeBlock& block) {
  if (!line_waits_ && !next_line()) {
    return false;
  }
  line_waits_ = false;
  block = ZongeBlock{};
  block.line_number = line_.number();
  read_numbered_start(block);
  account_.begin_block(block.number);
  Traits traits;
  if (!line_waits_) {
    traits.word = find_block_word(line_.upper());
    note_traits(traits);
    if (traits.is_mt()) {
      read_mt_block(block, traits);
    } else {
      skip_lines(traits);
    }
  }
  block.type = traits.is_mt() ? ZongeBlockType::mt : ZongeBlockType::skipped;
  if (!traits.is_mt()) {
    account_.say(traits.account_text());
  }
  return true;
}

// A first word marks the lines of operator and transmitter.
void ZongeRawParser::note_traits(Traits& traits) const {
  const std::string_view line = line_.upper();
  traits.has_operator = traits.has_operator || has_word(line, "OPER");
  if (has_word(line, "TX")) {
    traits.has_transmitter = true;
    traits.is_system_check = traits.is_system_check || line.find("ISYS") != std::string_view::npos;
    traits.is_calibration = traits.is_calibration || line.find("ICAL") != std::string_view::npos;
  }
}

void ZongeRawParser::skip_lines(Traits& traits) {
  while (next_line()) {
    if (begins_block()) {
      line_waits_ = true;
      return;
    }
    note_traits(traits);
  }
}

void ZongeRawParser::read_mt_block(ZongeBlock& block, Traits& traits) {
  table_.begin_block();
  line_.tokenize();
  read_type_line(line_, survey_, block, account_);
  while (next_line()) {
    if (begins_block()) {
      line_waits_ = true;
      break;
    }
    note_traits(traits);
    if (traits.is_check()) {
      skip_lines(traits);
      return;
    }
    line_.tokenize();
    if (!read_mt_line(block)) {
      if (blank_before_ && !numbered_) {
        line_waits_ = true;
        break;
      }
      account_.ignored(line_.number(), "'" + shown_bytes(line_.text()) + "' is not understood");
    }
  }
  if (!block.names_configuration && (block.is_header || survey_.configuration.empty())) {
    take_configuration("AMT", survey_, account_);
  }
  complete_channels(survey_, block, account_);
}

// False if the line is of no kind that an MT block has.
bool ZongeRawParser::read_mt_line(ZongeBlock& block) {
  const auto& tokens = line_.tokens();
  if (tokens.empty()) {
    return true;
  }
  if (std::ranges::any_of(tokens, [](const RawToken& token) { return token.upper.starts_with("ABORT"); })) {
    block.aborted = true;
    account_.say(aborted_text);
    return true;
  }
  if (tokens.front().upper.starts_with("HARM")) {
    block.in_harmonics = true;
    if (tokens.size() > 2) {
      read_harmonic_line(line_, 1, survey_, block, account_);
    }
    return true;
  }
  if (table_.take(line_, block)) {
    return true;
  }
  if (has_keyword(line_) || (begins_with_frequency(line_) && !is_vertical_field(line_, block))) {
    block.in_harmonics = false;
    read_keyword_line(line_, survey_, block, account_);
    return true;
  }
  return read_numbers(block);
}

bool ZongeRawParser::read_numbers(ZongeBlock& block) {
  constexpr std::ptrdiff_t numbers_of_a_damaged_line = 4;  // after a channel that can't be read
  const auto& tokens = line_.tokens();
  if (!tokens.front().is_number &&
      std::ranges::count_if(tokens, &RawToken::is_number) < numbers_of_a_damaged_line) {
    return false;
  }
  if (block.in_harmonics) {
    read_harmonic_line(line_, 0, survey_, block, account_);
  } else {
    read_data_line(line_, survey_, block, account_);
  }
  return true;
}

}  // namespace formats::zonge
