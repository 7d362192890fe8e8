#include "output/file_errors.h"

#include <algorithm>
#include <set>
#include <stdexcept>
#include <utility>

#include "core/session_state.h"
#include "database/reading_facts.h"
#include "database/survey_database.h"
#include "platform/dao/text_literal.h"
#include "reduction/data_sets/curve_parts.h"
#include "reduction/data_sets/point_error.h"

namespace Module_output {

using Module_database::Curve;

namespace {

bool has_file_errors(const Curve& curve) {
  return std::ranges::any_of(curve.errors, [](float error) { return error > 0.0F; });
}

bool has_repeats(const Module_database::StoredReading& reading) {
  using namespace Module_averaged_data;
  for (std::size_t index = 0; index < reading.curve.count(); ++index) {
    for (const auto field : {Module_database::field_resistivity, Module_database::field_phase}) {
      if (point_error(reading, field, index).source == ErrorSource::repeats) {
        return true;
      }
    }
  }
  return false;
}

}  // namespace

bool only_files_have_errors(const Module_database::LineSelection& line) {
  const std::string criteria =
      "LineNumber = " + dao::text_literal(line.line) + " AND " +
      Module_averaged_data::kind_criteria(Module_database::reduction_merged, line.at(0.0));
  const Module_database::ReadingFacts facts(criteria);
  dao::Recordset rows = Module_database::open_survey().database.open_recordset(
      "SELECT * FROM ReadingsDataTable WHERE " + criteria);
  bool found = false;
  for (; !rows.eof(); rows.move_next()) {
    Module_database::StoredReading merged = Module_database::read_reading(rows);
    facts.add_to(merged);
    if (has_repeats(merged)) {
      return false;
    }
    found = found || has_file_errors(merged.curve);
  }
  return found;
}

std::string file_errors_hint(const Module_database::LineSelection& line) {
  static std::set<std::pair<std::string, std::string>> told;  // survey and line
  std::pair<std::string, std::string> place{session().database_file, line.line};
  if (!session().database_open || told.contains(place)) {
    return {};
  }
  try {
    if (!only_files_have_errors(line)) {
      return {};
    }
  } catch (const std::runtime_error&) {
    return {};
  }
  told.insert(std::move(place));
  return "The files give errors of their values";
}

}  // namespace Module_output
