// Tippers of impedance sections: what comes into the survey, and what the report says of the rest.
#include <array>
#include <cmath>
#include <filesystem>
#include <iterator>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "core/absent_value.h"
#include "database/frequency_store.h"
#include "database/reading_facts.h"
#include "database/stations.h"
#include "tests/import/proposals/planned_import.h"

using namespace Module_data_file;
using Module_database::StoredReading;

namespace {

class TipperImport : public PlannedImport {
 protected:
  // Frequencies 100, 10 and 1 Hz.
  std::string edi(const std::string& blocks, const std::string& name = "a.edi") const {
    return folder.write(name, made_edi({MadeSection{.blocks = blocks}}));
  }

  static StoredReading stored(const std::string& data_type, std::int32_t reduction = 0,
                              const std::string& more = "") {
    dao::Recordset rows = Module_database::open_survey().database.open_recordset(
        "SELECT * FROM ReadingsDataTable WHERE DataType = '" + data_type +
        "' AND ReductionType = " + std::to_string(reduction) + more);
    if (rows.eof()) {
      ADD_FAILURE() << "no reading " << data_type;
      return {};
    }
    StoredReading reading = Module_database::read_reading(rows);
    Module_database::read_facts(reading);
    return reading;
  }

  static std::vector<std::string> data_types(std::int32_t reduction = 0) {
    std::vector<std::string> types;
    dao::Recordset rows = Module_database::open_survey().database.open_recordset(
        "SELECT DISTINCT DataType FROM ReadingsDataTable WHERE ReductionType = " + std::to_string(reduction) +
        " ORDER BY DataType");
    for (; !rows.eof(); rows.move_next()) {
      types.push_back(rows.get_text("DataType"));
    }
    return types;
  }
};

const std::string tensor = ">RHOXY //3\n1 2 3\n>PHSXY //3\n45 45 30\n>PHSYX //3\n-135 -135 -150\n";
const std::string x_part = ">TXR.EXP //3\n-0.25 0 0.5\n>TXI.EXP //3\n0.125 -0.75 1e32\n";
const std::string y_part = ">TYR.EXP //3\n1 2 3\n>TYI.EXP //3\n-1 -2 -3\n";
const std::string variances = ">TXVAR.EXP //3\n0.02 0.08 0.32\n>TYVAR.EXP //3\n0 -1 1e32\n";

}  // namespace

TEST_F(TipperImport, Parts_of_any_sign_come_in_with_errors_and_axes) {
  const std::string plain_names =
      replaced(replaced(x_part + y_part + variances, "VAR.EXP", ".VAR"), ".EXP", "");
  for (const std::string& blocks : {x_part + y_part + variances, variances + y_part + x_part, plain_names}) {
    SCOPED_TRACE(blocks);
    choices.turn_ey = TurnEy::always;
    ASSERT_EQ(import({edi(tensor + blocks)}), 0);
    EXPECT_EQ(report.files.at(0).readings, 6);
    for (const std::int32_t reduction : {0, 1, 2}) {  // ascending in frequency
      SCOPED_TRACE(reduction);
      const StoredReading x = stored("HzHx", reduction);
      ASSERT_EQ(x.curve.frequencies, (std::vector<float>{1, 10, 100}));
      const float expected[3][2] = {{0.5F, no_data}, {0.0F, -0.75F}, {-0.25F, 0.125F}};
      const float errors[3] = {0.4F, 0.2F, 0.1F};  // sqrt(variance / 2)
      for (std::size_t k = 0; k < 3; ++k) {
        for (const int part : {1, 2}) {
          const bool present = expected[k][part - 1] != no_data;
          EXPECT_EQ(x.curve.value(part, k), expected[k][part - 1]);
          EXPECT_EQ(x.curve.counts_at(part, k), present ? 1 : 0);
          EXPECT_FLOAT_EQ(x.curve.error(part, k), present ? errors[k] : no_data);
        }
      }
      EXPECT_EQ(x.ResOffset, 1.0F);
      EXPECT_EQ(x.PhaseOffset, 0.0F);
    }
    const StoredReading x = stored("HzHx");
    EXPECT_EQ(x.axes, (Module_database::ReadingAxes{Module_database::ey_not_known, 12.5F}));
    EXPECT_EQ(stored("EyHx").axes.EyTurned, Module_database::ey_turned);
    EXPECT_EQ(x.curve.value(9, 1), 0.0F);
    EXPECT_EQ(x.curve.value(10, 1), -0.75F);
    EXPECT_FLOAT_EQ(x.curve.value(11, 1), 0.08F);
    for (const int field : {1, 2}) {
      EXPECT_EQ(x.curve.value(field + 4, 2), x.curve.value(field, 2));
      EXPECT_EQ(x.curve.value(field + 13, 2), x.curve.value(field + 8, 2));
    }
    const StoredReading y = stored("HzHy");
    EXPECT_EQ(y.curve.value(2, 0), -3.0F);
    EXPECT_TRUE(y.curve.errors.empty()) << "0, below 0 and absent say nothing";
    EXPECT_EQ(Module_database::read_frequency_list(1).list, (std::vector<float>{1, 10, 100}));
  }
}

