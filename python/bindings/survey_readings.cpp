#include "python/bindings/survey_readings.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <set>
#include <stdexcept>
#include <tuple>
#include <utility>

#include "core/number_text.h"
#include "core/text_fields.h"
#include "database/frequency_store.h"
#include "database/reading_facts.h"
#include "database/sites.h"
#include "database/stations.h"
#include "database/survey_database.h"
#include "database/survey_lists.h"
#include "exchange/asked_lines.h"
#include "platform/dao/case_folding.h"
#include "platform/dao/text_literal.h"
#include "python/bindings/python_interface.h"
#include "reduction/computed_rows.h"

namespace Python {

using namespace Module_database;
using Module_tensor::LineChoice;

namespace {

template <class Items, class Text>
std::string listed(const Items& items, const Text& text_of_item) {
  std::string list;
  for (const auto& item : items) {
    list += (list.empty() ? "" : ", ") + text_of_item(item);
  }
  return list;
}

[[noreturn]] void refuse_line(const std::string& given) {
  throw std::invalid_argument("line: the survey has no line '" + given + "'; it has " +
                              listed(listed_lines(), [](const std::string& each) { return each; }));
}

/// A line as the survey spells it.
std::string find_line(const std::string& given) {
  std::string line = spelled_line(given);
  if (!has_readings_or_files(line)) {
    refuse_line(given);
  }
  return line;
}

std::string kind_text(const LineChoice& kind) {
  return "reference_type=" + plain_text(kind.reference_type) + " with dipole=" + plain_text(kind.dipole);
}

bool same_number(double asked, float stored) {
  return static_cast<float>(asked) == stored || asked == decimal_of_single(stored);
}

std::string criteria_of(const LineChoice& kind, double station, const std::string& data_type) {
  return kind.criteria() + " AND Station = " + criterion_text(station) +
         " AND DataType = " + dao::text_literal(data_type);
}

void check_data_type(const std::string& data_type) {
  if (!Module_tensor::curve_type_index(data_type) && data_type != "QP") {
    throw std::invalid_argument("data_type: '" + data_type +
                                "' is none of ExHx, ExHy, EyHx, EyHy, HzHx, HzHy, QP");
  }
}

/// The scan rate of an average: the only one, or the one asked for.
float find_rate(const CurveQuery& query, const std::string& criteria) {
  std::vector<float> rates;
  dao::Recordset rows = open_survey().database.open_recordset(
      "SELECT DISTINCT SampleRate FROM ReadingsDataTable WHERE ReductionType<2 AND " + criteria);
  for (; !rows.eof(); rows.move_next()) {
    const float rate = rows.get_single("SampleRate");
    if (!query.scan_rate || same_number(*query.scan_rate, rate)) {
      rates.push_back(rate);
    }
  }
  if (rates.size() == 1) {
    return rates.front();
  }
  throw std::invalid_argument(
      rates.empty() ? "scan_rate: there are no readings" +
                          (query.scan_rate ? " of " + plain_text(*query.scan_rate) + " Hz" : std::string())
                    : "scan_rate: there are several, choose one of " +
                          listed(rates, [](float rate) { return plain_text(rate); }) + " Hz");
}

/// What both searches order by: line, station, reference type, dipole, data type, scan rate, event.
auto order_of(const TakenReading& taken) {
  const ReadingKey& key = taken.key;
  return std::make_tuple(dao::folded_text(key.line), key.station, key.reference_type, key.dipole,
                         key.data_type, key.scan_rate, taken.reading.EventNumber);
}

using KeyOrder = std::tuple<std::string, double, std::int32_t, float, std::string, float>;

KeyOrder order_of(const ReadingKey& key) {
  return {
      dao::folded_text(key.line), key.station, key.reference_type, key.dipole, key.data_type, key.scan_rate};
}

ReadingKey key_of(const dao::Recordset& row, bool with_rate) {
  return {row.get_text("LineNumber"),    row.get_double("Station"),
          row.get_long("ReferenceType"), with_rate ? row.get_single("SampleRate") : 0.0F,
          row.get_text("DataType"),      row.get_single("DipoleLength")};
}

/// Which rows a filter takes, but for reduction, dipole and scan rate.
std::string criteria_of(const CurveFilter& filter) {
  std::string criteria = "NumFrequencies > 0";
  if (filter.line) {
    const std::string line = find_line(*filter.line);
    criteria += " AND LineNumber = " + dao::text_literal(line);
    if (filter.station) {
      criteria += " AND Station = " + criterion_text(find_station(line, *filter.station));
    }
  }
  if (filter.data_type) {
    check_data_type(*filter.data_type);
    criteria += " AND DataType = " + dao::text_literal(*filter.data_type);
  }
  if (filter.reference_type) {
    criteria += " AND ReferenceType = " + plain_text(*filter.reference_type);
  }
  return criteria;
}

bool takes(const CurveFilter& filter, const ReadingKey& key, std::int32_t reduction) {
  return (!filter.dipole || same_number(*filter.dipole, key.dipole)) &&
         (!filter.scan_rate || reduction == reduction_merged ||
          same_number(*filter.scan_rate, key.scan_rate));
}

std::vector<std::unique_ptr<TakenReading>> stored_curves(const CurveFilter& filter, std::int32_t reduction,
                                                         const std::string& criteria) {
  const std::string of_reduction = "ReductionType = " + plain_text(reduction) + " AND " + criteria;
  const ReadingFacts facts(of_reduction);
  std::vector<std::unique_ptr<TakenReading>> found;
  // What was computed here comes before what a file holds of the same key.
  dao::Recordset rows = open_survey().database.open_recordset("SELECT * FROM ReadingsDataTable WHERE " +
                                                              of_reduction + " ORDER BY FileID,ID");
  for (; !rows.eof(); rows.move_next()) {
    ReadingKey key = key_of(rows, reduction != reduction_merged);
    if (takes(filter, key, reduction)) {
      auto taken = std::make_unique<TakenReading>();
      taken->reduction = reduction;
      taken->key = std::move(key);
      taken->reading = read_reading(rows);
      facts.add_to(taken->reading);
      found.push_back(std::move(taken));
    }
  }
  return found;
}

/// The curves of keys that have readings of a lower reduction only.
void compute_missing(const CurveFilter& filter, std::int32_t reduction, const std::string& criteria,
                     std::set<KeyOrder>& known, std::vector<std::unique_ptr<TakenReading>>& found) {
  const bool with_rate = reduction != reduction_merged;
  std::map<KeyOrder, ReadingKey> missing;
  dao::Recordset rows = open_survey().database.open_recordset(
      std::string("SELECT DISTINCT LineNumber,Station,ReferenceType,DataType,DipoleLength") +
      (with_rate ? ",SampleRate" : "") + " FROM ReadingsDataTable WHERE ReductionType < " +
      plain_text(reduction) + " AND " + criteria);
  for (; !rows.eof(); rows.move_next()) {
    ReadingKey key = key_of(rows, with_rate);
    if (takes(filter, key, reduction) && !known.contains(order_of(key))) {
      missing.try_emplace(order_of(key), std::move(key));
    }
  }
  FrequencyLists lists;
  for (auto& [order, key] : missing) {
    const StationRows place = Module_database::find_station(StationSearch::look_up, key.line, key.station);
    auto taken = std::make_unique<TakenReading>();
    taken->reduction = reduction;
    taken->reading = Module_averaged_data::find_or_compute(
        place, reduction, Module_averaged_data::AllowRaw::yes, key, lists.of(key.reference_type));
    taken->key = std::move(key);
    if (taken->reading.ID != 0) {
      found.push_back(std::move(taken));
    }
  }
}

}  // namespace

LineChoice find_kind(const CurveQuery& query) {
  const std::string line = spelled_line(query.line);
  const std::vector<LineChoice> kinds = Module_tensor::kinds_of_line(line);
  if (kinds.empty()) {
    (void)find_line(query.line);  // says which lines there are
  }
  std::vector<LineChoice> asked;
  std::ranges::copy_if(kinds, std::back_inserter(asked), [&](const LineChoice& kind) {
    return (!query.reference_type || *query.reference_type == kind.reference_type) &&
           (!query.dipole || same_number(*query.dipole, kind.dipole));
  });
  if (asked.size() == 1) {
    return asked.front();
  }
  const std::string has = "line " + line + " has " + listed(kinds, kind_text);
  throw std::invalid_argument(kinds.empty()   ? "line " + line + " has no readings of a tensor element"
                              : asked.empty() ? has + ", not what reference_type and dipole ask for"
                                              : has + "; choose with reference_type and dipole");
}

LineSelection find_line_selection(const CurveQuery& query) {
  constexpr const char* in_phase_and_quadrature = "QP";
  LineChoice kind;
  if (query.data_type != in_phase_and_quadrature) {
    kind = at_survey([&] { return find_kind(query); });
  } else {
    run_work([&] {
      std::optional<float> dipole;
      if (query.dipole) {
        dipole = static_cast<float>(*query.dipole);
      }
      const std::vector<LineChoice> found = Module_exchange::choose_lines(
          {{query.line}, query.reference_type, dipole, "reference_type and dipole"},
          Module_exchange::LineKinds::one_of_any);
      if (found.empty()) {
        return -1;
      }
      kind = found.front();
      return 0;
    });
  }
  return {kind.line, kind.reference_type, query.data_type, kind.dipole};
}

double find_station(const std::string& line, const std::string& station) {
  if (is_numeric(station)) {
    const double number = numeric_value(station);
    if (Module_database::find_station(StationSearch::look_up, line, number).StationID != no_row) {
      return number;
    }
  }
  for (const Site& site : sites_of_line(line)) {
    if (!site.name.empty() && equal_ignoring_case(site.name, station)) {
      return site.station;
    }
  }
  throw std::invalid_argument("station: line " + line + " has no station " +
                              (is_numeric(station) ? plain_text(numeric_value(station)) : station));
}

std::vector<StationKind> kinds_of_station(const std::string& given, const std::string& station_text) {
  const std::string line = find_line(given);
  const double station = find_station(line, station_text);
  std::set<StationKind> kinds;
  dao::Recordset rows = open_survey().database.open_recordset(
      "SELECT DISTINCT DataType,ReductionType,SampleRate,ReferenceType,DipoleLength FROM ReadingsDataTable "
      "WHERE NumFrequencies > 0 AND LineNumber = " +
      dao::text_literal(line) + " AND Station = " + criterion_text(station));
  for (; !rows.eof(); rows.move_next()) {
    kinds.insert({rows.get_text("DataType"), rows.get_long("ReductionType"), rows.get_single("SampleRate"),
                  rows.get_long("ReferenceType"), rows.get_single("DipoleLength")});
  }
  return {kinds.begin(), kinds.end()};
}

std::unique_ptr<TakenReading> find_curve(const CurveQuery& query, std::int32_t reduction) {
  check_data_type(query.data_type);
  const LineChoice kind = find_kind(query);
  const double station = find_station(kind.line, query.station);
  auto taken = std::make_unique<TakenReading>();
  taken->reduction = reduction;
  taken->key = {kind.line, station, kind.reference_type, 0.0F, query.data_type, kind.dipole};
  if (reduction == reduction_averaged) {
    taken->key.scan_rate = find_rate(query, criteria_of(kind, station, query.data_type));
  }
  const StationRows place = Module_database::find_station(StationSearch::look_up, kind.line, station);
  taken->reading =
      Module_averaged_data::find_or_compute(place, reduction, Module_averaged_data::AllowRaw::yes, taken->key,
                                            read_frequency_list(kind.reference_type));
  if (taken->reading.ID == 0) {
    throw std::invalid_argument("data_type: station " + plain_text(station) + " of line " + kind.line +
                                " has no " + query.data_type);
  }
  return taken;
}

std::vector<std::unique_ptr<TakenReading>> find_repeats(const CurveQuery& query) {
  check_data_type(query.data_type);
  const LineChoice kind = find_kind(query);
  const double station = find_station(kind.line, query.station);
  const std::string criteria =
      "FileID>0 AND ReductionType = 0 AND " + criteria_of(kind, station, query.data_type);
  const ReadingFacts facts(criteria);
  std::vector<std::unique_ptr<TakenReading>> repeats;
  dao::Recordset rows = open_survey().database.open_recordset(
      "SELECT * FROM ReadingsDataTable WHERE " + criteria + " ORDER BY SampleRate,EventNumber,ID");
  for (; !rows.eof(); rows.move_next()) {
    const float rate = rows.get_single("SampleRate");
    if (!query.scan_rate || same_number(*query.scan_rate, rate)) {
      auto taken = std::make_unique<TakenReading>();
      taken->reduction = reduction_raw;
      taken->key = {kind.line, station, kind.reference_type, rate, query.data_type, kind.dipole};
      taken->reading = read_reading(rows);
      facts.add_to(taken->reading);
      repeats.push_back(std::move(taken));
    }
  }
  return repeats;
}

std::vector<std::unique_ptr<TakenReading>> find_curves(const CurveFilter& filter, std::int32_t reduction) {
  const std::string criteria = criteria_of(filter) + (reduction == reduction_raw ? " AND FileID > 0" : "");
  std::vector<std::unique_ptr<TakenReading>> found = stored_curves(filter, reduction, criteria);
  if (reduction != reduction_raw) {
    std::set<KeyOrder> known;
    std::erase_if(found, [&](const auto& taken) { return !known.insert(order_of(taken->key)).second; });
    compute_missing(filter, reduction, criteria, known, found);
  }
  std::ranges::stable_sort(found, {}, [](const auto& taken) { return order_of(*taken); });
  return found;
}

std::unique_ptr<TakenReading> find_reading(std::int32_t ID) {
  const dao::Recordset row =
      open_survey().database.open_recordset("SELECT * FROM ReadingsDataTable WHERE ID = " + plain_text(ID));
  if (row.eof()) {
    throw std::invalid_argument("curve: the survey has no reading " + plain_text(ID) + " any more");
  }
  auto taken = std::make_unique<TakenReading>();
  taken->reduction = row.get_long("ReductionType");
  taken->key = key_of(row, taken->reduction != reduction_merged);
  taken->reading = read_reading(row);
  read_facts(taken->reading);
  return taken;
}

}  // namespace Python
