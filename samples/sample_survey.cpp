#include "samples/sample_survey.h"

#include <cmath>
#include <complex>

#include "core/number_text.h"
#include "samples/edi_text.h"
#include "samples/field_conditions.h"
#include "samples/random_numbers.h"

namespace Module_samples {
namespace {

struct Recording {  // what distinguishes one field file from another
  const SampleLine* line = nullptr;
  std::size_t line_index = 0;
  double station = 0.0;
  std::size_t rate_index = 0;
  int repeat = 1;
};

/// The true tensor element; above layers only XY and YX are not 0. Ey points west, hence no minus on YX.
std::complex<double> true_impedance(std::size_t element, std::complex<double> of_layers,
                                    const SampleLine& line, double station) {
  const bool shifted = station == line.shifted_station;
  constexpr std::size_t xy = 1;
  constexpr std::size_t yx = 2;
  if (element == xy) {
    return of_layers * (shifted ? std::sqrt(line.shift_of_ex) : 1.0);
  }
  if (element == yx) {
    return of_layers * (shifted ? std::sqrt(line.shift_of_ey) : 1.0);
  }
  return {};
}

void measure(const Recording& recording, std::uint64_t seed, EdiSection& section) {
  constexpr double outlier_share = 0.03;
  constexpr double outlier_noise = 12.0;
  constexpr double spoiled_noise = 20.0;
  RandomNumbers random{static_cast<std::uint32_t>(seed),
                       static_cast<std::uint32_t>(seed >> 32U),
                       static_cast<std::uint32_t>(recording.line_index),
                       static_cast<std::uint32_t>(std::lround(recording.station)),
                       static_cast<std::uint32_t>(recording.rate_index),
                       static_cast<std::uint32_t>(recording.repeat)};
  const bool spoiled = recording.station == recording.line->spoiled_station &&
                       recording.repeat == recording.line->spoiled_repeat;
  const std::vector<numerics::impedance::Layer> ground = ground_below(*recording.line, recording.station);
  for (const double frequency : section.frequencies) {
    const std::complex<double> of_layers = numerics::impedance::surface_impedance(ground, frequency);
    const double deviation = noise_level(frequency) * std::abs(of_layers);
    for (std::size_t element = 0; element < section.elements.size(); ++element) {
      // The stated deviation knows nothing of outliers, as in the field.
      double noise = deviation * (spoiled ? spoiled_noise : 1.0);
      if (random.uniform() < outlier_share) {
        noise *= outlier_noise;
      }
      const double real_noise = noise * random.normal();
      const double imaginary_noise = noise * random.normal();
      const std::complex<double> truth =
          true_impedance(element, of_layers, *recording.line, recording.station);
      section.elements[element].impedance.push_back(truth + std::complex{real_noise, imaginary_noise});
      section.elements[element].deviation.push_back(deviation);
    }
  }
}

std::string remark_of(const Recording& recording) {
  return "  A made survey: layered ground, noise from random numbers.\n"
         "  Ey is positive to the west, so that the YX phases lie in 0..90 degrees.\n"
         "  LINE=" +
         std::string(recording.line->name) + " STATION=" + plain_text(recording.station) +
         " REPEAT=" + std::to_string(recording.repeat) +
         " RATE=" + plain_text(sample_scan_rates[recording.rate_index].rate) + '\n';
}

SampleFile make_file(const Recording& recording, std::uint64_t seed) {
  const ScanRate& scan_rate = sample_scan_rates[recording.rate_index];
  const std::string station = format_number(recording.station, "0000");
  EdiSection section;
  section.data_id = std::string(recording.line->name) + "_" + station;
  section.section_id = plain_text(recording.station) + recording.line->letter;
  section.date = recording.line_index == 0 ? "05/14/11" : "05/16/11";
  section.remark = remark_of(recording);
  section.elevation = elevation_at(recording.station);
  locate(recording.station, recording.line->local_east, seed,
         static_cast<std::uint32_t>(recording.line_index), recording.station, section);
  section.dipole = station_step;
  section.frequencies = frequencies_of(scan_rate);
  measure(recording, seed, section);
  return {"L" + std::string(recording.line->name) + "_S" + station + "_E" + std::to_string(recording.repeat) +
              "_R" + format_number(scan_rate.rate, "0000") + ".edi",
          edi_text(section)};
}

}  // namespace

std::vector<numerics::impedance::Layer> ground_below(const SampleLine& line, double station) {
  // 0 at the first station, 1 at the last: the cover thins out and the conductive layer rises northward.
  const double along = (station - first_station) / (station_step * (station_count - 1));
  return {{60.0, 60.0 - 35.0 * along},
          {600.0, 700.0 - 450.0 * along + line.depth_change},
          {15.0 + 10.0 * along, 250.0},
          {1500.0, 0.0}};
}

double elevation_at(double station) {
  constexpr double foot = 350.0;  // m
  constexpr double hill = 50.0;   // m, above the foot in the middle of a line
  const double along = (station - first_station) / (station_step * (station_count - 1));
  return foot + hill * 4.0 * along * (1.0 - along);
}

std::string elevation_table() {
  std::string text = "! station (m), elevation (m)\n";
  for (int place = 0; place < station_count; ++place) {
    const double station = first_station + station_step * place;
    text += plain_text(station) + "  " + format_number(elevation_at(station), "0.0") + "\n";
  }
  return text;
}

std::vector<double> frequencies_of(const ScanRate& scan_rate) {
  std::vector<double> frequencies;
  frequencies.reserve(static_cast<std::size_t>(scan_rate.frequency_count));
  for (int step = 0; step < scan_rate.frequency_count; ++step) {
    frequencies.push_back(scan_rate.highest_frequency * std::exp2(-0.5 * step));
  }
  return frequencies;
}

std::vector<SampleFile> make_sample_survey(std::uint64_t seed) {
  std::vector<SampleFile> files;
  for (std::size_t line_index = 0; line_index < sample_lines.size(); ++line_index) {
    for (int place = 0; place < station_count; ++place) {
      for (std::size_t rate_index = 0; rate_index < sample_scan_rates.size(); ++rate_index) {
        for (int repeat = 1; repeat <= repeat_count; ++repeat) {
          files.push_back(make_file({&sample_lines[line_index], line_index,
                                     first_station + station_step * place, rate_index, repeat},
                                    seed));
        }
      }
    }
  }
  return files;
}

}  // namespace Module_samples
