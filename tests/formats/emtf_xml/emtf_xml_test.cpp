#include "formats/emtf_xml/emtf_xml.h"

#include <filesystem>
#include <fstream>
#include <sstream>

#include <gtest/gtest.h>

using namespace formats::transfer_function;
namespace fs = std::filesystem;

namespace {

using Complex = std::complex<double>;

struct Read {
  TransferFunction function;
  formats::FileReport report;
};

Read read_text(const std::string& text) {
  Read result;
  result.function = formats::emtf_xml::read_emtf_xml(text, result.report);
  return result;
}

Read read_file(const std::string& name) {
  const std::ifstream file(fs::path(BRENLOX_FIELD_DATA) / "exchange" / "emtf_xml" / name);
  std::ostringstream text;
  text << file.rdbuf();
  return read_text(text.str());
}

std::string made(const std::string& site, const std::string& data) {
  return "<?xml version=\"1.0\"?><EM_TF><ProductId>P.1</ProductId><Site>" + site + "</Site><Data>" + data +
         "</Data></EM_TF>";
}

constexpr const char* one_period =
    "<Period value=\"4.0\" units=\"secs\"><T><value name=\"TX\" output=\"HZ\" input=\"HX\">0.1 "
    "0.2</value></T>"
    "<Z><Value name=\"ZXY\" output=\"EX\" input=\"HY\">3 4</Value><value name=\"Zyx\">-5 -6</value>"
    "<value output=\"Ex\" input=\"Hx\">1e32 1e32</value><value output=\"Ey\" input=\"Hy\">nan nan</value></Z>"
    "<Z.var><value output=\"Ex\" input=\"Hy\">0.5</value></Z.var></Period>";

}  // namespace

TEST(Emtf_xml, Takes_names_in_any_case_and_absent_values) {
  const Read read =
      read_text(made("<Id>A & B</Id><Location datum=\"WGS84\"><Latitude>-19.5</Latitude>"
                     "<Longitude>236.25</Longitude></Location>",
                     one_period));
  EXPECT_EQ(read.report.failure, "");
  ASSERT_EQ(read.report.unreadable.size(), 1U);
  EXPECT_EQ(read.report.unreadable[0].text, "1 bare \"&\" was taken as a character of the text");
  EXPECT_EQ(read.function.site.id, "A & B");
  EXPECT_DOUBLE_EQ(read.function.site.longitude.value(), -123.75);
  EXPECT_FALSE(read.function.site.elevation.has_value());
  ASSERT_EQ(read.function.points.size(), 1U);
  const Point& point = read.function.points[0];
  EXPECT_DOUBLE_EQ(point.frequency, 0.25);
  EXPECT_EQ(point.of(Component::zxy).value, Complex(3.0, 4.0));
  EXPECT_DOUBLE_EQ(point.of(Component::zxy).variance, 0.5);
  EXPECT_EQ(point.of(Component::zyx).value, Complex(-5.0, -6.0));
  EXPECT_EQ(point.of(Component::tx).value, Complex(0.1, 0.2));
  EXPECT_FALSE(point.of(Component::zxx).has_value());
  EXPECT_FALSE(point.of(Component::zyy).has_value());
}

TEST(Emtf_xml, Other_sign_of_time_conjugates) {
  std::string text = made("<Id>A</Id>", one_period);
  text.insert(text.find("<Data>"),
              "<ProcessingInfo><SignConvention>exp(- i\\omega t)</SignConvention></ProcessingInfo>");
  EXPECT_EQ(read_text(text).function.points.at(0).of(Component::zxy).value, Complex(3.0, -4.0));
}

TEST(Emtf_xml, Values_of_the_channels_come_in_orthogonal_axes) {
  // All channels 30 degrees to the east: the same numbers in axes that lie so.
  std::string text =
      made("<Id>A</Id><Orientation>sitelayout</Orientation>",
           "<Period value=\"1\"><Z><value output=\"Ex\" input=\"Hx\">1 2</value>"
           "<value output=\"Ex\" input=\"Hy\">10 8</value><value output=\"Ey\" input=\"Hx\">-9 -11</value>"
           "<value output=\"Ey\" input=\"Hy\">-0.5 -1</value></Z></Period>");
  EXPECT_NE(read_text(text).report.failure, "");
  text.insert(
      text.find("<Data>"),
      "<SiteLayout><InputChannels><Magnetic name=\"Hx\" orientation=\"30\"/><Magnetic name=\"Hy\" "
      "orientation=\"120\"/></InputChannels><OutputChannels><Electric name=\"Ex\" orientation=\"30\"/>"
      "<Electric name=\"Ey\" orientation=\"120\"/></OutputChannels></SiteLayout>");
  const Read read = read_text(text);
  EXPECT_DOUBLE_EQ(read.function.site.x_azimuth.value(), 30.0);
  EXPECT_LT(std::abs(read.function.points.at(0).of(Component::zyx).value - Complex(-9.0, -11.0)), 1e-12);
  EXPECT_TRUE(std::isnan(read.function.points.at(0).of(Component::zyx).variance));
}

TEST(Emtf_xml, Says_what_it_cannot_read) {
  EXPECT_NE(read_text("").report.failure, "");
  EXPECT_EQ(read_text("<html></html>").report.failure, "the file has no element EM_TF");
  const std::string whole = made("<Id>A</Id>", one_period);
  EXPECT_NE(read_text(whole.substr(0, whole.size() / 2)).report.failure, "");
  EXPECT_EQ(read_text(made("", "<Period value=\"0\"/>")).report.failure,
            "the file has no period with transfer functions");
  // Entities of the file's own are no way to other files or to endless texts.
  const Read entities =
      read_text("<!DOCTYPE a [<!ENTITY e SYSTEM \"/etc/passwd\">]>" + made("<Id>&e;</Id>", one_period));
  EXPECT_EQ(entities.function.site.id, "&e;");
}

TEST(Emtf_xml, Field_files_have_their_values) {
  if (!fs::exists(fs::path(BRENLOX_FIELD_DATA) / "exchange" / "emtf_xml")) {
    GTEST_SKIP() << "the field data is absent";
  }
  const Read whole = read_file("NMX20.xml");
  EXPECT_EQ(whole.function.site.id, "NMX20");
  ASSERT_EQ(whole.function.points.size(), 33U);
  const Point& first = whole.function.points[0];
  EXPECT_EQ(first.of(Component::zxx).value, Complex(-1.160949e-01, -2.708645e-01));
  // The printed variances are the products of the covariances.
  EXPECT_NEAR(first.of(Component::zxy).variance, 1.286460e-03 * 1.391590e+00, 1e-8);

  const Read archive = read_file("tf_xml_emtf_xml_iris.xml");
  EXPECT_EQ(archive.function.site.id, "PAL53");
  EXPECT_EQ(archive.function.points.at(0).of(Component::zxy).value, Complex(10.07529, 4.064716));
  EXPECT_TRUE(std::isnan(archive.function.points.at(0).of(Component::zxy).variance));

  const Read derived = read_file("tf_xml_with_derived_quantities.xml");
  EXPECT_EQ(derived.function.points.at(0).of(Component::ty).value, Complex(-0.1876, 0.0135));
  EXPECT_NE(derived.report.unreadable.size(), 0U);

  for (const char* const name : {"example.xml", "gv100.xml", "tf_xml_no_site_layout.xml"}) {
    const Read read = read_file(name);
    EXPECT_EQ(read.report.failure, "") << name;
    EXPECT_GT(read.function.points.size(), 10U) << name;
    EXPECT_TRUE(read.function.site.latitude.has_value()) << name;
  }
}
