#include "formats/emtf_xml/emtf_xml_writer.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <span>
#include <vector>

#include <pugixml.hpp>

#include "core/calendar.h"
#include "core/number_text.h"
#include "formats/emtf_xml/emtf_ids.h"
#include "formats/xml_output.h"

namespace formats::emtf_xml {

namespace {

using transfer_function::Component;
using transfer_function::Point;
using transfer_function::SiteDocument;
using transfer_function::Value;

struct NamedComponent {
  Component component;
  const char* name;
  const char* output;
  const char* input;
};
constexpr std::array<NamedComponent, 4> impedances{{{Component::zxx, "Zxx", "Ex", "Hx"},
                                                    {Component::zxy, "Zxy", "Ex", "Hy"},
                                                    {Component::zyx, "Zyx", "Ey", "Hx"},
                                                    {Component::zyy, "Zyy", "Ey", "Hy"}}};
constexpr std::array<NamedComponent, 2> tippers{
    {{Component::tx, "Tx", "Hz", "Hx"}, {Component::ty, "Ty", "Hz", "Hy"}}};

/// The two transfer functions, as the format describes them.
struct DataType {
  const char* name;
  const char* variance_name;
  const char* output;
  const char* units;
  const char* size;
  const char* description;
  const char* tag;
  std::span<const NamedComponent> components;
};
constexpr std::array<DataType, 2> data_types{
    {{"Z", "Z.VAR", "E", "[mV/km]/[nT]", "2 2", "MT impedance", "impedance", impedances},
     {"T", "T.VAR", "H", "[]", "1 2", "Vertical Field Transfer Functions (Tipper)", "tipper", tippers}}};

bool has_finite_value(const Value& value) {
  return std::isfinite(value.value.real()) && std::isfinite(value.value.imag());
}

/// One of 0 would be read as an exact value.
bool has_finite_variance(const Value& value) {
  return has_finite_value(value) && std::isfinite(value.variance) && value.variance > 0.0;
}

using Condition = bool (*)(const Value&);

bool any_of(const Point& point, const DataType& type, Condition condition) {
  return std::ranges::any_of(type.components,
                             [&](const NamedComponent& each) { return condition(point.of(each.component)); });
}

std::string nine_digits(double value) { return format_number(value, "0.00000000e+00"); }

/// From 0 to 360.
std::string angle_text(double degrees) {
  constexpr double full_turn = 360.0;
  return format_number(degrees - full_turn * std::floor(degrees / full_turn), "0.000");
}

std::string iso_date(double days) {
  const std::chrono::year_month_day date = calendar_date(days);
  return format_number(static_cast<int>(date.year()), "0000") + "-" +
         format_number(static_cast<int>(static_cast<unsigned>(date.month())), "00") + "-" +
         format_number(static_cast<int>(static_cast<unsigned>(date.day())), "00");
}

std::string year_of(const SiteDocument& site) {
  return site.date_collected ? iso_date(*site.date_collected).substr(0, 4) : std::string();
}

class EmtfWriter {
 public:
  explicit EmtfWriter(const SiteDocument& site) : site_(site) { find_points(); }

  std::string write() {
    pugi::xml_document document = new_xml_document();
    root_ = document.append_child("EM_TF");
    // The order is that of the format's schema.
    write_product();
    write_provenance();
    write_site();
    root_.append_child("ProcessingInfo").append_child("SignConvention").text().set("exp(+ i\\omega t)");
    write_estimates();
    write_data_types();
    write_layout();
    write_data();
    write_period_range();
    return text_of_document(document);
  }

 private:
  void find_points() {
    for (const Point& point : site_.function.points) {
      const bool is_period = std::isfinite(point.frequency) && point.frequency > 0.0;
      if (is_period && (any_of(point, data_types[0], has_finite_value) ||
                        any_of(point, data_types[1], has_finite_value))) {
        points_.push_back(&point);
      }
    }
    std::ranges::stable_sort(points_, std::ranges::greater(),
                             [](const Point* each) { return each->frequency; });
  }

  [[nodiscard]] bool any_point(const DataType& type, Condition condition) const {
    return std::ranges::any_of(points_, [&](const Point* point) { return any_of(*point, type, condition); });
  }

  [[nodiscard]] bool any_of_component(Component component) const {
    return std::ranges::any_of(points_,
                               [&](const Point* point) { return has_finite_value(point->of(component)); });
  }

