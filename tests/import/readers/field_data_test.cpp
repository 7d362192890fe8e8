// Real files of many makers: each is imported or the report says why not.
#include <algorithm>
#include <array>
#include <cmath>
#include <complex>
#include <filesystem>
#include <iterator>
#include <map>
#include <numbers>
#include <set>
#include <sstream>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "core/absent_value.h"
#include "database/reading_facts.h"
#include "import/import_run.h"
#include "tests/support/survey_fixture.h"

using namespace Module_data_file;
using formats::FileReport;

namespace {

const std::string field_data = std::string(BRENLOX_FIELD_DATA) + "/edi";

class FieldData : public SurveyTest {
 protected:
  void SetUp() override {
    if (!std::filesystem::is_directory(field_data)) {
      GTEST_SKIP() << "no field data beside the checkout";
    }
    new_survey();
    choices.ReferenceType = 0;
    choices.ReductionType = 0;
    choices.decode[decode_line_number].specified = "1N";
    choices.decode[decode_event].specified = "0";
    choices.decode[decode_sample_rate].specified = "24000";
  }

  ImportChoices choices;
  ImportReport report;
};

// The values of a block by its tag, also of blocks that are not imported.
std::vector<double> block_values(const std::string& text, const std::string& tag) {
  const std::size_t line = text.find(">" + tag + " ");
  const std::size_t first = text.find('\n', line);
  std::istringstream numbers(text.substr(first, text.find('>', first) - first));
  return {std::istream_iterator<double>(numbers), std::istream_iterator<double>()};
}

// The numbers behind an option in the order of the file.
std::vector<double> option_values(const std::string& text, const std::string& option) {
  std::vector<double> values;
  for (std::size_t place = text.find(option); place != std::string::npos;
       place = text.find(option, place + 1)) {
    values.push_back(std::stod(text.substr(place + option.size(), 20)));
  }
  return values;
}

Module_database::StoredReading stored(const std::string& criteria) {
  dao::Recordset rows = Module_database::open_survey().database.open_recordset(
      "SELECT * FROM ReadingsDataTable WHERE FileID > 0 AND " + criteria);
  Module_database::StoredReading reading = Module_database::read_reading(rows);
  Module_database::read_facts(reading);
  return reading;
}

}  // namespace

TEST_F(FieldData, Every_file_imports) {
  const std::map<std::string, std::int32_t> frequencies{{"BP02.edi", 11},
                                                        {"EGC020A_pho.edi", 65},
                                                        {"EGC022_CGG.edi", 73},
                                                        {"ET010.edi", 99},
                                                        {"S1000.edi", 40},
                                                        {"VIC100_ANSIR.edi", 28},
                                                        {"csa000.edi", 17},
                                                        {"par10ew_distortion.edi", 14},
                                                        {"test.edi", 80},
                                                        {"test_LEMI.edi", 35},
                                                        {"tf_edi_no_error.edi", 47},
                                                        {"tf_edi_rho_only.edi", 28},
                                                        {"ET001.edi", 88},
                                                        {"15125A.edi", 60},
                                                        {"pb23c.edi", 43},
                                                        {"IEB0537A_Phoenix.edi", 80},
                                                        {"tf_edi_spectra_in.edi", 33}};
  // Of the odd ones, those without a block >RHO or >PHS.
  const std::set<std::string> impedances_only{
      "BP02.edi",      "IEB0858A_metronix.edi",  "VIC100_ANSIR.edi",
      "csa000.edi",    "par10ew_distortion.edi", "test.edi",
      "test_LEMI.edi", "tf_edi_metronix.edi",    "tf_edi_no_error.edi"};
  const std::set<std::string> without_hz{"BP02.edi", "S1000.edi", "csa000.edi", "tf_edi_rho_only.edi"};
  const auto has_hz = [&](const std::filesystem::path& path) {
    return path.parent_path().filename() != "impedance_only" &&
           !without_hz.contains(path.filename().string());
  };
  const std::vector<std::string> files = find_import_files(field_data, "edi");
  ASSERT_EQ(run_import(choices, files, ImportMode::import, report), 0);
  std::int32_t readings = 0;
  for (const FileReport& file : report.files) {
    SCOPED_TRACE(file.file);
    const std::filesystem::path path(file.file);
    readings += file.readings;
    EXPECT_EQ(file.failure, "");
    EXPECT_EQ(file.sections, 1);
    EXPECT_EQ(file.readings, has_hz(path) ? 6 : 4);
    EXPECT_EQ(file.impedances_only, path.parent_path().filename() == "impedance_only" ||
                                        impedances_only.contains(path.filename().string()));
    if (const auto expected = frequencies.find(path.filename().string()); expected != frequencies.end()) {
      EXPECT_EQ(file.frequencies, expected->second);
    }
  }
  EXPECT_TRUE(interface.take_messages().empty());
  EXPECT_EQ(rows_in("ReadingsDataTable WHERE FileID > 0"), readings);
}

