#include "formats/occam/start_file.h"

#include "formats/occam/fortran_text.h"
#include "formats/occam/iteration_file.h"
#include "tests/formats/occam/made_run.h"

using namespace Module_occam;

namespace {

class StartFiles : public ::testing::Test {
 protected:
  [[nodiscard]] InversionStart read(const std::string& text) const {
    return read_start_file(folder.write("start", text));
  }
  [[nodiscard]] std::string refusal(const std::string& text) const {
    try {
      (void)read(text);
    } catch (const std::exception& failure) {
      return failure.what();
    }
    return {};
  }
  TemporaryFolder folder;
};

const std::string names = "MODEL FILE: inmodel\nDATA FILE: occam data.dat\n";

}  // namespace

TEST_F(StartFiles, Both_sets_of_labels_in_any_order_and_case) {
  const std::string older =
      "FORMAT:           OCCAMITER_1.0\nDESCRIPTION:      a: colon\n" + names +
      "DATE/TIME:        today\nMAX ITER:         12\nREQ TOL:          1.25\nIRUF:             105\n"
      "DEBUG LEVEL:      0\nITERATION:        7\nPMU:              -0.5\nRLAST:            1.5e+01\n"
      "TLAST:            2.5D+00\nIFFTOL:           1\nNO. PARMS:        3\n 1.0 2.0\n 3.0\n";
  const std::string newer =
      "% a comment\r\nmisfit reached: 1.0 and more\r\nFormat: OCCAMITER_FLEX\r\nmisfit value: 2.5\r\n" +
      names +
      "Roughness Value: 15.0,\r\nLagrange value: -.5\r\n!Model Limits: 0,1\r\nIteration: 7\r\nModify "
      "Roughness: "
      "2\r\ndebug level: 0\r\nTarget Misfit: 1.25\r\nRoughness Type: 105\r\nDescription: a: colon\r\n"
      "Date/Time: today\r\nIterations to run: 12.9\r\nParam Count: 3\r\n1.0\r\n\r\n2.0,3.0 left over\r\n";
  for (const std::string& text : {older, newer}) {
    const InversionStart start = read(text);
    EXPECT_EQ(start.description, "a: colon");
    EXPECT_EQ(start.model_file, "inmodel");
    EXPECT_EQ(start.data_file, "occam data.dat");
    EXPECT_EQ(start.iterations_to_run, 12);
    EXPECT_EQ(start.target_rms, 1.25);
    EXPECT_EQ(start.roughness_type, 105);
    EXPECT_EQ(start.debug_level, 0);
    EXPECT_EQ(start.iteration, 7);
    EXPECT_EQ(start.log10_multiplier, -0.5);
    EXPECT_EQ(start.roughness, 15.0);
    EXPECT_EQ(start.rms, 2.5);
    EXPECT_TRUE(start.target_reached);
    EXPECT_FALSE(start.model_limits);
    EXPECT_EQ(start.parameters, (std::vector<double>{1.0, 2.0, 3.0}));
  }
}

TEST_F(StartFiles, What_is_written_is_read_by_both_readers) {
  InversionStart state;
  state.model_file = "inmodel";
  state.data_file = "occamdat";
  state.iteration = 123;
  state.target_rms = 0.00025;
  state.log10_multiplier = -0.123456789;
  state.roughness = 1234567.89;
  state.rms = 0.0123456789;
  state.target_reached = true;
  state.diagonal_penalties = true;
  state.step_cut_count = 5;
  state.model_limits = {{-0.5, 4.0}};
  state.model_value_step = 0.1;
  state.debug_level = 2;
  for (int p = 0; p < 10001; ++p) {
    state.parameters.push_back(-1.0 + p * 0.000512345678);
  }
  const std::string text = iteration_file_text(state);
  const InversionStart read_back = read(text);
  EXPECT_EQ(read_back.iteration, 123);
  EXPECT_EQ(read_back.target_rms, 0.00025);
  EXPECT_NEAR(read_back.log10_multiplier, state.log10_multiplier, 1e-7);
  EXPECT_NEAR(read_back.roughness, state.roughness, 1.0);
  EXPECT_NEAR(read_back.rms, state.rms, 1e-8);
  EXPECT_TRUE(read_back.target_reached && read_back.diagonal_penalties);
  EXPECT_EQ(read_back.step_cut_count, 5);
  EXPECT_EQ(read_back.model_limits, state.model_limits);
  EXPECT_EQ(read_back.model_value_step, 0.1);
  ASSERT_EQ(read_back.parameters.size(), state.parameters.size());
  const OccamIteration seen = read_iteration_file(IterationParts::with_parameters, folder.path("start"));
  EXPECT_EQ(seen.number, 123);
  EXPECT_EQ(seen.debug_level, 2);
  ASSERT_EQ(seen.parameters.size(), state.parameters.size());
  for (std::size_t p = 0; p < state.parameters.size(); ++p) {
    ASSERT_NEAR(read_back.parameters[p], state.parameters[p], 5e-9);
    ASSERT_EQ(seen.parameters[p], read_back.parameters[p]);
  }
}

