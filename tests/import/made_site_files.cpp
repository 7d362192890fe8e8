#include "tests/import/made_site_files.h"

#include <cmath>
#include <string_view>

namespace {

constexpr double resistivity = 100.0;

/// The real part of Zxy over a uniform earth, which is its imaginary part, too: |Z|^2 = 5 rho f.
double part_of(double frequency) { return std::sqrt(5.0 * resistivity * frequency / 2.0); }

std::string tag(std::string_view name, const std::string& text) {
  return text.empty() ? "" : "<" + std::string(name) + ">" + text + "</" + std::string(name) + ">\n";
}

std::string value(std::string_view name, std::string_view output, std::string_view input, double real,
                  double imaginary) {
  return "<value name=\"" + std::string(name) + "\" output=\"" + std::string(output) + "\" input=\"" +
         std::string(input) + "\">" + std::to_string(real) + " " + std::to_string(imaginary) + "</value>\n";
}

std::string row(double a, double b, double c, double d) {
  return " " + std::to_string(a) + " " + std::to_string(b) + " " + std::to_string(c) + " " +
         std::to_string(d) + "\n";
}

std::string j_block(const std::string& type, double sign) {
  std::string block = type + " FIELD UNITS\n 2\n";
  for (const double frequency : {10.0, 1.0}) {
    const bool is_tipper = type[0] == 'T';
    const double part = part_of(frequency);
    const double error = is_tipper ? 0.01 : std::sqrt(2.0) * part * 0.01 * std::sqrt(2.0);
    block += std::to_string(-frequency) + " " + std::to_string(is_tipper ? 0.1 : sign * part) + " " +
             std::to_string(is_tipper ? 0.2 : sign * part) + " " + std::to_string(error) + " 1.0\n";
  }
  return block;
}

}  // namespace

std::string made_emtf_xml(const MadeSite& site) {
  const double sign = site.turned ? 1.0 : -1.0;
  std::string text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<EM_TF>\n<Site>\n" + tag("Id", site.name) +
                     "<Location datum=\"WGS84\">\n" + tag("Latitude", site.latitude) +
                     tag("Longitude", site.longitude) +
                     "<Elevation units=\"meters\">250.5</Elevation>\n</Location>\n" +
                     "<Orientation angle_to_geographic_north=\"12.5\">orthogonal</Orientation>\n" +
                     tag("Start", site.date) + "</Site>\n<Data count=\"2\">\n";
  for (const double frequency : {10.0, 1.0}) {
    const double part = part_of(frequency);
    text += "<Period value=\"" + std::to_string(1.0 / frequency) + "\" units=\"secs\">\n<Z>\n" +
            value("Zxx", "Ex", "Hx", 0.0, 0.0) + value("Zxy", "Ex", "Hy", part, part) +
            value("Zyx", "Ey", "Hx", sign * part, sign * part) + value("Zyy", "Ey", "Hy", 0.0, 0.0) +
            "</Z>\n<T>\n" + value("Tx", "Hz", "Hx", 0.1, 0.2) + value("Ty", "Hz", "Hy", 0.1, 0.2) +
            "</T>\n</Period>\n";
  }
  return text + "</Data>\n</EM_TF>\n";
}

std::string made_z_file(const MadeSite& site) {
  const double sign = site.turned ? 1.0 : -1.0;
  std::string text =
      " TRANSFER FUNCTIONS IN MEASUREMENT COORDINATES\n ********** WITH FULL ERROR COVARIANCE*********\n"
      "Robust Remote Reference\nstation    :" +
      site.name + "\ncoordinate " + site.latitude + " " + site.longitude +
      " declination  2.50\nnumber of channels   5   number of frequencies  2\n"
      " orientations and tilts of each channel\n"
      " 1 10.00 0.00 X Hx\n 2 100.00 0.00 X Hy\n 3 0.00 0.00 X Hz\n 4 10.00 0.00 X Ex\n 5 100.00 0.00 X Ey\n";
  for (const double frequency : {10.0, 1.0}) {
    const double part = part_of(frequency);
    const std::string residual = std::to_string(4.0 * part * part * 1e-4);
    text += "\nperiod :  " + std::to_string(1.0 / frequency) +
            "  decimation level   1    freq. band from   25 to   30\n"
            "number of data point  64340 sampling freq.   1.000 Hz\n Transfer Functions\n" +
            row(0.1, 0.2, 0.1, 0.2) + row(0.0, 0.0, part, part) + row(sign * part, sign * part, 0.0, 0.0) +
            " Inverse Coherent Signal Power Matrix\n 1.0 0.0\n 0.0 0.0 1.0 0.0\n Residual Covariance\n"
            " 0.0001 0.0\n 0.0 0.0 " +
            residual + " 0.0\n 0.0 0.0 0.0 0.0 " + residual + " 0.0\n";
  }
  return text;
}

std::string made_j(const MadeSite& site) {
  return "# made\n>AZIMUTH   = 12.5\n>LATITUDE  = " + site.latitude + "\n>LONGITUDE = " + site.longitude +
         "\n>ELEVATION = 250.5\n" + site.name + "\n" + j_block("ZXY", 1.0) +
         j_block("ZYX", site.turned ? 1.0 : -1.0) + j_block("TZX", 1.0) + j_block("TZY", 1.0);
}
