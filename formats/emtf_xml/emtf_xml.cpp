#include "formats/emtf_xml/emtf_xml.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <optional>
#include <vector>

#include <pugixml.hpp>

#include "core/number_text.h"
#include "core/text_fields.h"
#include "formats/field_values.h"
#include "formats/transfer_function/channel_axes.h"

namespace formats::emtf_xml {

using transfer_function::ChannelAzimuths;
using transfer_function::ChannelFunctions;
using transfer_function::Complex;
using transfer_function::component_count;
using transfer_function::impedance_count;
using transfer_function::not_given;
using transfer_function::Point;
using transfer_function::TransferFunction;
using transfer_function::Value;

namespace {

constexpr double full_turn = 360.0;  // degrees
constexpr double half_turn = 180.0;

/// The names of outputs and inputs of each component, in upper case.
struct Channels {
  std::string_view output;
  std::string_view input;
};
constexpr std::array<Channels, component_count> component_channels{
    {{"EX", "HX"}, {"EX", "HY"}, {"EY", "HX"}, {"EY", "HY"}, {"HZ", "HX"}, {"HZ", "HY"}}};
constexpr std::array<std::string_view, component_count> component_names{"ZXX", "ZXY", "ZYX",
                                                                        "ZYY", "TX",  "TY"};

/// The first child of this name, whatever its case.
pugi::xml_node child_of(const pugi::xml_node& node, std::string_view name) {
  return node.find_child(
      [name](const pugi::xml_node& child) { return equal_ignoring_case(child.name(), name); });
}

std::string_view attribute_of(const pugi::xml_node& node, std::string_view name) {
  return node
      .find_attribute(
          [name](const pugi::xml_attribute& each) { return equal_ignoring_case(each.name(), name); })
      .value();
}

std::string text_of(const pugi::xml_node& node) { return text_from_field_file(trimmed(node.child_value())); }

std::optional<double> number_of(std::string_view text) {
  const double value = numeric_value(text);
  return is_numeric(text) && std::abs(value) <= largest_value ? std::optional(value) : std::nullopt;
}

/// A bare "&", as it stands in citations, begins no entity: it becomes one. @return how many there were
int mend_ampersands(std::string& text) {
  constexpr std::size_t longest_entity = 12;
  std::string mended;
  int count = 0;
  std::size_t from = 0;
  for (std::size_t at = text.find('&'); at != std::string::npos; at = text.find('&', at + 1)) {
    const std::size_t end =
        text.find_first_not_of("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789#", at + 1);
    const bool is_entity =
        end != std::string::npos && text[end] == ';' && end > at + 1 && end - at < longest_entity;
    if (!is_entity) {
      mended.append(text, from, at + 1 - from).append("amp;");
      from = at + 1;
      ++count;
    }
  }
  if (count > 0) {
    mended.append(text, from);
    text = std::move(mended);
  }
  return count;
}

class EmtfReader {
 public:
  explicit EmtfReader(FileReport& report) : report_(report) {}

  TransferFunction read(std::string text) {
    if (!parse(std::move(text))) {
      return {};
    }
    read_site();
    read_sign();
    read_layout();
    for (const pugi::xml_node& period : child_of(root_, "Data").children()) {
      if (equal_ignoring_case(period.name(), "Period")) {
        read_period(period);
      }
    }
    if (result_.points.empty() && report_.failure.empty()) {
      report_.failure = "the file has no period with transfer functions";
    }
    return std::move(result_);
  }

 private:
  bool parse(std::string text) {
    if (text.size() > largest_file) {
      report_.failure = "the file is too large for the transfer functions of a site";
      return false;
    }
    if (const int count = mend_ampersands(text); count > 0) {
      remark_unreadable(report_, 0,
                        plain_text(count) +
                            (count == 1 ? " bare \"&\" was taken" : " bare \"&\" were taken") +
                            " as a character of the text");
    }
    const pugi::xml_parse_result parsed = document_.load_buffer(text.data(), text.size());
    root_ = child_of(document_, "EM_TF");
    if (!parsed) {
      report_.failure = std::string("the XML can't be read: ") + parsed.description() + " at byte " +
                        plain_text(static_cast<std::int64_t>(parsed.offset));
    } else if (!root_) {
      report_.failure = "the file has no element EM_TF";
    }
    return report_.failure.empty();
  }

