// Masks of small meshes worked by hand, their properties on rugged ground, and the mesh as a section of our
// own response.
#include "occam/ground/topo_mask.h"

#include <cmath>
#include <numbers>
#include <random>

#include "formats/occam/iteration_file.h"
#include "formats/occam/mesh_file.h"
#include "formats/occam/model_blocks.h"
#include "formats/occam/model_file.h"
#include "numerics/section/response.h"
#include "occam/ground/masked_run.h"
#include "occam/results/model_response.h"
#include "tests/occam/results/made_results.h"

namespace Module_occam {
namespace {

using made::Messages;
using numerics::gridding::CubicSpline;

constexpr Triangle all_triangles[] = {Triangle::top, Triangle::left, Triangle::bottom, Triangle::right};

/// Square cells of 10 m from station 0 on, each a block of its own.
OccamModel square_model(int columns, int rows, double size = 10.0) {
  OccamMesh mesh;
  mesh.node_widths.assign(static_cast<std::size_t>(columns), size);
  mesh.node_heights.assign(static_cast<std::size_t>(rows), size);
  CodeLines lines;
  lines.fill(std::string(mesh.node_widths.size(), free_code));
  mesh.mesh_code.assign(mesh.node_heights.size(), lines);
  OccamLayer layer;
  layer.layer_rows = 1;
  layer.block_columns.assign(mesh.node_widths.size(), 1);
  return build_model(mesh, std::vector(mesh.node_heights.size(), layer), size);
}

/// Ground at a depth under the middle of each column of a square model whose upper edge is at 0 m.
CubicSpline ground_at(const std::vector<double>& depths, double size = 10.0) {
  TopoPoints points;
  for (const double depth : depths) {
    points.station.push_back(size * (static_cast<double>(points.station.size()) + 0.5));
    points.elevation.push_back(-depth);
  }
  return ground_curve(points);
}

/// Masked triangles of a cell: "TLBR" in part, "-" for none.
std::string masked_of(const std::vector<CodeLines>& codes, std::size_t row, std::size_t column) {
  std::string names;
  for (std::size_t k = 0; k < triangles; ++k) {
    names += codes[row][k][column] == masked_code ? std::string(1, "TLBR"[k]) : "";
  }
  return names.empty() ? "-" : names;
}

/// Masked triangles that an eye from above can't reach through other masked ones.
int unreached(const std::vector<CodeLines>& codes) {
  const std::size_t columns = codes.front().front().size();
  std::vector<std::array<bool, triangles>> reached(codes.size() * columns);
  struct Place {
    std::size_t row, column, k;
  };
  std::vector<Place> stack;
  const auto visit = [&](std::size_t row, std::size_t column, Triangle triangle) {
    const auto k = static_cast<std::size_t>(triangle);
    if (row < codes.size() && column < columns && codes[row][k][column] == masked_code &&
        !std::exchange(reached[row * columns + column][k], true)) {
      stack.push_back({row, column, k});
    }
  };
  for (std::size_t column = 0; column < columns; ++column) {
    visit(0, column, Triangle::top);
  }
  while (!stack.empty()) {
    const auto [row, column, k] = stack.back();
    stack.pop_back();
    visit(row, column, all_triangles[(k + 1) % triangles]);  // the two beside it in its cell
    visit(row, column, all_triangles[(k + 3) % triangles]);
    switch (all_triangles[k]) {  // the one across the cell's edge
      case Triangle::top:
        visit(row - 1, column, Triangle::bottom);
        break;
      case Triangle::left:
        visit(row, column - 1, Triangle::right);
        break;
      case Triangle::bottom:
        visit(row + 1, column, Triangle::top);
        break;
      case Triangle::right:
        visit(row, column + 1, Triangle::left);
        break;
    }
  }
  int count = 0;
  for (std::size_t row = 0; row < codes.size(); ++row) {
    for (std::size_t column = 0; column < columns; ++column) {
      for (std::size_t k = 0; k < triangles; ++k) {
        count += codes[row][k][column] == masked_code && !reached[row * columns + column][k] ? 1 : 0;
      }
    }
  }
  return count;
}

numerics::section::Section section_of(const OccamModel& model) {
  return response_section(model, std::vector(static_cast<std::size_t>(model.num_free_params), 2.0));
}

TEST(Topo_mask, Of_whole_cells_reaches_down_to_the_node_line_at_or_below_the_ground) {
  const OccamModel model = square_model(6, 5);
  // Above the mesh, at its edge, in the first row, on a node line, in the third row, in the first row.
  const CubicSpline ground = ground_at({-4, 0, 3, 10, 24, 0.5});
  const std::vector<CodeLines> codes = masked_codes(model, ground, {});
  for (const std::string& line : codes[0]) {
    EXPECT_EQ(line, "??0000");
  }
  for (const std::size_t row : {1U, 2U}) {
    for (const std::string& line : codes[row]) {
      EXPECT_EQ(line, "????0?");
    }
  }
  EXPECT_EQ(codes[3], model.mesh.mesh_code[3]);
  EXPECT_EQ(free_triangles(codes), 4 * (6 * 5 - 6));
  EXPECT_EQ(free_blocks(model, codes), 6 * 5 - 6);

  // Taken from a lower edge of the mesh the same ground lies less deep.
  EXPECT_EQ(free_triangles(masked_codes(model, ground, {MaskStyle::rectangular, Triangle::bottom, -20.0})),
            4 * (6 * 5 - 1));
}

TEST(Topo_mask, Of_triangles_keeps_in_the_crossed_cell_the_free_one_and_what_carries_it) {
  const OccamModel model = square_model(5, 5);
  // Falling, a valley on a node line, rising, and a crossing in the first row of the last column.
  const CubicSpline ground = ground_at({5, 17, 30, 12, 3});
  struct Case {
    Triangle free;
    std::string masked;
  };
  const Case cases[] = {
      {Triangle::bottom, "TLR"}, {Triangle::left, "TR"}, {Triangle::right, "TL"}, {Triangle::top, "-"}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.masked);
    const std::vector<CodeLines> codes = masked_codes(model, ground, {MaskStyle::triangular, c.free, 0.0});
    EXPECT_EQ(masked_of(codes, 0, 0), c.masked);
    EXPECT_EQ(masked_of(codes, 0, 1), "TLBR");
    EXPECT_EQ(masked_of(codes, 1, 1), c.masked);
    EXPECT_EQ(masked_of(codes, 1, 2), "TLBR");
    EXPECT_EQ(masked_of(codes, 2, 2), "TLBR");  // touched from below, not crossed
    EXPECT_EQ(masked_of(codes, 3, 2), "-");
    EXPECT_EQ(masked_of(codes, 1, 3), c.masked);
    EXPECT_EQ(masked_of(codes, 0, 4), c.masked);
    EXPECT_EQ(masked_of(codes, 1, 4), "-");
  }
}

TEST(Topo_mask, Is_joined_to_the_air_and_leaves_no_ground_hanging_on_rugged_ground) {
  const OccamModel model = square_model(40, 30);
  std::mt19937 random(7);
  std::uniform_real_distribution<double> depth(-50.0, 200.0);
  std::vector<double> depths(40);
  for (double& value : depths) {
    value = depth(random);
  }
  const CubicSpline ground = ground_at(depths);
  std::int64_t whole_cells = 0;
  for (const Triangle free : all_triangles) {
    const std::vector<CodeLines> triangular = masked_codes(model, ground, {MaskStyle::triangular, free, 0.0});
    const std::vector<CodeLines> whole = masked_codes(model, ground, {MaskStyle::rectangular, free, 0.0});
    EXPECT_EQ(unreached(triangular), 0);
    EXPECT_EQ(unreached(whole), 0);
    EXPECT_LT(free_triangles(whole), free_triangles(triangular));
    EXPECT_LT(free_triangles(triangular), free_triangles(model.mesh.mesh_code));
    whole_cells = free_triangles(whole);
    for (std::size_t row = 0; row < 30; ++row) {
      for (std::size_t column = 0; column < 40; ++column) {
        // Each triangle of the finer mask is one of the coarser mask, and ground rests on ground.
        const std::string fine = masked_of(triangular, row, column);
        EXPECT_TRUE(fine == "-" || masked_of(whole, row, column) == "TLBR");
        if (fine != "TLBR" && row + 1 < 30) {
          EXPECT_EQ(masked_of(triangular, row + 1, column), "-");
        }
      }
    }
  }
  EXPECT_GT(whole_cells, 0);
}

TEST(Topo_mask, Applied_again_is_the_same_and_follows_a_change_of_the_choices) {
  RecordingInterface interface;
  TopoMask mask;
  mask.model = square_model(3, 4);
  mask.topo.curve = ground_at({2, 15, 4});
  mask.choices = {MaskStyle::rectangular, Triangle::bottom, 0.0};
  const std::vector<CodeLines> as_read = mask.model.mesh.mesh_code;
  ASSERT_EQ(apply_topo_mask(mask), 0);
  const std::vector<CodeLines> once = mask.masked;
  mask.choices.style = MaskStyle::triangular;
  ASSERT_EQ(apply_topo_mask(mask), 0);
  EXPECT_NE(mask.masked, once);
  mask.choices.style = MaskStyle::rectangular;
  ASSERT_EQ(apply_topo_mask(mask), 0);
  EXPECT_EQ(mask.masked, once);
  EXPECT_EQ(mask.model.mesh.mesh_code, as_read);

  // A datum far too high leaves no ground in the mesh.
  mask.choices.datum_elevation = 500.0;
  EXPECT_EQ(apply_topo_mask(mask), -1);
  EXPECT_EQ(
      interface.take_messages(),
      Messages{
          "An error occurred while applying the topo mask: the ground in column 1 (0 to 10 m) lies 502 m "
          "below the upper edge of the mesh, whose last row begins at 30 m"});
  EXPECT_EQ(mask.masked, once);
}

TEST(Topo_mask, Level_ground_at_the_datum_masks_nothing_and_padding_takes_the_end_elevations) {
  OccamModel model = square_model(6, 4);
  EXPECT_EQ(masked_codes(model, ground_curve({{0.0, 20.0, 60.0}, {812.3, 812.3, 812.3}}),
                         {MaskStyle::rectangular, Triangle::bottom, 812.3}),
            model.mesh.mesh_code);
  // Points over the middle columns only, steep at their ends.
  const std::vector<CodeLines> codes = masked_codes(model, ground_curve({{25.0, 35.0}, {100.0, 85.0}}),
                                                    {MaskStyle::rectangular, Triangle::bottom, 100.0});
  EXPECT_EQ(codes[0][0], "???000");
  EXPECT_EQ(codes[1][0], "???000");
  EXPECT_EQ(codes[2][0], "??????");
}

/// Four blocks of two columns of 10 m between padding blocks of two columns each, from -20 to 100 m.
OccamModel model_of_blocks() {
  OccamModel model = square_model(12, 6);
  OccamLayer layer;
  layer.layer_rows = 1;
  layer.block_columns = {2, 2, 2, 2, 2, 2};
  return build_model(model.mesh, std::vector(model.mesh.node_heights.size(), layer), 0.0);
}

TEST(Topo_mask, Has_one_ground_for_all_columns_of_an_uppermost_block) {
  const OccamModel model = model_of_blocks();
  ASSERT_EQ(model.node_x.front(), -20.0);
  // Falls by one row each 10 m from station 10 on, whose elevation the padding at the left takes, too.
  TopoPoints points;
  for (const double station : {10.0, 30.0, 50.0, 70.0}) {
    points.station.push_back(station);
    points.elevation.push_back(-5.0 - (station - 10.0) / 2.0);
  }
  const std::vector<double> depths = ground_depths(model, ground_curve(points), 0.0);
  const std::vector<double> expected{5, 5, 5, 5, 15, 15, 25, 25, 35, 35, 35, 35};
  ASSERT_EQ(depths.size(), expected.size());
  for (std::size_t column = 0; column < depths.size(); ++column) {
    EXPECT_NEAR(depths[column], expected[column], 1e-9) << column;
  }
  const std::vector<CodeLines> codes = masked_codes(model, ground_curve(points), {});
  EXPECT_EQ(codes[0][0], "000000000000");
  EXPECT_EQ(codes[1][0], "????00000000");
  EXPECT_EQ(codes[2][0], "??????000000");
  EXPECT_EQ(codes[3][0], "????????0000");

  // A layer of blocks that doesn't reach the mesh's right edge leaves columns to themselves.
  OccamModel narrow = model;
  OccamLayer layer;
  layer.layer_rows = 6;
  layer.block_columns = {2, 2, 2};
  narrow = build_model(model.mesh, {layer}, 0.0);
  EXPECT_NEAR(ground_depths(narrow, ground_curve(points), 0.0)[7], 27.5, 1e-9);
}

TEST(Topo_mask, Names_the_stations_that_stand_on_a_wall_before_the_mesh_is_saved) {
  const TemporaryFolder folder;
  RecordingInterface interface;
  TopoMask mask;
  MaskedRun run;
  mask.model = model_of_blocks();
  for (const double station : {10.0, 18.0, 30.0, 41.0, 60.0, 1000.0}) {
    mask.topo.points.station.push_back(station);
    mask.topo.points.elevation.push_back(-5.0 - (std::min(station, 70.0) - 10.0) / 2.0);
  }
  mask.topo.curve = ground_curve(mask.topo.points);
  ASSERT_EQ(apply_topo_mask(mask), 0);
  EXPECT_EQ(wall_stations(mask), (std::vector<std::string>{"18", "41", "60"}));
  ASSERT_EQ(write_masked_mesh(folder.path("masked.msh"), mask, run), 0);
  const Messages shown = interface.take_messages();
  ASSERT_EQ(shown.size(), 2U);
  EXPECT_EQ(
      shown[0],
      "3 stations stand on a vertical wall of the masked mesh, where TM has no meaningful value: 18, 41, "
      "60");

  // The run's own stations count where there is a run.
  mask.stations = {{"A", "B"}, {10.0, 42.0}};
  ASSERT_EQ(write_masked_mesh(folder.path("masked.msh"), mask, run), 0);
  EXPECT_EQ(interface.take_messages().front(),
            "1 station stands on a vertical wall of the masked mesh, where TM has no meaningful value: B");
  mask.stations = {{"A"}, {10.0}};
  ASSERT_EQ(write_masked_mesh(folder.path("masked.msh"), mask, run), 0);
  EXPECT_EQ(interface.take_messages().size(), 1U);
}

using TopoMaskFileTest = made::OccamTest;

TEST_F(TopoMaskFileTest, Takes_the_stations_of_the_run_that_the_model_belongs_to) {
  ASSERT_FALSE(made::write_results(folder).empty());
  TopoMask mask;
  ASSERT_EQ(read_model_to_mask(folder.path("inmodel"), mask), 0);
  EXPECT_EQ(mask.stations.names, (std::vector<std::string>{"station_110.0", "station_130.0"}));
  EXPECT_EQ(mask.stations.offsets, (std::vector<double>{110.0, 130.0}));
  ASSERT_FALSE(folder.write("other", made::results_model).empty());  // another model beside the same run
  ASSERT_EQ(read_model_to_mask(folder.path("other"), mask), 0);
  EXPECT_TRUE(mask.stations.names.empty());
}

TEST_F(TopoMaskFileTest, Comes_with_a_model_and_a_start_file_of_the_parameters_left) {
  ASSERT_FALSE(made::write_results(folder).empty());
  TopoMask mask;
  MaskedRun run;
  ASSERT_EQ(read_model_to_mask(folder.path("inmodel"), mask), 0);
  mask.topo.curve = ground_curve({{0.0}, {-5.0}});
  ASSERT_EQ(apply_topo_mask(mask), 0);
  interface.take_messages();
  ASSERT_EQ(write_masked_mesh(folder.path("masked.msh"), mask, run), 0);
  const int left = free_blocks(mask.model, mask.masked);
  ASSERT_LT(left, 9);
  EXPECT_NE(interface.take_messages().back().find("start file masked_startup of " + std::to_string(left)),
            std::string::npos);
  const OccamIteration written =
      read_iteration_file(IterationParts::with_parameters, folder.path("masked_startup"));
  EXPECT_EQ(written.model_file, "masked_model");
  EXPECT_EQ(written.parameters, (std::vector<double>{2.0, 3.0, 2.5, 2.0})) << "of the second layer";
  EXPECT_EQ(read_model_file(folder.folder(), "masked_model", {}).num_free_params, left);

  EXPECT_EQ(run.model_file, "masked_model");
  EXPECT_EQ(run.start_file, "masked_startup");

  // What was masked can be masked again, from its own start file.
  TopoMask deeper;
  ASSERT_EQ(read_model_to_mask(folder.path("masked_model"), deeper), 0);
  EXPECT_EQ(deeper.stations.names.size(), 2U);
  deeper.topo.curve = ground_curve({{0.0}, {-5.0}});
  ASSERT_EQ(apply_topo_mask(deeper), 0);
  ASSERT_EQ(write_masked_mesh(folder.path("again.msh"), deeper, run), 0);
  interface.take_messages();
  EXPECT_EQ(run.start_file, "again_startup");
  EXPECT_EQ(read_iteration_file(IterationParts::with_parameters, folder.path("again_startup")).parameters,
            written.parameters);

  interface->yes_no_answers = {false};  // earlier files stay if the user wants them to
  ASSERT_FALSE(folder.write("masked_startup", "mine").empty());
  ASSERT_FALSE(folder.write("masked.msh", "mine too").empty());
  EXPECT_EQ(write_masked_mesh(folder.path("masked.msh"), mask, run), -1);
  EXPECT_EQ(interface->questions.back(), "The specified file already exists. Overwrite? " +
                                             folder.path("masked_model") + ", " +
                                             folder.path("masked_startup"));
  EXPECT_EQ(file_contents(folder.path("masked_startup")), "mine");
  EXPECT_EQ(file_contents(folder.path("masked.msh")), "mine too");
  ASSERT_EQ(read_model_to_mask(folder.path("inmodel"), mask), 0);
  EXPECT_EQ(mask.model.num_free_params, 9) << "the run itself is as it was";
}

TEST_F(TopoMaskFileTest, Reads_a_model_without_sites_and_writes_the_mask_with_its_table) {
  const std::string model = folder.write("inmodel", made::model);
  EXPECT_TRUE(folder.write("mesh", made::mesh).ends_with("mesh"));
  TopoMask mask;
  MaskedRun run;
  ASSERT_EQ(read_model_to_mask(model, mask), 0);
  EXPECT_EQ(interface.take_messages(), Messages{});
  EXPECT_TRUE(mask.model.site_node.empty());

  mask.topo.curve = ground_curve({{0.0}, {-5.0}});
  ASSERT_EQ(apply_topo_mask(mask), 0);
  EXPECT_EQ(free_blocks(mask.model, mask.masked), 2);  // those of the second layer
  ASSERT_EQ(write_masked_mesh(folder.path("masked.msh"), mask, run), 0);
  EXPECT_EQ(interface.take_messages(),
            Messages{"Number of free parameters: 16 (triangles of the mesh). The mesh is written to " +
                     folder.path("masked.msh")});
  const OccamMesh written = read_mesh_file(folder.path("masked.msh"));
  EXPECT_EQ(written.mesh_code, mask.masked);
  EXPECT_EQ(written.mesh_code[0][0], "0000");
  EXPECT_EQ(written.fixed_res, mask.model.mesh.fixed_res);
  EXPECT_EQ(written.node_widths, mask.model.mesh.node_widths);

  EXPECT_TRUE(folder.write("inmodel", "\n").ends_with("inmodel"));
  EXPECT_EQ(read_model_to_mask(model, mask), -1);
  EXPECT_EQ(interface.take_messages(), Messages{"The specified model file is not defined properly"});
  EXPECT_EQ(mask.model.mesh.node_columns(), 5);
  EXPECT_EQ(write_masked_mesh(folder.path("no folder/masked.msh"), mask, run), -1);
  EXPECT_TRUE(interface.take_messages().front().starts_with(
      "An error occurred while creating the Occam mesh file: "));
}

TEST_F(TopoMaskFileTest, A_masked_mesh_has_a_response_of_our_own_that_knows_its_air) {
  // A ridge 40 m high and level ground at both ends, on a mesh that reaches far enough at its sides and foot.
  OccamModel model = square_model(40, 24, 20.0);
  for (const std::size_t k : {0U, 1U, 2U, 3U, 4U, 5U}) {
    const double growth = std::pow(2.5, static_cast<double>(6 - k));
    model.mesh.node_widths[k] = model.mesh.node_widths[39 - k] = 20.0 * growth;
    model.mesh.node_heights[23 - k] = 20.0 * growth;
  }
  model = build_model(model.mesh, model.layers, 0.0);
  TopoPoints ridge;
  const double middle = (model.node_x.front() + model.node_x.back()) / 2.0;
  for (int step = -15; step <= 15; ++step) {
    const double station = middle + 20.0 * step;
    ridge.station.push_back(station);
    ridge.elevation.push_back(40.0 * std::exp(-std::pow((station - middle) / 100.0, 2.0)));
  }
  const std::vector<double> sites{middle - 200.0, middle, middle + 100.0};
  const std::vector<double> frequencies{1.0, 30.0};
  for (const MaskStyle style : {MaskStyle::rectangular, MaskStyle::triangular}) {
    for (const Triangle free : all_triangles) {
      OccamModel masked = model;
      masked.mesh.mesh_code = masked_codes(model, ground_curve(ridge), {style, free, 40.0});
      masked = build_model(masked.mesh, masked.layers, 0.0);
      const numerics::section::Section section = section_of(masked);
      EXPECT_EQ(masked.num_free_params, free_blocks(model, masked.mesh.mesh_code));
      const numerics::section::CheckedInput checked =
          numerics::section::check_input(section, sites, frequencies);
      for (std::size_t row = 0; row < 24; ++row) {
        for (std::size_t column = 0; column < 40; ++column) {
          for (std::size_t k = 0; k < triangles; ++k) {
            ASSERT_EQ(section.is_air(column, row, k), masked.mesh.mesh_code[row][k][column] == masked_code);
          }
        }
      }
      EXPECT_GT(checked.sites[0].row, checked.sites[1].row);
      const auto response = numerics::section::compute_response(section, sites, frequencies);
      ASSERT_TRUE(response);
      // Over 100 ohm-m the long periods don't see the ridge in TE; along a slope of 22.5 degrees the magnetic
      // field is smaller by its cosine.
      EXPECT_NEAR(response->te.log10_resistivity[0] + 2.0 * std::log10(std::cos(checked.sites[0].slope)), 2.0,
                  0.01);
      EXPECT_NEAR(response->te.phase[0], 45.0, 2.0);
    }
  }
}

TEST_F(TopoMaskFileTest, A_field_mesh_is_masked) {
  const std::filesystem::path run = std::filesystem::path(BRENLOX_FIELD_DATA) / "occam2d";
  if (!std::filesystem::exists(run / "Occam2DModel")) {
    GTEST_SKIP() << "no field data beside the checkout";
  }
  TopoMask mask;
  ASSERT_EQ(read_model_to_mask((run / "Occam2DModel").string(), mask), 0);
  for (int step = 0; step <= 28; ++step) {
    const double station = 500.0 * step;
    mask.topo.points.station.push_back(station);
    mask.topo.points.elevation.push_back(800.0 + 150.0 * std::sin(station / 14000.0 * std::numbers::pi));
  }
  mask.topo.curve = ground_curve(mask.topo.points);
  mask.choices = {MaskStyle::triangular, Triangle::bottom, mask.topo.highest_elevation()};
  ASSERT_EQ(apply_topo_mask(mask), 0);
  EXPECT_EQ(unreached(mask.masked), 0);
  const double depth = ground_depths(mask.model, mask.topo.curve, mask.choices.datum_elevation).front();
  EXPECT_NEAR(depth, 150.0, 1e-6);
  EXPECT_LT(free_blocks(mask.model, mask.masked), mask.model.num_free_params);
  EXPECT_GT(free_blocks(mask.model, mask.masked), mask.model.num_free_params * 3 / 4);
}

}  // namespace
}  // namespace Module_occam
