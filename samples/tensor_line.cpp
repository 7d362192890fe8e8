#include "samples/tensor_line.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <span>
#include <string>
#include <utility>

#include "core/number_text.h"
#include "numerics/constants.h"
#include "numerics/section/linear_response.h"
#include "samples/edi_text.h"
#include "samples/field_conditions.h"
#include "samples/random_numbers.h"

namespace Module_samples {

namespace {

using Complex = std::complex<double>;
using Matrix = std::array<Complex, 4>;  // xx, xy, yx, yy
using numerics::section::Section;

constexpr std::uint32_t line_number = 2;  // behind those of the sample survey
constexpr double scan_rate = 512.0;       // Hz

// E/H in ohm of E/B in mV/km/nT.
constexpr double ohms_of_field_unit = numerics::mu0 * numerics::field_unit;

double station_at(int place) { return tensor_line_first + tensor_line_step * place; }

/// The station's place across the strike, m.
double across_strike(double station) {
  return station * std::cos((tensor_line_azimuth - 90.0 - tensor_line_strike) * numerics::radians_per_degree);
}

/// Indices of the resistivities of the ground.
enum Rock : std::size_t { cover, upper_crust, dyke, basement, lower_crust, rock_count };
constexpr std::array<double, rock_count> rock_resistivities{60.0, 300.0, 5.0, 3000.0, 100.0};  // ohm-m

/// The rock at a place: m across the strike, m of depth.
Rock rock_at(double y, double z) {
  constexpr double cover_depth = 200.0;
  constexpr double crust_depth = 15000.0;
  if (z < cover_depth) {
    return cover;
  }
  if (z > crust_depth) {
    return lower_crust;
  }
  if (y > 3000.0 && y < 4250.0 && z < 3500.0) {
    return dyke;
  }
  return y > 5500.0 && z > 1000.0 ? basement : upper_crust;
}

/// Steps that grow from a first one by a factor until they are as long together as a length.
std::vector<double> growing_steps(double first, double factor, double length) {
  std::vector<double> steps;
  for (double covered = 0.0; covered < length; covered += steps.back()) {
    steps.push_back(first);
    first *= factor;
  }
  return steps;
}

Section make_section() {
  constexpr double core_begin = -1000.0;  // m
  constexpr double core_width = 125.0;
  constexpr int core_columns = 80;
  const std::vector<double> padding = growing_steps(core_width * 1.5, 1.5, 1.5e5);
  Section section;
  section.left_edge = core_begin;
  for (const double width : padding) {
    section.left_edge -= width;
  }
  section.column_widths.assign(padding.rbegin(), padding.rend());
  section.column_widths.insert(section.column_widths.end(), core_columns, core_width);
  section.column_widths.insert(section.column_widths.end(), padding.begin(), padding.end());
  section.row_heights = growing_steps(20.0, 1.18, 2e5);
  double top = 0.0;
  for (const double height : section.row_heights) {
    double left = section.left_edge;
    for (const double width : section.column_widths) {
      const Rock rock = rock_at(left + width / 2.0, top + height / 2.0);
      section.resistivities.insert(section.resistivities.end(), 4, rock_resistivities[rock]);
      section.codes.insert(section.codes.end(), 4, static_cast<numerics::section::Code>(rock + 1));
      left += width;
    }
    top += height;
  }
  return section;
}

/// A station's field without noise, in geographic axes.
struct Field {
  std::vector<Matrix> impedance;               // mV/km/nT, for each frequency
  std::vector<std::array<Complex, 2>> tipper;  // likewise
};

/// What stands in axes along and across the strike, seen in geographic ones: Z = R^T Z' R, T = T' R with
/// R = [[cos s, sin s], [-sin s, cos s]].
void add_to_field(const Complex& te, const Complex& tm, const Complex& across, Field& field) {
  const double c = std::cos(tensor_line_strike * numerics::radians_per_degree);
  const double s = std::sin(tensor_line_strike * numerics::radians_per_degree);
  field.impedance.push_back(
      {-c * s * (te - tm), c * c * te + s * s * tm, -s * s * te - c * c * tm, c * s * (te - tm)});
  field.tipper.push_back({-s * across, c * across});
}

/// The fields of all stations.
std::vector<Field> respond(std::span<const double> frequencies) {
  using namespace numerics::section;
  const Section section = make_section();
  std::vector<double> sites;
  for (int place = 0; place < tensor_line_stations; ++place) {
    sites.push_back(across_strike(station_at(place)));
  }
  std::vector<ModeRequest> requests;
  for (std::size_t frequency = 0; frequency < frequencies.size(); ++frequency) {
    for (const Mode mode : {Mode::te, Mode::tm}) {
      ModeRequest request{mode, frequency, {}, mode == Mode::te};
      for (std::size_t site = 0; site < sites.size(); ++site) {
        request.site_indices.push_back(site);
      }
      requests.push_back(std::move(request));
    }
  }
  struct Modes {
    Complex te, tm, tipper;
  };
  std::vector<Modes> modes(sites.size() * frequencies.size());
  // Each place is written by one thread alone.
  const auto take = [&](const ModeRequest& request, std::size_t site, const SiteResponse& response) {
    Modes& at = modes[site * frequencies.size() + request.frequency_index];
    if (request.mode == Mode::te) {
      at.te = response.impedance / ohms_of_field_unit;
      at.tipper = response.tipper;
    } else {
      at.tm = response.impedance / ohms_of_field_unit;
    }
  };
  compute_linear_response(section, check_input(section, sites, frequencies), frequencies, requests, {}, take);
  std::vector<Field> fields(sites.size());
  for (std::size_t index = 0; index < modes.size(); ++index) {
    add_to_field(modes[index].te, modes[index].tm, modes[index].tipper, fields[index / frequencies.size()]);
  }
  return fields;
}

LocalGround ground_at(double station) {
  const auto found = std::ranges::find(special_stations, station, &LocalGround::station);
  return found == special_stations.end() ? LocalGround{.station = station} : *found;
}

/// The imaginary part Y of Z = X + iY times R(2 skew): the phase tensor X^-1 Y is then multiplied by that
/// rotation, which gives it the skew and leaves the azimuth of its major axis (Bibby, Caldwell & Brown 2005).
void skew(double degrees, Matrix& z) {
  const double c = std::cos(2.0 * degrees * numerics::radians_per_degree);
  const double s = std::sin(2.0 * degrees * numerics::radians_per_degree);
  for (const std::size_t row : {0U, 2U}) {
    const double x = z[row].imag();
    const double y = z[row + 1].imag();
    z[row].imag(c * x - s * y);
    z[row + 1].imag(s * x + c * y);
  }
}

void distort(const std::array<double, 4>& d, Matrix& z) {
  z = {d[0] * z[0] + d[1] * z[2], d[0] * z[1] + d[1] * z[3], d[2] * z[0] + d[3] * z[2],
       d[2] * z[1] + d[3] * z[3]};
}

/// The local ground's part and the noise, of which a row of the tensor has one size.
void measure(const Field& field, const LocalGround& ground, std::uint64_t seed, EdiSection& section) {
  constexpr double skewed_below = 20.0;  // Hz; the body beside the line is deep
  constexpr double tipper_share = 0.7;   // of the impedance's noise
  RandomNumbers random{static_cast<std::uint32_t>(seed),
                       static_cast<std::uint32_t>(seed >> 32U),
                       line_number,
                       static_cast<std::uint32_t>(std::lround(ground.station)),
                       0,
                       1};
  const auto add = [&](Complex truth, double deviation, TensorElement& element) {
    const double real_noise = deviation * random.normal();
    const double imaginary_noise = deviation * random.normal();
    element.impedance.push_back(truth + Complex{real_noise, imaginary_noise});
    element.deviation.push_back(deviation);
  };
  for (std::size_t index = 0; index < section.frequencies.size(); ++index) {
    const double frequency = section.frequencies[index];
    Matrix z = field.impedance[index];
    skew(ground.skew / (1.0 + frequency / skewed_below), z);
    distort(ground.distortion, z);
    const double level = noise_level(frequency);
    for (std::size_t element = 0; element < z.size(); ++element) {
      const std::size_t row = element / 2 * 2;
      const double size = std::hypot(std::abs(z[row]), std::abs(z[row + 1]));
      add(z[element], level * size, section.elements[element]);
    }
    for (std::size_t element = 0; element < section.tipper.size(); ++element) {
      add(field.tipper[index][element], tipper_share * level, section.tipper[element]);
    }
  }
}

std::string remark_of(const LocalGround& ground) {
  return "  A made line: a conductive dyke and a resistive basement that strike " +
         plain_text(tensor_line_strike) +
         " degrees from north,\n  noise from random numbers. Ey is positive to the east.\n  LINE=" +
         std::string(tensor_line_name) + " STATION=" + plain_text(ground.station) + '\n';
}

SampleFile make_file(const LocalGround& ground, const Field& field, std::uint64_t seed) {
  constexpr double height = 300.0;  // m
  constexpr double dipole = 100.0;  // m
  const std::string name = "L" + std::string(tensor_line_name) + "_S" + format_number(ground.station, "0000");
  EdiSection section;
  section.data_id = std::string(tensor_line_name) + "_" + format_number(ground.station, "0000");
  section.section_id = plain_text(ground.station) + "T";
  section.date = "06/11/12";
  section.remark = remark_of(ground);
  const double azimuth = tensor_line_azimuth * numerics::radians_per_degree;
  locate(ground.station * std::cos(azimuth), ground.station * std::sin(azimuth), seed, line_number,
         ground.station, section);
  section.elevation = height;
  section.dipole = dipole;
  section.ey_end = EyEnd::east;
  section.frequencies = tensor_line_frequencies();
  measure(field, ground, seed, section);
  return {name + "_E1_R" + format_number(scan_rate, "0000") + ".edi", edi_text(section)};
}

}  // namespace

std::vector<double> tensor_line_frequencies() {
  return frequencies_of({.rate = scan_rate, .highest_frequency = 256.0, .frequency_count = 33});
}

std::vector<SampleFile> make_tensor_line(std::uint64_t seed) {
  const std::vector<Field> fields = respond(tensor_line_frequencies());
  std::vector<SampleFile> files;
  for (int place = 0; place < tensor_line_stations; ++place) {
    files.push_back(make_file(ground_at(station_at(place)), fields[static_cast<std::size_t>(place)], seed));
  }
  return files;
}

}  // namespace Module_samples