  void read_site() {
    const pugi::xml_node site = child_of(root_, "Site");
    result_.site.id = text_of(child_of(site, "Id"));
    result_.site.name = text_of(child_of(site, "Name"));
    result_.site.date = text_of(child_of(site, "Start"));
    if (result_.site.id.empty()) {
      result_.site.id = text_of(child_of(root_, "ProductId"));
    }
    const pugi::xml_node location = child_of(site, "Location");
    result_.site.datum = text_from_field_file(attribute_of(location, "datum"));
    const auto latitude = number_of(text_of(child_of(location, "Latitude")));
    const auto longitude = number_of(text_of(child_of(location, "Longitude")));
    if (latitude && longitude && std::abs(*latitude) <= 90.0 && std::abs(*longitude) <= full_turn) {
      result_.site.latitude = latitude;
      result_.site.longitude = *longitude > half_turn ? *longitude - full_turn : *longitude;
    }
    result_.site.elevation = number_of(text_of(child_of(location, "Elevation")));
    result_.site.declination = number_of(text_of(child_of(location, "Declination")));
    const pugi::xml_node orientation = child_of(site, "Orientation");
    in_channel_axes_ = equal_ignoring_case(text_of(orientation), "sitelayout");
    result_.site.x_azimuth = number_of(attribute_of(orientation, "angle_to_geographic_north"));
  }

  void read_sign() {
    const std::string sign = text_of(child_of(child_of(root_, "ProcessingInfo"), "SignConvention"));
    conjugate_ = sign.find('-') != std::string::npos;
    if (conjugate_) {
      add_to_account(report_,
                     "the time factor is exp(- i omega t): all imaginary parts have got the other sign");
    }
  }

  /// The azimuths of the channels, where the values are in their axes.
  void read_layout() {
    if (!in_channel_axes_) {
      return;
    }
    std::map<std::string, double> azimuths;
    for (const char* const group : {"InputChannels", "OutputChannels"}) {
      for (const pugi::xml_node& channel : child_of(child_of(root_, "SiteLayout"), group).children()) {
        if (const auto azimuth = number_of(attribute_of(channel, "orientation"))) {
          azimuths[upper_case(attribute_of(channel, "name"))] = *azimuth;
        }
      }
    }
    if (!azimuths.contains("HX") || !azimuths.contains("HY")) {
      report_.failure =
          "the values are in the axes of the channels, and the layout doesn't say what these are";
      return;
    }
    const double x = azimuths["HX"];
    axes_.magnetic = {0.0, azimuths["HY"] - x};
    if (azimuths.contains("EX") && azimuths.contains("EY")) {
      axes_.electric = {azimuths["EX"] - x, azimuths["EY"] - x};
    }
    result_.site.x_azimuth = x;
  }

  /// The numbers of a value element; NaN where they are absent.
  std::array<double, 2> numbers_of(const pugi::xml_node& value) {
    std::array<double, 2> numbers{not_given, not_given};
    std::string_view rest = value.child_value();
    for (double& number : numbers) {
      const std::string_view item = next_token(rest);
      if (item.empty()) {
        break;
      }
      const double read = numeric_value(item);
      if (is_numeric(item)) {
        number = std::abs(read) <= largest_value ? read : not_given;
      } else if (!equal_ignoring_case(item, "nan")) {
        remark_unreadable(report_, 0, in_quotes(item) + " is not a number, taken as absent");
      }
    }
    return numbers;
  }

  static bool is_value(const pugi::xml_node& node) { return equal_ignoring_case(node.name(), "value"); }

  /// The component that a value belongs to, by its channels or its name.
  static std::optional<std::size_t> component_of(const pugi::xml_node& value) {
    const std::string output = upper_case(attribute_of(value, "output"));
    const std::string input = upper_case(attribute_of(value, "input"));
    const std::string name = upper_case(attribute_of(value, "name"));
    for (std::size_t i = 0; i < component_count; ++i) {
      const bool by_channels = output == component_channels[i].output && input == component_channels[i].input;
      if (by_channels || (output.empty() && input.empty() && name == component_names[i])) {
        return i;
      }
    }
    return std::nullopt;
  }

  template <class Take>
  void each_value(const pugi::xml_node& block, const Take& take) {
    for (const pugi::xml_node& value : block.children()) {
      const auto component = is_value(value) ? component_of(value) : std::nullopt;
      if (component) {
        take(*component, numbers_of(value));
      }
    }
  }

  /// A 2 x 2 covariance by the names of its channels, the first ones of each pair being `first`.
  std::optional<std::array<std::array<Complex, 2>, 2>> covariance_of(const pugi::xml_node& block,
                                                                     std::string_view first,
                                                                     std::string_view second) {
    std::array<std::array<Complex, 2>, 2> matrix{};
    int found = 0;
    for (const pugi::xml_node& value : block.children()) {
      const std::string row = upper_case(attribute_of(value, "output"));
      const std::string column = upper_case(attribute_of(value, "input"));
      if (!is_value(value) || (row != first && row != second) || (column != first && column != second)) {
        continue;
      }
      const std::array<double, 2> numbers = numbers_of(value);
      matrix[row == first ? 0 : 1][column == first ? 0 : 1] = {numbers[0],
                                                               std::isnan(numbers[1]) ? 0.0 : numbers[1]};
      found += std::isnan(numbers[0]) ? 0 : 1;
    }
    return found == 4 ? std::optional(matrix) : std::nullopt;
  }

