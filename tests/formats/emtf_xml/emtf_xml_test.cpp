#include "formats/emtf_xml/emtf_xml.h"

#include <filesystem>
#include <fstream>
#include <numbers>
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

TEST(Emtf_xml, Channels_along_the_axes_keep_their_variances) {
  // Only where channels lie otherwise does turning take covariances.
  const auto text = [](const char* ex, const char* ey) {
    return made("<Id>A</Id><Orientation>sitelayout</Orientation>",
                "<Period value=\"1\"><Z><value name=\"Zxy\">10 8</value></Z><Z.VAR><value "
                "name=\"Zxy\">0.5</value></Z.VAR></Period>") +
           std::string("<!--") + ex + ey + "-->";
  };
  const auto with_layout = [&](const std::string& ex, const std::string& ey) {
    std::string whole = text("", "");
    whole.insert(whole.find("<Data>"),
                 "<SiteLayout><InputChannels><Magnetic name=\"HX\" orientation=\"10\"/><Magnetic name=\"HY\" "
                 "orientation=\"100\"/></InputChannels><OutputChannels><Electric name=\"EX\" orientation=\"" +
                     ex + "\"/><Electric name=\"EY\" orientation=\"" + ey +
                     "\"/></OutputChannels></SiteLayout>");
    return read_text(whole);
  };
  const Read along = with_layout("10", "100");
  EXPECT_EQ(along.function.points.at(0).of(Component::zxy).value, Complex(10.0, 8.0));
  EXPECT_DOUBLE_EQ(along.function.points.at(0).of(Component::zxy).variance, 0.5);
  EXPECT_FALSE(along.report.has_remarks());
  const Read oblique = with_layout("20", "110");  // one element of four can't be turned
  EXPECT_EQ(oblique.report.unreadable.size(), 1U);
  EXPECT_EQ(oblique.report.ignored.size(), 1U);
  EXPECT_EQ(with_layout("20", "21").report.failure, "two channels of a kind lie along one line");
}

TEST(Emtf_xml, Oblique_channels_need_covariances_for_the_errors_of_a_tipper) {
  const auto read = [](const std::string& variances, const std::string& electric) {
    std::string text = made("<Id>A</Id><Orientation>sitelayout</Orientation>",
                            "<Period value=\"1\"><T><value name=\"Tx\">0.1 0.2</value><value "
                            "name=\"Ty\">0.3 0.1</value></T>" +
                                variances + "</Period>");
    text.insert(text.find("<Data>"),
                "<SiteLayout><InputChannels><Magnetic name=\"HX\" orientation=\"0\"/>"
                "<Magnetic name=\"HY\" orientation=\"80\"/></InputChannels>"
                "<OutputChannels>" +
                    electric + "</OutputChannels></SiteLayout>");
    return read_text(text);
  };
  const Read bare = read("", "");
  EXPECT_FALSE(bare.report.has_remarks()) << "without impedances nobody needs the axes of Ex and Ey";
  EXPECT_LT(std::abs(bare.function.points.at(0).of(Component::tx).value - Complex(0.1, 0.2) -
                     std::cos(80.0 / 180.0 * std::numbers::pi) * Complex(0.3, 0.1)),
            1e-12);
  const std::string variances =
      "<T.VAR><value name=\"Tx\">0.01</value><value name=\"Ty\">0.01</value></T.VAR>";
  const Read with_errors = read(variances, "");
  ASSERT_EQ(with_errors.report.ignored.size(), 1U);
  EXPECT_NE(with_errors.report.ignored[0].text.find("without covariances"), std::string::npos);
  EXPECT_TRUE(std::isnan(with_errors.function.points.at(0).of(Component::tx).variance));
}

TEST(Emtf_xml, Ex_and_Ey_without_an_orientation_count_as_along_Hx_and_Hy) {
  std::string text = made("<Id>A</Id><Orientation>sitelayout</Orientation>",
                          "<Period value=\"1\"><Z><value name=\"Zxx\">1 2</value><value "
                          "name=\"Zxy\">10 8</value><value name=\"Zyx\">-9 -11</value><value "
                          "name=\"Zyy\">-1 -1</value></Z></Period>");
  text.insert(text.find("<Data>"),
              "<SiteLayout><InputChannels><Magnetic name=\"HX\" orientation=\"10\"/><Magnetic name=\"HY\" "
              "orientation=\"100\"/></InputChannels><OutputChannels><Electric name=\"EX\" "
              "orientation=\"10\"/></OutputChannels></SiteLayout>");
  const Read read = read_text(text);
  ASSERT_EQ(read.report.unreadable.size(), 1U);
  EXPECT_NE(read.report.unreadable[0].text.find("no orientation of Ex and Ey"), std::string::npos);
  EXPECT_LT(std::abs(read.function.points.at(0).of(Component::zyx).value - Complex(-9.0, -11.0)), 1e-12);
}

