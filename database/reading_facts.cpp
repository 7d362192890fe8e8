#include "database/reading_facts.h"

#include <algorithm>
#include <span>
#include <utility>

#include "core/number_text.h"
#include "database/survey_database.h"

namespace Module_database {

namespace {

/// The errors that a row holds, whatever reading they are of, and the axes.
std::pair<std::vector<float>, ReadingAxes> facts_of_row(const dao::Recordset& row) {
  std::vector<float> errors;
  ReadingAxes axes;
  const dao::Bytes bytes = row.get_binary("ErrorBinary");
  if (bytes.size() ==
      static_cast<std::size_t>(std::max(row.get_long("NumFrequencies"), 0)) * error_count * sizeof(float)) {
    errors = singles_from(bytes);
  }
  axes.EyTurned = row.is_null("EyTurned") ? ey_not_known : row.get_long("EyTurned");
  axes.HxAzimuth = row.is_null("HxAzimuth") ? no_data : row.get_single("HxAzimuth");
  return {std::move(errors), axes};
}

void give(std::vector<float> errors, const ReadingAxes& axes, StoredReading& reading) {
  reading.axes = axes;
  if (errors.size() == reading.curve.count() * error_count) {
    reading.curve.errors = std::move(errors);
  }
}

void forget_facts(StoredReading& reading) {
  reading.curve.errors.clear();
  reading.axes = {};
}

std::string of_reading(std::int32_t ReadingID) { return "ReadingID = " + format_number(ReadingID, "0"); }

std::string of_readings(const std::string& criteria) {
  return " FROM ReadingFactsTable WHERE ReadingID IN (SELECT ID FROM ReadingsDataTable WHERE " + criteria +
         ")";
}

/// Writes the row that is being edited or added.
void write_row(dao::Recordset& facts, std::span<const float> errors, const ReadingAxes& axes) {
  facts.set_long("NumFrequencies", static_cast<std::int32_t>(errors.size() / error_count));
  facts.set_binary("ErrorBinary", bytes_of(errors));
  if (axes.EyTurned == ey_not_known) {
    facts.set_null("EyTurned");
  } else {
    facts.set_long("EyTurned", axes.EyTurned);
  }
  if (is_absent(axes.HxAzimuth)) {
    facts.set_null("HxAzimuth");
  } else {
    facts.set_single("HxAzimuth", axes.HxAzimuth);
  }
  facts.update();
  open_survey().has_facts = true;
}

}  // namespace

void write_facts(std::int32_t ReadingID, const Curve& curve, const ReadingAxes& axes) {
  const bool known = !curve.errors.empty() || axes != ReadingAxes{};
  if (!known && !open_survey().has_facts) {
    return;
  }
  dao::Recordset& facts = open_survey().reading_facts;
  facts.find_first(of_reading(ReadingID));
  if (facts.no_match() && !known) {
    return;
  }
  if (!known) {
    facts.delete_row();
    return;
  }
  if (facts.no_match()) {
    facts.add_new();
    facts.set_long("ReadingID", ReadingID);
  } else {
    facts.edit();
  }
  write_row(facts, curve.errors, axes);
}

void read_facts(StoredReading& reading) {
  forget_facts(reading);
  if (!open_survey().has_facts) {
    return;
  }
  dao::Recordset& facts = open_survey().reading_facts;
  facts.find_first(of_reading(reading.ID));
  if (!facts.no_match()) {
    auto [errors, axes] = facts_of_row(facts);
    give(std::move(errors), axes, reading);
  }
}

ReadingFacts::ReadingFacts(const std::string& criteria) {
  if (!open_survey().has_facts) {
    return;
  }
  dao::Recordset rows = open_survey().database.open_recordset("SELECT *" + of_readings(criteria));
  for (; !rows.eof(); rows.move_next()) {
    facts_[rows.get_long("ReadingID")] = facts_of_row(rows);
  }
}

void ReadingFacts::add_to(StoredReading& reading) const {
  forget_facts(reading);
  if (const auto found = facts_.find(reading.ID); found != facts_.end()) {
    give(found->second.first, found->second.second, reading);
  }
}

FactsRow find_facts(std::int32_t ReadingID) {
  dao::Recordset& facts = open_survey().reading_facts;
  facts.find_first(of_reading(ReadingID));
  if (facts.no_match()) {
    return {};
  }
  auto [errors, axes] = facts_of_row(facts);
  return {facts.get_long("ID"), std::move(errors), axes};
}

void put_back_facts(std::int32_t ReadingID, const FactsRow& row) {
  dao::Recordset& facts = open_survey().reading_facts;
  facts.find_first(of_reading(ReadingID));
  const bool same_row = !facts.no_match() && facts.get_long("ID") == row.ID;
  if (!facts.no_match() && !same_row) {
    facts.delete_row();
  }
  if (row.ID == 0) {
    return;
  }
  if (same_row) {
    facts.edit();
  } else {
    facts.find_first("ID = " + format_number(row.ID, "0"));
    const bool is_free = facts.no_match();
    facts.add_new();
    if (is_free) {
      facts.set_long("ID", row.ID);
    }
    facts.set_long("ReadingID", ReadingID);
  }
  write_row(facts, row.errors, row.axes);
}

void delete_readings(const std::string& criteria) {
  OpenSurvey& survey = open_survey();
  survey.database.execute("DELETE" + of_readings(criteria));
  survey.database.execute("DELETE FROM ReadingsDataTable WHERE " + criteria);
  survey.reading_facts.requery();
  survey.readings.requery();
}

}  // namespace Module_database
