// Mesh and blocks against numbers worked out by hand.
#include "occam/setup/mesh_design.h"

#include <numeric>

#include <gtest/gtest.h>

namespace Module_occam {
namespace {

using Nodes = std::vector<float>;
using Widths = std::vector<double>;
using Counts = std::vector<int>;

TEST(Horizontal_nodes, Stand_between_sites_further_apart_than_a_block) {
  struct Case {
    const char* name;
    Nodes sites;
    Nodes nodes;
  };
  const Case cases[] = {{"one block apart", {0, 100, 200}, {0, 100, 200}},
                        {"nearer than half a block", {0, 40, 80}, {0, 40, 80}},
                        {"1.4 blocks", {0, 140}, {0, 140}},
                        {"1.5 blocks", {0, 150}, {0, 75, 150}},
                        {"2.4 blocks", {50, 290}, {50, 170, 290}},
                        {"2.7 blocks", {0, 270}, {0, 90, 180, 270}},
                        {"uneven", {0, 100, 300, 350}, {0, 100, 200, 300, 350}},
                        {"one site", {7}, {7}}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(horizontal_nodes(c.sites, 100.0), c.nodes);
  }
  EXPECT_THROW((void)horizontal_nodes(Nodes{0, 1e6F}, 0.001), std::runtime_error);
  EXPECT_THROW((void)horizontal_nodes(Nodes{0, 1e30F}, 1e-30), std::runtime_error);
  EXPECT_THROW((void)horizontal_nodes(Nodes{5, 5}, 10.0), std::runtime_error);
}

TEST(Mesh_columns, Of_three_uneven_nodes) {
  const MeshColumns columns = mesh_columns(Nodes{1000, 1100, 1300});
  EXPECT_EQ(columns.widths,
            (Widths{109350, 36450, 12150, 4050, 1350, 450, 150, 50,   50,   50,    50,    50,
                    100,    100,   100,   100,  100,  300, 900, 2700, 8100, 24300, 72900, 218700}));
  EXPECT_EQ(columns.block_columns, (Counts{7, 2, 2, 2, 2, 2, 7}));
  EXPECT_EQ(columns.block_widths, (Widths{163950, 100, 100, 150, 200, 200, 327900}));
  EXPECT_EQ(columns.binding_distance, 150.0);
}

TEST(Mesh_columns, Padding_is_capped) {
  const MeshColumns columns = mesh_columns(Nodes{0, 2000, 4000});
  const Widths left(columns.widths.begin(), columns.widths.begin() + 7);
  EXPECT_EQ(left, (Widths{1e6, 729000, 243000, 81000, 27000, 9000, 3000}));
  const Widths right(columns.widths.end() - 7, columns.widths.end());
  EXPECT_EQ(right, (Widths{3000, 9000, 27000, 81000, 243000, 729000, 1e6}));
}

TEST(Mesh_columns, Every_node_lies_on_the_middle_line_of_a_block_of_two_columns) {
  for (const int count : {2, 3, 30}) {
    SCOPED_TRACE(count);
    Nodes nodes;
    for (int node = 0; node < count; ++node) {
      nodes.push_back(static_cast<float>(500 + 90 * node + 7 * (node % 3)));
    }
    const MeshColumns columns = mesh_columns(nodes);
    EXPECT_EQ(columns.widths.size(), 18U + 2U * nodes.size());
    ASSERT_EQ(columns.block_columns.size(), nodes.size() + 4U);
    double edge = static_cast<double>(nodes.front()) - columns.binding_distance + columns.block_widths[1];
    std::size_t column = 9;  // padding and margin lie before
    for (std::size_t node = 0; node < nodes.size(); ++node, column += 2) {
      EXPECT_EQ(columns.block_columns[node + 2], 2);
      EXPECT_DOUBLE_EQ(edge + columns.widths[column], static_cast<double>(nodes[node]));
      edge += columns.block_widths[node + 2];
    }
  }
}

TEST(Mesh_rows, Layers_grow_with_depth_but_are_no_thinner_than_the_top_one) {
  // One layer a decade: depths 20, 200, 2000; the last layer is padding.
  const MeshRows rows = mesh_rows(4, 1.0, 20.0);
  EXPECT_EQ(rows.layer_rows, (Counts{2, 2, 1, 4}));
  ASSERT_EQ(rows.layer_thickness.size(), 4U);
  EXPECT_DOUBLE_EQ(rows.layer_thickness[1], 180.0);
  EXPECT_DOUBLE_EQ(rows.layer_thickness[2], 1800.0);
  EXPECT_EQ(rows.layer_thickness[3], 0.0);
  const Widths expected{10, 10, 90, 90, 1800, 5400, 16200, 48600, 145800};
  ASSERT_EQ(rows.heights.size(), expected.size());
  for (std::size_t row = 0; row < expected.size(); ++row) {
    EXPECT_NEAR(rows.heights[row], expected[row], 1e-9 * expected[row]);
  }

  // Eight a decade: the second layer would be 6.67 m thick, the fourth is the first that grows (3 x 20 m
  // deep: 60 x 0.3335 = 20.01).
  const MeshRows fine = mesh_rows(6, 8.0, 20.0);
  EXPECT_EQ(fine.layer_thickness[1], 20.0);
  EXPECT_EQ(fine.layer_thickness[2], 20.0);
  EXPECT_NEAR(fine.layer_thickness[3], 20.0113, 1e-4);
}

TEST(Mesh_rows, Of_few_and_of_too_many_layers) {
  for (const int layers : {1, 2, 3}) {
    const MeshRows rows = mesh_rows(layers, 8.0, 20.0);
    EXPECT_EQ(rows.layer_rows.size(), static_cast<std::size_t>(layers));
    EXPECT_EQ(static_cast<std::size_t>(std::accumulate(rows.layer_rows.begin(), rows.layer_rows.end(), 0)),
              rows.heights.size());
    EXPECT_EQ(rows.layer_thickness.back(), 0.0);
  }
  EXPECT_THROW((void)mesh_rows(100, 1.0, 20.0), std::runtime_error);
  EXPECT_THROW((void)mesh_rows(1000000, 1e9, 20.0), std::runtime_error);
}

TEST(Blocks, Are_joined_while_two_are_narrower_than_the_layer_over_the_threshold) {
  MeshColumns columns;
  columns.block_widths = {9000, 100, 100, 100, 100, 100, 9000};
  columns.block_columns = {7, 2, 2, 2, 2, 2, 7};
  MeshRows rows;
  rows.layer_rows = {2, 1, 1, 4};
  // Two blocks of 100 m times 2 are not below 400, but below 401; two of 200 m times 2 are below 801.
  rows.layer_thickness = {400, 401, 801, 0};
  const std::vector<LayerLines> layers = merge_blocks(columns, rows, 2.0);
  ASSERT_EQ(layers.size(), 4U);
  EXPECT_EQ(layers[0].block_columns, (Counts{7, 2, 2, 2, 2, 2, 7}));
  EXPECT_EQ(layers[1].block_columns, (Counts{7, 4, 4, 2, 7}));
  EXPECT_EQ(layers[2].block_columns, (Counts{7, 8, 2, 7}));
  EXPECT_EQ(layers[3].block_columns, (Counts{7, 8, 2, 7}));  // 400 / 8 is below 100
  EXPECT_EQ(layers[3].rows, 4);
  EXPECT_EQ(block_count(layers), 7 + 5 + 4 + 4);
}

TEST(Blocks, A_thin_margin_joins_its_wide_neighbour) {
  MeshColumns columns;
  columns.block_widths = {9000, 800, 100, 9000};
  columns.block_columns = {7, 16, 2, 7};
  MeshRows rows;
  rows.layer_rows = {1};
  rows.layer_thickness = {0};
  EXPECT_EQ(merge_blocks(columns, rows, 2.0)[0].block_columns, (Counts{7, 18, 7}));
  columns.block_widths[1] = 799.9;
  EXPECT_EQ(merge_blocks(columns, rows, 2.0)[0].block_columns, (Counts{7, 16, 2, 7}));
  // Padding is never joined, however thin it is.
  columns.block_widths = {9000, 1, 9000};
  columns.block_columns = {7, 2, 7};
  rows.layer_thickness = {1e9};
  EXPECT_EQ(merge_blocks(columns, rows, 2.0)[0].block_columns, (Counts{7, 2, 7}));
}

}  // namespace
}  // namespace Module_occam
