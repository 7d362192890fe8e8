// zonge_raw_values.h: what single tokens of a raw receiver file mean, in headers, tables and data lines
// alike.
#pragma once
#include <cstdint>
#include <string>

#include "formats/zonge/zonge_raw_account.h"
#include "formats/zonge/zonge_raw_block.h"
#include "formats/zonge/zonge_raw_line.h"

namespace formats::zonge {

/// The number of an input, 1 to 64; 0 after a fault.
std::int32_t channel_number(const RawLine& line, const RawToken& token, ZongeBlock& block,
                            ZongeAccount& account);

/// Takes an input's gain; the account says a new or a different one.
void take_gain(std::int32_t channel, double gain, ZongeSurvey& survey, ZongeAccount& account);

/// "Ex" for a token EX, ex or Ex1; empty if it doesn't name a component.
std::string component_name(const RawToken& token);

/// The number of a token in base units: "4kHz" is 4000, "125 mHz" is 0.125.
double number_in_base_units(const RawToken& token);

}  // namespace formats::zonge
