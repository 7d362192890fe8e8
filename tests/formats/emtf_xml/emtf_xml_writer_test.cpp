// What is written is looked at as an XML document, by what other packages want of it, and read again.
#include "formats/emtf_xml/emtf_xml_writer.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <limits>
#include <set>
#include <vector>

#include <gtest/gtest.h>
#include <pugixml.hpp>

#include "core/calendar.h"
#include "core/number_text.h"
#include "core/text_fields.h"
#include "formats/emtf_xml/emtf_ids.h"
#include "formats/emtf_xml/emtf_xml.h"

using namespace formats::transfer_function;
using formats::emtf_xml::emtf_product_id;
using formats::emtf_xml::emtf_site_id;
using formats::emtf_xml::emtf_xml_text;

namespace {

void set(Point& point, Component component, std::complex<double> value, double variance) {
  point.of(component).value = value;
  point.of(component).variance = variance;
}

/// All six components, nine digits each, at frequencies that no decimal period gives exactly.
SiteDocument made_document() {
  SiteDocument site;
  site.id = "100_5";
  site.survey = "Barkly & Tablelands <2019>";
  site.line = "200E";
  site.station = 100.5;
  site.dipole = 50.0;
  site.function.site.name = "100.5";
  site.function.site.latitude = -19.440205556;
  site.function.site.longitude = 136.444402778;
  site.function.site.elevation = 218.25;
  site.function.site.datum = "GDA94";
  site.function.site.x_azimuth = -30.0;
  site.sensor_azimuth = 11.5;
  site.history = {"Merged from 2 scan rates.", "Static factor 1.5 & masks."};
  site.program = "Brenlox 1.0";
  site.date_collected = day_count(2019, 7, 1);
  site.date_written = day_count(2026, 11, 21);
  for (const double frequency : {10400.0, 3.0, 0.7, 0.0011}) {
    Point point;
    point.frequency = frequency;
    for (std::size_t i = 0; i < component_count; ++i) {
      const double size = std::sqrt(frequency) * (static_cast<double>(i) + 1.23456789);
      set(point, static_cast<Component>(i), {size, -0.01 * size}, size * 1e-3);
    }
    site.function.points.push_back(point);
  }
  return site;
}

pugi::xml_node parse(const std::string& text, pugi::xml_document& document) {
  EXPECT_TRUE(is_valid_utf8(text));
  const pugi::xml_parse_result parsed = document.load_string(text.c_str());
  EXPECT_TRUE(parsed) << parsed.description() << "\n" << text;
  return document.child("EM_TF");
}

pugi::xml_node write(const SiteDocument& site, pugi::xml_document& document) {
  return parse(emtf_xml_text(site), document);
}

TransferFunction read_again(const SiteDocument& site) {
  formats::FileReport report;
  TransferFunction read = formats::emtf_xml::read_emtf_xml(emtf_xml_text(site), report);
  EXPECT_EQ(report.failure, "");
  EXPECT_TRUE(report.unreadable.empty());
  return read;
}

std::vector<std::string> names_of_children(const pugi::xml_node& node) {
  std::vector<std::string> names;
  for (const pugi::xml_node& child : node.children()) {
    names.emplace_back(child.name());
  }
  return names;
}

void expect_same(double written, double read) {
  if (std::isnan(written)) {
    EXPECT_TRUE(std::isnan(read));
  } else {
    EXPECT_NEAR(read, written, 0.51e-8 * std::abs(written));  // half of the ninth digit
  }
}

/// What was written and then read, by ascending period.
void expect_same_points(const SiteDocument& site, const TransferFunction& read) {
  ASSERT_EQ(read.points.size(), site.function.points.size());
  for (std::size_t i = 0; i < read.points.size(); ++i) {
    SCOPED_TRACE(i);
    const Point& written = site.function.points[i];
    EXPECT_NEAR(read.points[i].frequency, written.frequency, 1e-12 * written.frequency);
    for (std::size_t component = 0; component < component_count; ++component) {
      const Value& before = written.values[component];
      const Value& after = read.points[i].values[component];
      expect_same(before.value.real(), after.value.real());
      expect_same(before.value.imag(), after.value.imag());
      expect_same(before.variance, after.variance);
    }
  }
}

}  // namespace

