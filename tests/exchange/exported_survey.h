// exported_survey.h: surveys made from field files, and what is written about their stations.
#pragma once
#include <cmath>
#include <complex>
#include <numbers>
#include <optional>
#include <string>
#include <vector>

#include "core/number_text.h"
#include "database/frequency_store.h"
#include "exchange/site_documents.h"
#include "formats/edi/edi_writer.h"
#include "import/sample_choices.h"
#include "samples/edi_text.h"
#include "tests/import/import_fixture.h"

/// A survey of files "L200E_S0100_E1_R4096.edi", stations by SECTID, and a second one of what it exports.
class ExportedSurvey : public ImportRun {
 protected:
  ExportedSurvey() {
    using namespace Module_data_file;
    choices.ReferenceType = 0;
    choices.decode = sample_choices().decode;
    choices.stations_by = StationsBy::sectid_digits;
    choices.compute_from_impedance = true;
    choices.turn_ey = TurnEy::where_needed;
  }

  /// A section of a tensor and a tipper that differ a little from event to event.
  static Module_samples::EdiSection made_section(int event, const std::vector<double>& frequencies) {
    Module_samples::EdiSection section;
    section.data_id = section.section_id = "ET100";
    section.date = "05/14/11";
    section.latitude = -19.440206;
    section.longitude = 136.444403;
    section.elevation = 218.0;
    section.dipole = 50.0;
    section.frequencies = frequencies;
    const double off = 1.0 + 0.03 * event;
    for (const double frequency : frequencies) {
      const double size = std::sqrt(5.0 * frequency * 100.0) * off;
      const auto put = [&](Module_samples::TensorElement& element, std::complex<double> value, double error) {
        element.impedance.push_back(value);
        element.deviation.push_back(error);
      };
      const double bend = 10.0 * std::log10(frequency) + event;  // degrees
      const auto z = [&](double part, double phase) {
        return std::polar(part * size, (phase + bend) * std::numbers::pi / 180.0);
      };
      put(section.elements[0], z(0.1, -30.0), 0.02 * size);
      put(section.elements[1], z(1.0, 40.0), 0.01 * size);
      put(section.elements[2], -z(0.8, 47.0), 0.015 * size);
      put(section.elements[3], -z(0.07, 12.0), 0.01 * size);
      put(section.tipper[0], {0.1 * off, -0.02}, 0.01);
      put(section.tipper[1], {-0.25, 0.03 * off}, 0.02);
    }
    return section;
  }

  [[nodiscard]] std::string section_file(int event, int rate, const std::vector<double>& frequencies) const {
    return folder.write("L200E_S0100_E" + plain_text(event) + "_R" + plain_text(rate) + ".edi",
                        edi_text(made_section(event, frequencies)));
  }

  /// What is written about the stations of the open survey.
  std::vector<Module_exchange::StationDocument> documents(std::optional<double> rotation = std::nullopt) {
    Module_tensor::LineCurves line;
    const auto frequencies = Module_database::load_reference_frequencies(choice().reference_type);
    EXPECT_TRUE(frequencies);
    EXPECT_EQ(load_line_curves(choice(), *frequencies, line), 0);
    std::vector<Module_exchange::StationDocument> made;
    for (const Module_tensor::StationCurves& curves : line.stations) {
      made.push_back(Module_exchange::station_document(line.choice, curves, *frequencies, rotation));
      made.back().document.id = "S" + plain_text(static_cast<std::int64_t>(made.size()));
    }
    return made;
  }

  /// That of the survey's only line.
  static Module_tensor::LineChoice choice() {
    const dao::Recordset rows = Module_database::open_survey().database.open_recordset(
        "SELECT LineNumber,ReferenceType,DipoleLength FROM ReadingsDataTable");
    return {rows.get_text("LineNumber"), rows.get_long("ReferenceType"), rows.get_single("DipoleLength")};
  }

  /// Writes all stations as EDI files, and imports them into a new survey. @return the files
  std::vector<std::string> import_what_is_written() {
    std::vector<std::string> files;
    for (const Module_exchange::StationDocument& station : documents()) {
      if (station.refusal.empty()) {
        files.push_back(folder.write("L" + padded(choice().line) + "_S" +
                                         padded(plain_text(station.document.station)) + "_E0_R0000_" +
                                         station.document.id + ".edi",
                                     formats::edi::edi_text(station.document)));
      }
    }
    EXPECT_EQ(Module_database::close_database(), 0);
    new_survey("again.mdb");
    choices.ReductionType = 2;
    EXPECT_EQ(import(files), 0);
    return files;
  }

  /// The number or line at the length that the choices cut from names of files.
  static std::string padded(const std::string& text) {
    return text.size() < 4 ? std::string(4 - text.size(), '0') + text : text;
  }
};
