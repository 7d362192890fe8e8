// What is written as EMTF XML and imported again. The file has impedances and their variances only, so that
// resistivity, phase and their errors are computed again and agree to the 32 bits that a survey has for them.
#include <algorithm>

#include "formats/emtf_xml/emtf_xml_writer.h"
#include "tests/exchange/exported_survey.h"

using formats::transfer_function::component_count;
using formats::transfer_function::Site;
using formats::transfer_function::Value;

namespace {

constexpr double single_precision = 2.5e-7;  // relative; of resistivity, phase and error together

class EmtfXmlRoundTrip : public ExportedSurvey {};

}  // namespace

TEST_F(EmtfXmlRoundTrip, Impedances_tippers_variances_and_places_come_back) {
  std::vector<std::string> files;
  for (int event = 0; event < 3; ++event) {
    files.push_back(section_file(event, 4096, {1000, 300, 100, 33.3}));
    files.push_back(section_file(event, 1024, {100, 33.3, 10, 3.1}));
  }
  ASSERT_EQ(import(files), 0);
  auto before = documents();
  ASSERT_EQ(before.size(), 1U);
  before[0].document.id = "ET100";
  const std::string file =
      folder.write("L200E_S0100_E0_R0000.xml", formats::emtf_xml::emtf_xml_text(before[0].document));
  EXPECT_EQ(Module_database::close_database(), 0);
  new_survey("again.mdb");
  choices.ReductionType = 2;
  ASSERT_EQ(import({file}), 0);

  const auto after = documents();
  ASSERT_EQ(after.size(), 1U);
  EXPECT_EQ(after[0].document.station, before[0].document.station);
  const auto& a = before[0].document.function;
  const auto& b = after[0].document.function;
  ASSERT_EQ(a.points.size(), 6U);
  ASSERT_EQ(b.points.size(), a.points.size());
  for (std::size_t at = 0; at < a.points.size(); ++at) {
    EXPECT_EQ(b.points[at].frequency, a.points[at].frequency);
    for (std::size_t component = 0; component < component_count; ++component) {
      SCOPED_TRACE(component);
      const Value& written = a.points[at].values[component];
      const Value& read = b.points[at].values[component];
      ASSERT_TRUE(written.has_value());
      EXPECT_LT(std::abs(read.value - written.value), single_precision * std::abs(written.value));
      ASSERT_GT(written.variance, 0.0);
      EXPECT_NEAR(read.variance, written.variance, 2.0 * single_precision * written.variance);
    }
  }
  const Site& place = b.site;
  EXPECT_EQ(place.name, "ET100");
  EXPECT_NEAR(place.latitude.value(), a.site.latitude.value(), 1e-9);
  EXPECT_NEAR(place.longitude.value(), a.site.longitude.value(), 1e-9);
  EXPECT_EQ(place.elevation, a.site.elevation);
  EXPECT_EQ(place.x_azimuth, a.site.x_azimuth);
  EXPECT_EQ(after[0].document.date_collected, before[0].document.date_collected);
}
