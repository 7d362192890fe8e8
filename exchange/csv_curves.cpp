#include "exchange/csv_curves.h"

#include <cmath>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <utility>

#include "core/number_text.h"
#include "database/reading_facts.h"
#include "database/survey_database.h"
#include "exchange/curve_heads.h"
#include "platform/dao/text_literal.h"
#include "reduction/averages.h"
#include "reduction/data_sets/point_error.h"

namespace Module_exchange {

using formats::csv::CurvePoint;
using formats::csv::CurveRows;
using formats::transfer_function::Component;
using formats::transfer_function::not_given;
using Module_database::StoredReading;
using Module_tensor::CurveSource;
using Module_tensor::CurveType;

namespace {

constexpr const char* qp = "QP";

/// The error of resistivity (1) or phase (2) of a point, ohm-m or degrees; absent where none is known.
using ErrorOf = std::function<float(int field, std::size_t point)>;

double known_or_nan(float value) {
  return std::isfinite(value) && !is_absent(double{value}) ? decimal_of_single(value) : not_given;
}

double error_or_nan(float error) { return error > 0.0F ? known_or_nan(error) : not_given; }

/// A value, masked or not. A computed curve has no value where all that went into it is masked; then the
/// readings behind it have the mean regardless of masks, else the fields that the average keeps of it. These
/// hold 0 where nothing went in, and what files keep there is something else.
float value_at(const StoredReading& reading, const CurveSource& source, int field, std::size_t point) {
  constexpr int to_all_values = Module_database::field_all_resistivity - Module_database::field_resistivity;
  const Module_database::Curve& curve = reading.curve;
  if (curve.is_present(field, point) || reading.FileID > 0) {
    return curve.value(field, point);
  }
  if (!source.regardless_of_masks.empty()) {
    const float mean = source.regardless_of_masks[point][static_cast<std::size_t>(field - 1)].value;
    if (!is_absent(double{mean})) {
      return mean;
    }
  }
  const float kept = curve.value(field + to_all_values, point);
  return Module_averaged_data::has_deviations(reading, point) && kept != 0.0F ? kept : no_data;
}

/// Adds the points of a reading that are at frequencies in use.
/// @param source  what the readings behind it say; empty: nothing
/// @param factor  on resistivities
void add_points(const StoredReading& reading, const CurveSource& source, float factor,
                const ErrorOf& error_of, const Frequencies& frequencies, CurveRows& rows) {
  using Module_database::field_phase;
  using Module_database::field_resistivity;
  const auto scaled = [factor](float value) { return is_absent(double{value}) ? value : value * factor; };
  for (std::size_t at = 0; at < reading.curve.count(); ++at) {
    const float frequency = reading.curve.frequencies[at];
    if (!(frequency > 0.0F) || is_switched_off(frequencies, frequency)) {
      continue;
    }
    CurvePoint point;
    point.frequency = decimal_of_single(frequency);
    point.resistivity = known_or_nan(scaled(value_at(reading, source, field_resistivity, at)));
    point.phase = known_or_nan(value_at(reading, source, field_phase, at));
    point.resistivity_error = error_or_nan(scaled(error_of(field_resistivity, at)));
    point.phase_error = error_or_nan(error_of(field_phase, at));
    point.resistivity_masked =
        !reading.UseReading || !reading.UseResistivity || reading.curve.counts_at(field_resistivity, at) != 1;
    point.phase_masked =
        !reading.UseReading || !reading.UsePhase || reading.curve.counts_at(field_phase, at) != 1;
    if (!std::isnan(point.resistivity) || !std::isnan(point.phase)) {
      rows.points.push_back(point);
    }
  }
}

void add_merged(const StoredReading& merged, const CurveSource& source, const Frequencies& frequencies,
                CurveRows rows, std::vector<CurveRows>& curves) {
  const bool has_factor = !Module_database::is_tipper(rows.data_type) && rows.data_type != qp;
  rows.scan_rate = 0.0;
  add_points(
      merged, source, has_factor ? merged.ResOffset : 1.0F,
      [&](int field, std::size_t point) {
        return curve_error(merged, source, static_cast<std::size_t>(field - 1), point);
      },
      frequencies, rows);
  if (!rows.points.empty()) {
    curves.push_back(std::move(rows));
  }
}

/// The sources know the axes also where a merged curve has lost them.
StoredReading with_axes_of(const CurveSource& source, StoredReading merged) {
  if (source.axes.size() == 1) {
    merged.axes = source.axes.front();
  }
  return merged;
}

/// The stations of a line that have readings of a kind that no tensor is made from.
std::set<double> stations_with_qp(const Module_tensor::LineChoice& choice) {
  std::set<double> stations;
  dao::Recordset rows = Module_database::open_survey().database.open_recordset(
      "SELECT DISTINCT Station FROM ReadingsDataTable WHERE " + choice.criteria() +
      " AND DataType = " + dao::text_literal(qp));
  for (; !rows.eof(); rows.move_next()) {
    stations.insert(rows.get_double("Station"));
  }
  return stations;
}

/// @return 0, or -1 after a message
int add_qp(const LineContents& line, double station, const CurveHeads& heads,
           std::vector<CurveRows>& curves) {
  using namespace Module_averaged_data;
  const Module_database::ReadingKey key{line.choice.line,  station, line.choice.reference_type, 0.0F, qp,
                                        line.choice.dipole};
  StoredReading merged;
  if (get_reduced_reading(Module_database::reduction_merged, AllowRaw::yes, key, line.frequencies, merged) !=
      0) {
    return -1;
  }
  if (merged.ID != 0) {
    add_merged(merged, {}, line.frequencies, heads.head(station, qp, merged), curves);
  }
  return 0;
}

int merged_curves(const LineContents& line, const CurveHeads& heads, std::vector<CurveRows>& curves) {
  std::set<double> with_qp = stations_with_qp(line.choice);
  for (const Module_tensor::StationCurves& station : line.tensors.curves.stations) {
    for (std::size_t type = 0; type < Module_tensor::curve_types.size(); ++type) {
      if (station.merged[type].ID != 0) {
        const StoredReading merged = with_axes_of(station.sources[type], station.merged[type]);
        add_merged(merged, station.sources[type], line.frequencies,
                   heads.head(station.station, std::string(Module_tensor::curve_types[type]), merged),
                   curves);
      }
    }
    if (with_qp.erase(station.station) > 0 && add_qp(line, station.station, heads, curves) != 0) {
      return -1;
    }
  }
  for (const double station : with_qp) {  // that have nothing else
    if (add_qp(line, station, heads, curves) != 0) {
      return -1;
    }
  }
  return 0;
}

/// A component of a document; a tipper has its parts in place of resistivity and phase.
CurvePoint document_point(double frequency, Component component,
                          const formats::transfer_function::Value& value, bool ey_turned) {
  CurvePoint point;
  point.frequency = frequency;
  point.resistivity_masked = point.phase_masked = false;
  if (component == Component::tx || component == Component::ty) {
    point.resistivity = value.value.real();
    point.phase = value.value.imag();
    point.resistivity_error = point.phase_error = std::sqrt(value.variance / 2.0);
    return point;
  }
  const bool turn = ey_turned && (component == Component::zyx || component == Component::zyy);
  point.resistivity = value.resistivity;
  point.phase = turn ? Module_tensor::phase_of_turned_ey(value.phase) : value.phase;
  point.resistivity_error = value.resistivity_error;
  point.phase_error = value.phase_error;
  return point;
}

void add_rotated(const StationDocument& document, const Module_tensor::StationTensor& tensor,
                 const CurveHeads& heads, std::vector<CurveRows>& curves) {
  const auto& function = document.document.function;
  for (std::size_t type = 0; type < Module_tensor::curve_types.size(); ++type) {
    const auto component = static_cast<Component>(type);
    CurveRows rows = heads.head(tensor.station, std::string(Module_tensor::curve_types[type]), {});
    rows.scan_rate = 0.0;
    rows.azimuth = function.site.x_azimuth;
    for (const auto& point : function.points) {
      const CurvePoint turned =
          document_point(point.frequency, component, point.of(component), tensor.ey_turned);
      if (!std::isnan(turned.resistivity) || !std::isnan(turned.phase)) {
        rows.points.push_back(turned);
      }
    }
    if (!rows.points.empty()) {
      curves.push_back(std::move(rows));
    }
  }
}

/// Numbers by which a table tells the recordings of a station at one scan rate apart: the event of each, but
/// another one where recordings of several files have the same.
class RecordingNumbers {
 public:
  std::int32_t of(double station, float rate, const StoredReading& reading) {
    OfRate& known = numbers_[{station, rate}];
    const auto [place, is_new] =
        known.of_recording.try_emplace({reading.FileID, reading.EventNumber}, reading.EventNumber);
    if (is_new && !known.taken.insert(place->second).second) {
      place->second = *known.taken.rbegin() + 1;
      known.taken.insert(place->second);
    }
    return place->second;
  }

