#include "formats/edi/edi_writer.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <numbers>
#include <string_view>
#include <vector>

#include "core/calendar.h"
#include "core/number_text.h"
#include "core/text_fields.h"
#include "numerics/constants.h"

namespace formats::edi {

namespace {

using transfer_function::Component;
using transfer_function::Point;
using transfer_function::SiteDocument;
using transfer_function::Value;

constexpr std::string_view line_end = "\r\n";
constexpr std::size_t values_in_line = 6;
constexpr std::size_t value_width = 17;

constexpr std::array<Component, transfer_function::impedance_count> impedances{
    Component::zxx, Component::zxy, Component::zyx, Component::zyy};
constexpr std::array<std::string_view, transfer_function::impedance_count> element_names{"XX", "XY", "YX",
                                                                                         "YY"};

/// A sensor, as the definitions name it and the section refers to it.
struct Channel {
  std::string_view type;
  std::string_view id;
};
constexpr Channel hx{"HX", "101.001"};
constexpr Channel hy{"HY", "102.001"};
constexpr Channel hz{"HZ", "103.001"};
constexpr Channel ex{"EX", "104.001"};
constexpr Channel ey{"EY", "105.001"};

/// One line of text: what would end it, or the quotes around it, is left out.
std::string one_line(std::string_view text) {
  std::string kept;
  for (const char character : text) {
    if (static_cast<unsigned char>(character) < ' ') {
      kept += ' ';
    } else if (character != '"') {
      kept += character;
    }
  }
  return std::string(trimmed(kept));
}

/// "-19:26:24.7400". Rounded first and split then, so that no part reaches 60.
std::string degrees_minutes_seconds(double degrees) {
  constexpr std::int64_t units_in_minute = 600000;  // 0.0001 seconds, 3 mm
  const std::int64_t units = std::llround(std::abs(degrees) * 60.0 * static_cast<double>(units_in_minute));
  const std::int64_t minutes = units / units_in_minute;
  return (degrees < 0.0 && units > 0 ? "-" : "") + plain_text(minutes / 60) + ':' +
         format_number(minutes % 60, "00") + ':' +
         format_number(static_cast<double>(units % units_in_minute) / 10000.0, "00.0000");
}

/// "07/01/2019"
std::string date_text(double days) {
  const std::chrono::year_month_day date = calendar_date(days);
  return format_number(std::int64_t{static_cast<unsigned>(date.month())}, "00") + '/' +
         format_number(std::int64_t{static_cast<unsigned>(date.day())}, "00") + '/' +
         format_number(std::int64_t{static_cast<int>(date.year())}, "0000");
}

std::string metres(double value) { return format_number(value, "0.00"); }

bool has_tipper(const SiteDocument& site) { return site.has(Component::tx) || site.has(Component::ty); }
bool has_ex(const SiteDocument& site) { return site.has(Component::zxx) || site.has(Component::zxy); }
bool has_ey(const SiteDocument& site) { return site.has(Component::zyx) || site.has(Component::zyy); }

/// The text of a file in the making.
class EdiText {
 public:
  explicit EdiText(const SiteDocument& site) : site_(site), points_(site.function.points) {
    std::ranges::sort(points_, std::ranges::greater(), &Point::frequency);
  }

  std::string finish() {
    append_head();
    append_info();
    append_measurements();
    append_section();
    append_frequencies();
    for (const Component component : impedances) {
      append_impedance(component);
    }
    for (const Component component : impedances) {
      append_curve(component);
    }
    if (has_tipper(site_)) {
      append_block("TROT.EXP", [this](const Point&) { return azimuth(); });
      append_tipper(Component::tx, "TX");
      append_tipper(Component::ty, "TY");
    }
    line(">END");
    return std::move(text_);
  }

