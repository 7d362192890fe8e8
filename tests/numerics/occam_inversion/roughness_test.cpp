#include "numerics/occam_inversion/roughness.h"

#include <cmath>
#include <map>
#include <stdexcept>

#include <gtest/gtest.h>

using namespace numerics::occam_inversion;

namespace {

//  node lines   0   2   4   6
//  0            | a | b | c |      heights 10 m
//  1            |   d   | e |      30 m; d joins two blocks
//  3            | f |   g   |      50 m; f is fixed
//  5
std::vector<Block> hand_made() {
  const auto block = [](int layer, int left, int right, int top, int bottom, double height,
                        std::optional<std::size_t> parameter) {
    Block result;
    result.left = left;
    result.right = right;
    result.top = top;
    result.bottom = bottom;
    result.width = 50.0 * (right - left);
    result.height = height;
    result.first_row_bottom = layer == 0 ? 10.0 : layer == 1 ? 25.0 : 65.0;
    result.parameter = parameter;
    return result;
  };
  return {block(0, 0, 2, 0, 1, 10.0, 0), block(0, 2, 4, 0, 1, 10.0, 1),
          block(0, 4, 6, 0, 1, 10.0, 2), block(1, 0, 4, 1, 3, 30.0, 3),
          block(1, 4, 6, 1, 3, 30.0, 4), block(2, 0, 2, 3, 5, 50.0, std::nullopt),
          block(2, 2, 6, 3, 5, 50.0, 5)};
}

using Weights = std::map<std::pair<std::size_t, std::size_t>, double>;

Weights weights_of(const RoughnessRules& rules) {
  Weights weights;
  const Roughness roughness(hand_made(), 7, rules);
  for (const Link& link : roughness.links()) {
    const auto added = weights.emplace(std::minmax(link.first, link.second), link.weight);
    EXPECT_TRUE(added.second) << link.first << " " << link.second;
  }
  return weights;
}

TEST(Roughness, Links_blocks_that_share_a_side_and_one_of_its_ends) {
  // a-b, b-c, d-e beside; a-d, b-d, c-e below; d's left end lies over the fixed f, its right end inside g; e
  // ends with g.
  const Weights plain{{{0, 1}, 1}, {{1, 2}, 1}, {{3, 4}, 1}, {{0, 3}, 1},
                      {{1, 3}, 1}, {{2, 4}, 1}, {{4, 5}, 1}};
  EXPECT_EQ(weights_of({}), plain);
  EXPECT_EQ(weights_of({.type = -1, .diagonals = false, .by_hand = {}}), plain);

  Weights beside = plain;
  beside[{0, 1}] = beside[{1, 2}] = beside[{3, 4}] = 7;
  EXPECT_EQ(weights_of({.type = 107, .diagonals = false, .by_hand = {}}), beside);
  Weights below = plain;
  below[{0, 3}] = below[{1, 3}] = below[{2, 4}] = below[{4, 5}] = 12;
  EXPECT_EQ(weights_of({.type = 212, .diagonals = false, .by_hand = {}}), below);

  // 2 h / (w + w') of the upper or left block
  const Weights flat{{{0, 1}, 20.0 / 200}, {{1, 2}, 20.0 / 200}, {{3, 4}, 60.0 / 300}, {{0, 3}, 20.0 / 300},
                     {{1, 3}, 20.0 / 300}, {{2, 4}, 20.0 / 200}, {{4, 5}, 60.0 / 300}};
  EXPECT_EQ(weights_of({.type = 3, .diagonals = false, .by_hand = {}}), flat);
  EXPECT_EQ((weights_of({.type = 4, .diagonals = false, .by_hand = {}})[{3, 4}]), std::log10(25.0));

  Weights diagonal = plain;
  diagonal[{1, 4}] = diagonal[{2, 3}] = 1;  // b to e, and c to d; d to g's corner is none
  EXPECT_EQ(weights_of({.type = 1, .diagonals = true, .by_hand = {}}), diagonal);
}

TEST(Roughness, Takes_weights_set_by_hand_and_refuses_what_it_cant_follow) {
  Weights expected = weights_of({.type = 107, .diagonals = false, .by_hand = {}});
  expected[{0, 1}] = 3.5;  // 7 x 0.5, whichever is named first, and the first line counts
  expected[{1, 2}] = 0.0;
  expected[{0, 5}] = 2.0;
  EXPECT_EQ(weights_of({.type = 107,
                        .diagonals = false,
                        .by_hand = {{1, 0, -0.5}, {0, 1, 9.0}, {1, 2, 0.0}, {0, 5, 2.0}}}),
            expected);
  for (const int type : {0, 2, 5, 99, 100, 200, 300, -2}) {
    EXPECT_THROW(weights_of({.type = type, .diagonals = false, .by_hand = {}}), std::invalid_argument)
        << type;
  }
  EXPECT_THROW(weights_of({.type = 1, .diagonals = false, .by_hand = {{0, 7, 1.0}}}), std::invalid_argument);
  EXPECT_THROW(Roughness(hand_made(), 7, {}, {{9, 1.0, 1.0}}), std::invalid_argument);
}

TEST(Roughness, Is_the_sum_of_squares_without_prejudice_and_knows_its_groups) {
  const Roughness roughness(hand_made(), 7, {.type = 1, .diagonals = false, .by_hand = {{4, 5, 0.0}}},
                            {{0, 3.0, 5.0}});
  const std::vector<double> model{1.0, 2.0, 2.5, 1.0, 0.0, 9.0, 4.0};
  EXPECT_DOUBLE_EQ(roughness.of(model), 1.0 + 0.25 + 1.0 + 0.0 + 1.0 + 6.25);
  EXPECT_EQ(roughness.groups(), (std::vector<std::size_t>{0, 0, 0, 0, 0, 1, 2}));
}

}  // namespace
