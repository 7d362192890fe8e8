// What the batch program gives out of tensors: names, values, and what it refuses.
#include <algorithm>
#include <cmath>
#include <complex>
#include <filesystem>
#include <map>
#include <sstream>
#include <tuple>

#include "tests/batch/batch_program.h"

namespace {

using Json = nlohmann::json;

const std::string field_data = BRENLOX_FIELD_DATA "/edi/";

/// One frequency of 1 Hz, with impedances, their variances and a tipper.
std::string worked_example() {
  std::string text =
      ">HEAD\n DATAID=\"W100\"\n>=DEFINEMEAS\n"
      ">HMEAS ID=1 CHTYPE=HX X=0 Y=0 Z=0 AZM=0\n>HMEAS ID=2 CHTYPE=HY X=0 Y=0 Z=0 AZM=90\n"
      ">HMEAS ID=3 CHTYPE=HZ X=0 Y=0 Z=0 AZM=0\n"
      ">EMEAS ID=4 CHTYPE=EX X=0 Y=0 Z=0 X2=100 Y2=0 Z2=0\n"
      ">EMEAS ID=5 CHTYPE=EY X=0 Y=0 Z=0 X2=0 Y2=100 Z2=0\n"
      ">=MTSECT\n SECTID=\"W100\"\n NFREQ=1\n HX=1\n HY=2\n HZ=3\n EX=4\n EY=5\n>FREQ //1\n 1.0\n";
  const std::map<std::string, std::string> blocks{
      {"ZXXR", "1"},       {"ZXXI", "2"},          {"ZXX.VAR", "0.08"},     {"ZXYR", "10"},
      {"ZXYI", "8"},       {"ZXY.VAR", "0.08"},    {"ZYXR", "-9"},          {"ZYXI", "-11"},
      {"ZYX.VAR", "0.08"}, {"ZYYR", "-0.5"},       {"ZYYI", "-1"},          {"ZYY.VAR", "0.08"},
      {"TXR.EXP", "0.10"}, {"TXI.EXP", "0.02"},    {"TXVAR.EXP", "0.0002"}, {"TYR.EXP", "-0.25"},
      {"TYI.EXP", "0.05"}, {"TYVAR.EXP", "0.0002"}};
  for (const auto& [name, value] : blocks) {
    text += ">" + name + " //1\n " + value + "\n";
  }
  return text + ">END\n";
}

class Batch_tensor : public Batch_program {
 protected:
  void import(const std::string& path, const std::string& line = "200E") const {
    if (!std::filesystem::exists(folder_.path("survey.mdb"))) {
      ASSERT_EQ(run({"new", "survey.mdb"}).status, 0);
    }
    const Outcome outcome =
        run({"import", "survey.mdb", path, "--line", line, "--event", "1", "--rate", "256", "--reference",
             "0", "--sectid-as-station", "--sectid-digits", "--from-impedance", "--turn-ey"});
    ASSERT_EQ(outcome.status, 0) << outcome.errors;
  }
  [[nodiscard]] Json tensors(std::vector<std::string> options = {}) const {
    options.insert(options.begin(), {"tensor", "survey.mdb", "--json", "out.json"});
    const Outcome outcome = run(options);
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    return Json::parse(file_contents(folder_.path("out.json")), nullptr, false);
  }
};

/// The numbers of the blocks of an EDI file by name.
std::map<std::string, std::vector<double>> blocks_of(const std::string& path) {
  std::map<std::string, std::vector<double>> blocks;
  std::istringstream text(file_contents(path));
  std::vector<double>* block = nullptr;
  for (std::string line; std::getline(text, line);) {
    std::istringstream words(line);
    std::string word;
    if (line.starts_with('>')) {
      words >> word;
      block = &blocks[word.substr(1)];
      continue;
    }
    for (double number = 0.0; block && words >> number;) {
      block->push_back(number);
    }
  }
  return blocks;
}

struct Expected {
  const char* name;
  double value;
  double error;      // below 0: not asked for
  double tolerance;  // half of the last digit that is known
};

// Worked with sigma = 0.2 of all parts of the impedances and 0.01 of the tipper's.
const Expected expected[] = {{"z_xx_re", 1.0, 0.2, 1e-6},
                             {"z_yx_im", -11.0, 0.2, 1e-5},
                             {"pt_xx", 1.217877, -1.0, 1e-6},
                             {"pt_xy", 0.067039, -1.0, 1e-6},
                             {"pt_yx", 0.078212, -1.0, 1e-6},
                             {"pt_yy", 0.793296, -1.0, 1e-6},
                             {"pt_alpha", 9.443, 2.752, 6e-4},
                             {"pt_beta", -0.15915, 0.61413, 1e-5},
                             {"pt_azimuth", 9.602, 2.925, 6e-4},
                             {"pt_ellipticity", 0.22312, 0.02091, 6e-6},
                             {"pt_phi_max", 50.888, 0.787, 6e-4},
                             {"pt_phi_min", 37.998, 0.943, 6e-4},
                             {"swift_strike", 23.691, 2.482, 6e-4},
                             {"swift_skew", 0.04161, 0.01054, 6e-6},
                             {"bahr_skew", 0.05263, -1.0, 6e-6},
                             {"det_rho", 36.0068, 0.7718, 6e-5},
                             {"det_phase", 44.443, 0.614, 6e-4},
                             {"bostick_depth_xy", 2038.18, 31.83, 6e-3},
                             {"bostick_rho_xy", 43.558, 2.230, 6e-4},
                             {"bostick_depth_yx", 2262.02, -1.0, 6e-3},
                             {"bostick_rho_yx", 31.301, -1.0, 6e-4},
                             {"z30_xx_re", 1.058013, -1.0, 2e-6},
                             {"z30_xx_im", -0.049038, -1.0, 2e-6},
                             {"z30_xy_re", 9.100481, -1.0, 3e-6},
                             {"z30_xy_im", 7.450962, -1.0, 3e-6},
                             {"rho30_xy", 27.6671, 0.9409, 6e-5},
                             {"phi30_xy", 39.309, 0.974, 6e-4},
                             {"arrow_real_parkinson", 111.801, 2.128, 6e-4},
                             {"arrow_real_length", 0.26926, 0.01, 6e-6},
                             {"tx30_re", -0.038397, -1.0, 1e-6},
                             {"tx30_im", 0.042321, -1.0, 1e-6},
                             {"ty30_re", -0.266506, -1.0, 1e-6},
                             {"ty30_im", 0.033301, -1.0, 1e-6},
                             {"dimension_beta3", 2.0, -1.0, 0.0}};

}  // namespace