TEST_F(TipperImport, What_is_missing_or_odd_is_told) {
  struct Case {
    const char* name;
    std::string blocks;
    std::vector<std::string> types;  // beside the tensor
    std::string remark;
  };
  const Case cases[] = {
      {"one component", x_part, {"HzHx"}, "the component HzHx only"},
      {"a component without values",
       x_part + ">TYR.EXP //3\n1e32 1e32 1e32\n>TYI.EXP //3\nnan 1e33 -1e32\n",
       {"HzHx"},
       ">TYR and >TYI hold no value; no reading HzHy"},
      {"real part only",
       x_part + ">TYR.EXP //3\n1 2 3\n",
       {"HzHx", "HzHy"},
       "imaginary part of HzHy is absent"},
      {"variance only", ">TXVAR.EXP //3\n1 2 3\n", {}, ""},
      {"zeros", replaced(x_part, "-0.25 0 0.5", "0 0 0") + ">TXI //3\n0 0 0\n", {}, "0 at all frequencies"},
      {"some zeros",
       replaced(x_part, "-0.25 0 0.5", "0 0 0") + ">TYR //3\n0 0 0\n>TYI //3\n0 0 0\n",
       {"HzHx", "HzHy"},
       ""},
      {"two names", x_part + y_part + ">TXR //3\n7 7 7\n", {"HzHx", "HzHy"}, "block >TXR comes again"},
      {"axes of its own",
       ">ZROT //3\n350 350 350\n>TROT //3\n350 20 350\n" + x_part + y_part,
       {"HzHx", "HzHy"},
       "turned by 30 degrees against"},
      {"the axes of the tensor, a turn apart",
       ">ZROT //3\n-12.5 -12.5 -12.5\n>TROT.EXP //3\n347.5 347.5 347.5\n" + x_part + y_part,
       {"HzHx", "HzHy"},
       ""},
      {"too few values", x_part + y_part + ">TYVAR.EXP //3\n1 2\n", {"HzHx", "HzHy"}, "has 2 of 3 values"}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const std::string file = edi(tensor + c.blocks);
    ASSERT_EQ(import({file}, ImportMode::scan), 0);
    EXPECT_EQ(report.files.at(0).readings, 4 + static_cast<int>(c.types.size()));
    ASSERT_EQ(import({file}), 0);
    EXPECT_EQ(report.files.at(0).readings, 4 + static_cast<int>(c.types.size()));
    std::vector<std::string> expected{"ExHx", "ExHy", "EyHx", "EyHy"};
    expected.insert(expected.end(), c.types.begin(), c.types.end());
    for (const std::int32_t reduction : {0, 1, 2}) {
      EXPECT_EQ(data_types(reduction), expected) << "an earlier import's tipper has gone with its file";
    }
    if (c.remark.empty()) {
      EXPECT_FALSE(report.files.at(0).has_remarks()) << remark_lines(report.files.at(0)).front();
    } else {
      EXPECT_TRUE(told(0, c.remark));
    }
  }
}

