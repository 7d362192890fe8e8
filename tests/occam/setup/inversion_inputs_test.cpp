// The entries of a new inversion: stored, checked in order.
#include "occam/setup/inversion_inputs.h"

#include "occam/setup/earlier_run.h"
#include "platform/settings_store/settings_store.h"
#include "tests/formats/occam/made_run.h"

namespace Module_occam {
namespace {

class InversionInputsTest : public made::OccamTest {
 public:
  InversionInputsTest() : earlier_(install_settings_store(std::make_unique<MemorySettingsStore>())) {}
  ~InversionInputsTest() override { install_settings_store(std::move(earlier_)); }

 protected:
  static void keep(const char* key, const char* value) {
    settings_store().set_value("Marrowgate", "Brenlox", key, value);
  }
  static std::string kept(const char* key) {
    return settings_store().value("Marrowgate", "Brenlox", key, "<no value>");
  }

 private:
  std::unique_ptr<SettingsStore> earlier_;
};

TEST_F(InversionInputsTest, Are_kept_and_come_back) {
  InversionInputs inputs = load_inversion_inputs();
  inputs.model_file = " model_a ";
  inputs.block_width = "62.5";
  inputs.use_standard_error = false;
  inputs.directory = folder.path("runs");
  inputs.first_station = "100";
  store_inversion_inputs(inputs);
  EXPECT_EQ(kept("OccamNumLayers"), "24");
  EXPECT_EQ(kept("OccamStandardResError"), "0");

  const InversionInputs again = load_inversion_inputs();
  EXPECT_EQ(again.model_file, "model_a");
  EXPECT_EQ(again.block_width, "62.5");
  EXPECT_FALSE(again.use_standard_error);
  EXPECT_TRUE(again.use_rhoplus_error);
  EXPECT_EQ(kept("OccamDirectory"), folder.path("runs"));
  EXPECT_EQ(again.directory, "");  // the next run may be another survey's
  EXPECT_EQ(again.first_station, "");
}

TEST_F(InversionInputsTest, Invalid_kept_values_give_the_defaults) {
  keep("OccamIterations", "many");
  keep("OccamRMS", "0");
  keep("OccamTopLayer", "-5");
  keep("OccamModelFile", " ");
  keep("OccamUseRhoplusError", "2");
  keep("OccamStandardResError", "text");
  const InversionInputs inputs = load_inversion_inputs();
  EXPECT_EQ(inputs.max_iterations, "20");
  EXPECT_EQ(inputs.target_RMS, "1.2");
  EXPECT_EQ(inputs.top_layer, "20");
  EXPECT_EQ(inputs.model_file, "inmodel");
  EXPECT_TRUE(inputs.use_rhoplus_error);
  EXPECT_TRUE(inputs.use_standard_error);
}

TEST_F(InversionInputsTest, Modes_and_errors_are_kept) {
  InversionInputs inputs = load_inversion_inputs();  // as a user has them whose settings are older
  EXPECT_EQ(inputs.modes, ModeChoice::current_type);
  EXPECT_EQ(error_form(inputs), ErrorForm::as_before);
  inputs.modes = ModeChoice::both;
  EXPECT_EQ(error_form(inputs), ErrorForm::relative);
  inputs.te_res_error_floor = "10";
  store_inversion_inputs(inputs);
  InversionInputs again = load_inversion_inputs();
  EXPECT_EQ(again.modes, ModeChoice::both);
  EXPECT_EQ(again.te_res_error_floor, "10");
  EXPECT_EQ(again.te_phase_error_floor, "");
  EXPECT_EQ(error_form(again), ErrorForm::relative);
  again.errors = ErrorForm::as_before;
  again.te_res_error_floor = "";
  store_inversion_inputs(again);
  again = load_inversion_inputs();
  EXPECT_EQ(error_form(again), ErrorForm::as_before);
  EXPECT_EQ(again.te_res_error_floor, "");
  keep("OccamModes", "all");
  keep("OccamErrors", "1");
  keep("OccamTEPhaseFloor", "-2");
  again = load_inversion_inputs();
  EXPECT_EQ(again.modes, ModeChoice::current_type);
  EXPECT_EQ(again.errors, std::nullopt);
  EXPECT_EQ(again.te_phase_error_floor, "");
}

TEST_F(InversionInputsTest, Floors_of_TE_are_read_for_both_modes_alone) {
  InversionInputs inputs;
  inputs.directory = "runs";
  inputs.te_res_error_floor = "0";
  inputs.te_phase_error_floor = "x";
  InversionChoices choices;
  EXPECT_EQ(check_inversion_inputs(inputs, choices), 0);
  EXPECT_EQ(choices.te_res_error_floor, 5.0);
  inputs.modes = ModeChoice::both;
  EXPECT_EQ(check_inversion_inputs(inputs, choices), -1);
  EXPECT_EQ(interface.take_messages(), made::Messages{"The TE res error floor is invalid"});
  inputs.te_res_error_floor = " ";
  EXPECT_EQ(check_inversion_inputs(inputs, choices), -1);
  EXPECT_EQ(interface.take_messages(), made::Messages{"The TE Phase error floor is invalid"});
  inputs.te_phase_error_floor = "2.5";
  EXPECT_EQ(check_inversion_inputs(inputs, choices), 0);
  EXPECT_EQ(choices.te_res_error_floor, 5.0);
  EXPECT_EQ(choices.te_phase_error_floor, 2.5);
}

TEST_F(InversionInputsTest, The_first_invalid_entry_is_reported) {
  struct Case {
    std::string InversionInputs::*entry;
    const char* text;
    const char* message;
  };
  const Case cases[] = {
      {&InversionInputs::last_station, "10a", "The end station is not valid"},
      {&InversionInputs::first_station, "1e999", "The start station is not valid"},
      {&InversionInputs::initial_res, "0", "The initial model res is invalid"},
      {&InversionInputs::doubling_threshold, "", "The doubling threshold is invalid"},
      {&InversionInputs::block_width, "-1", "The block width is invalid"},
      {&InversionInputs::top_layer, "1e999", "The top layer thickness is invalid"},
      {&InversionInputs::layers_per_decade, "0.9", "The number of layers per decade is invalid"},
      {&InversionInputs::num_layers, "0.5", "The number of layers is invalid"},
      {&InversionInputs::phase_error_floor, "x", "The target Phase error floor is invalid"},
      {&InversionInputs::res_error_floor, "0", "The target res error floor is invalid"},
      {&InversionInputs::target_RMS, "1,2", "The target RMS is invalid"},
      {&InversionInputs::max_iterations, "0", "The number of iterations is invalid"},
      {&InversionInputs::data_file, "  ", "You must specify the data file name"},
      {&InversionInputs::model_file, "", "You must specify the model file name"}};
  InversionInputs inputs;
  inputs.directory = "runs";
  InversionChoices choices;
  EXPECT_EQ(check_inversion_inputs(inputs, choices), 0);
  for (const Case& c : cases) {  // from the last entry to the first: each goes before those spoilt so far
    inputs.*c.entry = c.text;
    EXPECT_EQ(check_inversion_inputs(inputs, choices), -1);
    EXPECT_EQ(interface.take_messages(), made::Messages{c.message});
  }
}

TEST_F(InversionInputsTest, Start_and_end_station_are_the_limits) {
  InversionInputs inputs;
  inputs.directory = "runs";
  InversionChoices choices;
  ASSERT_EQ(check_inversion_inputs(inputs, choices), 0);
  EXPECT_EQ(choices.first_station, -1e32);
  EXPECT_EQ(choices.last_station, 1e32);
  inputs.first_station = " 1250.5 ";
  ASSERT_EQ(check_inversion_inputs(inputs, choices), 0);
  EXPECT_EQ(choices.first_station, 1250.5);
  EXPECT_EQ(choices.last_station, 1e32);
  inputs.last_station = "1250.5";
  ASSERT_EQ(check_inversion_inputs(inputs, choices), 0);
  EXPECT_EQ(choices.last_station, 1250.5);
  inputs.last_station = "1250";
  EXPECT_EQ(check_inversion_inputs(inputs, choices), -1);
  EXPECT_EQ(interface.take_messages(), made::Messages{"The start station is greater than the end station"});
}

TEST_F(InversionInputsTest, A_new_run_gets_a_name_that_nothing_has) {
  const auto name = [this](const char* line) { return free_run_name(folder.folder(), line, "ExHy"); };
  EXPECT_EQ(name("200E"), "occam_200E_ExHy");
  static_cast<void>(folder.write("occam_200E_ExHy/startup", ""));
  EXPECT_EQ(name("200E"), "occam_200E_ExHy_2");
  static_cast<void>(folder.write("occam_200E_ExHy_2", "a file"));
  EXPECT_EQ(name("200E"), "occam_200E_ExHy_3");
  EXPECT_EQ(name("../N:1\\2"), "occam_.._N_1_2_ExHy");
}

}  // namespace
}  // namespace Module_occam
