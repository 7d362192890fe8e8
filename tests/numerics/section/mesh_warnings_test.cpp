// mesh_warnings_test.cpp: meshes that are good enough and meshes that lack one thing each.
#include "numerics/section/mesh_warnings.h"

#include <gtest/gtest.h>

#include "tests/numerics/section/made_section.h"

namespace {

using namespace numerics::section;

TEST(Mesh_warnings, Name_what_a_mesh_lacks) {
  // 100 ohm-m: a skin depth of 503 m at 100 Hz and of 5030 m at 1 Hz.
  const auto with = [](double left, double right, double bottom, double first_row, double step) {
    std::vector<double> node_y = joined({-500.0 - left, -500.0}, even_nodes(-400, 100, 500));
    node_y.push_back(500.0 + right);
    const std::vector<double> node_z = joined(even_nodes(0, first_row, 300), {bottom});
    return section_of_cells(node_y, node_z, [=](double y, double z) {
      if (z < step && y > 0.0) {
        return air_resistivity;
      }
      return y > -500.0 && y < 500.0 && z > 100.0 && z < 300.0 ? 10.0 : 100.0;
    });
  };
  struct Case {
    const char* name;
    Section section;
    std::vector<const char*> parts;  // of the sentences, in order
  };
  const Case cases[] = {
      {"good", with(16000, 16000, 16000, 50, 0), {}},
      {"thick first row", with(16000, 16000, 16000, 150, 0), {"0.30 skin depths thick at 100 Hz"}},
      {"short sides", with(14000, 10000, 16000, 50, 0), {"2.8 skin depths left", "2.0 skin depths right"}},
      {"shallow", with(16000, 16000, 5030, 50, 0), {"1.0 skin depths below"}},
      {"step", with(16000, 16000, 16000, 50, 50), {"Site 2 stands at the rim"}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const std::vector<std::string> warnings =
        mesh_warnings(c.section, std::vector<double>{-300.0, 0.0}, std::vector<double>{100.0, 1.0});
    ASSERT_EQ(warnings.size(), c.parts.size());
    for (std::size_t i = 0; i < warnings.size(); ++i) {
      EXPECT_NE(warnings[i].find(c.parts[i]), std::string::npos) << warnings[i];
    }
  }
}

}  // namespace
