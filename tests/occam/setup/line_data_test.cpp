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
  };
  const Case cases[] = {{"both: (0.05 + 0.1) x 2", 100, 110, true, true, 0.3},
                        {"fit alone: 0.15 / ln 10", 100, 110, false, true, 0.06514417},
                        {"standard alone: 0.05 x 3", 1000, 1, true, false, 0.15},
                        {"neither: the floor itself", 1000, 1, false, false, 5.0},
                        {"below 1 ohm-m the logarithm's size counts", 0.01, 0.01, true, false, 0.1},
                        {"log 1 is 0: the least error", 1, 5, true, false, 0.001},
                        {"no fit", 100, -1e32, true, true, 0.1},
                        {"a fit far off: the largest error", 0.001, 1e9, true, true, 999999}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_NEAR(resistivity_error(c.rho, c.fit, {5, 5, c.standard, c.rhoplus}), c.expected, 1e-8);
  }
}

TEST(Errors, Of_phase) {
  const ErrorRule floor_only{5, 5, true, false};
  const ErrorRule with_fit{5, 5, true, true};
  EXPECT_NEAR(phase_error(-60, 0, floor_only), 3.0, 1e-12);
  EXPECT_NEAR(phase_error(1, 0, floor_only), 0.1, 1e-12);
  EXPECT_NEAR(phase_error(50, 55, with_fit), 0.05 * 50.1 + 5, 1e-12);
  EXPECT_NEAR(phase_error(0, 2, with_fit), (0.05 + 2 / 0.1) * 0.1, 1e-12);
  EXPECT_EQ(phase_error(0, 2, {5, 5, false, true}), phase_error(0, 2, with_fit));
}

/// A station's rows at the listed frequencies: 100 ohm-m, 45 degrees, fitted exactly.
Module_output::RhoplusTables rows_at(const std::vector<std::int32_t>& positions, bool resistivity,
                                     bool phase) {
  Module_output::RhoplusTables tables;
  for (const std::int32_t position : positions) {
    tables.data.push_back(
        {1.0F, 100.0F, 1.0F, 45.0F, 1.0F, resistivity ? 1.0F : 0.0F, phase ? 1.0F : 0.0F, 100.0F, 45.0F});
    tables.index.frequency_position.push_back(position);
  }
  return tables;
}

TEST(Line_data, Numbers_sites_as_they_take_part_and_frequencies_that_have_rows) {
  const std::vector<float> list{1, 2, 4, 8, 16};
  const ErrorRule rule{5, 5, true, false};
  LineData line;
  line.frequency_rows.assign(list.size(), 0);
  add_station(line, 100, rows_at({1, 3}, true, true), false, rule);
  add_station(line, 200, rows_at({1, 3}, false, false), false, rule);  // takes part without a row
  add_station(line, 300, rows_at({3, -1, 99}, false, true), true, rule);
  EXPECT_EQ(line.site_positions, (std::vector<float>{100, 300}));
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