 private:
  void line(std::string_view content) { text_.append(content).append(line_end); }
  void option(std::string_view key, const std::string& value) { line("  " + std::string(key) + "=" + value); }
  void text_option(std::string_view key, std::string_view value) { option(key, '"' + one_line(value) + '"'); }
  void place_options(const std::string& prefix) {
    const transfer_function::Site& site = site_.function.site;
    if (site.latitude && site.longitude) {
      option(prefix + "LAT", degrees_minutes_seconds(*site.latitude));
      option(prefix + "LONG", degrees_minutes_seconds(*site.longitude));
    }
    if (site.elevation) {
      option(prefix + "ELEV", plain_text(*site.elevation));
    }
  }

  [[nodiscard]] double azimuth() const { return site_.function.site.x_azimuth.value_or(0.0); }
  // By the digits of a single value, as azimuths are known: 101.18 and not 101.18000000000001.
  [[nodiscard]] double azimuth_of_y() const {
    return decimal_of_single(static_cast<float>(std::fmod(sensor_azimuth() + 450.0, 360.0)));
  }
  [[nodiscard]] double sensor_azimuth() const { return site_.sensor_azimuth.value_or(0.0); }

  void append_head() {
    line(">HEAD");
    text_option("DATAID", site_.id);
    text_option("FILEBY", site_.program);
    if (site_.date_collected) {
      option("ACQDATE", date_text(*site_.date_collected));
    }
    option("FILEDATE", date_text(site_.date_written));
    place_options("");
    if (!site_.function.site.datum.empty()) {
      text_option("DATUM", site_.function.site.datum);
    }
    option("UNITS", "M");
    text_option("STDVERS", "SEG 1.0");
    text_option("PROGVERS", site_.program);
    option("MAXSECT", "999");
    option("EMPTY", "1.0E+32");
    line("");
  }

  // Indented, so that no line of it can be taken for a tag.
  void append_info() {
    line(">INFO");
    option("MAXINFO", "999");
    const std::string& name = site_.function.site.name;
    line("  " + one_line("Survey " + site_.survey + ", line " + site_.line + ", station " +
                         plain_text(site_.station) + (name.empty() ? "" : ", site " + name)));
    line("  " + one_line("Written by " + site_.program));
    for (const std::string& sentence : site_.history) {
      line("  " + one_line(sentence));
    }
    line("  Variances are those of complex values, twice those of a part; RHO.ERR is the error of log10 rho");
    line("");
  }

  void append_measurements() {
    const int channels = 2 + (has_tipper(site_) ? 1 : 0) + (has_ex(site_) ? 1 : 0) + (has_ey(site_) ? 1 : 0);
    line(">=DEFINEMEAS");
    option("MAXCHAN", plain_text(channels));
    option("MAXRUN", "999");
    option("MAXMEAS", "9999");
    option("UNITS", "M");
    option("REFTYPE", "CART");
    place_options("REF");
    append_magnetic(hx, sensor_azimuth());
    append_magnetic(hy, azimuth_of_y());
    if (has_tipper(site_)) {
      append_magnetic(hz, 0.0);
    }
    if (has_ex(site_)) {
      append_electric(ex, sensor_azimuth());
    }
    if (has_ey(site_)) {
      append_electric(ey, sensor_azimuth() + 90.0);
    }
    line("");
  }

  void append_magnetic(const Channel& channel, double channel_azimuth) {
    line(">HMEAS ID=" + std::string(channel.id) + " CHTYPE=" + std::string(channel.type) +
         " X=0.0 Y=0.0 Z=0.0 AZM=" + plain_text(channel_azimuth));
  }

  // The dipole is centred on the station; its second electrode is the positive end. X is north.
  void append_electric(const Channel& channel, double channel_azimuth) {
    const double half = site_.dipole / 2.0;
    const double north = half * std::cos(channel_azimuth * numerics::radians_per_degree);
    const double east = half * std::sin(channel_azimuth * numerics::radians_per_degree);
    line(">EMEAS ID=" + std::string(channel.id) + " CHTYPE=" + std::string(channel.type) +
         " X=" + metres(-north) + " Y=" + metres(-east) + " Z=0.0 X2=" + metres(north) +
         " Y2=" + metres(east) + " Z2=0.0");
  }