  double vertical_residual_of(const pugi::xml_node& block) {
    for (const pugi::xml_node& value : block.children()) {
      if (is_value(value) && equal_ignoring_case(attribute_of(value, "output"), "HZ")) {
        return numbers_of(value)[0];
      }
    }
    return not_given;
  }

  void read_period(const pugi::xml_node& period) {
    const auto seconds = number_of(attribute_of(period, "value"));
    if (!seconds || !(*seconds > 0.0)) {
      remark_unreadable(report_, 0, "a period isn't above 0 and is left out");
      return;
    }
    Point point;
    point.frequency = 1.0 / *seconds;
    const bool in_hertz = equal_ignoring_case(attribute_of(period, "units"), "hz");
    if (in_hertz) {
      point.frequency = *seconds;
    }
    for (const char* const block : {"Z", "T"}) {
      each_value(child_of(period, block), [&](std::size_t component, const std::array<double, 2>& numbers) {
        point.values[component].value = {numbers[0], conjugate_ ? -numbers[1] : numbers[1]};
      });
    }
    for (const char* const block : {"Z.VAR", "T.VAR"}) {
      each_value(child_of(period, block), [&](std::size_t component, const std::array<double, 2>& numbers) {
        point.values[component].variance = numbers[0];
      });
    }
    take_covariances(period, point);
    if (std::ranges::any_of(point.values, &Value::has_value)) {
      result_.points.push_back(point);
    }
  }

  /// The variances that aren't given, and everything else where values are in the axes of the channels.
  void take_covariances(const pugi::xml_node& period, Point& point) {
    const auto power = covariance_of(child_of(period, "Z.INVSIGCOV"), "HX", "HY");
    const auto residuals = covariance_of(child_of(period, "Z.RESIDCOV"), "EX", "EY");
    const auto tipper_power = covariance_of(child_of(period, "T.INVSIGCOV"), "HX", "HY");
    const double vertical = vertical_residual_of(child_of(period, "T.RESIDCOV"));
    if (in_channel_axes_) {
      turn(point, power, residuals, tipper_power, vertical);
      return;
    }
    for (std::size_t i = 0; i < 2; ++i) {
      for (std::size_t j = 0; j < 2; ++j) {
        Value& value = point.values[2 * i + j];
        if (std::isnan(value.variance) && power && residuals) {
          value.variance = (*residuals)[i][i].real() * (*power)[j][j].real();
        }
      }
      Value& value = point.values[impedance_count + i];
      if (std::isnan(value.variance) && tipper_power) {
        value.variance = vertical * (*tipper_power)[i][i].real();
      }
    }
  }

  using Covariance = std::optional<std::array<std::array<Complex, 2>, 2>>;

  void turn(Point& point, const Covariance& power, const Covariance& residuals,
            const Covariance& tipper_power, double vertical) {
    ChannelFunctions functions;
    for (std::size_t i = 0; i < 2; ++i) {
      for (std::size_t j = 0; j < 2; ++j) {
        functions.impedance[i][j] = point.values[2 * i + j].value;
      }
      functions.tipper[i] = point.values[impedance_count + i].value;
    }
    const auto turned_with = [&](const Covariance& magnetic) {
      functions.inverse_power = magnetic.value_or(std::array<std::array<Complex, 2>, 2>{});
      functions.electric_residuals = residuals.value_or(std::array<std::array<Complex, 2>, 2>{});
      functions.vertical_residual = vertical;
      return to_orthogonal_axes(functions, axes_);
    };
    const auto impedances = turned_with(power);
    const auto tippers = turned_with(tipper_power);
    if (!impedances || !tippers) {
      report_.failure = "two channels of a kind lie along one line";
      return;
    }
    for (std::size_t i = 0; i < 2; ++i) {
      for (std::size_t j = 0; j < 2; ++j) {
        Value& value = point.values[2 * i + j];
        value.value = impedances->impedance[i][j];
        value.variance = power && residuals ? impedances->impedance_variance[i][j] : not_given;
      }
      Value& value = point.values[impedance_count + i];
      value.value = tippers->tipper[i];
      value.variance = tipper_power ? tippers->tipper_variance[i] : not_given;
    }
  }

  FileReport& report_;
  pugi::xml_document document_;
  pugi::xml_node root_;
  TransferFunction result_;
  bool conjugate_ = false;
  bool in_channel_axes_ = false;
  ChannelAzimuths axes_;
};

}  // namespace

TransferFunction read_emtf_xml(std::string text, FileReport& report) {
  return EmtfReader(report).read(std::move(text));
}

bool begins_emtf_xml(std::string_view beginning) {
  return upper_case(beginning).find("<EM_TF") != std::string::npos;
}

}  // namespace formats::emtf_xml