// One station as cross-spectra and, by another program, as impedances with seven digits. That program wrote
// its three rows Hz, Ex, Ey of transfer functions under the tags of Ex, Ey, Hz.
TEST_F(FieldData, Spectra_give_the_curves_of_the_same_station_as_impedances) {
  ASSERT_EQ(run_import(choices, {field_data + "/spectra/IEB0537A_Phoenix.edi"}, ImportMode::import, report),
            0);
  const std::string text = file_contents(field_data + "/odd/test.edi");
  struct Element {
    const char* data_type;
    std::array<const char*, 2> tags;
  };
  const Element elements[] = {{"ExHx", {"ZYXR", "ZYXI"}},
                              {"ExHy", {"ZYYR", "ZYYI"}},
                              {"EyHx", {"TXR.EXP", "TXI.EXP"}},
                              {"EyHy", {"TYR.EXP", "TYI.EXP"}}};
  const std::vector<double> frequencies = block_values(text, "FREQ");
  ASSERT_EQ(frequencies.size(), 80U);
  for (const Element& element : elements) {
    SCOPED_TRACE(element.data_type);
    const std::vector<double> real = block_values(text, element.tags[0]);
    const std::vector<double> imaginary = block_values(text, element.tags[1]);
    ASSERT_EQ(real.size(), 80U);
    const Module_database::StoredReading reading =
        stored(std::string("DataType = '") + element.data_type + "'");
    ASSERT_EQ(reading.curve.count(), 80U);
    for (std::size_t index = 0; index < 80; ++index) {
      const std::size_t theirs = 79 - index;  // the file goes down in frequency
      SCOPED_TRACE(frequencies[theirs]);
      const std::complex<double> z(real[theirs], imaginary[theirs]);
      const double resistivity = 0.2 * std::norm(z) / frequencies[theirs];
      const double degrees = std::arg(z) * 180.0 / std::numbers::pi;
      EXPECT_NEAR(reading.curve.frequencies[index], frequencies[theirs], 1e-6 * frequencies[theirs]);
      EXPECT_NEAR(reading.curve.value(1, index), resistivity, 2e-6 * resistivity);
      EXPECT_NEAR(reading.curve.value(2, index), degrees < -90.0 ? degrees + 360.0 : degrees, 1e-4);
    }
  }
}

// Its tipper stands under the tags of Zxx and Zxy.
TEST_F(FieldData, Spectra_give_the_tipper_of_the_same_station_with_its_errors) {
  const std::string spectra = field_data + "/spectra/IEB0537A_Phoenix.edi";
  ASSERT_EQ(run_import(choices, {spectra}, ImportMode::import, report), 0);
  const std::vector<double> averages = option_values(file_contents(spectra), "AVGT=");
  const std::string text = file_contents(field_data + "/odd/test.edi");
  for (const auto& [data_type, tag] : {std::pair{"HzHx", "ZXX"}, std::pair{"HzHy", "ZXY"}}) {
    SCOPED_TRACE(data_type);
    const Module_database::Curve curve = stored(std::string("DataType = '") + data_type + "'").curve;
    const std::vector<double> real = block_values(text, std::string(tag) + "R");
    const std::vector<double> imaginary = block_values(text, std::string(tag) + "I");
    const std::vector<double> variance = block_values(text, std::string(tag) + ".VAR");
    ASSERT_EQ(curve.count(), 80U);
    int compared = 0;
    for (std::size_t index = 0; index < 80; ++index) {
      const std::size_t theirs = 79 - index;
      const double size = std::hypot(real[theirs], imaginary[theirs]);
      EXPECT_NEAR(curve.value(1, index), real[theirs], 2e-6 * size);
      EXPECT_NEAR(curve.value(2, index), imaginary[theirs], 2e-6 * size);
      if (variance[theirs] > 0.0) {
        const double error = std::sqrt(variance[theirs] / 2.0 * averages[theirs] / (averages[theirs] - 2.0));
        EXPECT_NEAR(curve.error(1, index), error, 1e-3 * error);
        EXPECT_EQ(curve.error(2, index), curve.error(1, index));
        ++compared;
      }
    }
    EXPECT_GT(compared, 75);
  }
}