  void write_product() {
    add_text_element(root_, "Description", "Magnetotelluric Transfer Functions");
    add_text_element(root_, "ProductId", emtf_product_id(site_.survey, site_.id, year_of(site_)));
    add_text_element(root_, "SubType", "MT_TF");
    std::string notes;
    if (!site_.line.empty()) {
      notes = "Line " + site_.line + ", station " + plain_text(site_.station);
    }
    for (const std::string& sentence : site_.history) {
      notes += (notes.empty() ? "" : "\n") + sentence;
    }
    add_text_element(root_, "Notes", notes);
    std::string tags;
    for (const DataType& type : data_types) {
      if (any_point(type, has_finite_value)) {
        tags += (tags.empty() ? "" : ",") + std::string(type.tag);
      }
    }
    add_text_element(root_, "Tags", tags);
    // Empty, but there: other packages stop where it is missing.
    pugi::xml_node attachment = root_.append_child("Attachment");
    attachment.append_child("Filename");
    attachment.append_child("Description");
  }

  void write_provenance() {
    pugi::xml_node provenance = root_.append_child("Provenance");
    add_text_element(provenance, "CreateTime", iso_date(site_.date_written));
    add_text_element(provenance, "CreatingApplication", site_.program);
  }

  void write_site() {
    pugi::xml_node node = root_.append_child("Site");
    add_text_element(node, "Project", site_.survey);
    add_text_element(node, "Survey", site_.survey);
    add_text_element(node, "YearCollected", year_of(site_));
    add_text_element(node, "Id", emtf_site_id(site_));
    add_text_element(node, "Name", site_.function.site.name.empty() ? site_.id : site_.function.site.name);
    write_location(node);
    if (site_.function.site.x_azimuth) {
      pugi::xml_node orientation = node.append_child("Orientation");
      orientation.append_attribute("angle_to_geographic_north") =
          format_number(*site_.function.site.x_azimuth, "0.000").c_str();
      orientation.text().set("orthogonal");
    }
    if (site_.date_collected) {
      add_text_element(node, "Start", iso_date(*site_.date_collected));
    }
  }

  void write_location(pugi::xml_node node) {
    constexpr std::string_view degrees = "0.000000000";  // 0.1 mm
    const transfer_function::Site& site = site_.function.site;
    pugi::xml_node location = node.append_child("Location");
    location.append_attribute("datum") = xml_characters(site.datum.empty() ? "WGS84" : site.datum).c_str();
    if (site.latitude && site.longitude) {
      add_text_element(location, "Latitude", format_number(*site.latitude, degrees));
      add_text_element(location, "Longitude", format_number(*site.longitude, degrees));
    }
    if (site.elevation) {
      add_text_element(location, "Elevation", format_number(*site.elevation, "0.000"));
      location.child("Elevation").append_attribute("units") = "meters";
    }
  }

  void write_estimates() {
    if (!any_point(data_types[0], has_finite_variance) && !any_point(data_types[1], has_finite_variance)) {
      return;
    }
    pugi::xml_node estimates = root_.append_child("StatisticalEstimates");
    pugi::xml_node estimate = estimates.append_child("Estimate");
    estimate.append_attribute("name") = "VAR";
    estimate.append_attribute("type") = "real";
    add_text_element(estimate, "Description", "Variance");
    add_text_element(estimate, "Intention", "error estimate");
    add_text_element(estimate, "Tag", "variance");
  }

  void write_data_types() {
    if (points_.empty()) {
      return;
    }
    pugi::xml_node types = root_.append_child("DataTypes");
    for (const DataType& type : data_types) {
      if (!any_point(type, has_finite_value)) {
        continue;
      }
      pugi::xml_node node = types.append_child("DataType");
      node.append_attribute("name") = type.name;
      node.append_attribute("type") = "complex";
      node.append_attribute("output") = type.output;
      node.append_attribute("input") = "H";
      node.append_attribute("units") = type.units;
      add_text_element(node, "Description", type.description);
      add_text_element(node, "Intention", "primary data type");
      add_text_element(node, "Tag", type.tag);
    }
  }

  /// Where the sensors were, whatever the values were turned to since.
  void write_layout() {
    const std::optional<double> azimuth =
        site_.sensor_azimuth ? site_.sensor_azimuth : site_.function.site.x_azimuth;
    if (!azimuth) {
      return;
    }
    constexpr double right_angle = 90.0;
    pugi::xml_node layout = root_.append_child("SiteLayout");
    pugi::xml_node inputs = add_channels(layout, "InputChannels");
    add_channel(inputs, "Magnetic", "Hx", *azimuth);
    add_channel(inputs, "Magnetic", "Hy", *azimuth + right_angle);
    pugi::xml_node outputs = add_channels(layout, "OutputChannels");
    if (any_of_component(Component::tx) || any_of_component(Component::ty)) {
      add_channel(outputs, "Magnetic", "Hz", 0.0);
    }
    if (any_of_component(Component::zxx) || any_of_component(Component::zxy)) {
      add_dipole(outputs, "Ex", *azimuth, site_.dipole, 0.0);
    }
    if (any_of_component(Component::zyx) || any_of_component(Component::zyy)) {
      add_dipole(outputs, "Ey", *azimuth + right_angle, 0.0, site_.dipole);
    }
  }