// As airborne surveys have them. A tensor without values would make a station of all that works on
// resistivities.
TEST_F(TipperImport, A_section_of_a_tipper_alone_has_no_tensor) {
  const std::string file = edi(x_part + y_part);
  choices.turn_ey = TurnEy::always;
  const ImportPlan plan = plan_for({file}, choices);
  ASSERT_EQ(plan.sections.size(), 1U);
  EXPECT_TRUE(plan.sections.front().is_stored);
  ASSERT_EQ(run_import(choices, {file}, ImportMode::import, report, {}, SharedStations::ask, &plan), 0);
  EXPECT_EQ(report.files.at(0).readings, 2);
  EXPECT_EQ(report.files.at(0).sections_turned, 0);
  EXPECT_EQ(stations(), planned_stations(plan));
  for (const std::int32_t reduction : {0, 1, 2}) {
    EXPECT_EQ(data_types(reduction), (std::vector<std::string>{"HzHx", "HzHy"}));
  }
}

TEST_F(TipperImport, Axes_are_those_of_the_first_sensors_or_of_the_rotation_in_own_files) {
  const std::string turned =
      made_edi({MadeSection{.blocks = tensor + x_part + y_part + ">ZROT //3\n30 30 30\n"}});
  std::string alone = made_edi({MadeSection{.blocks = x_part + y_part}});
  for (const char* const electric :
       {">EMEAS ID=3.001 CHTYPE=EX X=0 Y=0 X2=50 Y2=0\n", ">EMEAS ID=4.001 CHTYPE=EY X=0 Y=0 X2=0 Y2=50\n",
        "  EX=3.001\n", "  EY=4.001\n"}) {
    alone = replaced(alone, electric, "");
  }
  const std::pair<std::string, float> files[] = {
      {turned, 12.5F},
      {replaced(turned, "  UNITS", "  FILEBY=\"Brenlox 1.0\"\n  UNITS"), 30.0F},
      {alone, 12.5F}};
  std::string name = "a";
  for (const auto& [text, azimuth] : files) {
    name += 'a';
    ASSERT_EQ(import({folder.write(name + ".edi", text)}), 0);
    const double file = Module_database::get_max_value("FileID", "ReadingsDataTable");
    EXPECT_EQ(stored("HzHx", 0, " AND FileID = " + std::to_string(file)).axes.HxAzimuth, azimuth);
  }
}

TEST_F(TipperImport, Repeats_are_averaged_through_0_and_their_errors_combine) {
  const std::string first =
      ">TXR.EXP //3\n-0.3 0.1 1e32\n>TXI.EXP //3\n0 0 0\n>TXVAR.EXP //3\n0.18 0.18 0.18\n";
  const std::string second =
      ">TXR.EXP //3\n0.1 0.3 -0.2\n>TXI.EXP //3\n0 0 0\n>TXVAR.EXP //3\n0.32 0.32 0.32\n";
  choices.start_station = "100";
  ASSERT_EQ(import({edi(tensor + first)}), 0);
  ASSERT_EQ(import({edi(tensor + second, "b.edi")}), 0);
  for (const std::int32_t reduction : {1, 2}) {
    const Module_database::Curve curve = stored("HzHx", reduction).curve;
    EXPECT_FLOAT_EQ(curve.value(1, 2), -0.1F);
    EXPECT_FLOAT_EQ(curve.value(3, 2), 0.2F);   // deviation of the repeats
    EXPECT_FLOAT_EQ(curve.error(1, 2), 0.25F);  // hypot(0.3, 0.4) / 2
    EXPECT_FLOAT_EQ(curve.value(1, 0), -0.2F);  // of the one that has it
    EXPECT_FLOAT_EQ(curve.error(1, 0), 0.4F);
    EXPECT_EQ(curve.value(2, 1), 0.0F);
    EXPECT_EQ(curve.counts_at(2, 1), 1);
  }
}

namespace {

const std::string real_files = std::string(BRENLOX_FIELD_DATA) + "/exchange/edi_tipper/";

class RealTippers : public TipperImport {
 protected:
  void SetUp() override {
    if (!std::filesystem::is_directory(real_files)) {
      GTEST_SKIP() << "no field data beside the checkout";
    }
  }
};

std::vector<double> block_of(const std::string& text, const std::string& tag) {
  const std::size_t first = text.find('\n', text.find(">" + tag + " "));
  std::istringstream numbers(text.substr(first, text.find('>', first) - first));
  return {std::istream_iterator<double>(numbers), std::istream_iterator<double>()};
}

}  // namespace

