// brenlox_batch info: what a survey holds.
#include <cstdint>
#include <iomanip>
#include <iostream>
#include <memory>
#include <optional>
#include <vector>

#include <nlohmann/json.hpp>

#include "batch/command.h"
#include "core/number_text.h"
#include "database/sites.h"
#include "database/survey_summary.h"

namespace Batch {
namespace {

using Module_database::LineSummary;
using Module_database::SurveySummary;

nlohmann::ordered_json json_of(const std::vector<Module_database::Site>& sites) {
  using Json = nlohmann::ordered_json;
  const auto known = [](const std::optional<double>& value) { return value ? Json(*value) : Json(); };
  Json list = Json::array();
  for (const Module_database::Site& site : sites) {
    list.push_back({{"line", site.line},
                    {"station", site.station},
                    {"name", site.name.empty() ? Json() : Json(site.name)},
                    {"latitude", known(site.latitude)},
                    {"longitude", known(site.longitude)},
                    {"elevation", known(site.elevation)}});
  }
  return list;
}

void print_json(const SurveySummary& contents) {
  nlohmann::ordered_json json;
  json["tables"] = nlohmann::ordered_json::object();
  for (const auto& [table, rows] : contents.tables) {
    json["tables"][table] = rows;
  }
  json["lines"] = nlohmann::ordered_json::array();
  for (const LineSummary& line : contents.lines) {
    json["lines"].push_back({{"line", line.line}, {"stations", line.stations}});
  }
  json["sites"] = json_of(contents.sites);
  json["reference_types"] = contents.reference_types;
  json["data_types"] = contents.data_types;
  json["dipoles"] = contents.dipoles;
  json["scan_rates"] = contents.scan_rates;
  // Texts of an older survey may hold bytes that are no UTF-8.
  std::cout << json.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) << '\n';
}

std::string joined(const std::vector<double>& values) {
  std::string text;
  for (const double value : values) {
    text += (text.empty() ? "" : " ") + plain_text(value);
  }
  return text;
}

/// "100 (ET001) 200 300 (ET003)"
std::string stations_of(const LineSummary& line) {
  std::string text;
  for (std::size_t index = 0; index < line.stations.size(); ++index) {
    text += (text.empty() ? "" : " ") + plain_text(line.stations[index]);
    text += line.names[index].empty() ? "" : " (" + line.names[index] + ")";
  }
  return text;
}

std::string joined(const std::vector<std::string>& values) {
  std::string text;
  for (const std::string& value : values) {
    text += (text.empty() ? "" : " ") + value;
  }
  return text;
}

std::string reference_names(const std::vector<std::int32_t>& types) {
  constexpr const char* names[] = {"Not Remote Referenced", "Remote Referenced", "Cross Referenced"};
  std::string text;
  for (const std::int32_t type : types) {
    const bool known = type >= 0 && type < static_cast<std::int32_t>(std::size(names));
    text += (text.empty() ? "" : ", ") + plain_text(type) + (known ? std::string(" ") + names[type] : "");
  }
  return text;
}

void print_table(const SurveySummary& contents) {
  constexpr int name_width = 28;
  std::cout << std::left;
  std::cout << std::setw(name_width) << "Table"
            << "Rows\n";
  for (const auto& [table, rows] : contents.tables) {
    std::cout << std::setw(name_width) << table << rows << '\n';
  }
  std::cout << '\n'
            << std::setw(name_width) << "Line"
            << "Stations\n";
  for (const LineSummary& line : contents.lines) {
    std::cout << std::setw(name_width) << line.line << stations_of(line) << '\n';
  }
  std::cout << '\n';
  std::cout << std::setw(name_width) << "Reference types" << reference_names(contents.reference_types)
            << '\n';
  std::cout << std::setw(name_width) << "Data types" << joined(contents.data_types) << '\n';
  std::cout << std::setw(name_width) << "Dipoles (m)" << joined(contents.dipoles) << '\n';
  std::cout << std::setw(name_width) << "Scan rates (Hz)" << joined(contents.scan_rates) << '\n';
}

struct InfoOptions {
  std::string survey;
  bool json = false;
};

int run_info(const InfoOptions& options) {
  return with_open_survey(options.survey, [&] {
    const SurveySummary contents = Module_database::read_survey_summary();
    options.json ? print_json(contents) : print_table(contents);
    return 0;
  });
}

}  // namespace

Command add_info_command(Program& program) {
  const auto options = std::make_shared<InfoOptions>();
  Parser parser = program.add_command("info", "Shows what a survey holds");
  add_survey_argument(parser, options->survey);
  parser.add_flag("--json", options->json,
                  "as JSON: tables, lines, sites, reference_types, data_types, dipoles, scan_rates");
  return {parser, [options] { return run_info(*options); }};
}

}  // namespace Batch
