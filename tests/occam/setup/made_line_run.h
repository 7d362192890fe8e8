// made_line_run.h: lines of made-up stations, and the run that is created from one of them.
#pragma once
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "core/number_text.h"
#include "database/reading_facts.h"
#include "formats/occam/data_file.h"
#include "occam/occam_files.h"
#include "occam/setup/create_inversion.h"
#include "tests/reduction/made_readings.h"
#include "tests/support/survey_fixture.h"
#include "tests/tensor/made_station.h"

namespace Module_occam {

namespace fs = std::filesystem;
using Messages = std::vector<std::string>;

inline const std::string failed = "An error occurred while creating the Occam inversion: ";
inline const std::string too_few =
    "There are not enough stations for the current line to perform a 2D inversion";

class CreateInversionTest : public SurveyTest {
 protected:
  CreateInversionTest() {
    inputs.use_rhoplus_error = false;
    inputs.directory = folder.path("");
    inputs.occam_directory = "run";
    inputs.description = "made";
  }

  /// Merged curves of 100 ohm-m and 45 degrees at 1, 10 and 100 Hz.
  void store_stations(const std::vector<double>& stations) {
    for (const double station : stations) {
      made::ReadingKey key = made::key(0.0F, station);
      key.data_type = data_type;
      made::StoredReading curve = made::reading({{1, 100, 45}, {10, 100, 45}, {100, 100, 45}});
      for (std::size_t index = 0; index < curve.curve.count(); ++index) {
        curve.curve.value(Module_database::field_resistivity_deviation, index) = 1.0F;
        curve.curve.value(Module_database::field_phase_deviation, index) = 0.5F;
      }
      curve.ResOffset = static_factor;
      const std::int32_t ID = made::store(key, 0, curve, 2, -1);
      if (files_have_errors) {  // 50 % and 4 degrees at 1 Hz, small ones at 10 Hz, none at 100 Hz
        curve.curve.error_at(Module_database::field_resistivity, 0) = 50.0F;
        curve.curve.error_at(Module_database::field_phase, 0) = 4.0F;
        curve.curve.error_at(Module_database::field_resistivity, 1) = 1.0F;
        curve.curve.error_at(Module_database::field_phase, 1) = 0.5F;
        Module_database::write_facts(ID, curve.curve, {});
      }
    }
  }

  /// A merged curve of a line of both modes. @param counts  1 or 0 for each point: masked
  void store_curve(const char* type, double station, const std::vector<made::Point>& points,
                   int counts = 1) const {
    made::ReadingKey key = made::key(0.0F, station);
    key.data_type = type;
    made::StoredReading curve = made::reading(points);
    for (std::size_t index = 0; index < curve.curve.count(); ++index) {
      curve.curve.counts_at(Module_database::field_resistivity, index) = counts;
      curve.curve.counts_at(Module_database::field_phase, index) = counts;
    }
    curve.ResOffset = type == std::string("EyHx") ? te_static_factor : 1.0F;
    made::store(key, 0, curve, 2, -1);
  }

  /// TM at 100 to 300; TE at 100, 300 and 400 and, all masked, at 200.
  void store_both_modes() const {
    for (const double station : {100.0, 200.0, 300.0}) {
      store_curve("ExHy", station, {{1, 100, 45}, {10, 100, 45}});
    }
    for (const double station : {100.0, 300.0, 400.0}) {
      store_curve("EyHx", station, {{1, 10, 60}, {100, 1000, 30}});
    }
    store_curve("EyHx", 200, {{1, 10, 60}}, 0);
  }

  /// All elements over ground of strike 25: 100 ohm-m and 30 degrees along, 400 ohm-m and 60 degrees across
  /// it.
  void store_tensors(const std::vector<double>& stations) const {
    for (const double station : stations) {
      const Module_tensor::StationCurves curves = made::station(station, {1.0F, 10.0F}, [](double f) {
        return made::in_axes_of_north(25.0, made::impedance(100.0, 30.0, f), made::impedance(400.0, 60.0, f));
      });
      for (std::size_t element = 0; element < 4; ++element) {
        made::ReadingKey key = made::key(0.0F, station);
        key.data_type = Module_tensor::curve_types[element];
        made::store(key, 0, curves.merged[element], 2, -1);
      }
    }
  }

  /// The rows of the data file as "site frequency type datum error".
  [[nodiscard]] Messages rows_of_run() const {
    Messages rows;
    for (const DataRow& row : read_data_file(run("occamdat").string()).rows) {
      rows.push_back(std::to_string(row.site_number) + " " + std::to_string(row.frequency_number) + " " +
                     std::to_string(static_cast<int>(row.type)) + " " + plain_text(row.datum) + " " +
                     plain_text(row.error));
    }
    return rows;
  }

  int create() { return create_inversion({"200E", 0, data_type, 50.0F}, inputs, rhoplus, steps, created); }
  int create_and_answer(bool replace) {
    interface->questions.clear();
    interface->yes_no_answers = {replace};
    return create();
  }

  [[nodiscard]] fs::path run(const std::string& name = "") const { return folder.folder() / "run" / name; }

  /// Contents of the files below a folder of the run directory by name.
  [[nodiscard]] std::map<std::string, std::string> files(const std::string& name = "") const {
    std::map<std::string, std::string> found;
    if (fs::exists(run(name))) {
      for (const fs::directory_entry& entry : fs::recursive_directory_iterator(run(name))) {
        found[entry.path().lexically_relative(run(name)).string()] =
            entry.is_directory() ? "folder" : file_contents(entry.path().string());
      }
    }
    return found;
  }
  void write(const std::string& name, const std::string& contents) const {
    static_cast<void>(folder.write("run/" + name, contents));
  }

  InversionInputs inputs;
  Module_output::RhoplusSettings rhoplus;
  StationSteps steps;
  CreatedInversion created;
  std::string data_type = "ExHy";
  float static_factor = 1.0F;
  float te_static_factor = 1.0F;
  bool files_have_errors = false;
};

inline std::vector<double> equally_spaced(int count) {
  std::vector<double> stations;
  for (int station = 1; station <= count; ++station) {
    stations.push_back(100.0 * station);
  }
  return stations;
}

}  // namespace Module_occam