TEST(Emtf_xml_writer, Parts_come_in_the_order_of_the_format) {
  pugi::xml_document document;
  const pugi::xml_node root = write(made_document(), document);
  // Kelbert (2020); without ExternalUrl, PrimaryData, Copyright and FieldNotes, of which a survey knows
  // nothing. Empty addresses, a release status that isn't on the list and notes without a magnetometer are
  // refused.
  EXPECT_EQ(names_of_children(root),
            (std::vector<std::string>{"Description", "ProductId", "SubType", "Notes", "Tags", "Attachment",
                                      "Provenance", "Site", "ProcessingInfo", "StatisticalEstimates",
                                      "DataTypes", "SiteLayout", "Data", "PeriodRange"}));
  EXPECT_EQ(names_of_children(root.child("Site")),
            (std::vector<std::string>{"Project", "Survey", "YearCollected", "Id", "Name", "Location",
                                      "Orientation", "Start"}));
  EXPECT_STREQ(root.child_value("SubType"), "MT_TF");
  EXPECT_STREQ(root.child_value("Tags"), "impedance,tipper");
  EXPECT_STREQ(root.child("ProcessingInfo").child_value("SignConvention"), "exp(+ i\\omega t)");
  EXPECT_STREQ(root.child("Provenance").child_value("CreateTime"), "2026-11-21");
  EXPECT_STREQ(root.child("Provenance").child_value("CreatingApplication"), "Brenlox 1.0");
  EXPECT_STREQ(root.child_value("Notes"),
               "Line 200E, station 100.5\nMerged from 2 scan rates.\nStatic factor 1.5 & masks.");
  EXPECT_TRUE(root.select_nodes(".//Url").empty());
}

TEST(Emtf_xml_writer, Says_where_the_site_and_its_sensors_are) {
  pugi::xml_document document;
  const pugi::xml_node root = write(made_document(), document);
  const pugi::xml_node site = root.child("Site");
  EXPECT_STREQ(site.child_value("Id"), "100p5");
  EXPECT_STREQ(site.child_value("Name"), "100.5");
  EXPECT_STREQ(site.child_value("YearCollected"), "2019");
  EXPECT_STREQ(site.child_value("Start"), "2019-07-01");
  EXPECT_STREQ(site.child("Location").attribute("datum").value(), "GDA94");
  EXPECT_STREQ(site.child("Location").child_value("Latitude"), "-19.440205556");
  EXPECT_STREQ(site.child("Location").child("Elevation").attribute("units").value(), "meters");
  EXPECT_STREQ(site.child("Orientation").attribute("angle_to_geographic_north").value(), "-30.000");
  EXPECT_STREQ(site.child_value("Orientation"), "orthogonal");
  const pugi::xml_node outputs = root.child("SiteLayout").child("OutputChannels");
  EXPECT_EQ(names_of_children(outputs), (std::vector<std::string>{"Magnetic", "Electric", "Electric"}));
  const pugi::xml_node ey = outputs.last_child();
  EXPECT_STREQ(ey.attribute("orientation").value(), "101.500") << "of the sensors, not of the turned values";
  EXPECT_STREQ(ey.attribute("y").value(), "-25.000");
  EXPECT_STREQ(ey.attribute("y2").value(), "25.000");
}

