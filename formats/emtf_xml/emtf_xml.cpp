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
#include "formats/emtf_xml/emtf_nodes.h"
#include "formats/emtf_xml/emtf_site.h"
#include "formats/emtf_xml/xml_text.h"
#include "formats/field_values.h"
#include "formats/transfer_function/channel_axes.h"
#include "formats/transfer_function/sound_numbers.h"

namespace formats::emtf_xml {

using transfer_function::ChannelAzimuths;
using transfer_function::ChannelFunctions;
using transfer_function::Complex;
using transfer_function::component_count;
using transfer_function::impedance_count;
using transfer_function::is_frequency;
using transfer_function::not_given;
using transfer_function::Point;
using transfer_function::TransferFunction;
using transfer_function::Value;

namespace {

/// The names of outputs and inputs of each component, in upper case.
struct Channels {
  std::string_view output;
  std::string_view input;
};
constexpr std::array<Channels, component_count> component_channels{
    {{"EX", "HX"}, {"EX", "HY"}, {"EY", "HX"}, {"EY", "HY"}, {"HZ", "HX"}, {"HZ", "HY"}}};
constexpr std::array<std::string_view, component_count> component_names{"ZXX", "ZXY", "ZYX",
                                                                        "ZYY", "TX",  "TY"};

using Covariance = std::optional<std::array<std::array<Complex, 2>, 2>>;

/// Whether two channels are the axes themselves.
bool are_axes(const std::array<double, 2>& azimuths) {
  constexpr double full_turn = 360.0;
  constexpr double tolerance = 1e-6;  // degrees; files have three decimals
  return std::abs(std::remainder(azimuths[0], full_turn)) < tolerance &&
         std::abs(std::remainder(azimuths[1] - 90.0, full_turn)) < tolerance;
}

bool has_impedances(const Point& point) {
  return std::any_of(point.values.begin(), point.values.begin() + impedance_count,
                     [](const Value& value) { return value.has_value(); });
}

class EmtfReader {
 public:
  explicit EmtfReader(FileReport& report) : report_(report) {}

  TransferFunction read(std::string text) {
    if (!parse(std::move(text))) {
      return {};
    }
    result_.site = read_site(root_, report_);
    read_sign();
    read_layout();
    if (!report_.failure.empty()) {
      return {};
    }
    for (const pugi::xml_node& period : child_of(root_, "Data").children()) {
      if (equal_ignoring_case(period.name(), "Period")) {
        read_period(period);
      }
    }
    if (result_.points.empty()) {
      report_.failure = "the file has no period with transfer functions";
    }
    if (!has_electric_axes_ && std::ranges::any_of(result_.points, has_impedances)) {
      remark_unreadable(report_, 0,
                        "the layout has no orientation of Ex and Ey, taken as those of Hx and Hy");
    }
    if (has_lost_errors_) {
      remark_ignored(report_, 0,
                     "the variances are of the channels' axes, and without covariances they can't be turned");
    }
    drop_unsound_numbers(result_);
    return std::move(result_);
  }

 private:
  bool parse(std::string text) {
    if (text.size() > largest_file) {
      report_.failure = "the file is too large for the transfer functions of a site";
      return false;
    }
    text = without_utf16(std::move(text));
    if (const int count = mend_ampersands(text); count > 0) {
      remark_unreadable(report_, 0,
                        plain_text(count) +
                            (count == 1 ? " bare \"&\" was taken" : " bare \"&\" were taken") +
                            " as a character of the text");
    }
    const pugi::xml_parse_result parsed = document_.load_buffer(text.data(), text.size());
    root_ = child_of(document_, "EM_TF");
    if (!parsed) {
      report_.failure = std::string("the XML can't be read: ") + parsed.description() + " at line " +
                        plain_text(line_of(text, static_cast<std::size_t>(parsed.offset)));
    } else if (!root_) {
      report_.failure = "the file has no element EM_TF";
    }
    return report_.failure.empty();
  }

  void read_sign() {
    const std::string sign = text_of(child_of(child_of(root_, "ProcessingInfo"), "SignConvention"));
    const std::size_t first = sign.find_first_of("+-");
    conjugate_ = first != std::string::npos && sign[first] == '-';
    if (conjugate_) {
      add_to_account(report_,
                     "the time factor is exp(- i omega t): all imaginary parts have got the other sign");
    }
  }

  /// The azimuths of the channels, where the values are in their axes.
  void read_layout() {
    const pugi::xml_node orientation = child_of(child_of(root_, "Site"), "Orientation");
    if (!equal_ignoring_case(text_of(orientation), "sitelayout")) {
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
    } else {
      has_electric_axes_ = false;
      axes_.electric = axes_.magnetic;
    }
    if (!to_orthogonal_axes({}, axes_)) {
      report_.failure = "two channels of a kind lie along one line";
    }
    result_.site.x_azimuth = x;
  }

