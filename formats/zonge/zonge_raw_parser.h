// zonge_raw_parser.h: the blocks of a raw receiver file.
//
// A block begins with its number on a line of its own, four digits or more, or with a line whose first word
// is a block type. After the type the line has date, time and battery voltage:
//
//   0012
//   CSAMT    2004-05-12 08:20:01 12.4v VEC
//   Tx 1   Rx 150 N
//   8 Hz   64 Bursts   8 Stacks   1024 Samples   16 Cyc   Tx Curr 7.5 A
//   1  Hy  150  0.0123   45.2  0      OUT  4   1.1
//   2  Ex  150  12.345  785.1  105.2  OUT  16  0.8  -3.5  1.2  1
//
// The manufacturer's documentation of each receiver fixes columns; this reader doesn't rely on them: keywords
// are found in any case and order, values by tokens. The keyword lines are described in zonge_raw_header.h,
// the tables of inputs in zonge_raw_table.h, the lines of numbers in zonge_raw_channels.h. A blank line ends
// an MT block without a number, unless the next line is of one of these kinds.
#pragma once
#include <cstdint>
#include <string_view>

#include "core/line_reader.h"
#include "formats/zonge/zonge_raw_account.h"
#include "formats/zonge/zonge_raw_block.h"
#include "formats/zonge/zonge_raw_line.h"
#include "formats/zonge/zonge_raw_table.h"

namespace formats::zonge {

inline constexpr std::string_view aborted_text = "Reading was aborted by the operator";

class ZongeRawParser {
 public:
  /// Reader and account must outlive the parser.
  ZongeRawParser(LineReader& reader, ZongeAccount& account) : reader_(reader), account_(account) {}
  ZongeRawParser(const ZongeRawParser&) = delete;
  ZongeRawParser& operator=(const ZongeRawParser&) = delete;

  /// Reads the next block; what it holds and what is wrong with it goes into the account.
  /// @param block of type skipped if it isn't an MT block; else a header, channels, or both
  /// @return false at the end of the file
  bool next_block(ZongeBlock& block);

 private:
  struct Traits;  // what decides a block's kind beyond its type word

  bool next_line();
  [[nodiscard]] bool begins_block() const;
  void read_numbered_start(ZongeBlock& block);
  bool read_mt_line(ZongeBlock& block);
  bool read_numbers(ZongeBlock& block);
  void skip_lines(Traits& traits);
  void note_traits(Traits& traits) const;
  void read_mt_block(ZongeBlock& block, Traits& traits);

  LineReader& reader_;
  ZongeAccount& account_;
  ZongeSurvey survey_;
  ZongeChannelTable table_{survey_, account_};
  RawLine line_;
  bool line_waits_ = false;  // line_ is the first of the next block
  bool blank_before_ = false;
  bool numbered_ = false;  // the current block began with its number
  std::int64_t last_number_ = 0;
};

}  // namespace formats::zonge
