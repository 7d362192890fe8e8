// csv_curves.h: the curves of a line as they go into a table.
//
// Merged curves have the static factor in their resistivities; their errors are those of the repeats' spread,
// else of the files. Averages and raw readings are as stored, an average with the deviation of its repeats as
// its error, else with that of its files. Frequencies that are switched off are left out. A masked value is
// there with its mask; of a merged curve it is the mean regardless of masks.
#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "exchange/line_contents.h"
#include "formats/csv/curve_table.h"

namespace Module_exchange {

/// The curves of a line by station, data type, scan rate and event: merged ones (reduction 2), averages (1)
/// or raw readings (0), all with points. Needs an open survey; throws dao::Error.
/// @param rotated  merged curves of impedances and tippers are those of the documents then, with the sign of
///                 Ey of the readings
/// @return 0, or -1 after a message
[[nodiscard]] int curves_of_line(const LineContents& line, std::int32_t reduction, bool rotated,
                                 std::vector<formats::csv::CurveRows>& curves);

/// The table. Lines end in CR LF.
std::string curves_csv(const std::vector<formats::csv::CurveRows>& curves);

}  // namespace Module_exchange
