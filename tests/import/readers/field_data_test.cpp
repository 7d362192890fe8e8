// Real files of many makers: each is imported or the report says why not.
#include <array>
#include <complex>
#include <filesystem>
#include <iterator>
#include <map>
#include <numbers>
#include <set>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

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
  const std::vector<std::string> files = find_import_files(field_data, "edi");
  ASSERT_EQ(run_import(choices, files, ImportMode::import, report), 0);
  std::int32_t readings = 0;
  for (const FileReport& file : report.files) {
    SCOPED_TRACE(file.file);
    const std::filesystem::path path(file.file);
    readings += file.readings;
    EXPECT_EQ(file.failure, "");
    EXPECT_EQ(file.sections, 1);
    EXPECT_EQ(file.readings, 4);
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
    dao::Recordset rows = Module_database::open_survey().database.open_recordset(
        std::string("SELECT * FROM ReadingsDataTable WHERE FileID > 0 AND DataType = '") + element.data_type +
        "'");
    const Module_database::StoredReading reading = Module_database::read_reading(rows);
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

TEST_F(FieldData, A_file_of_impedances_only_gives_curves_when_asked) {
  choices.compute_from_impedance = true;
  choices.turn_ey = TurnEy::where_needed;
  ASSERT_EQ(run_import(choices, {field_data + "/impedance_only/pb23c.edi"}, ImportMode::import, report), 0);
  EXPECT_TRUE(report.files.at(0).impedances_only);
  dao::Recordset rows = Module_database::open_survey().database.open_recordset(
      "SELECT * FROM ReadingsDataTable WHERE FileID > 0 AND DataType = 'EyHx'");
  const Module_database::StoredReading reading = Module_database::read_reading(rows);
  ASSERT_EQ(reading.curve.count(), 43U);
  int used = 0;
  for (std::size_t index = 0; index < 43; ++index) {
    used += reading.curve.counts_at(2, index);
  }
  EXPECT_GT(used, 40);  // ground without strong structure: the turned phases lie in 0..90
}
