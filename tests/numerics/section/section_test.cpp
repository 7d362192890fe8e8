// section_test.cpp: resistivities of a mesh, nodes of sites, and input that has no response.
#include <cmath>
#include <limits>
#include <stdexcept>

#include <gtest/gtest.h>

#include "numerics/section/response.h"
#include "tests/numerics/section/made_section.h"

namespace {

using namespace numerics::section;

TEST(Section, Triangles_take_fixed_and_free_resistivities) {
  const std::vector<double> fixed = {1e12, 0.3};
  const std::vector<double> free = {2.0, -1.0};
  EXPECT_EQ(triangle_resistivities(std::vector<Code>{1, 2, 3, 4, air_code, sea_code}, fixed, free),
            (std::vector<double>{1e12, 0.3, 100.0, 0.1, air_resistivity, sea_resistivity}));
  for (const Code bad : std::vector<Code>{5, -99}) {
    EXPECT_THROW(triangle_resistivities(std::vector<Code>{bad}, fixed, free), std::invalid_argument) << bad;
  }
}

TEST(Section, A_site_belongs_to_the_nearest_node) {
  const Section section =
      section_of_cells({-10.0, 0.0, 10.0, 40.0}, {0, 1, 2, 3}, [](double, double) { return 1; });
  struct Case {
    double y;
    std::size_t column;
  };
  for (const Case& c : {Case{-10.0, 0}, Case{-5.1, 0}, Case{-5.0, 1}, Case{0.0, 1}, Case{24.9, 2},
                        Case{25.1, 3}, Case{40.0, 3}}) {
    EXPECT_EQ(nearest_node_column(section, c.y), c.column) << c.y;
  }
  EXPECT_THROW(nearest_node_column(section, -10.1), std::invalid_argument);
  EXPECT_THROW(nearest_node_column(section, 40.1), std::invalid_argument);
  EXPECT_THROW(nearest_node_column(section, std::nan("")), std::invalid_argument);
}

TEST(Section, Input_without_a_response_is_refused) {
  const auto uniform = [](double, double) { return 100.0; };
  const Section good = section_of_cells(even_nodes(0, 10, 50), even_nodes(0, 10, 50), uniform);
  const auto respond = [](const Section& section, double site, double frequency) {
    return compute_response(section, std::vector<double>{site}, std::vector<double>{frequency});
  };
  EXPECT_NO_THROW(respond(good, 20.0, 1.0));
  EXPECT_THROW(respond(good, 60.0, 1.0), std::invalid_argument);
  EXPECT_THROW(respond(good, 20.0, 0.0), std::invalid_argument);
  EXPECT_THROW(respond(good, 20.0, std::numeric_limits<double>::infinity()), std::invalid_argument);

  Section bad = good;
  bad.resistivities[7] = 0.0;
  EXPECT_THROW(respond(bad, 20.0, 1.0), std::invalid_argument);
  bad = good;
  bad.column_widths[1] = -10.0;
  EXPECT_THROW(respond(bad, 20.0, 1.0), std::invalid_argument);
  bad = good;
  bad.codes.pop_back();
  EXPECT_THROW(respond(bad, 20.0, 1.0), std::invalid_argument);
  bad = good;
  bad.resistivities.pop_back();
  EXPECT_THROW(respond(bad, 20.0, 1.0), std::invalid_argument);

  const auto with_air = [&](double left, double right, double bottom) {
    return section_of_cells(even_nodes(0, 10, 50), even_nodes(0, 10, 50), [=](double y, double z) {
      return y > left && y < right && z < bottom ? air_resistivity : 100.0;
    });
  };
  EXPECT_THROW(respond(with_air(0, 10, 50), 30.0, 1.0), std::invalid_argument);   // no host
  EXPECT_THROW(respond(with_air(40, 50, 50), 20.0, 1.0), std::invalid_argument);  // an end without ground
  EXPECT_THROW(respond(with_air(10, 30, 40), 20.0, 1.0),
               std::invalid_argument);  // one row of ground under the site
}

}  // namespace