TEST_F(Batch_tensor, Gives_the_values_of_a_worked_example) {
  std::ignore = folder_.write("w1.edi", worked_example());
  import("w1.edi");
  const Json tensors_30 = tensors({"--rotate", "30"});
  ASSERT_EQ(tensors_30["stations"].size(), 1U);
  const Json& station = tensors_30["stations"][0];
  EXPECT_EQ(station["station"], "W100");
  EXPECT_EQ(station["frequency"], Json::parse("[1.0]"));
  EXPECT_EQ(station["ey_reason"], "facts");
  EXPECT_TRUE(station["remarks"].empty()) << station["remarks"];
  for (const Expected& quantity : expected) {
    SCOPED_TRACE(quantity.name);
    ASSERT_TRUE(station["values"].contains(quantity.name));
    EXPECT_NEAR(station["values"][quantity.name][0].get<double>(), quantity.value, quantity.tolerance);
    if (quantity.error >= 0.0) {
      EXPECT_NEAR(station["errors"][quantity.name][0].get<double>(), quantity.error, quantity.tolerance);
    }
  }
}

TEST_F(Batch_tensor, Has_the_names_of_quantities_with_those_of_turned_axes_where_asked_for) {
  std::ignore = folder_.write("w1.edi", worked_example());
  import("w1.edi");
  std::istringstream names(
      "arrow_imag_as_is arrow_imag_length arrow_imag_reversed arrow_real_length arrow_real_parkinson "
      "arrow_real_wiese bahr_mu bahr_sigma bahr_skew bostick_depth_det bostick_depth_xy bostick_depth_yx "
      "bostick_rho_det bostick_rho_xy bostick_rho_yx det_phase det_rho dimension_beta3 dimension_beta5 "
      "mean_phase mean_rho phi30_xy phi30_yx pt_alpha pt_azimuth pt_beta pt_det pt_ellipticity "
      "pt_phi_geometric pt_phi_max pt_phi_min pt_xx pt_xy pt_yx pt_yy rho30_xy rho30_yx ssq_phase ssq_rho "
      "swift_skew swift_strike tipper_magnitude tx30_im tx30_re tx_im tx_re ty30_im ty30_re ty_im ty_re "
      "z30_xx_im z30_xx_re z30_xy_im z30_xy_re z30_yx_im z30_yx_re z30_yy_im z30_yy_re z_xx_im z_xx_re "
      "z_xy_im z_xy_re z_yx_im z_yx_re z_yy_im z_yy_re");
  std::vector<std::string> all;
  std::vector<std::string> plain;
  for (std::string name; names >> name;) {
    all.push_back(name);
    if (name.find("30") == std::string::npos) {
      plain.push_back(name);
    }
  }
  const auto given = [&](const std::vector<std::string>& options) {
    std::vector<std::string> found;
    const Json tensors_of = tensors(options);
    for (const auto& [name, values] : tensors_of["stations"][0]["values"].items()) {
      found.push_back(name);
    }
    return found;
  };
  EXPECT_EQ(given({}), plain);
  EXPECT_EQ(given({"--rotate", "30"}), all);

  // The same numbers and names as comma-separated text.
  ASSERT_EQ(run({"tensor", "survey.mdb", "--rotate", "30", "--csv", "out.csv"}).status, 0);
  std::istringstream csv(file_contents(folder_.path("out.csv")));
  std::string heading;
  std::string row;
  ASSERT_TRUE(std::getline(csv, heading) && std::getline(csv, row));
  EXPECT_TRUE(
      heading.starts_with("line,station,site,frequency (Hz),arrow_imag_as_is (degrees),"
                          "arrow_imag_as_is error (degrees),arrow_imag_length,"))
      << heading;
  EXPECT_TRUE(row.starts_with("200E,100,W100,1,")) << row;
  EXPECT_EQ(std::ranges::count(heading, ','), std::ranges::count(row, ','));
  EXPECT_FALSE(std::getline(csv, row));
}