TEST(Emtf_xml_writer, Values_are_as_readers_want_them) {
  pugi::xml_document document;
  const pugi::xml_node root = write(made_document(), document);
  EXPECT_STREQ(root.child("Data").attribute("count").value(), "4");
  double earlier = 0.0;
  for (const pugi::xml_node& period : root.child("Data").children("Period")) {
    const double seconds = numeric_value(period.attribute("value").value());
    EXPECT_GT(seconds, earlier);
    earlier = seconds;
    EXPECT_STREQ(period.attribute("units").value(), "secs");
    EXPECT_EQ(names_of_children(period), (std::vector<std::string>{"Z", "Z.VAR", "T", "T.VAR"}));
    EXPECT_STREQ(period.child("Z").attribute("size").value(), "2 2");
    EXPECT_STREQ(period.child("T").attribute("size").value(), "1 2");
    EXPECT_STREQ(period.child("Z").attribute("units").value(), "[mV/km]/[nT]");
    for (const pugi::xml_node& block : period.children()) {
      for (const pugi::xml_node& value : block.children()) {
        EXPECT_STREQ(value.name(), "value") << "in lower case";
      }
    }
  }
  const pugi::xml_node zyx =
      root.child("Data").last_child().child("Z").find_child_by_attribute("name", "Zyx");
  EXPECT_STREQ(zyx.attribute("output").value(), "Ey");
  EXPECT_STREQ(zyx.attribute("input").value(), "Hx");
  // sqrt(0.0011) times 3.23456789
  EXPECT_STREQ(zyx.child_value(), "1.07278481e-01 -1.07278481e-03");
  EXPECT_NEAR(numeric_value(root.child("PeriodRange").attribute("min").value()), 1.0 / 10400.0, 1e-12);
  EXPECT_NEAR(numeric_value(root.child("PeriodRange").attribute("max").value()), 1.0 / 0.0011, 1e-5);
}

TEST(Emtf_xml_writer, What_is_written_is_read_again) {
  const SiteDocument site = made_document();
  const TransferFunction read = read_again(site);
  expect_same_points(site, read);
  EXPECT_EQ(read.site.id, "100.5") << "by its name: Id can't have the point";
  EXPECT_EQ(read.site.name, "100.5");
  EXPECT_EQ(read.site.latitude, site.function.site.latitude);
  EXPECT_EQ(read.site.longitude, site.function.site.longitude);
  EXPECT_EQ(read.site.elevation, site.function.site.elevation);
  EXPECT_EQ(read.site.datum, "GDA94");
  EXPECT_EQ(read.site.date, "2019-07-01");
  EXPECT_EQ(read.site.x_azimuth, -30.0);
}

TEST(Emtf_xml_writer, Order_of_frequencies_makes_no_difference) {
  const SiteDocument site = made_document();
  SiteDocument ascending = site;
  std::ranges::reverse(ascending.function.points);
  EXPECT_EQ(emtf_xml_text(ascending), emtf_xml_text(site));
}

TEST(Emtf_xml_writer, What_is_absent_is_left_out) {
  const Value absent;
  SiteDocument site = made_document();
  std::vector<Point>& points = site.function.points;
  for (Point& point : points) {
    point.of(Component::zyx) = absent;
    point.of(Component::zyy) = absent;
  }
  points[0].of(Component::tx) = points[0].of(Component::ty) = absent;
  points[1].of(Component::zxx) = absent;
  points[1].of(Component::zxy).variance = not_given;
  points[1].of(Component::tx).variance = -0.01;  // is in public files
  points[1].of(Component::ty).variance = 0.0;
  points[2].of(Component::zxy).value = {1.0, std::numeric_limits<double>::infinity()};
  points[3] = Point{points[3].frequency, {}};

  pugi::xml_document document;
  const pugi::xml_node root = write(site, document);
  const pugi::xml_node data = root.child("Data");
  EXPECT_STREQ(data.attribute("count").value(), "3") << "a period without a value";
  EXPECT_EQ(names_of_children(data.first_child()), (std::vector<std::string>{"Z", "Z.VAR"}));
  EXPECT_EQ(names_of_children(data.first_child().next_sibling()), (std::vector<std::string>{"Z", "T"}));
  EXPECT_FALSE(root.child("SiteLayout").child("OutputChannels").find_child_by_attribute("name", "Ey"));

  SiteDocument expected = site;
  expected.function.points.pop_back();
  expected.function.points[1].of(Component::tx).variance = not_given;
  expected.function.points[1].of(Component::ty).variance = not_given;
  expected.function.points[2].of(Component::zxy) = absent;
  expect_same_points(expected, read_again(site));
}