  static pugi::xml_node add_channels(pugi::xml_node layout, const char* name) {
    pugi::xml_node channels = layout.append_child(name);
    channels.append_attribute("ref") = "site";
    channels.append_attribute("units") = "m";
    return channels;
  }

  static void add_position(pugi::xml_node channel, const char* name, double metres) {
    channel.append_attribute(name) = format_number(metres, "0.000").c_str();
  }

  static pugi::xml_node add_channel(pugi::xml_node channels, const char* kind, const char* name,
                                    double azimuth, double x = 0.0, double y = 0.0) {
    pugi::xml_node channel = channels.append_child(kind);
    channel.append_attribute("name") = name;
    channel.append_attribute("orientation") = angle_text(azimuth).c_str();
    add_position(channel, "x", x);
    add_position(channel, "y", y);
    add_position(channel, "z", 0.0);
    return channel;
  }

  /// In the middle of its electrodes; both lie there if its length isn't known.
  static void add_dipole(pugi::xml_node channels, const char* name, double azimuth, double along_x,
                         double along_y) {
    pugi::xml_node dipole = add_channel(channels, "Electric", name, azimuth, -along_x / 2.0, -along_y / 2.0);
    add_position(dipole, "x2", along_x / 2.0);
    add_position(dipole, "y2", along_y / 2.0);
    add_position(dipole, "z2", 0.0);
  }

  void write_data() {
    pugi::xml_node data = root_.append_child("Data");
    data.append_attribute("count") = points_.size();
    for (const Point* point : points_) {
      pugi::xml_node period = data.append_child("Period");
      // More digits than the values have, so that the frequency comes back as it was.
      period.append_attribute("value") = format_number(1.0 / point->frequency, "0.000000000000e+00").c_str();
      period.append_attribute("units") = "secs";
      for (const DataType& type : data_types) {
        write_block(period, type, *point);
      }
    }
  }

  static pugi::xml_node add_block(pugi::xml_node period, const char* name, const char* kind,
                                  const DataType& type) {
    pugi::xml_node block = period.append_child(name);
    block.append_attribute("type") = kind;
    block.append_attribute("size") = type.size;
    return block;
  }

  static void add_value(pugi::xml_node block, const NamedComponent& component, const std::string& text) {
    pugi::xml_node value = block.append_child("value");
    value.append_attribute("name") = component.name;
    value.append_attribute("output") = component.output;
    value.append_attribute("input") = component.input;
    value.text().set(text.c_str());
  }

  static void write_block(pugi::xml_node period, const DataType& type, const Point& point) {
    if (!any_of(point, type, has_finite_value)) {
      return;
    }
    pugi::xml_node values = add_block(period, type.name, "complex", type);
    values.append_attribute("units") = type.units;
    for (const NamedComponent& each : type.components) {
      if (const Value& value = point.of(each.component); has_finite_value(value)) {
        add_value(values, each, nine_digits(value.value.real()) + " " + nine_digits(value.value.imag()));
      }
    }
    if (!any_of(point, type, has_finite_variance)) {
      return;
    }
    pugi::xml_node variances = add_block(period, type.variance_name, "real", type);
    for (const NamedComponent& each : type.components) {
      if (const Value& value = point.of(each.component); has_finite_variance(value)) {
        add_value(variances, each, nine_digits(value.variance));
      }
    }
  }

  void write_period_range() {
    if (points_.empty()) {
      return;
    }
    pugi::xml_node range = root_.append_child("PeriodRange");
    range.append_attribute("min") = nine_digits(1.0 / points_.front()->frequency).c_str();
    range.append_attribute("max") = nine_digits(1.0 / points_.back()->frequency).c_str();
  }

  const SiteDocument& site_;
  std::vector<const Point*> points_;  // with a value, by ascending period
  pugi::xml_node root_;
};

}  // namespace

std::string emtf_xml_text(const SiteDocument& site) { return EmtfWriter(site).write(); }

}  // namespace formats::emtf_xml