TEST_F(RealTippers, Come_in_from_files_of_all_makers) {
  struct Case {
    const char* file;
    std::size_t count, present;
    std::array<float, 4> at_highest;  // Tx, Ty
    float variance_x;
  };
  const Case cases[] = {
      {"c02cp2.edi", 36, 36, {0, 0, 0, 0}, 0},
      {"ET002.edi", 93, 42, {0.02101F, 0.02687F, -0.02332F, 0.01751F}, 4.943e-4F},
      {"gv130.edi", 42, 40, {1.251341e-02F, -9.552446e-03F, 8.765631e-03F, -1.984441e-03F}, 1.156369e-03F},
      {"kap106.edi", 20, 20, {-0.09237790F, -0.01519225F, 0.004451014F, 0.06741242F}, 5.066252e-5F},
      {"pb41c.edi", 43, 43, {0, 0, 0, 0}, 0},
      {"tf_edi_cgg.edi",
       73,
       73,
       {-3.543599e-02F, 2.209852e-02F, 4.430329e-03F, -7.482269e-03F},
       1.682865e-07F}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.file);
    ASSERT_EQ(import({real_files + c.file}), 0);
    const bool has_hz = c.variance_x > 0.0F;
    EXPECT_EQ(report.files.at(0).readings, has_hz ? 6 : 4);
    EXPECT_EQ(told(0, "0 at all frequencies"), !has_hz);
    if (!has_hz) {
      continue;
    }
    const std::string of_count = " AND NumFrequencies = " + std::to_string(c.count);
    const Module_database::Curve x = stored("HzHx", 0, of_count).curve;
    const Module_database::Curve y = stored("HzHy", 0, of_count).curve;
    ASSERT_EQ(x.count(), c.count);
    const std::size_t last = c.count - 1;
    EXPECT_FLOAT_EQ(x.value(1, last), c.at_highest[0]);
    EXPECT_FLOAT_EQ(x.value(2, last), c.at_highest[1]);
    EXPECT_FLOAT_EQ(y.value(1, last), c.at_highest[2]);
    EXPECT_FLOAT_EQ(y.value(2, last), c.at_highest[3]);
    const float error = std::sqrt(c.variance_x / 2.0F);
    EXPECT_FLOAT_EQ(x.error(1, last), error);
    EXPECT_FLOAT_EQ(x.error(2, last), error);
    std::size_t present = 0;
    for (std::size_t k = 0; k < c.count; ++k) {
      present += x.counts_at(1, k) == 1 && y.counts_at(2, k) == 1 ? 1U : 0U;
    }
    EXPECT_EQ(present, c.present);
  }
}

// Its head writes the ids 1 to 5, its section 1.0 to 5.0.
TEST_F(RealTippers, Keep_the_azimuth_of_channels_whose_ids_are_written_differently) {
  ASSERT_EQ(import({real_files + "gv130.edi"}), 0);
  EXPECT_FALSE(told(0, "names no local HX"));
  EXPECT_FALSE(told(0, "has no >HMEAS"));
  for (const char* data_type : {"ExHy", "HzHx"}) {
    EXPECT_EQ(stored(data_type).axes.HxAzimuth, -12.5F);
  }
}

// A block that the file's own program has made of the tipper.
TEST_F(RealTippers, Have_the_magnitude_that_the_file_prints) {
  ASSERT_EQ(import({real_files + "ET002.edi"}), 0);
  const std::vector<double> printed = block_of(file_contents(real_files + "ET002.edi"), "TIPMAG");
  const Module_database::Curve x = stored("HzHx").curve;
  const Module_database::Curve y = stored("HzHy").curve;
  ASSERT_EQ(printed.size(), x.count());
  int compared = 0;
  for (std::size_t k = 0; k < x.count(); ++k) {
    const double magnitude =
        std::hypot(std::hypot(x.value(1, k), x.value(2, k)), std::hypot(y.value(1, k), y.value(2, k)));
    const double theirs = printed[x.count() - 1 - k];
    if (theirs < 1e30 && x.counts_at(1, k) == 1) {
      EXPECT_NEAR(magnitude, theirs, 1e-3 * theirs);
      ++compared;
    }
  }
  EXPECT_EQ(compared, 42);
}