// The same two files. The impedances' program divides by the number of averages, we by the number less 2.
TEST_F(FieldData, Spectra_give_the_errors_of_the_same_station_as_impedances) {
  const std::string spectra = field_data + "/spectra/IEB0537A_Phoenix.edi";
  ASSERT_EQ(run_import(choices, {spectra}, ImportMode::import, report), 0);
  const std::vector<double> averages = option_values(file_contents(spectra), "AVGT=");
  ASSERT_EQ(averages.size(), 80U);
  const std::string text = file_contents(field_data + "/odd/test.edi");
  for (const auto& [data_type, tag] : {std::pair{"ExHx", "ZYX"}, std::pair{"ExHy", "ZYY"}}) {
    SCOPED_TRACE(data_type);
    const Module_database::Curve curve = stored(std::string("DataType = '") + data_type + "'").curve;
    const std::vector<double> real = block_values(text, std::string(tag) + "R");
    const std::vector<double> imaginary = block_values(text, std::string(tag) + "I");
    const std::vector<double> variance = block_values(text, std::string(tag) + ".VAR");
    int compared = 0;
    for (std::size_t index = 0; index < 80; ++index) {
      const std::size_t theirs = 79 - index;
      if (variance[theirs] <= 0.0) {
        EXPECT_EQ(curve.error(2, index), no_data) << "of a residual below 0, as with few averages";
        continue;
      }
      ++compared;
      const double relative =
          std::sqrt(variance[theirs] / 2.0 * averages[theirs] / (averages[theirs] - 2.0)) /
          std::abs(std::complex(real[theirs], imaginary[theirs]));
      EXPECT_NEAR(curve.error(1, index) / curve.value(1, index), 2.0 * relative, 1e-4 * relative);
      EXPECT_NEAR(curve.error(2, index), std::min(90.0, relative * 180.0 / std::numbers::pi),
                  1e-2 * relative);
    }
    EXPECT_GT(compared, 75);
  }
}

TEST_F(FieldData, Errors_are_those_that_files_print_for_their_phases) {
  ASSERT_EQ(run_import(choices, {field_data + "/tensor_line/ET001.edi"}, ImportMode::import, report), 0);
  const std::string text = file_contents(field_data + "/tensor_line/ET001.edi");
  // Those of the diagonal elements are 1e-4 degrees and less in this file, against its own variances.
  for (const auto& [data_type, element] : {std::pair{"ExHy", "XY"}, std::pair{"EyHx", "YX"}}) {
    SCOPED_TRACE(data_type);
    const Module_database::Curve curve = stored(std::string("DataType = '") + data_type + "'").curve;
    const std::vector<double> phase_errors = block_values(text, "PHS" + std::string(element) + ".ERR");
    const std::vector<double> log_errors = block_values(text, "RHO" + std::string(element) + ".ERR");
    ASSERT_EQ(curve.count(), phase_errors.size());
    for (std::size_t index = 0; index < curve.count(); ++index) {
      const std::size_t theirs = curve.count() - 1 - index;
      const double phase_error = std::min(90.0, phase_errors[theirs]);
      EXPECT_NEAR(curve.error(2, index), phase_error, 1e-5 * phase_error);
      const double error = log_errors[theirs] * std::numbers::ln10 * curve.value(1, index);
      EXPECT_NEAR(curve.error(1, index), error, 1e-3 * error);
    }
  }
  const std::string rho_only = field_data + "/odd/tf_edi_rho_only.edi";
  ASSERT_EQ(run_import(choices, {rho_only}, ImportMode::import, report), 0);
  const std::vector<double> ohm_m = block_values(file_contents(rho_only), "RHOXY.ERR");
  const Module_database::Curve curve = stored("DataType = 'ExHy' AND NumFrequencies = 28").curve;
  EXPECT_NEAR(curve.error(1, 0), ohm_m.back(), 1e-5 * ohm_m.back());
}

TEST_F(FieldData, A_file_of_impedances_only_gives_curves_when_asked) {
  choices.compute_from_impedance = true;
  choices.turn_ey = TurnEy::where_needed;
  ASSERT_EQ(run_import(choices, {field_data + "/impedance_only/pb23c.edi"}, ImportMode::import, report), 0);
  EXPECT_TRUE(report.files.at(0).impedances_only);
  const Module_database::StoredReading reading = stored("DataType = 'EyHx'");
  ASSERT_EQ(reading.curve.count(), 43U);
  EXPECT_EQ(reading.axes, (Module_database::ReadingAxes{Module_database::ey_turned, 0.0F}));
  EXPECT_EQ(std::ranges::count(reading.curve.errors, no_data), 0);
  int used = 0;
  for (std::size_t index = 0; index < 43; ++index) {
    used += reading.curve.counts_at(2, index);
  }
  EXPECT_GT(used, 40);  // ground without strong structure: the turned phases lie in 0..90
}
