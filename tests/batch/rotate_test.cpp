// Tensors turned to their strike on the way from field files to the files of inversions.
#include <cmath>
#include <tuple>

#include "core/number_text.h"
#include "formats/occam/data_file.h"
#include "tests/batch/batch_program.h"
#include "tests/tensor/made_station.h"

namespace {

constexpr double strike = 25.0;

/// A site whose ground has 100 ohm-m and 30 degrees along the strike, 400 ohm-m and 60 degrees across.
std::string field_file(int site) {
  const std::string name = "S" + std::to_string(site);
  std::string text = ">HEAD\n DATAID=\"" + name + "\"\n LAT=-30.0" + std::to_string(site) +
                     "\n LONG=139.0\n ELEV=40\n>=DEFINEMEAS\n REFLAT=-30.0\n REFLONG=139.0\n"
                     ">HMEAS ID=1 CHTYPE=HX X=0 Y=0 AZM=0\n>HMEAS ID=2 CHTYPE=HY X=0 Y=0 AZM=90\n"
                     ">EMEAS ID=3 CHTYPE=EX X=0 Y=0 X2=50 Y2=0\n>EMEAS ID=4 CHTYPE=EY X=0 Y=0 X2=0 Y2=50\n"
                     ">=MTSECT\n SECTID=\"" +
                     name + "\"\n NFREQ=2\n HX=1\n HY=2\n EX=3\n EY=4\n>FREQ //2\n 10 1\n";
  const char* const names[] = {"XX", "XY", "YX", "YY"};
  for (std::size_t element = 0; element < 4; ++element) {
    std::string real;
    std::string imaginary;
    for (const double f : {10.0, 1.0}) {
      const made::Complex z = made::in_axes_of_north(strike, made::impedance(100.0, 30.0, f),
                                                     made::impedance(400.0, 60.0, f))[element];
      real += " " + format_number(z.real(), "0.000000");
      imaginary += " " + format_number(z.imag(), "0.000000");
    }
    text += std::string(">Z") + names[element] + "R //2\n" + real + "\n>Z" + names[element] + "I //2\n" +
            imaginary + "\n";
  }
  return text + ">END\n";
}

class Rotate : public Batch_program {
 protected:
  void import_tensors() const {
    for (int site = 1; site <= 3; ++site) {
      std::ignore = folder_.write("field/s" + std::to_string(site) + ".edi", field_file(site));
    }
    ASSERT_EQ(run({"new", "survey.mdb"}).status, 0);
    const Outcome imported = run({"import", "survey.mdb", "field", "--auto"});
    ASSERT_EQ(imported.status, 0) << imported.errors;
  }
  [[nodiscard]] Outcome of_line(const std::string& command, const std::vector<std::string>& rest) const {
    std::vector<std::string> arguments{command,       "survey.mdb", "--line",   "100E",
                                       "--reference", "0",          "--dipole", "100"};
    arguments.insert(arguments.end(), rest.begin(), rest.end());
    return run(arguments);
  }
  /// The resistivity, ohm-m, and the phase of the first site in a mode of a run.
  [[nodiscard]] std::pair<double, double> first_data(const std::string& run, int resistivity_type) const {
    std::pair<double, double> data{0.0, 0.0};
    for (const Module_occam::DataRow& row :
         Module_occam::read_data_file(folder_.path(run + "/occamdat")).rows) {
      if (row.site_number == 1 && static_cast<int>(row.type) == resistivity_type) {
        data.first = std::pow(10.0, row.datum);
      } else if (row.site_number == 1 && static_cast<int>(row.type) == resistivity_type + 1) {
        data.second = row.datum;
      }
    }
    return data;
  }
};

TEST_F(Rotate, A_strike_of_90_degrees_more_changes_the_modes_of_a_run) {
  import_tensors();
  for (const char* const angle : {"25", "115", "-65"}) {
    SCOPED_TRACE(angle);
    const Outcome created = of_line("occam", {"--modes", "both", "--directory", angle, "--rotate", angle});
    ASSERT_EQ(created.status, 0) << created.errors;
    EXPECT_NE(created.errors.find("rotated to a strike of " + std::string(angle) + " degrees from north"),
              std::string::npos);
    const bool is_strike = std::string(angle) == "25";
    const auto [along_rho, along_phase] = first_data(angle, is_strike ? 1 : 5);
    const auto [across_rho, across_phase] = first_data(angle, is_strike ? 5 : 1);
    EXPECT_NEAR(along_rho, 100.0, 0.1);
    EXPECT_NEAR(along_phase, 30.0, 0.01);
    EXPECT_NEAR(across_rho, 400.0, 0.4);
    EXPECT_NEAR(across_phase, 60.0, 0.01);
  }
  EXPECT_EQ(run_for_json({"occam-info", "25", "--json"})["title"],
            "rotated to a strike of 25 degrees from north");
}

TEST_F(Rotate, Rho_plus_files_are_of_the_rotated_element) {
  import_tensors();
  const Outcome written = of_line("rhoplus", {"--data-type", "EyHx", "--directory", "out", "--rotate", "25"});
  ASSERT_EQ(written.status, 0) << written.errors;
  EXPECT_NE(written.output.find(", rotated to a strike of 25 degrees from north"), std::string::npos);
  const std::string batch = file_contents(folder_.path("out/tmd_run.bat"));
  const std::string beginning = "rem rotated to a strike of 25 degrees from north\r\nrhopp < ";
  ASSERT_TRUE(batch.starts_with(beginning)) << batch;
  const std::string first = batch.substr(beginning.size(), batch.find(".dat") + 4 - beginning.size());
  EXPECT_NE(file_contents(folder_.path("out/" + first))
                .find("    1.0000      400.00     16.00     60.00      2.00 1 1\r\n"),
            std::string::npos);
}

TEST_F(Rotate, Angles_that_are_none_are_refused) {
  for (const char* const angle : {"north", "nan", "361", "-180.5"}) {
    SCOPED_TRACE(angle);
    const Outcome outcome = of_line("occam", {"--modes", "both", "--directory", "run", "--rotate", angle});
    EXPECT_EQ(outcome.status, 2);
    EXPECT_NE(outcome.errors.find("is no angle from -180 to 360 degrees"), std::string::npos)
        << outcome.errors;
  }
}

}  // namespace
