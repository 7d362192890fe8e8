#include "reduction/unsupported_curves.h"

#include <cstdint>
#include <map>
#include <utility>

#include "core/number_text.h"
#include "database/survey_database.h"
#include "platform/dao/text_literal.h"

namespace Module_averaged_data {

namespace {

/// What there is of one scan rate.
struct RateRows {
  bool repeats = false;
  bool repeats_in_use = false;
  bool average = false;
  bool average_in_use = false;
};

struct CurveRows {
  std::map<float, RateRows> rates;  // by scan rate, Hz
  bool merged = false;
  bool merged_in_use = false;
};

using Place = std::pair<double, std::string>;  // station and data type

bool is_in_use(const dao::Recordset& row) {
  return row.get_bit("UseReading") && (row.get_bit("UseResistivity") || row.get_bit("UsePhase"));
}

void add_row(const dao::Recordset& row, std::map<Place, CurveRows>& curves) {
  CurveRows& curve = curves[{row.get_double("Station"), row.get_text("DataType")}];
  const std::int32_t reduction = row.get_long("ReductionType");
  if (reduction == Module_database::reduction_merged) {
    curve.merged = true;
    curve.merged_in_use |= is_in_use(row);
    return;
  }
  RateRows& rate = curve.rates[row.get_single("SampleRate")];
  if (reduction == Module_database::reduction_averaged) {
    rate.average = true;
    rate.average_in_use |= is_in_use(row);
    rate.repeats_in_use |= row.get_long("FileID") > 0;  // an average from a file rests on that file
  } else {
    rate.repeats = true;
    rate.repeats_in_use |= row.get_bit("UseReading");
  }
}

void add_unsupported(const Place& place, const CurveRows& curve, std::vector<UnsupportedCurve>& unsupported) {
  const auto& [station, data_type] = place;
  bool any_average = false;
  bool any_in_use = false;
  for (const auto& [scan_rate, rate] : curve.rates) {
    any_average |= rate.average;
    any_in_use |= rate.average_in_use;
  }
  if (curve.merged && any_average && !any_in_use) {
    unsupported.push_back({station, data_type, 0.0F, curve.merged_in_use});
  }
  for (const auto& [scan_rate, rate] : curve.rates) {
    if (rate.average && rate.repeats && !rate.repeats_in_use) {
      unsupported.push_back({station, data_type, scan_rate, rate.average_in_use && curve.merged_in_use});
    }
  }
}

std::string name_of(const UnsupportedCurve& curve) {
  return "station " + plain_text(curve.station) + ", " + curve.data_type + ", " +
         (curve.scan_rate > 0.0F ? plain_text(curve.scan_rate) + " Hz" : "all scan rates");
}

}  // namespace

std::vector<UnsupportedCurve> unsupported_curves(const Module_database::LineSelection& line,
                                                 std::optional<double> station) {
  std::string criteria = "ReductionType IN (0,1,2) AND LineNumber = " + dao::text_literal(line.line);
  if (station) {
    criteria += " AND Station = " + criterion_text(*station);
  }
  criteria += " AND ReferenceType = " + format_number(line.reference_type, "0") +
              " AND DipoleLength = " + criterion_text(line.dipole);
  if (!line.data_type.empty()) {
    criteria += " AND DataType = " + dao::text_literal(line.data_type);
  }
  dao::Recordset rows = Module_database::open_survey().database.open_recordset(
      "SELECT Station,DataType,ReductionType,SampleRate,FileID,UseReading,UseResistivity,UsePhase FROM "
      "ReadingsDataTable WHERE " +
      criteria);
  std::map<Place, CurveRows> curves;
  for (; !rows.eof(); rows.move_next()) {
    try {
      add_row(rows, curves);
    } catch (const dao::Error&) {
      continue;  // who reads its curve tells what is wrong with it
    }
  }
  std::vector<UnsupportedCurve> unsupported;
  for (const auto& [place, curve] : curves) {
    add_unsupported(place, curve, unsupported);
  }
  return unsupported;
}

std::string unsupported_text(std::span<const UnsupportedCurve> curves) {
  constexpr std::size_t named = 3;
  std::size_t count = 0;
  std::string names;
  for (const UnsupportedCurve& curve : curves) {
    if (curve.in_use && ++count <= named) {
      names += (names.empty() ? "" : "; ") + name_of(curve);
    }
  }
  if (count == 0) {
    return {};
  }
  const std::string more =
      count > named ? "; and " + plain_text(static_cast<std::int64_t>(count - named)) + " more" : "";
  return "No reading is in use, and the earlier curve remains: " + names + more;
}

std::string unsupported_hint(const Module_database::LineSelection& line, std::optional<double> station) {
  try {
    return unsupported_text(unsupported_curves(line, station));
  } catch (const dao::Error&) {
    return {};
  }
}

}  // namespace Module_averaged_data
