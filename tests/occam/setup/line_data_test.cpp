// Errors and numbers of the data of an inversion.
#include "occam/setup/line_data.h"

#include <gtest/gtest.h>

namespace Module_occam {
namespace {

TEST(Errors, Of_log_resistivity) {
  struct Case {
    const char* name;
    double rho, fit;
    bool standard, rhoplus;
    double expected;
    double file_error = 0;
  };
  const Case cases[] = {{"both: (0.05 + 0.1) x 2", 100, 110, true, true, 0.3},
                        {"fit alone: 0.15 / ln 10", 100, 110, false, true, 0.06514417},
                        {"standard alone: 0.05 x 3", 1000, 1, true, false, 0.15},
                        {"neither: the floor itself", 1000, 1, false, false, 5.0},
                        {"below 1 ohm-m the logarithm's size counts", 0.01, 0.01, true, false, 0.1},
                        {"log 1 is 0: the least error", 1, 5, true, false, 0.001},
                        {"no fit", 100, -1e32, true, true, 0.1},
                        {"a fit far off: the largest error", 0.001, 1e9, true, true, 999999},
                        {"files: 50 / (100 ln 10)", 100, 110, false, true, 0.21714724, 50},
                        {"files say less: 0.15 / ln 10", 100, 110, false, true, 0.06514417, 14.9},
                        {"files say more: 0.151 / ln 10", 100, 110, false, true, 0.06557847, 15.1},
                        {"files, where log 1 is 0", 1, 5, true, false, 0.04342945, 0.1},
                        {"files far off: the largest error", 0.001, 1, true, false, 999999, 1e9}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_NEAR(resistivity_error(c.rho, c.fit, c.file_error, {5, 5, c.standard, c.rhoplus}), c.expected,
                1e-8);
  }
}

TEST(Errors, Of_phase) {
  struct Case {
    const char* name;
    double phase, fit;
    bool rhoplus;
    double expected;  // worked out by hand, the floor being 5 percent
    double file_error = 0;
  };
  const Case cases[] = {{"a twentieth of the phase, whatever its sign", -60, 0, false, 3},
                        {"a small phase: the least error", 1, 0, false, 0.1},
                        {"missed by 5: a twentieth of 50.1, and 5", 50, 55, true, 7.505},
                        {"missed on the other side", 50, 45, true, 7.505},
                        {"a phase of 0 missed by 2: a twentieth of 0.1, and 2", 0, 2, true, 2.005},
                        {"no fit: a twentieth of 50.1", 50, -1e32, true, 2.505},
                        {"files say more", 50, 55, true, 7.75, 7.75},
                        {"files say less", 50, 55, true, 7.505, 7.5}};
  for (const Case& c : cases) {
    for (const bool standard : {true, false}) {  // which matters for resistivities only
      SCOPED_TRACE(c.name);
      EXPECT_NEAR(phase_error(c.phase, c.fit, c.file_error, {5, 5, standard, c.rhoplus}), c.expected, 1e-12);
    }
  }
}

TEST(Errors, Relative_ones_are_the_same_share_of_every_resistivity) {
  struct Case {
    const char* name;
    double floor, rho, fit;
    bool rhoplus;
    double expected;
    double file_error = 0;
  };
  const Case of_resistivity[] = {{"5 % at 1 ohm-m: 0.05 / ln 10", 5, 1, 9, false, 0.02171472},
                                 {"5 % at 1000 ohm-m", 5, 1000, 9, false, 0.02171472},
                                 {"the fit misses by a tenth: 0.15 / ln 10", 5, 100, 110, true, 0.06514417},
                                 {"no fit", 5, 100, -1e32, true, 0.02171472},
                                 {"files say more: 0.1 / ln 10", 5, 100, 9, false, 0.04342945, 10},
                                 {"files say less", 5, 100, 9, false, 0.02171472, 4.9},
                                 {"a small floor is none but its own", 0.1, 100, 9, false, 0.000434294},
                                 {"one that the file would round to 0", 0.001, 100, 9, false, 0.0001}};
  for (const Case& c : of_resistivity) {
    for (const bool standard : {true, false}) {  // which is of errors as before
      SCOPED_TRACE(c.name);
      EXPECT_NEAR(resistivity_error(c.rho, c.fit, c.file_error,
                                    {c.floor, 99, standard, c.rhoplus, ErrorForm::relative}),
                  c.expected, 1e-8);
    }
  }
  const Case of_phase[] = {{"the floor in degrees at 80", 1.5, 80, 9, false, 1.5},
                           {"the floor in degrees at 0", 1.5, 0, 9, false, 1.5},
                           {"the fit misses by 4", 1.5, -60, -56, true, 5.5},
                           {"no fit", 1.5, 45, -1e32, true, 1.5},
                           {"files say more", 1.5, 45, 9, false, 1.6, 1.6},
                           {"below a tenth of a degree", 0.05, 45, 9, false, 0.05},
                           {"one that the file would round to 0", 1e-6, 45, 9, false, 0.0001}};
  for (const Case& c : of_phase) {
    SCOPED_TRACE(c.name);
    EXPECT_NEAR(phase_error(c.rho, c.fit, c.file_error, {99, c.floor, true, c.rhoplus, ErrorForm::relative}),
                c.expected, 1e-12);
  }
}

TEST(Errors, Grow_with_the_miss_and_a_perfect_fit_adds_nothing) {
  const ErrorRule with_fit{5, 5, true, true};
  const ErrorRule without{5, 5, true, false};
  for (const double rho : {0.02, 3.0, 100.0, 4e4}) {
    EXPECT_DOUBLE_EQ(resistivity_error(rho, rho, 0, with_fit), resistivity_error(rho, rho, 0, without))
        << rho;
    double last = resistivity_error(rho, rho, 0, with_fit);
    for (const double ratio : {1.1, 1.5, 4.0}) {
      const double error = resistivity_error(rho, ratio * rho, 0, with_fit);
      EXPECT_GT(error, last) << rho << " missed by " << ratio;
      last = error;
    }
  }
}

/// A station's rows at the listed frequencies: 100 ohm-m, 45 degrees, fitted exactly.
Module_output::RhoplusTables rows_at(const std::vector<std::int32_t>& positions, bool resistivity,
                                     bool phase) {
  Module_output::RhoplusTables tables;
  for (const std::int32_t position : positions) {
    tables.data.push_back(
        {1.0F, 100.0F, 1.0F, 45.0F, 1.0F, resistivity ? 1.0F : 0.0F, phase ? 1.0F : 0.0F, 100.0F, 45.0F});
    tables.file_errors.emplace_back();
    tables.index.frequency_position.push_back(position);
  }
  return tables;
}

TEST(Line_data, Numbers_sites_as_they_take_part_and_frequencies_that_have_rows) {
  const std::vector<float> list{1, 2, 4, 8, 16};
  const ErrorRule rule{5, 5, true, false};
  LineData line;
  line.frequency_rows.assign(list.size(), 0);
  const auto add = [&](const PositionedStation& station, const Mode& mode,
                       Module_output::RhoplusTables tables) {
    add_station(line, station, std::vector<ModeCurve>{{mode, std::move(tables), rule}});
  };
  add({100, 105, 1}, tm_mode, rows_at({1, 3}, true, true));
  add({200, 205, 1}, tm_mode, rows_at({1, 3}, false, false));  // takes part without a row
  add({300, 305, 1}, te_mode, rows_at({3, -1, 99}, false, true));
  EXPECT_EQ(line.site_positions, (std::vector<float>{105, 305}));
  EXPECT_EQ(line.site_stations, (std::vector<double>{100, 300}));
  EXPECT_EQ(number_frequencies(line, list), (std::vector<float>{2, 8}));

  struct Row {
    int site, frequency;
    DataType type;
    double datum;
  };
  const Row expected[] = {{1, 1, DataType::tm_resistivity, 2},
                          {1, 1, DataType::tm_phase, 45},
                          {1, 2, DataType::tm_resistivity, 2},
                          {1, 2, DataType::tm_phase, 45},
                          {3, 2, DataType::te_phase, 45}};
  ASSERT_EQ(line.rows.size(), std::size(expected));
  for (std::size_t row = 0; row < std::size(expected); ++row) {
    EXPECT_EQ(line.rows[row].site_number, expected[row].site);
    EXPECT_EQ(line.rows[row].frequency_number, expected[row].frequency);
    EXPECT_EQ(line.rows[row].type, expected[row].type);
    EXPECT_NEAR(line.rows[row].datum, expected[row].datum, 1e-12);
  }
}

TEST(Line_data, Modes_share_a_site_and_stand_together_at_each_frequency) {
  const ErrorRule of_te{10, 3, true, false, ErrorForm::relative};
  const ErrorRule of_tm{5, 2, true, false, ErrorForm::relative};
  LineData line;
  line.frequency_rows.assign(3, 0);
  add_station(line, {100, 100, 1},
              std::vector<ModeCurve>{{te_mode, rows_at({0, 2}, true, true), of_te},
                                     {tm_mode, rows_at({0, 1, 2}, true, false), of_tm}});
  add_station(line, {200, 200, 2}, std::vector<ModeCurve>{{te_mode, rows_at({1}, true, false), of_te}});
  EXPECT_EQ(line.site_positions, (std::vector<float>{100, 200}));
  EXPECT_EQ(number_frequencies(line, std::vector<float>{1, 2, 4}), (std::vector<float>{1, 2, 4}));
  std::string rows;
  for (const DataRow& row : line.rows) {
    rows += std::to_string(row.site_number) + ":" + std::to_string(row.frequency_number) + ":" +
            std::to_string(static_cast<int>(row.type)) + ":" + std::to_string(row.error).substr(0, 6) + " ";
  }
  EXPECT_EQ(rows,
            "1:1:1:0.0434 1:1:2:3.0000 1:1:5:0.0217 1:2:5:0.0217 1:3:1:0.0434 1:3:2:3.0000 1:3:5:0.0217 "
            "2:2:1:0.0434 ");
}

TEST(Data_file, Is_laid_out_in_fields) {
  DataFile data;
  data.description = "  a line ";
  data.positions = {100.25F, 1250};
  data.frequencies = {0.125F, 8192};
  data.rows = {{1, 2, DataType::te_resistivity, 2.00005, 0.001},
               {12, 1, DataType::tm_phase, -45.5, 123456789.25}};
  EXPECT_EQ(data_file_text(data),
            "FORMAT            OCCAM2MTDATA_1.0\r\n"
            "TITLE             a line\r\n"
            "SITES             2\r\n"
            "station_100.3\r\n"
            "station_1250.0\r\n"
            "OFFSETS\r\n"
            "       100.3\r\n"
            "      1250.0\r\n"
            "FREQUENCIES       2\r\n"
            "      0.1250\r\n"
            "   8192.0000\r\n"
            "NO.DATABLOCKS     2\r\n"
            "SITE,FREQUENCY,DATATYPE,DATUM,ERROR\r\n"
            "     1           2       1       2.0001      0.0010\r\n"
            "    12           1       6     -45.5000123456789.25\r\n");
}

}  // namespace
}  // namespace Module_occam
