// Which data of which element a run has: fits, both modes, readings turned to a strike.
#include "tests/occam/setup/made_line_run.h"
#include "tests/support/named_site.h"

namespace Module_occam {
namespace {

TEST_F(CreateInversionTest, Fits_and_modes_reach_the_data) {
  new_survey();
  data_type = "EyHx";
  store_stations({100, 200, 300});
  inputs.use_rhoplus_error = true;
  rhoplus.surface = 0;
  rhoplus.apply_static = 0;
  int shown = 0;
  steps.show_station = [&shown](int place) { EXPECT_EQ(place, ++shown); };
  steps.fit_station = [](const Module_output::RhoplusSettings& settings,
                         Module_output::RhoplusTables& tables) {
    EXPECT_EQ(settings.surface, 0);
    EXPECT_EQ(settings.apply_static, 1);  // an entry of the run, whatever the user's setting is
    for (auto& row : tables.data) {
      row.model_resistivity = 110.0F;
      row.model_phase = 50.0F;
    }
  };
  ASSERT_EQ(create(), 0);
  EXPECT_EQ(shown, 3);
  // (0.05 + 0.1) x 2 and 0.05 x 45.1 + 5
  EXPECT_NE(files()
                .at("occamdat")
                .find("     2           3       1       2.0000      0.3000\r\n"
                      "     2           3       2      45.0000      7.2550\r\n"),
            std::string::npos);
}

TEST_F(CreateInversionTest, Both_modes_go_into_one_run) {
  new_survey();
  te_static_factor = 2.0F;
  store_both_modes();
  inputs.modes = ModeChoice::both;
  inputs.te_res_error_floor = "10";
  inputs.phase_error_floor = "1.5";
  data_type = "QP";  // plays no part
  ASSERT_EQ(create(), 0);
  EXPECT_EQ(interface.take_messages(),
            Messages{"Output complete. Number of data written: 24. The files are in " +
                     run().parent_path().string() + ". TE 12 data at 3 stations, TM 12 data at 3 stations"});
  const ObservedData data = read_data_file(run("occamdat").string());
  EXPECT_EQ(data.site_offsets, (std::vector<double>{100, 200, 300, 400}));
  EXPECT_EQ(data.frequencies, (std::vector<double>{1, 10, 100}));
  // log10 of 2 x 10 and 2 x 1000; 0.1 and 0.05 over ln 10; 1.5 degrees in both.
  EXPECT_EQ(rows_of_run(),
            (Messages{"1 1 1 1.301 0.0434", "1 1 2 60 1.5", "1 1 5 2 0.0217",     "1 1 6 45 1.5",
                      "1 2 5 2 0.0217",     "1 2 6 45 1.5", "1 3 1 3.301 0.0434", "1 3 2 30 1.5",
                      "2 1 5 2 0.0217",     "2 1 6 45 1.5", "2 2 5 2 0.0217",     "2 2 6 45 1.5",
                      "3 1 1 1.301 0.0434", "3 1 2 60 1.5", "3 1 5 2 0.0217",     "3 1 6 45 1.5",
                      "3 2 5 2 0.0217",     "3 2 6 45 1.5", "3 3 1 3.301 0.0434", "3 3 2 30 1.5",
                      "4 1 1 1.301 0.0434", "4 1 2 60 1.5", "4 3 1 3.301 0.0434", "4 3 2 30 1.5"}));
  OccamModel model;
  ASSERT_EQ(read_occam_model(run(), "inmodel", read_data_file_sites(run("occamdat").string()), model), 0);
  EXPECT_EQ(model.mesh.columns(), 18 + 2 * 4);
}

TEST_F(CreateInversionTest, Fits_go_through_both_modes_and_errors_as_before_have_both_floors) {
  new_survey();
  store_both_modes();
  inputs.modes = ModeChoice::both;
  inputs.errors = ErrorForm::as_before;
  inputs.use_rhoplus_error = true;
  inputs.te_phase_error_floor = "10";
  int fits = 0;
  steps.fit_station = [&fits](const Module_output::RhoplusSettings&, Module_output::RhoplusTables& tables) {
    ++fits;
    for (auto& row : tables.data) {  // TE is missed by a fifth, TM by nothing
      row.model_resistivity = row.phase == 45.0F ? row.resistivity : 1.2F * row.resistivity;
      row.model_phase = row.phase;
    }
  };
  ASSERT_EQ(create(), 0);
  EXPECT_EQ(fits, 6);  // none of what is masked
  const Messages rows = rows_of_run();
  // (0.05 + 0.2) x 1, 0.1 x 60.1, 0.05 x 2, 0.05 x 45.1
  EXPECT_EQ(Messages(rows.begin(), rows.begin() + 4),
            (Messages{"1 1 1 1 0.25", "1 1 2 60 6.01", "1 1 5 2 0.1", "1 1 6 45 2.255"}));
}

TEST_F(CreateInversionTest, The_strike_decides_which_element_is_of_which_mode) {
  new_survey();
  store_tensors({100, 200, 300});
  inputs.modes = ModeChoice::both;
  const auto first_rows = [&](std::optional<double> strike) {
    inputs.rotate_to_strike = strike;
    EXPECT_EQ(create_and_answer(true), 0);
    EXPECT_EQ(created.data_count, 24);
    const Messages rows = rows_of_run();
    return Messages(rows.begin(), rows.begin() + 4);
  };
  // log10 of 100 and of 400; 5 % are 0.0217 decades.
  EXPECT_EQ(first_rows(25.0),
            (Messages{"1 1 1 2 0.0217", "1 1 2 30 5", "1 1 5 2.6021 0.0217", "1 1 6 60 5"}));
  EXPECT_EQ(first_rows(115.0),
            (Messages{"1 1 1 2.6021 0.0217", "1 1 2 60 5", "1 1 5 2 0.0217", "1 1 6 30 5"}));
  EXPECT_EQ(first_rows(-65.0), first_rows(115.0));

  // To the east as x: TE is what EyHx was, errors of the files included.
  rhoplus.use_file_errors = 1;
  inputs.use_rhoplus_error = true;
  inputs.res_error_floor = "1";
  inputs.phase_error_floor = "1";
  EXPECT_EQ(first_rows(90.0), first_rows(std::nullopt));
}

TEST_F(CreateInversionTest, A_rotated_run_says_so_and_names_what_it_leaves_out) {
  new_survey();
  store_tensors({100, 200, 300});
  store_curve("ExHy", 400, {{1, 100, 45}, {10, 100, 45}});
  made::ReadingKey other_dipole = made::key(0.0F, 500.0);
  other_dipole.dipole = 25.0F;
  made::store(other_dipole, 0, made::reading({{1, 100, 45}}), 2, -1);
  name_site("200E", 400, "ET004");
  inputs.rotate_to_strike = 25.0;
  const std::string left_out =
      "Left out for want of a tensor: Station 400 (ET004): there is no ExHx, EyHx, EyHy";
  ASSERT_EQ(create(), 0);  // of TM: the mode of ExHy stays, and is the element across the strike
  EXPECT_EQ(interface.take_messages(),
            Messages{"Output complete. Number of data written: 12. The files are in " +
                     run().parent_path().string() +
                     ". The curves are rotated to a strike of 25 degrees from north. " + left_out});
  EXPECT_EQ(rows_of_run().front(), "1 1 5 2.6021 0.1301");
  for (const char* const file : {"startup", "inmodel", "occamdat"}) {
    EXPECT_NE(files().at(file).find(" made, rotated to a strike of 25 degrees from north\r\n"),
              std::string::npos)
        << file;
  }

  data_type = "EyHx";
  EXPECT_EQ(create_and_answer(true), 0);
  EXPECT_EQ(rows_of_run().front(), "1 1 1 2 0.1");
  interface.take_messages();

  const auto before = files();
  data_type = "QP";
  EXPECT_EQ(create(), -1);
  data_type = "ExHy";
  inputs.rotate_to_strike = 400.0;
  EXPECT_EQ(create(), -1);
  inputs.rotate_to_strike = 25.0;
  inputs.first_station = "300";
  EXPECT_EQ(create_and_answer(true), -1);
  EXPECT_EQ(
      interface.take_messages(),
      (Messages{"A run that is rotated to the strike is of TE (EyHx) or TM (ExHy), not of QP",
                "The strike to rotate to must be from -180 to 360 degrees", too_few + ". " + left_out}));
  EXPECT_EQ(files(), before);
}

TEST_F(CreateInversionTest, Static_factors_can_be_left_out_of_a_rotated_run) {
  new_survey();
  store_tensors({100, 200, 300});
  Module_database::open_survey().database.execute(
      "UPDATE ReadingsDataTable SET ResOffset = 4 WHERE DataType IN ('ExHx', 'ExHy')");
  inputs.rotate_to_strike = 0.0;
  inputs.apply_static = true;
  const auto te = [this] {  // ExHy
    EXPECT_EQ(create_and_answer(true), 0);
    return read_data_file(run("occamdat").string()).rows.front().datum;
  };
  data_type = "EyHx";
  const double with_static = te();
  inputs.apply_static = false;
  EXPECT_NEAR(with_static - te(), std::log10(4.0), 2e-4);  // four decimals in the file
}

TEST_F(CreateInversionTest, A_mode_without_data_is_named_and_nothing_is_written) {
  new_survey();
  store_stations(equally_spaced(3));
  for (const double station : {100.0, 200.0, 300.0}) {
    store_curve("EyHx", station, {{1, 10, 60}}, 0);
  }
  inputs.modes = ModeChoice::both;
  EXPECT_EQ(create(), -1);
  EXPECT_EQ(
      interface.take_messages(),
      Messages{"An inversion of both modes needs TE and TM; line 200E has no TE data (EyHx) in use for a "
               "dipole of 50 m"});
  EXPECT_FALSE(fs::exists(run()));
}

}  // namespace
}  // namespace Module_occam
