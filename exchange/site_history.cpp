#include "exchange/site_history.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <map>
#include <utility>

#include "core/number_text.h"
#include "database/survey_database.h"

namespace Module_exchange {

namespace {

using Module_database::StoredReading;
using Module_tensor::curve_types;
using Module_tensor::CurveSource;
using Module_tensor::CurveType;
using Module_tensor::StationCurves;

constexpr double date_not_known = 2.0;   // 1 January 1900: what an import takes for a file without a date
constexpr double last_date = 2958465.0;  // 31 December 9999

bool is_diagonal(CurveType type) { return type == CurveType::ExHx || type == CurveType::EyHy; }

/// Sentences about components, those of one content together.
class SentencesOfTypes {
 public:
  void add(std::size_t type, const std::string& sentence) {
    if (sentence.empty()) {
      return;
    }
    const auto same = std::ranges::find(groups_, sentence, &Group::sentence);
    if (same == groups_.end()) {
      groups_.push_back({std::string(curve_types[type]), sentence});
    } else {
      same->types += ", " + std::string(curve_types[type]);
    }
  }
  void give(std::vector<std::string>& sentences) const {
    for (const Group& group : groups_) {
      sentences.push_back(group.types + ": " + group.sentence);
    }
  }

 private:
  struct Group {
    std::string types;
    std::string sentence;
  };
  std::vector<Group> groups_;
};

/// How many readings of a scan rate (Hz) were read from files, and how many of them are switched off.
struct RateReadings {
  std::size_t count = 0;
  std::size_t off = 0;
};
using ReadingsOfTypes = std::array<std::map<float, RateReadings>, curve_types.size()>;

std::string of_station(const Module_tensor::LineChoice& choice, const StationCurves& curves) {
  return choice.criteria() + " AND Station = " + criterion_text(curves.station) +
         " AND ReductionType IN (0,1,2) AND FileID > 0";
}

ReadingsOfTypes readings_of(const std::string& criteria) {
  ReadingsOfTypes readings;
  dao::Recordset rows = Module_database::open_survey().database.open_recordset(
      "SELECT DataType,SampleRate,UseReading FROM ReadingsDataTable WHERE " + criteria);
  for (; !rows.eof(); rows.move_next()) {
    if (const auto type = Module_tensor::curve_type_index(rows.get_text("DataType"))) {
      RateReadings& of_rate = readings[*type][rows.get_single("SampleRate")];
      ++of_rate.count;
      of_rate.off += rows.get_bit("UseReading") ? 0 : 1;
    }
  }
  return readings;
}

/// "3 repeats at 4096 Hz averaged, 1 at 256 Hz (1 switched off); 2 scan rates merged"
std::string reading_text(const std::map<float, RateReadings>& rates) {
  std::string text;
  std::size_t merged = 0;
  for (auto rate = rates.rbegin(); rate != rates.rend(); ++rate) {
    const auto& [scan_rate, readings] = *rate;
    const std::size_t used = readings.count - readings.off;
    text += (text.empty() ? "" : ", ") + (used > 1    ? "average of " + counted(used, "repeat", "repeats")
                                          : used == 1 ? counted(used, "reading", "readings")
                                                      : "an earlier average of no reading in use");
    text += scan_rate > 0.0F ? " at " + plain_text(scan_rate) + " Hz" : "";
    text += readings.off > 0 ? " (" + plain_text(static_cast<std::int64_t>(readings.off)) +
                                   (used > 0 ? " more switched off)" : " switched off)")
                             : "";
    merged += used > 0 ? 1 : 0;
  }
  return merged > 1 ? text + "; " + counted(merged, "scan rate", "scan rates") + " merged" : text;
}

/// How many points of a quantity have a value that doesn't count, and in how many others a repeat is masked.
struct MaskCount {
  std::size_t masked = 0;
  std::size_t partly = 0;
  std::size_t by_sign = 0;  // phases of a diagonal element that an import has masked, and that are values
};

/// Whether a quantity has a value, masked or not: what has a resistivity of 0 isn't there.
bool is_measured(std::size_t type, const CurveSource& source, std::size_t quantity, std::size_t at) {
  const auto& values = source.regardless_of_masks[at];
  const bool is_there = Module_database::is_tipper(curve_types[type]) || values[0].value != 0.0F;
  return is_there && !is_absent(double{values[quantity].value});
}

MaskCount masks_of(std::size_t type, const StationCurves& curves, std::size_t quantity) {
  const StoredReading& merged = curves.merged[type];
  const CurveSource& source = curves.sources[type];
  const bool any_sign = quantity == 1 && is_diagonal(static_cast<CurveType>(type));
  MaskCount count;
  for (std::size_t at = 0; at < source.regardless_of_masks.size(); ++at) {
    if (!is_measured(type, source, quantity, at)) {
      continue;
    }
    if (merged.curve.point_counts(static_cast<int>(quantity) + 1, at)) {
      count.partly += source.some_masked[at][quantity] ? 1 : 0;
    } else if (any_sign &&
               !is_absent(double{
                   unmasked_element_point(curves, static_cast<CurveType>(type), at).values[1].value})) {
      ++count.by_sign;
    } else {
      ++count.masked;
    }
  }
  return count;
}

void add_count(std::size_t count, const std::string& one, const std::string& several, const std::string& what,
               std::string& text) {
  if (count > 0) {
    text += (text.empty() ? "" : ", ") + counted(count, one, several) + what;
  }
}

/// "3 resistivities masked, 5 phases masked, 1 phase with masked repeats"
std::string masks_text(std::size_t type, const StationCurves& curves) {
  using Names = std::pair<std::string, std::string>;
  const std::array<Names, Module_tensor::quantity_count> names =
      Module_database::is_tipper(curve_types[type])
          ? std::array{Names{"real part", "real parts"}, Names{"imaginary part", "imaginary parts"}}
          : std::array{Names{"resistivity", "resistivities"}, Names{"phase", "phases"}};
  const bool takes_all = is_diagonal(static_cast<CurveType>(type));
  std::string text;
  for (std::size_t quantity = 0; quantity < names.size(); ++quantity) {
    const MaskCount count = masks_of(type, curves, quantity);
    const auto& [one, several] = names[quantity];
    add_count(count.masked, one, several, " masked", text);
    add_count(count.partly, one, several,
              takes_all ? " with masked repeats, taken all the same" : " with masked repeats", text);
    add_count(count.by_sign, one, several, " masked at the import for the sign, taken all the same", text);
  }
  return text;
}

std::string switch_text(const StoredReading& merged) {
  return !merged.UseReading       ? "switched off"
         : !merged.UseResistivity ? "resistivity switched off"
         : !merged.UsePhase       ? "phase switched off"
                                  : "";
}

std::string static_text(std::size_t type, const StoredReading& merged) {
  return merged.ResOffset == 1.0F || Module_database::is_tipper(curve_types[type])
             ? ""
             : "static factor " + plain_text(merged.ResOffset) +
                   " included in the resistivity, its root in the "
                   "impedance";
}

std::optional<double> earliest_date(const std::string& criteria) {
  std::optional<double> earliest;
  for (const auto& [file, date] : dates_of_files(criteria)) {
    earliest = std::min(date, earliest.value_or(date));
  }
  return earliest;
}

std::size_t frequencies_switched_off(const StationCurves& curves, const Frequencies& frequencies) {
  std::vector<float> off;
  for (const StoredReading& merged : curves.merged) {
    std::ranges::copy_if(merged.curve.frequencies, std::back_inserter(off), [&](float frequency) {
      const std::int32_t at = frequencies.position(frequency);
      return at >= 0 && !frequencies.is_enabled(at);
    });
  }
  std::ranges::sort(off);
  return static_cast<std::size_t>(std::unique(off.begin(), off.end()) - off.begin());
}

}  // namespace

std::string counted(std::size_t count, const std::string& one, const std::string& several) {
  return plain_text(static_cast<std::int64_t>(count)) + ' ' + (count == 1 ? one : several);
}

std::string ey_sentence(const StationCurves& curves, const Module_tensor::StationTensor& tensor) {
  const bool readings_say_it = curves.of(CurveType::EyHx).axes.EyTurned == Module_database::ey_turned;
  if (tensor.ey_reason == Module_tensor::EyReason::user) {
    return "The sign of Ey is reversed, as its site says that the readings have it turned";
  }
  if (tensor.ey_reason == Module_tensor::EyReason::facts || readings_say_it) {
    return "The sign of Ey, turned in the survey, is turned back";
  }
  return tensor.points.empty()
             ? "The sign of Ey is reversed by the quadrant of the phases of EyHx"
             : "The sign of Ey is reversed, as Zxy and Zyx point the same way in most of the readings";
}

std::size_t frequencies_with_several_points(const StationCurves& curves) {
  std::vector<float> several;
  for (const StoredReading& merged : curves.merged) {
    const std::vector<float>& all = merged.curve.frequencies;
    for (auto at = std::ranges::adjacent_find(all); at != all.end();
         at = std::adjacent_find(at + 1, all.end())) {
      several.push_back(*at);
    }
  }
  std::ranges::sort(several);
  return static_cast<std::size_t>(std::unique(several.begin(), several.end()) - several.begin());
}

std::map<std::int32_t, double> dates_of_files(const std::string& criteria) {
  std::map<std::int32_t, double> dates;
  dao::Recordset rows = Module_database::open_survey().database.open_recordset(
      "SELECT ID,DateCollected FROM FileTable WHERE ID IN (SELECT FileID FROM ReadingsDataTable WHERE " +
      criteria + ")");
  for (; !rows.eof(); rows.move_next()) {
    const double date = rows.is_null("DateCollected") ? date_not_known : rows.get_date("DateCollected");
    if (date > date_not_known && date <= last_date) {
      dates[rows.get_long("ID")] = date;
    }
  }
  return dates;
}

StationPast station_past(const Module_tensor::LineChoice& choice, const StationCurves& curves,
                         const Frequencies& frequencies) {
  const std::string criteria = of_station(choice, curves);
  const ReadingsOfTypes readings = readings_of(criteria);
  SentencesOfTypes sentences;
  for (std::size_t type = 0; type < curve_types.size(); ++type) {
    sentences.add(type, reading_text(readings[type]));
  }
  for (std::size_t type = 0; type < curve_types.size(); ++type) {
    if (const StoredReading& merged = curves.merged[type]; merged.ID != 0) {
      sentences.add(type, masks_text(type, curves));
      sentences.add(type, switch_text(merged));
      sentences.add(type, static_text(type, merged));
    }
  }
  StationPast past;
  sentences.give(past.sentences);
  if (const std::size_t off = frequencies_switched_off(curves, frequencies); off > 0) {
    past.sentences.push_back(counted(off, "frequency", "frequencies") + " switched off and left out");
  }
  past.date_collected = earliest_date(criteria);
  return past;
}

}  // namespace Module_exchange
