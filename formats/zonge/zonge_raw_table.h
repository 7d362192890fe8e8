// zonge_raw_table.h: what headers say of the receiver's inputs.
//
// Either a heading with the columns in any order and a row for each input, in any order,
//
//   Ch  Name  Station  Gain  Notch  S/N   Passed
//   2   Ex    150      8     60     14.2  38
//
// or a line for each input with keywords: CH 2  EX  STN 150  GAIN 8  NOTCH 60  S/N 14.2  PASSED 38.
#pragma once
#include <vector>

#include "formats/zonge/zonge_raw_account.h"
#include "formats/zonge/zonge_raw_block.h"
#include "formats/zonge/zonge_raw_line.h"

namespace formats::zonge {

class ZongeChannelTable {
 public:
  ZongeChannelTable(ZongeSurvey& survey, ZongeAccount& account) : survey_(survey), account_(account) {}

  void begin_block() { columns_.clear(); }

  /// Takes the line if it belongs to a table of inputs or is the heading of any table. A row of numbers does
  /// only after a heading of inputs. @return true if it was taken
  bool take(const RawLine& line, ZongeBlock& block);

 private:
  enum class Column { channel, name, station, gain, notch, signal_to_noise, passed, other };

  static Column column_of(const RawToken& token);
  void take_heading(const RawLine& line);
  void take_row(const RawLine& line, ZongeBlock& block);
  void take_keywords(const RawLine& line, ZongeBlock& block);
  void take_value(Column column, const RawToken& token, std::int32_t channel, const RawLine& line,
                  ZongeBlock& block);

  ZongeSurvey& survey_;
  ZongeAccount& account_;
  std::vector<Column> columns_;  // of the heading above; empty if there is none
};

}  // namespace formats::zonge