TEST_F(StartFiles, Damage_is_named_with_its_line) {
  const std::string head = "FORMAT: OCCAMITER_1.0\n" + names;
  const std::vector<std::pair<std::string, std::string>> cases{
      {"", "no count of parameters"},
      {head, "no count of parameters"},
      {head + "ITERATIONS: 3\n", "line 4: the label 'ITERATIONS' is not known"},
      {head + "ITERATION 3\n", "line 4: there is no label"},
      {head + "ITERATION: -3\nNO. PARMS: 0\n", "the iteration's number is -3"},
      {head + "MAX ITER: 1e7\nNO. PARMS: 0\n", "iterations to run is 10000000"},
      {head + "STEPSIZE CUT COUNT: 1000\nNO. PARMS: 0\n", "cut count is 1000"},
      {head + "PMU: 1e999\n", "line 4: '1e999' is not a number"},
      {head + "PMU: 5.0.1\n", "line 4: '5.0.1' is not a number"},
      {head + "PMU:\n", "line 4: '' is not a number"},
      {head + "MODEL LIMITS: 3\n", "'3' is not MIN,MAX"},
      {head + "MODEL LIMITS: 3, 1\n", "lower limit isn't below"},
      {head + "MODEL VALUE STEPS: -1\nNO. PARMS: 0\n", "step of model values is -1"},
      {head + "NO. PARMS: -1\n", "can't be -1 parameters"},
      {head + "NO. PARMS: 3\n1.0 2.0\n", "ends behind 2 of 3 parameters"},
      {head + "NO. PARMS: 3\n1.0 2.0 ***\n", "line 5: '***' is not a number"},
      {"FORMAT: OCCAM2MTMOD_1.0\n", "another kind of file"},
      {"FORMAT: OCCAMITER_1.0\nMODEL FILE: inmodel\nNO. PARMS: 0\n", "names no data file"},
  };
  for (const auto& [text, words] : cases) {
    EXPECT_NE(refusal(text).find(words), std::string::npos) << refusal(text) << "\nlacks: " << words;
  }
}

TEST_F(StartFiles, May_have_cut_a_step_fifty_times) {
  const std::string text = "FORMAT: OCCAMITER_1.0\n" + names + "STEPSIZE CUT COUNT: 50\nNO. PARMS: 0\n";
  EXPECT_EQ(refusal(text), "");
  EXPECT_NE(refusal(made::replaced(text, "50", "51")).find("cut count is 51"), std::string::npos);
}

TEST(Fortran_numbers, Are_written_as_the_public_program_does) {
  const std::vector<std::pair<double, std::string>> of_15_7{
      {0.9536726, "  0.9536726    "},    {16.63050, "   16.63050    "},  {0.1, "  0.1000000    "},
      {0.99999999, "   1.000000    "},   {1e10, "  0.1000000E+11"},      {-0.05, " -0.5000000E-01"},
      {9999999.4, "   9999999.    "},    {9999999.6, "  0.1000000E+08"}, {-123.4567, "  -123.4567    "},
      {3.7176758e-2, "  0.3717676E-01"}, {1e-200, "  0.1000000E-199"}};
  for (const auto& [value, text] : of_15_7) {
    EXPECT_EQ(general_number(value, 7, 15), text) << value;
  }
  EXPECT_EQ(general_number(1.0, 5, 13), "   1.0000    ");
  EXPECT_EQ(general_number(-45.123456, 5, 13), "  -45.123    ");
}