  /// The numbers of a value element; NaN where they are absent.
  std::array<double, 2> numbers_of(const pugi::xml_node& value) {
    std::array<double, 2> numbers{not_given, not_given};
    std::string_view rest = value.child_value();
    for (double& number : numbers) {
      const std::string_view item = next_word(rest);
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

  /// The component that a value belongs to, by its channels or else its name.
  static std::optional<std::size_t> component_of(const pugi::xml_node& value) {
    const std::string output = upper_case(attribute_of(value, "output"));
    const std::string input = upper_case(attribute_of(value, "input"));
    const std::string name = upper_case(attribute_of(value, "name"));
    const auto by_channels = std::ranges::find_if(component_channels, [&](const Channels& channels) {
      return output == channels.output && input == channels.input;
    });
    if (by_channels != component_channels.end()) {
      return by_channels - component_channels.begin();
    }
    const auto by_name = std::ranges::find(component_names, name);
    return by_name == component_names.end() ? std::nullopt
                                            : std::optional<std::size_t>(by_name - component_names.begin());
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
  Covariance covariance_of(const pugi::xml_node& block, std::string_view first, std::string_view second) {
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
    const auto value = number_of(attribute_of(period, "value"));
    const bool in_hertz = equal_ignoring_case(attribute_of(period, "units"), "hz");
    Point point;
    point.frequency = !value ? not_given : in_hertz ? *value : 1.0 / *value;
    if (!is_frequency(point.frequency)) {
      remark_unreadable(report_, 0, "a period isn't above 0 and is left out");
      return;
    }
    for (const char* const block : {"Z", "T"}) {
      const pugi::xml_node node = child_of(period, block);
      check_unit(attribute_of(node, "units"));
      each_value(node, [&](std::size_t component, const std::array<double, 2>& numbers) {
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

  /// A file of another unit would come in with other resistivities, and nothing would show it.
  void check_unit(std::string_view unit) {
    std::string letters = upper_case(unit);
    std::erase_if(letters, [](char c) { return c == '[' || c == ']' || c == ' '; });
    const bool is_known =
        letters.empty() || letters == "MV/KM/NT" || letters.find("MILLIVOLT") != std::string::npos;
    if (!is_known && !has_odd_unit_) {
      has_odd_unit_ = true;
      remark_unreadable(report_, 0, "the unit " + in_quotes(unit) + " isn't known, taken as mV/km/nT");
    }
  }

  /// The variances that aren't given, and everything else where values are in axes of channels that aren't
  /// those of a site.
  void take_covariances(const pugi::xml_node& period, Point& point) {
    const auto power = covariance_of(child_of(period, "Z.INVSIGCOV"), "HX", "HY");
    const auto residuals = covariance_of(child_of(period, "Z.RESIDCOV"), "EX", "EY");
    const auto tipper_power = covariance_of(child_of(period, "T.INVSIGCOV"), "HX", "HY");
    const double vertical = vertical_residual_of(child_of(period, "T.RESIDCOV"));
    if (!are_axes(axes_.magnetic) || !are_axes(axes_.electric)) {
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

  void turn(Point& point, const Covariance& power, const Covariance& residuals,
            const Covariance& tipper_power, double vertical) {
    check_turn(point);
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
      return to_orthogonal_axes(functions, axes_).value_or(transfer_function::OrthogonalFunctions{});
    };
    const auto impedances = turned_with(power);
    const auto tippers = turned_with(tipper_power);
    for (std::size_t i = 0; i < 2; ++i) {
      for (std::size_t j = 0; j < 2; ++j) {
        Value& value = point.values[2 * i + j];
        has_lost_errors_ = has_lost_errors_ || (!std::isnan(value.variance) && !(power && residuals));
        value.value = impedances.impedance[i][j];
        value.variance = power && residuals ? impedances.impedance_variance[i][j] : not_given;
      }
      Value& value = point.values[impedance_count + i];
      has_lost_errors_ = has_lost_errors_ || (!std::isnan(value.variance) && !tipper_power);
      value.value = tippers.tipper[i];
      value.variance = tipper_power ? tippers.tipper_variance[i] : not_given;
    }
  }

  /// What an element that isn't there takes with it: each turned one is made of all four.
  void check_turn(const Point& point) {
    const auto count = std::ranges::count_if(point.values.begin(), point.values.begin() + impedance_count,
                                             &Value::has_value);
    if (count > 0 && count < static_cast<std::ptrdiff_t>(impedance_count)) {
      remark_unreadable(report_, 0,
                        "a period of " + plain_text(1.0 / point.frequency) +
                            " s lacks elements of the tensor, so that the others can't be turned");
    }
  }

  FileReport& report_;
  pugi::xml_document document_;
  pugi::xml_node root_;
  TransferFunction result_;
  bool conjugate_ = false;
  bool has_electric_axes_ = true;
  bool has_odd_unit_ = false;
  bool has_lost_errors_ = false;
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