// Stored phases reach 360 degrees, and a 32-bit number there is known to 1.5e-5 degrees, 2.7e-7 of the
// impedance; resistivity and frequency add 0.6e-7.
TEST_F(Batch_tensor, Gives_back_the_impedances_of_files_that_have_nothing_else) {
  const std::string files = field_data + "impedance_only";
  if (!std::filesystem::exists(files)) {
    GTEST_SKIP() << files << " is absent";
  }
  import(files);
  const Json all = tensors();
  std::size_t compared = 0;
  for (const Json& station : all["stations"]) {
    auto blocks = blocks_of(files + "/" + station["station"].get<std::string>() + "c.edi");
    const std::vector<double>& frequencies = blocks["FREQ"];
    ASSERT_EQ(frequencies.size(), 43U) << station["station"];
    for (std::size_t point = 0; point < station["frequency"].size(); ++point) {
      if (station["values"]["z_xy_re"][point].is_null()) {
        continue;  // the tipper's alone, as xy or yx is masked
      }
      const double frequency = station["frequency"][point];
      const auto found = std::ranges::find_if(
          frequencies, [&](double given) { return std::abs(given / frequency - 1.0) < 1e-6; });
      ASSERT_NE(found, frequencies.end());
      const auto at = static_cast<std::size_t>(found - frequencies.begin());
      for (const auto& [name, block] : {std::pair{"z_xx", "ZXX"}, std::pair{"z_xy", "ZXY"},
                                        std::pair{"z_yx", "ZYX"}, std::pair{"z_yy", "ZYY"}}) {
        const auto part = [&](const char* suffix) {
          return station["values"][std::string(name) + suffix][point].get<double>();
        };
        const std::complex<double> z(part("_re"), part("_im"));
        const std::complex<double> of_file(blocks[std::string(block) + "R"].at(at),
                                           blocks[std::string(block) + "I"].at(at));
        EXPECT_LT(std::abs(z - of_file), 3e-7 * std::abs(of_file)) << station["station"] << frequency;
        ++compared;
      }
    }
  }
  EXPECT_GT(compared, 1600U);
}

