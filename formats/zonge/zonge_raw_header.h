// zonge_raw_header.h: the keyword lines of an MT block.
//
// Keywords come in any case and any order, several on a line, each before its value; counts also come after
// their number ("16 Cyc"):
//
//   OPER 7   TX ID 3   A-SP 100 m   LINE 200 N   VEC   ROBUST   EPROM 32.5
//   Tx 1   Rx 150 N   8 Hz   64 Bursts   8 Stacks   1024 Samples   16 Cyc   Tx Curr 7.5 A
#pragma once
#include "formats/zonge/zonge_raw_account.h"
#include "formats/zonge/zonge_raw_block.h"
#include "formats/zonge/zonge_raw_line.h"

namespace formats::zonge {

/// Reads the block's first line: type word, date, time, voltage, then keywords.
void read_type_line(const RawLine& line, ZongeSurvey& survey, ZongeBlock& block, ZongeAccount& account);

/// True if the line has a keyword.
bool has_keyword(const RawLine& line);

/// True if the line begins with a frequency: "8 Hz ...", "4kHz ...".
bool begins_with_frequency(const RawLine& line);

/// Reads a line of keywords into the block and what carries over.
void read_keyword_line(const RawLine& line, ZongeSurvey& survey, ZongeBlock& block, ZongeAccount& account);

/// Takes the configuration that a block names: "Vector", "Tensor" or "AMT".
void take_configuration(const char* configuration, ZongeSurvey& survey, ZongeAccount& account);

}  // namespace formats::zonge
