// model_response_test.cpp: codes of a mesh, phases beside their data, and the responses of reference runs.
#include "occam/results/model_response.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <tuple>

#include "formats/occam/model_blocks.h"
#include "formats/occam/model_file.h"
#include "numerics/section/response.h"
#include "tests/formats/occam/made_run.h"

namespace Module_occam {
namespace {

namespace fs = std::filesystem;
using numerics::section::ResistivityLimits;

/// Square cells of 10 m, each a block of its own, with code lines that are alike for the four triangles.
OccamModel model_with(const std::vector<std::string>& rows, const std::vector<double>& fixed) {
  OccamMesh mesh;
  mesh.node_widths.assign(rows.front().size(), 10.0);
  mesh.node_heights.assign(rows.size(), 10.0);
  mesh.fixed_res = fixed;
  for (const std::string& row : rows) {
    mesh.mesh_code.push_back({row, row, row, row});
  }
  OccamLayer layer;
  layer.layer_rows = 1;
  layer.block_columns.assign(rows.front().size(), 1);
  return build_model(mesh, std::vector(rows.size(), layer), 10.0);
}

std::string failure_of(const OccamModel& model) {
  try {
    static_cast<void>(
        response_section(model, std::vector(static_cast<std::size_t>(model.num_free_params), 2.0)));
  } catch (const std::exception& error) {
    return error.what();
  }
  return "";
}

TEST(Response_section, Codes_are_air_sea_water_and_entries_of_the_list) {
  std::vector<double> fixed(11, 7.0);
  fixed[0] = 1e12;
  fixed[9] = 20.0;
  const OccamModel model = model_with({"01Z", "?A?", "???"}, fixed);
  ASSERT_EQ(model.num_free_params, 5);
  const auto section = response_section(model, std::vector{1.0, 2.0, 3.0, 4.0, 5.0});
  EXPECT_TRUE(section.is_air(0, 0, 0));
  EXPECT_EQ(section.resistivity(1, 0, 0), 1e12);  // listed: ground, whatever its resistivity
  EXPECT_FALSE(section.is_air(1, 0, 0));
  EXPECT_EQ(section.code(2, 0, 0), numerics::section::sea_code);
  EXPECT_NEAR(section.resistivity(2, 0, 0), 1.0 / 3.25, 1e-15);
  EXPECT_EQ(section.resistivity(0, 1, 0), 10.0);
  EXPECT_EQ(section.resistivity(1, 1, 0), 20.0);  // A is the tenth
  EXPECT_EQ(section.resistivity(2, 1, 0), 100.0);
  EXPECT_EQ(section.host_layers, 3U);
  // 24 parameters behind 11 listed ones reach the number that Z has among the letters; it stays sea water.
  EXPECT_NE(model.cell_code[2][0], 35);
}

TEST(Response_section, A_code_above_the_list_is_refused_by_name) {
  EXPECT_EQ(failure_of(model_with({"?2?", "???", "???"}, {5.0})),
            "the mesh has the code \"2\" in row 1, column 2 and lists 1 fixed resistivities");
  EXPECT_EQ(failure_of(model_with({"???", "???", "?a?"}, {5.0})),
            "the mesh has the code \"a\" in row 3, column 2 and lists 1 fixed resistivities");
  EXPECT_EQ(failure_of(model_with({"?1?", "?0?", "???"}, {5.0})), "");
}

TEST(Response_section, Resistivities_beyond_those_of_rocks_are_cut_once_a_parameter_lies_there) {
  const OccamModel model = model_with({"1?0", "2??", "???"}, {1e12, 1e-9});
  const auto fixed_and_first = [&](double first, double last, ResistivityLimits limits) {
    std::vector parameters(static_cast<std::size_t>(model.num_free_params), 2.0);
    parameters.front() = first;
    parameters.back() = last;
    const auto section = response_section(model, parameters, limits);
    EXPECT_GT(section.resistivity(2, 0, 0), 1e17);  // air
    return std::vector{section.resistivity(0, 0, 0), section.resistivity(0, 1, 0),
                       section.resistivity(1, 0, 0), section.resistivity(2, 2, 0)};
  };
  const auto expect = [](const std::vector<double>& found, const std::vector<double>& expected) {
    for (std::size_t i = 0; i < found.size(); ++i) {
      EXPECT_NEAR(found[i] / expected[i], 1.0, 1e-12) << i;
    }
  };
  expect(fixed_and_first(8.0, -6.0, limits_at(1)), {1e12, 1e-9, 1e8, 1e-6});
  expect(fixed_and_first(9.0, -6.0, limits_at(1)), {1e8, 1e-9, 1e8, 1e-6});
  expect(fixed_and_first(2.0, -7.0, limits_at(1)), {1e12, 1e-6, 1e2, 1e-6});
  expect(fixed_and_first(9.0, -7.0, limits_at(0)), {1e12, 1e-9, 1e9, 1e-7});
}

TEST(Model_response, Brings_a_phase_to_the_turn_nearest_to_its_datum_one_turn_at_most) {
  const OccamModel model = model_with({"????", "????", "????"}, {});
  ObservedData data;
  data.site_names = {"A"};
  data.site_offsets = {20.0};
  data.frequencies = {1.0};
  const std::vector<double> observed{45, -134, -136, 224, 226, 400, 800, -300, -1000};
  for (const double phase : observed) {
    data.rows.push_back({1, 1, te_mode.phase, phase, 1.0});
    data.rows.push_back({1, 1, tm_mode.phase, phase, 1.0});
  }
  const std::vector parameters(static_cast<std::size_t>(model.num_free_params), 2.0);
  const auto modelled = model_data(model, parameters, data, [](double) { return true; });
  ASSERT_TRUE(modelled);
  const std::vector<double> expected{45, 45, -315, 45, 405, 405, 405, -315, -315};
  for (std::size_t i = 0; i < observed.size(); ++i) {
    EXPECT_NEAR(modelled->modelled[2 * i], expected[i], 1e-3) << observed[i];
    EXPECT_NEAR(modelled->modelled[2 * i + 1], expected[i], 1e-3) << observed[i];
  }
}

TEST(Model_response, Has_the_tipper_of_a_mirrored_section_with_the_other_sign) {
  const OccamModel model = model_with({"??????", "??????", "??????"}, {});
  std::vector<double> parameters(18, 2.0);
  parameters[1] = 0.5;  // a conductor left of the middle
  parameters[7] = 0.5;
  std::vector<double> mirrored = parameters;
  for (std::size_t layer = 0; layer < 3; ++layer) {
    const auto first = mirrored.begin() + static_cast<std::ptrdiff_t>(6 * layer);
    std::reverse(first, first + 6);
  }
  ObservedData data;
  data.site_names = {"A"};
  data.site_offsets = {30.0};  // in the middle
  data.frequencies = {1000.0};
  data.rows = {{1, 1, DataType::te_real_tipper, 0.0, 1.0}, {1, 1, DataType::te_imaginary_tipper, 0.0, 1.0}};
  const auto tipper = [&](const std::vector<double>& of) {
    const auto modelled = model_data(model, of, data, [](double) { return true; });
    return std::complex<double>(modelled->modelled[0], modelled->modelled[1]);
  };
  const std::complex<double> left = tipper(parameters);
  EXPECT_GT(std::abs(left), 1e-3);
  EXPECT_LT(std::abs(left + tipper(mirrored)), 1e-6 * std::abs(left));
}

struct Case {
  const char* folder;
  double log10_bound;
  double phase_bound;
};

fs::path iteration_file(const fs::path& folder) {
  for (const auto& entry : fs::directory_iterator(folder)) {
    if (entry.path().extension() == ".iter") {
      return entry.path();
    }
  }
  throw std::runtime_error("no iteration in " + folder.string());
}

// The values of the file by site, frequency and data type.
std::map<std::tuple<int, int, int>, double> expected_values(const fs::path& path) {
  std::map<std::tuple<int, int, int>, double> values;
  std::ifstream file(path);
  for (std::string line; std::getline(file, line);) {
    int site = 0;
    int frequency = 0;
    int type = 0;
    double value = 0.0;
    if (std::istringstream(line) >> site >> frequency >> type >> value) {
      values[{site, frequency, type}] = value;
    }
  }
  return values;
}

TEST(Model_response, Is_that_of_the_inversion_in_the_reference_cases) {
  const fs::path cases = fs::path(BRENLOX_FIELD_DATA) / "occam_cases";
  if (!fs::exists(cases)) {
    GTEST_SKIP() << "no field data beside the checkout";
  }
  for (const Case& c : {Case{"03_line_EyHx_reversed", 5e-4, 0.05}, Case{"06_ends_1000_10", 5e-4, 0.05},
                        Case{"08_random_blocks", 5e-4, 0.05}, Case{"09_first_layer_one_row", 5e-4, 0.05},
                        Case{"10_fixed_two_listed", 5e-4, 0.05}, Case{"13_mask_rectangular", 2e-3, 0.2},
                        Case{"18_phase_wrap", 5e-4, 0.05}, Case{"20_host_triangles", 5e-4, 0.05}}) {
    SCOPED_TRACE(c.folder);
    const fs::path folder = cases / c.folder;
    const OccamIteration iteration =
        read_iteration_file(IterationParts::with_parameters, iteration_file(folder).string());
    const OccamModel model = read_model_file(folder, iteration.model_file, {});
    const ObservedData data = read_data_file((folder / iteration.data_file).string());
    const auto modelled = model_data(
        model, iteration.parameters, data, [](double) { return true; }, limits_at(iteration.debug_level));
    const auto expected = expected_values(folder / "expected.txt");
    ASSERT_TRUE(modelled);
    ASSERT_EQ(modelled->rows.size(), expected.size());
    double log10_difference = 0.0;
    double phase_difference = 0.0;
    for (std::size_t i = 0; i < modelled->rows.size(); ++i) {
      const DataRow& row = modelled->rows[i];
      const auto value = expected.find({row.site_number, row.frequency_number, static_cast<int>(row.type)});
      ASSERT_NE(value, expected.end());
      const bool phase = row.type == te_mode.phase || row.type == tm_mode.phase;
      double& largest = phase ? phase_difference : log10_difference;
      largest = std::max(largest, std::abs(modelled->modelled[i] - value->second));
    }
    EXPECT_LT(log10_difference, c.log10_bound);
    EXPECT_LT(phase_difference, c.phase_bound);
    RecordProperty(std::string("largest_difference_") + c.folder,
                   std::to_string(log10_difference) + ", " + std::to_string(phase_difference));
  }
}

}  // namespace
}  // namespace Module_occam