TEST(Emtf_xml_writer, Writes_what_there_is_of_a_site) {
  SiteDocument tipper_only = made_document();
  for (Point& point : tipper_only.function.points) {
    for (std::size_t i = 0; i < impedance_count; ++i) {
      point.values[i] = Value();
    }
  }
  pugi::xml_document document;
  pugi::xml_node root = write(tipper_only, document);
  EXPECT_STREQ(root.child_value("Tags"), "tipper");
  EXPECT_STREQ(root.child("DataTypes").child("DataType").attribute("name").value(), "T");
  EXPECT_EQ(names_of_children(root.child("DataTypes")).size(), 1U);
  expect_same_points(tipper_only, read_again(tipper_only));

  SiteDocument unknown;
  unknown.id = "1E_1";
  unknown.program = "Brenlox 1.0";
  unknown.function.points = made_document().function.points;
  root = write(unknown, document);
  EXPECT_TRUE(root.child("Attachment"));
  EXPECT_STREQ(root.child("Site").child_value("Name"), "1E_1");
  EXPECT_TRUE(root.child("Site").child("Location"));
  for (const char* const element : {"Latitude", "Longitude", "Elevation", "Declination", "Orientation",
                                    "Start", "YearCollected", "Survey", "SiteLayout"}) {
    EXPECT_TRUE(root.select_nodes((std::string(".//") + element).c_str()).empty()) << element;
  }
  const TransferFunction read = read_again(unknown);
  expect_same_points(unknown, read);
  EXPECT_FALSE(read.site.latitude.has_value());

  for (Point& point : unknown.function.points) {
    for (Value& value : point.values) {
      value.variance = not_given;
    }
  }
  EXPECT_FALSE(write(unknown, document).child("StatisticalEstimates")) << "no empty part but the attachment";
  unknown.function.points.clear();
  root = write(unknown, document);
  EXPECT_STREQ(root.child("Data").attribute("count").value(), "0");
  EXPECT_FALSE(root.child("DataTypes"));
}

TEST(Emtf_xml_writer, Texts_are_escaped_and_are_utf_8) {
  SiteDocument site = made_document();
  site.survey = "A \"B\" & <C> 'D' ]]>";
  site.function.site.name = "caf\xE9 \xC3\xA9";           // Windows-1252 and UTF-8
  site.function.site.datum = "a\"b<c>&\x02\xEF\xBF\xBF";  // U+FFFF is no character of XML
  site.history = {std::string("a\0b\x1F\r\n", 6), "\xC3", "&amp;"};
  pugi::xml_document document;
  const pugi::xml_node root = write(site, document);
  EXPECT_STREQ(root.child("Site").child_value("Survey"), "A \"B\" & <C> 'D' ]]>");
  EXPECT_STREQ(root.child("Site").child_value("Name"), "caf\u00E9 \u00E9");
  EXPECT_STREQ(root.child("Site").child("Location").attribute("datum").value(), "a\"b<c>& \uFFFD");
  const std::string text = emtf_xml_text(site);
  EXPECT_EQ(text.find("&#"), std::string::npos) << "a control character stays one when it is escaped";
  EXPECT_EQ(std::string(root.child_value("Notes")), "Line 200E, station 100.5\na b  \n\n\u00C3\n&amp;");
}

TEST(Emtf_xml_writer, Ids_have_the_characters_that_archives_allow) {
  struct Case {
    const char* name;
    const char* document_id;
    const char* site_id;
  };
  SiteDocument site;
  site.line = "200E";
  site.station = 100.5;
  for (const Case& each :
       {Case{"100.5", "100_5", "100p5"}, Case{"100.5", "100_5_2", "100p52"}, Case{"mt_1_2", "mt_1_2", "mt12"},
        Case{"mt.1", "mt_1_3", "mt13"}, Case{"100_5", "100_5", "1005"}, Case{"S-1 a_2", "S_1_a_2", "S1a2"},
        Case{"caf\xC3\xA9", "caf__2", "caf2"}, Case{"_1_", "_1_", "1"}, Case{"__", "__", "site"},
        Case{"", "200E_100_5", "200E100p5"}, Case{"", "200E_100_5_2", "200E100p52"}, Case{"1.", "1_", "1"}}) {
    site.function.site.name = each.name;
    site.id = each.document_id;
    EXPECT_EQ(emtf_site_id(site), each.site_id) << each.document_id;
  }
  EXPECT_EQ(emtf_product_id("Barkly & Tablelands <2019>", "100_5", "2019"),
            "Barkly_Tablelands_2019_.100_5.2019");
  EXPECT_EQ(emtf_product_id("", "1", ""), "1");
}
