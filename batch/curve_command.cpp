// brenlox_batch curve: the stored curves of one component at one station.
#include <functional>
#include <iomanip>
#include <iostream>
#include <memory>
#include <optional>
#include <vector>

#include <nlohmann/json.hpp>

#include "batch/command.h"
#include "batch/reading_option.h"
#include "core/absent_value.h"
#include "core/number_text.h"
#include "core/user_interface.h"
#include "database/frequency_store.h"
#include "database/reading.h"
#include "database/reading_facts.h"
#include "database/survey_database.h"
#include "platform/dao/text_literal.h"
#include "reduction/averages.h"

namespace Batch {
namespace {

using Module_database::ReadingKey;
using Module_database::StoredReading;

struct CurveOptions {
  std::string survey;
  Module_database::LineSelection reading;
  double station = 0.0;
  std::int32_t reduction = 2;
  std::optional<float> rate;  // Hz
  bool json = false;
};

std::string criteria_of(const CurveOptions& options) {
  return "LineNumber = " + dao::text_literal(options.reading.line) +
         " AND Station = " + criterion_text(options.station) +
         " AND ReferenceType = " + format_number(options.reading.reference_type, "0") +
         " AND DataType = " + dao::text_literal(options.reading.data_type) +
         " AND DipoleLength = " + criterion_text(options.reading.dipole);
}

std::vector<StoredReading> load_repeats(const CurveOptions& options) {
  std::string criteria = "FileID>0 AND ReductionType = 0 AND " + criteria_of(options);
  if (options.rate) {
    criteria += " AND SampleRate = " + criterion_text(*options.rate);
  }
  const Module_database::ReadingFacts facts(criteria);
  std::vector<StoredReading> repeats;
  dao::Recordset rows = Module_database::open_survey().database.open_recordset(
      "SELECT * FROM ReadingsDataTable WHERE " + criteria + " ORDER BY SampleRate,EventNumber,ID");
  for (; !rows.eof(); rows.move_next()) {
    facts.add_to(repeats.emplace_back(Module_database::read_reading(rows)));
  }
  return repeats;
}

/// Scan rates of the component's repeats and averages, Hz.
std::vector<float> stored_scan_rates(const CurveOptions& options) {
  dao::Recordset rows = Module_database::open_survey().database.open_recordset(
      "SELECT DISTINCT SampleRate FROM ReadingsDataTable WHERE ReductionType<2 AND " + criteria_of(options));
  std::vector<float> rates;
  for (; !rows.eof(); rows.move_next()) {
    rates.push_back(rows.get_single("SampleRate"));
  }
  return rates;
}

/// The stored rate that the asked one is the text of: a text of seven digits may be short of the stored
/// single.
std::optional<float> stored_scan_rate(const CurveOptions& options) {
  if (!options.rate) {
    return std::nullopt;
  }
  for (const float rate : stored_scan_rates(options)) {
    if (plain_text(rate) == plain_text(*options.rate)) {
      return rate;
    }
  }
  return options.rate;
}

/// The only scan rate of an average when none was asked for.
std::optional<float> only_scan_rate(const CurveOptions& options) {
  const std::vector<float> rates = stored_scan_rates(options);
  if (rates.size() > 1) {
    return std::nullopt;
  }
  return rates.empty() ? 0.0F : rates.front();  // no reading: the search reports that
}

/// @return 0, or -1 after a message
int load_reduced(const CurveOptions& options, StoredReading& reading) {
  ReadingKey key = options.reading.at(options.station);
  if (options.reduction == Module_database::reduction_averaged) {
    const std::optional<float> rate = options.rate ? options.rate : only_scan_rate(options);
    if (!rate) {
      user_interface().show_message("The station has several scan rates; choose one with --rate");
      return -1;
    }
    key.scan_rate = *rate;
  }
  const auto frequencies = Module_database::load_reference_frequencies(key.reference_type);
  if (!frequencies) {
    return -1;
  }
  return Module_averaged_data::get_reduced_reading(options.reduction, Module_averaged_data::AllowRaw::yes,
                                                   key, *frequencies, reading);
}

/// The shortest decimal of a single: 0.1, not 0.100000001.
double json_number(float value) { return decimal_of_single(value); }

/// An error, null where none is known.
nlohmann::ordered_json error_json(float error) {
  return is_absent(error) ? nlohmann::ordered_json() : nlohmann::ordered_json(json_number(error));
}

nlohmann::ordered_json to_json(const StoredReading& reading, bool with_event) {
  nlohmann::ordered_json json;
  json["id"] = reading.ID;
  json["file_id"] = reading.FileID;
  if (with_event) {
    json["event"] = reading.EventNumber;
  }
  for (const char* const list : {"frequencies", "data", "mask", "resistivity_error", "phase_error"}) {
    json[list] = nlohmann::ordered_json::array();
  }
  for (std::size_t index = 0; index < reading.curve.count(); ++index) {
    json["frequencies"].push_back(json_number(reading.curve.frequencies[index]));
    nlohmann::ordered_json fields = nlohmann::ordered_json::array();
    for (int field = 1; field <= Module_database::field_count; ++field) {
      fields.push_back(json_number(reading.curve.value(field, index)));
    }
    json["data"].push_back(std::move(fields));
    json["mask"].push_back({reading.curve.counts_at(1, index), reading.curve.counts_at(2, index)});
    json["resistivity_error"].push_back(error_json(reading.curve.error(1, index)));
    json["phase_error"].push_back(error_json(reading.curve.error(2, index)));
  }
  json["use"] = {reading.UseReading, reading.UseResistivity, reading.UsePhase};
  json["res_offset"] = json_number(reading.ResOffset);
  json["phase_offset"] = json_number(reading.PhaseOffset);
  return json;
}

std::string shown(float value) { return is_absent(value) ? "-" : plain_text(value); }

/// A column of the table: its heading, its unit, and its value at a point.
struct Column {
  const char* heading;
  const char* unit;
  std::function<float(std::size_t index)> value;
};

/// Errors are those that the files bring; deviations those of repeats, which derived curves alone have.
std::vector<Column> columns_of(const StoredReading& reading, bool is_tipper) {
  using namespace Module_database;  // the field names
  const Curve& curve = reading.curve;
  const auto field = [&curve](Field number) {
    return [&curve, number](std::size_t index) { return curve.value(number, index); };
  };
  const auto error = [&curve](Field number) {
    return [&curve, number](std::size_t index) { return curve.error(number, index); };
  };
  std::vector<Column> columns{
      {"Frequency", "Hz", [&curve](std::size_t index) { return curve.frequencies[index]; }}};
  const auto add = [&](const char* heading, const char* unit, Field value, Field deviation) {
    columns.push_back({heading, unit, field(value)});
    columns.push_back({"Error", unit, error(value)});
    if (reading.FileID < 0) {
      columns.push_back({"Deviation", unit, field(deviation)});
    }
  };
  if (is_tipper) {
    add("Real", "", field_resistivity, field_resistivity_deviation);
    add("Imaginary", "", field_phase, field_phase_deviation);
  } else {
    add("Resistivity", "ohm-m", field_resistivity, field_resistivity_deviation);
    add("Phase", "degrees", field_phase, field_phase_deviation);
  }
  return columns;
}

void print_head(const StoredReading& reading, bool is_tipper) {
  std::cout << "reading " << reading.ID << ", event " << reading.EventNumber
            << (reading.UseReading ? "" : ", not used");
  if (is_tipper) {
    std::cout << (reading.UseResistivity ? "" : ", real part not used")
              << (reading.UsePhase ? "" : ", imaginary part not used") << '\n';
    return;
  }
  std::cout << (reading.UseResistivity ? "" : ", resistivity not used")
            << (reading.UsePhase ? "" : ", phase not used") << ", resistivity times "
            << plain_text(reading.ResOffset) << ", phase plus " << plain_text(reading.PhaseOffset) << '\n';
}

void print_table(const StoredReading& reading, bool is_tipper) {
  constexpr int width = 13;
  print_head(reading, is_tipper);
  const std::vector<Column> columns = columns_of(reading, is_tipper);
  std::cout << std::right;
  for (const Column& column : columns) {
    std::cout << std::setw(width) << column.heading;
  }
  std::cout << "  Mask\n";
  for (const Column& column : columns) {
    std::cout << std::setw(width) << column.unit;
  }
  std::cout << '\n';
  for (std::size_t index = 0; index < reading.curve.count(); ++index) {
    for (const Column& column : columns) {
      std::cout << std::setw(width) << shown(column.value(index));
    }
    std::cout << "  " << reading.curve.counts_at(1, index) << ' ' << reading.curve.counts_at(2, index)
              << '\n';
  }
}

void print(const std::vector<StoredReading>& readings, const CurveOptions& options) {
  const bool repeats = options.reduction == 0;
  if (!options.json) {
    for (const StoredReading& reading : readings) {
      print_table(reading, Module_database::is_tipper(options.reading.data_type));
    }
    return;
  }
  nlohmann::ordered_json list = nlohmann::ordered_json::array();
  for (const StoredReading& reading : readings) {
    list.push_back(to_json(reading, repeats));
  }
  std::cout << (repeats ? list : list.front()).dump() << '\n';
}

int show_curve(CurveOptions options) {
  options.rate = stored_scan_rate(options);
  std::vector<StoredReading> readings;
  if (options.reduction == 0) {
    readings = load_repeats(options);
  } else {
    StoredReading reading;
    if (load_reduced(options, reading) != 0) {
      return -1;
    }
    if (reading.ID != 0) {
      readings.push_back(std::move(reading));
    }
  }
  if (readings.empty()) {
    user_interface().show_message("There is no such reading in the survey");
    return -1;
  }
  print(readings, options);
  return 0;
}

}  // namespace

Command add_curve_command(Program& program) {
  const auto options = std::make_shared<CurveOptions>();
  Parser parser = program.add_command("curve", "Shows the curves of one component at one station");
  add_survey_argument(parser, options->survey);
  add_reading_options(parser, options->reading, DataTypeIs::required_with_tipper);
  parser.add_option("--station", options->station, "station").required();
  parser.add_option("--reduction", options->reduction, "0 repeats, 1 average, 2 merged curve")
      .required()
      .in_range(0, 2);
  parser.add_option(
      "--rate", options->rate,
      "scan rate, Hz; may be left out for a merged curve, for the repeats of all scan rates and for "
      "the average of a station that has one scan rate");
  parser.add_flag(
      "--json", options->json,
      "as JSON: id, file_id, frequencies, data (20 values a frequency), mask, resistivity_error "
      "(ohm-m) and phase_error (degrees) of the files, null where none is known, use, res_offset, "
      "phase_offset; of a tipper what stands for resistivity is its real part, and its imaginary part what "
      "stands for phase; repeats as a list, with event. An absent value is -1e32");
  return {parser, [options] {
            return with_open_survey(options->survey, options->reading.line,
                                    [&] { return show_curve(*options); });
          }};
}

}  // namespace Batch