 private:
  struct OfRate {
    std::map<std::pair<std::int32_t, std::int32_t>, std::int32_t> of_recording;  // by file and event
    std::set<std::int32_t> taken;
  };
  std::map<std::pair<double, float>, OfRate> numbers_;
};

void stored_curves(const LineContents& line, std::int32_t reduction, const CurveHeads& heads,
                   std::vector<CurveRows>& curves) {
  const std::string criteria =
      line.choice.criteria() + " AND ReductionType = " + format_number(reduction, "0");
  const Module_database::ReadingFacts facts(criteria);
  RecordingNumbers recordings;
  dao::Recordset rows = Module_database::open_survey().database.open_recordset(
      "SELECT * FROM ReadingsDataTable WHERE " + criteria +
      " ORDER BY Station,DataType,SampleRate,EventNumber,ID");
  for (; !rows.eof(); rows.move_next()) {
    StoredReading reading = Module_database::read_reading(rows);
    facts.add_to(reading);
    CurveRows added = heads.head(rows.get_double("Station"), rows.get_text("DataType"), reading);
    added.scan_rate = decimal_of_single(rows.get_single("SampleRate"));
    if (reading.FileID > 0) {
      added.event = recordings.of(rows.get_double("Station"), rows.get_single("SampleRate"), reading);
    }
    add_points(
        reading, {}, 1.0F,
        [&](int field, std::size_t point) {
          return Module_averaged_data::point_error(reading, static_cast<Module_database::Field>(field), point)
              .value;
        },
        line.frequencies, added);
    if (!added.points.empty()) {
      curves.push_back(std::move(added));
    }
  }
}

}  // namespace

int curves_of_line(const LineContents& line, std::int32_t reduction, bool rotated,
                   std::vector<CurveRows>& curves) {
  curves.clear();
  const CurveHeads heads(line.choice);
  if (reduction != Module_database::reduction_merged) {
    stored_curves(line, reduction, heads, curves);
    return 0;
  }
  if (!rotated) {
    return merged_curves(line, heads, curves);
  }
  for (std::size_t station = 0; station < line.documents.size(); ++station) {
    if (line.documents[station].refusal.empty()) {
      add_rotated(line.documents[station], line.tensors.stations[station], heads, curves);
    }
  }
  return 0;
}

std::string curves_csv(const std::vector<CurveRows>& curves) {
  std::string text = formats::csv::curve_table_header();
  for (const CurveRows& curve : curves) {
    text += formats::csv::curve_table_rows(curve);
  }
  return text;
}

}  // namespace Module_exchange