TEST_F(Batch_tensor, Has_all_frequencies_of_a_public_line_whatever_masks_its_diagonals_have) {
  const std::string files = field_data + "tensor_line";
  if (!std::filesystem::exists(files)) {
    GTEST_SKIP() << files << " is absent";
  }
  import(files);
  const Json all = tensors();
  ASSERT_EQ(all["stations"].size(), 24U);
  std::size_t points = 0;
  std::size_t masked_elements = 0;
  for (const Json& station : all["stations"]) {
    EXPECT_TRUE(station["refusal"].is_null()) << station["refusal"];
    masked_elements += station["masked_diagonals"].get<std::size_t>();
    for (const Json& value : station["values"]["z_xx_re"]) {
      points += value.is_null() ? 0U : 1U;
    }
  }
  EXPECT_EQ(points, 2210U);
  EXPECT_GE(masked_elements, 2210U - 881U);  // 881 frequencies have no mask
}

TEST_F(Batch_tensor, Asks_for_what_a_line_has_several_of) {
  std::ignore = folder_.write("w1.edi", worked_example());
  import("w1.edi");
  std::ignore = folder_.write("remote.edi", worked_example());
  ASSERT_EQ(
      run({"import", "survey.mdb", "remote.edi", "--line", "300E", "--event", "1", "--rate", "256",
           "--reference", "1", "--sectid-as-station", "--sectid-digits", "--from-impedance", "--turn-ey"})
          .status,
      0);
  std::ignore = folder_.write("other.edi", worked_example());
  ASSERT_EQ(
      run({"import", "survey.mdb", "other.edi", "--line", "300E", "--event", "1", "--rate", "256",
           "--reference", "2", "--sectid-as-station", "--sectid-digits", "--from-impedance", "--turn-ey"})
          .status,
      0);
  struct Case {
    std::vector<std::string> options;
    int status;
    const char* message;  // part of it
  };
  const Case cases[] = {
      {{"--line", "200E"}, 0, ""},
      {{"--line", "200e", "--station", "w100"}, 0, ""},
      {{"--line", "200E", "--station", "7"}, 2, "Line 200E has no station 7"},
      {{"--line", "9"}, 2, "The survey has no line 9; it has 200E and 300E"},
      {{"--line", "300E"},
       2,
       "Line 300E has reference type 1 with dipole 100 and reference type 2 with dipole"},
      {{}, 2, "Line 300E has"},
      {{"--line", "300E", "--reference", "2"}, 0, ""},
      {{"--line", "300E", "--reference", "0"}, 2, "not what --reference and --dipole ask for"},
      {{"--line", " "}, 2, "the line has no name"},
      {{"--line", "200E", "--rotate", "nan"}, 2, "'nan' is no angle"},
      {{"--line", "200E", "--rotate", "1e9"}, 2, "'1e9' is no angle"},
      {{"--line", "200E", "--csv", "a.csv", "--json", "a.json"}, 2, ""},
      {{"--line", "200E", "--json", "missing/a.json"}, 1, "missing"},
      {{"--line", "200E", "--json", "survey.mdb"}, 1, "is not written over"}};
  for (const Case& c : cases) {
    SCOPED_TRACE(::testing::PrintToString(c.options));
    std::vector<std::string> arguments{"tensor", "survey.mdb"};
    arguments.insert(arguments.end(), c.options.begin(), c.options.end());
    const Outcome outcome = run(arguments);
    EXPECT_EQ(outcome.status, c.status) << outcome.errors;
    EXPECT_NE(outcome.errors.find(c.message), std::string::npos) << outcome.errors;
    EXPECT_EQ(outcome.output.find("Rho det") != std::string::npos, c.status == 0) << outcome.output;
  }
}