  void append_section() {
    const auto refer = [this](const Channel& channel) { option(channel.type, std::string(channel.id)); };
    line(">=MTSECT");
    text_option("SECTID", site_.id);
    option("NFREQ", plain_text(static_cast<std::int64_t>(points_.size())));
    refer(hx);
    refer(hy);
    if (has_tipper(site_)) {
      refer(hz);
    }
    if (has_ex(site_)) {
      refer(ex);
    }
    if (has_ey(site_)) {
      refer(ey);
    }
    line("");
  }

  void append_frequencies() {
    append_block("FREQ", [](const Point& point) { return point.frequency; });
    append_block("ZROT", [this](const Point&) { return azimuth(); });
  }

  /// A block of one number for each frequency; what isn't finite is absent.
  template <class ValueOf>
  void append_block(const std::string& tag, const ValueOf& value_of) {
    line('>' + tag + " //" + plain_text(static_cast<std::int64_t>(points_.size())));
    for (std::size_t index = 0; index < points_.size(); ++index) {
      const double value = value_of(points_[index]);
      text_ += pad_field(std::isfinite(value) ? format_number(value, "0.00000000E+00") : "1.00000000E+32",
                         value_width);
      if ((index + 1) % values_in_line == 0 || index + 1 == points_.size()) {
        text_ += line_end;
      }
    }
  }

  // Others ask for the variance with every impedance, known or not.
  void append_impedance(Component component) {
    const auto has_value = [component](const Point& point) { return point.of(component).has_value(); };
    if (!std::ranges::any_of(points_, has_value)) {
      return;
    }
    const std::string name = "Z" + std::string(element_names[static_cast<std::size_t>(component)]);
    append_parts(component, {name + "R ROT=ZROT", name + "I ROT=ZROT", name + ".VAR ROT=ZROT"});
  }

  void append_tipper(Component component, const std::string& name) {
    append_parts(component, {name + "R.EXP ROT=TROT", name + "I.EXP ROT=TROT", name + "VAR.EXP ROT=TROT"});
  }

  void append_parts(Component component, const std::array<std::string, 3>& tags) {
    append_block(tags[0], [component](const Point& point) { return point.of(component).value.real(); });
    append_block(tags[1], [component](const Point& point) { return point.of(component).value.imag(); });
    append_block(tags[2], [component](const Point& point) { return point.of(component).variance; });
  }

  void append_curve(Component component) {
    const auto has_curve = [component](const Point& point) {
      const Value& value = point.of(component);
      return std::isfinite(value.resistivity) || std::isfinite(value.phase);
    };
    if (!std::ranges::any_of(points_, has_curve)) {
      return;
    }
    // By the 32-bit values, as a reader that stores such has them: it gets the same error again.
    const auto logarithmic_error = [component](const Point& point) {
      const auto single = [](double value) { return static_cast<double>(static_cast<float>(value)); };
      const Value& value = point.of(component);
      return single(value.resistivity_error) / (single(value.resistivity) * std::numbers::ln10);
    };
    const std::string name(element_names[static_cast<std::size_t>(component)]);
    append_block("RHO" + name + " ROT=ZROT",
                 [component](const Point& point) { return point.of(component).resistivity; });
    append_block("RHO" + name + ".ERR ROT=ZROT", logarithmic_error);
    append_block("PHS" + name + " ROT=ZROT",
                 [component](const Point& point) { return point.of(component).phase; });
    append_block("PHS" + name + ".ERR ROT=ZROT",
                 [component](const Point& point) { return point.of(component).phase_error; });
  }

  const SiteDocument& site_;
  std::vector<Point> points_;  // descending in frequency
  std::string text_;
};

}  // namespace

std::string edi_text(const SiteDocument& site) { return EdiText(site).finish(); }

}  // namespace formats::edi