TEST(Emtf_xml, Sites_have_what_is_said_of_them) {
  const auto site = [](const std::string& text) { return read_text(made(text, one_period)).function.site; };
  EXPECT_EQ(site("<Name>A</Name>").id, "P.1");
  EXPECT_EQ(site("<Id>7</Id>").id, "7");
  EXPECT_EQ(site("<YearCollected>2019</YearCollected>").date, "2019-01-01");
  EXPECT_EQ(site("<YearCollected>2019, 2020</YearCollected>").date, "");
  EXPECT_EQ(site("<Start>2020-08-19T01:02:03</Start><YearCollected>2019</YearCollected>").date,
            "2020-08-19T01:02:03");
  EXPECT_EQ(site("<Id>Lac B\xE9</Id>").id, "Lac B\xC3\xA9");  // Windows-1252 in a file that says UTF-8
  EXPECT_FALSE(site("<Location><Latitude>91</Latitude><Longitude>1</Longitude></Location>").latitude);
  EXPECT_FALSE(site("<Location><Latitude>0</Latitude><Longitude>0</Longitude></Location>").latitude);
}

TEST(Emtf_xml, Units_and_signs_are_looked_at) {
  const std::string other_unit = made(
      "<Id>A</Id>",
      "<Period value=\"5\" units=\"Hz\"><Z units=\"[V/m]/[T]\"><value name=\"Zxy\">3 4</value></Z></Period>");
  const Read read = read_text(other_unit + "<!-- \xE2\x88\x92 -->");
  EXPECT_DOUBLE_EQ(read.function.points.at(0).frequency, 5.0);
  ASSERT_EQ(read.report.unreadable.size(), 1U);
  EXPECT_EQ(read.report.unreadable[0].text, "the unit '[V/m]/[T]' isn't known, taken as mV/km/nT");
  for (const auto& [sign, imaginary] :
       {std::pair{"exp(+ i\\omega t), Hz - down", 4.0}, {"+", 4.0}, {"-", -4.0}}) {
    std::string text = other_unit;
    text.insert(text.find("<Data>"), std::string("<ProcessingInfo><SignConvention>") + sign +
                                         "</SignConvention></ProcessingInfo>");
    EXPECT_EQ(read_text(text).function.points.at(0).of(Component::zxy).value, Complex(3.0, imaginary))
        << sign;
  }
}

TEST(Emtf_xml, Variances_follow_from_covariances) {
  const Read read = read_text(made(
      "<Id>A</Id>",
      "<Period value=\"1\"><Z><value name=\"Zxy\">3 4</value></Z><T><value name=\"Ty\">1 2</value></T>"
      "<Z.INVSIGCOV><value output=\"Hx\" input=\"Hx\">2 0</value><value output=\"Hx\" input=\"Hy\">0 "
      "1</value>"
      "<value output=\"Hy\" input=\"Hx\">0 -1</value><value output=\"Hy\" input=\"Hy\">3 "
      "0</value></Z.INVSIGCOV>"
      "<Z.RESIDCOV><value output=\"Ex\" input=\"Ex\">5 0</value><value output=\"Ex\" input=\"Ey\">0 1</value>"
      "<value output=\"Ey\" input=\"Ex\">0 -1</value><value output=\"Ey\" input=\"Ey\">7 "
      "0</value></Z.RESIDCOV>"
      "</Period>"));
  EXPECT_DOUBLE_EQ(read.function.points.at(0).of(Component::zxy).variance, 15.0);
  EXPECT_TRUE(std::isnan(read.function.points.at(0).of(Component::ty).variance));
}

TEST(Emtf_xml, Hostile_texts_cost_little) {
  std::string deep;
  for (int i = 0; i < 200000; ++i) {
    deep += "<a>";
  }
  EXPECT_NE(read_text("<EM_TF><Data>" + deep).report.failure, "");
  std::string closed = deep;
  for (int i = 0; i < 200000; ++i) {
    closed += "</a>";
  }
  EXPECT_EQ(read_text("<EM_TF><Data>" + closed + "</Data></EM_TF>").report.failure,
            "the file has no period with transfer functions");
  std::string entities = "<!DOCTYPE a [<!ENTITY e0 \"ha\">";
  for (int i = 1; i < 50; ++i) {
    const std::string before = "&e" + std::to_string(i - 1) + ";";
    entities.append("<!ENTITY e")
        .append(std::to_string(i))
        .append(" \"")
        .append(before)
        .append(before)
        .append("\">");
  }
  const Read laughs = read_text(entities + "]>" + made("<Id>&e49;</Id>", one_period));
  EXPECT_EQ(laughs.function.site.id, "&e49;");
  EXPECT_EQ(read_text(std::string(17UL << 20U, ' ')).report.failure,
            "the file is too large for the transfer functions of a site");
}

TEST(Emtf_xml, Says_what_it_cannot_read) {
  EXPECT_NE(read_text("").report.failure, "");
  EXPECT_EQ(read_text("<html></html>").report.failure, "the file has no element EM_TF");
  const std::string whole = made("<Id>A</Id>", one_period);
  EXPECT_EQ(read_text("<EM_TF>\n<Site>\nA & B\n</Data></EM_TF>").report.failure,
            "the XML can't be read: Start-end tags mismatch at line 4");
  const Read comma = read_text(made("",
                                    "<Period value=\"1\"><Z><value name=\"Zxy\">1,5 2,5</value>"
                                    "<value name=\"Zyx\">1 2</value></Z></Period>"));
  EXPECT_FALSE(comma.function.points.at(0).of(Component::zxy).has_value());
  ASSERT_EQ(comma.report.unreadable.size(), 2U);
  EXPECT_EQ(comma.report.unreadable[0].text, "'1,5' is not a number, taken as absent");
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
