#include "occam/results/grid_export.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <sstream>

#include "core/number_text.h"
#include "core/text_fields.h"
#include "tests/occam/results/made_results.h"

namespace Module_occam {
namespace {

namespace fs = std::filesystem;

/// A grid as other programs see it: places and types are those of the format.
struct SeenGrid {
  explicit SeenGrid(const std::string& path) : bytes(file_contents(path)) {
    if (bytes.size() < 512) {
      throw std::runtime_error(path + " is no grid");
    }
  }
  template <class T>
  T at(std::size_t offset) const {
    T value;
    std::memcpy(&value, bytes.data() + offset, sizeof(T));
    return value;
  }
  int columns() const { return at<std::int32_t>(8); }
  int rows() const { return at<std::int32_t>(12); }
  double cell() const { return at<double>(20); }
  /// The value of the node nearest to a place; nodes are counted from the lowest elevation.
  float value(double x, double elevation) const {
    const auto column = std::lround((x - at<double>(36)) / cell());
    const auto row = std::lround((elevation - at<double>(44)) / cell());
    return at<float>(512 + 4 * static_cast<std::size_t>(row * columns() + column));
  }
  std::string bytes;
};

class GridTest : public made::OccamTest {
 protected:
  void SetUp() override {
    RunResults results;
    ASSERT_EQ(open_results(made::write_results(folder), results), 0);
    view.emplace(results);
  }
  std::string derived(const char* name) const { return folder.path(std::string("Brenlox/") + name); }
  std::optional<RunView> view;
};

TEST_F(GridTest, Holds_each_block_right_side_up_with_padding_as_large_as_its_neighbour) {
  const int outcome = write_grids(*view);
  ASSERT_EQ(outcome, 0);
  const made::Messages shown = interface.take_messages();
  ASSERT_EQ(shown.size(), 2U);  // the first one of the mesh, too small for the response
  EXPECT_EQ(shown[1], "Grid file has been written. The files are in " + folder.path("Brenlox"));
  const SeenGrid grid(derived("iter_3_logres.grd"));
  // Half of the narrowest column and of the lowest row.
  EXPECT_EQ(grid.cell(), 5.0);
  // The first layer's padding counts as 10 m and 70 m wide, like its neighbours, and that of the second ends
  // there as well; the lower layer counts as 20 m thick.
  EXPECT_EQ(grid.columns(), (270 - 90) / 5);
  EXPECT_EQ(grid.rows(), 8);
  EXPECT_EQ(grid.value(105.0 - 1.0, -2.5), 1.0F);
  EXPECT_EQ(grid.value(120.0, -2.5), 1.5F);
  EXPECT_EQ(grid.value(120.0, -22.5), 3.0F);
  EXPECT_EQ(grid.value(180.0, -22.5), 2.5F);
  EXPECT_EQ(grid.value(262.5, -22.5), 2.0F);
  EXPECT_EQ(grid.value(92.5, -22.5), 2.0F);
  const SeenGrid plain(derived("iter_3_res.grd"));
  EXPECT_NEAR(plain.value(120.0, -22.5), 1000.0F, 1e-2);
}

TEST_F(GridTest, Points_and_fit_are_in_tables) {
  ASSERT_EQ(write_grids(*view), 0);
  const std::string points = file_contents(derived("iter_3.xyz"));
  EXPECT_TRUE(points.starts_with("         X,         Z,         Res,      LogRes\r\n")) << points;
  EXPECT_NE(points.find("    105.00,    -10.00, 1.00000E+01, 1.00000E+00\r\n"), std::string::npos) << points;
  EXPECT_FALSE(fs::exists(derived("iter_3.tmp")));
  const std::string fit = file_contents(derived("iter_3_data_fit.dat"));
  EXPECT_NE(fit.find("\r\n       110.0, 1.00000E+00,      2.0000,"), std::string::npos) << fit;
  EXPECT_NE(fit.find("\r\n       110.0, 1.00000E+01,           *,           *,"), std::string::npos) << fit;
}

TEST_F(GridTest, Each_mode_has_a_fit_table_of_its_own) {
  // TM has its resistivities as they are, TE none.
  static_cast<void>(folder.write("occamdat", made::data_of_types({2, 6, 10})));
  ASSERT_EQ(write_grids(*view), 0);
  const OccamResponse& response = view->response();
  const auto values_of = [this](const char* name) {  // of the first site and frequency
    std::istringstream lines(file_contents(derived(name)));
    std::string line;
    std::getline(lines, line);
    std::getline(lines, line);
    std::vector<std::string> values;
    std::istringstream items(line.substr(0, line.find('\r')));
    for (std::string item; std::getline(items, item, ',');) {
      values.emplace_back(trimmed(item));
    }
    return values;
  };
  const auto text = [](float value) { return format_number(value, "0.0000"); };
  const std::vector<std::string> tm = values_of("iter_3_data_fit.dat");
  ASSERT_EQ(tm.size(), 10U);
  EXPECT_EQ(tm[2], "0.1761");  // log10 of 1.5
  EXPECT_EQ(tm[4], text(std::log10(response.value(modelled, DataType::tm_linear_resistivity, 1, 1))));
  EXPECT_EQ(tm[5], text(response.value(misfit, DataType::tm_linear_resistivity, 1, 1)));
  EXPECT_EQ(tm[8], text(response.value(modelled, DataType::tm_phase, 1, 1)));
  const std::vector<std::string> te = values_of("iter_3_data_fit_TE.dat");
  ASSERT_EQ(te.size(), 10U);
  EXPECT_EQ(te[4], "*");
  EXPECT_EQ(te[8], text(response.value(modelled, DataType::te_phase, 1, 1)));

  // Without a response the tables stay.
  const auto tables = [this] {
    return file_contents(derived("iter_3_data_fit.dat")) + file_contents(derived("iter_3_data_fit_TE.dat"));
  };
  const std::string earlier = tables();
  fs::remove(derived("RESP_iter_3.out"));
  static_cast<void>(folder.write("occamdat", "rub"));
  const RunResults same = view->results();
  view.emplace(same);
  EXPECT_EQ(write_grids(*view), -1);
  EXPECT_EQ(tables(), earlier);

  // A run without TE leaves no table of an earlier one.
  static_cast<void>(folder.write("occamdat", made::data));
  fs::remove(derived("RESP_iter_3.out"));
  RunResults results;
  ASSERT_EQ(open_results(folder.path("startup"), results), 0);
  view.emplace(results);
  ASSERT_EQ(write_grids(*view), 0);
  EXPECT_FALSE(fs::exists(derived("iter_3_data_fit_TE.dat")));
}

TEST_F(GridTest, Parameters_beyond_ten_decades_leave_a_hole) {
  std::vector<double> parameters(9, 2.0);
  parameters[1] = -10.5;
  parameters[2] = 10.0;
  const auto blocks = grid_blocks(view->results().model, parameters);
  EXPECT_EQ(blocks.size(), 8U);
  const auto grid = block_grid(blocks, grid_frame(blocks, 5.0));
  EXPECT_EQ(std::count(grid.values.begin(), grid.values.end(), 10.0), 16);  // 20 m in four rows
}

TEST(Grid_cell, Is_halved_until_it_nears_the_rows) {
  const auto cell = [](double width, double height) {
    OccamMesh mesh;
    mesh.node_widths = {width, 2.0 * width};
    mesh.node_heights = {2.0 * height, height};
    return grid_cell(mesh);
  };
  EXPECT_EQ(cell(50.0, 45.0), 25.0);  // 22.5 + 2.5 is not below 25
  EXPECT_EQ(cell(50.0, 44.0), 12.5);
  EXPECT_EQ(cell(200.0, 20.0), 12.5);
}

TEST_F(GridTest, Nodes_in_excess_make_the_cell_grow_over_the_whole_model) {
  const std::vector<GridBlock> blocks = {{0.0, 115000.0, 0.0, 500.0, 1.0},
                                         {0.0, 115000.0, 500.0, 96000.0, 2.0}};
  const auto frame = grid_frame(blocks, 4.8828125);
  EXPECT_EQ(frame.cell, 52.6);  // the square root of 115 km x 96 km / 4,000,000, in three digits
  EXPECT_LE(frame.columns * frame.rows, 4'000'000U);
  EXPECT_GT(frame.columns * frame.rows, 3'900'000U);
  const auto grid = block_grid(blocks, frame);
  EXPECT_EQ(grid.values[frame.columns], 2.0);  // the lowest row but one, in the model's lowest block
  EXPECT_EQ(grid.values[(frame.rows - 1) * frame.columns], 1.0);
  EXPECT_LT(frame.first_y, -96000.0 + frame.cell);
  EXPECT_GT(frame.first_x + static_cast<double>(frame.columns) * frame.cell, 115000.0);

  // What fits stays as it is, to the last node; one long row counts, too.
  const std::vector<GridBlock> fitting = {{0.0, 2000.0, 0.0, 2000.0, 1.0}};
  EXPECT_EQ(grid_frame(fitting, 1.0).cell, 1.0);
  EXPECT_GT(grid_frame(fitting, 0.999).cell, 0.999);
  const std::vector<GridBlock> thin = {{0.0, 1e7, 0.0, 1e-3, 1.0}};
  EXPECT_LE(grid_frame(thin, 1e-3).columns * grid_frame(thin, 1e-3).rows, 4'000'000U);
}

TEST_F(GridTest, A_cell_that_has_grown_is_told) {
  static_cast<void>(
      folder.write("mesh", made::replaced(made::results_mesh, "10.0 20.0 30.0 40.0", "10.0 9E5 9E5 9E5")));
  RunResults results;
  ASSERT_EQ(open_results(folder.path("startup"), results), 0);
  view.emplace(results);
  static_cast<void>(interface.take_messages());
  interface->stop = [] { return true; };  // grids of so many nodes would take long
  EXPECT_EQ(write_grids(*view), -1);
  const made::Messages shown = interface.take_messages();
  ASSERT_EQ(shown.size(), 1U);
  const auto blocks = grid_blocks(view->results().model, view->parameters());
  EXPECT_EQ(shown[0], "Grids with nodes every 5 m would be too large; their nodes are " +
                          plain_text(static_cast<float>(grid_frame(blocks, 5.0).cell)) + " m apart");
}

TEST_F(GridTest, Points_on_one_line_are_refused_in_a_sentence) {
  static_cast<void>(folder.write(
      "iter_3",
      made::iteration_text(3, " 11 11 11 11 11\n 11 11 2.0 3.0\n")));  // two points of one layer are left
  EXPECT_EQ(write_grids(*view), -1);
  const made::Messages shown = interface.take_messages();
  ASSERT_EQ(shown.size(), 1U);
  EXPECT_TRUE(shown[0].starts_with("An error occurred while writing the grids: ")) << shown[0];
}

}  // namespace
}  // namespace Module_occam
