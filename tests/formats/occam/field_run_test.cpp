// A finished run of the public inversion program, as an outside program prepared it.
#include <cmath>

#include "core/absent_value.h"
#include "formats/occam/response_file.h"
#include "tests/formats/occam/made_run.h"

namespace Module_occam {
namespace {

class FieldRunTest : public made::OccamTest {
 protected:
  void SetUp() override {
    if (!std::filesystem::exists(run / "Occam2DModel")) {
      GTEST_SKIP() << "no field data beside the checkout";
    }
  }
  const std::filesystem::path run = std::filesystem::path(BRENLOX_FIELD_DATA) / "occam2d";
};

TEST_F(FieldRunTest, Is_read_from_its_start_file_to_its_responses) {
  ControlFile names;
  ASSERT_EQ(read_occam_control_file((run / "Occam2DStartup").string(), names), 0);
  EXPECT_EQ(names.model_file, "Occam2DModel");
  OccamData data;
  ASSERT_EQ(read_occam_data_file((run / names.data_file).string(), data), 0);
  EXPECT_EQ(data.site_count(), 15);
  EXPECT_EQ(data.site_names.front(), "pb44");
  EXPECT_FLOAT_EQ(data.site_offsets.back(), 14004.2F);

  OccamModel model;
  ASSERT_EQ(read_occam_model(run, names.model_file, data, model), 0);
  EXPECT_EQ(model.mesh.node_columns(), 83);
  EXPECT_EQ(model.mesh.node_rows(), 61);
  EXPECT_EQ(model.num_layers(), 50);
  EXPECT_EQ(model.num_free_params, 1378);
  // The nine padding columns of the first block end at the binding offset, 0.
  EXPECT_NEAR(model.node_x[9], 0.0, 1e-6);

  OccamIteration last;
  ASSERT_EQ(read_occam_iteration(IterationParts::with_parameters, (run / "ITER12.iter").string(), last), 0);
  EXPECT_EQ(last.number, 12);
  EXPECT_EQ(last.PMU, 0.9536726);
  EXPECT_EQ(last.RLAST, 16.6305);
  EXPECT_EQ(last.TLAST, 0.9999997);
  ASSERT_EQ(last.parameters.size(), 1378U);
  EXPECT_EQ(last.parameters[3], 0.6899601);
  EXPECT_TRUE(interface.take_messages().empty());
}

TEST_F(FieldRunTest, Its_responses_hold_modelled_values) {
  OccamResponse response;
  ASSERT_EQ(read_occam_response((run / response_file_name("ITER12.iter")).string(),
                                (run / "OccamDataFile.dat").string(), response),
            0);
  const auto first = response.row(DataType::tm_resistivity, 1, 1);
  EXPECT_FLOAT_EQ(first[0], 0.8351F);
  EXPECT_NEAR(first[1], 0.8351 - 0.8587, 1e-5);
  EXPECT_FLOAT_EQ(first[2], 0.8587F);
  // The misfits of all places give the misfit of the iteration.
  double squares = 0.0;
  int count = 0;
  for (int site = 1; site <= response.resp_sites(); ++site) {
    for (int frequency = 1; frequency <= response.resp_frequency_count(); ++frequency) {
      for (const Mode& mode : modes) {
        for (const DataType type : {mode.resistivity, mode.phase}) {
          const auto misfit =
              static_cast<double>(response.value(ResponseValue::misfit, type, site, frequency));
          ASSERT_FALSE(is_absent(misfit));
          squares += misfit * misfit;
          ++count;
        }
      }
    }
  }
  EXPECT_EQ(count, 1140);
  EXPECT_NEAR(std::sqrt(squares / count), 0.9999997, 1e-4);
}

}  // namespace
}  // namespace Module_occam
