// Parsing of the exchange formats, beside a bare loop that reads the same bytes and converts every number in
// them.
#include <stdexcept>
#include <string>

#include <benchmark/benchmark.h>

#include "benchmarks/bare_numbers.h"
#include "benchmarks/beside_bound.h"
#include "formats/csv/curve_table.h"
#include "formats/emtf_xml/emtf_xml.h"
#include "formats/j_format/j_format.h"
#include "formats/z_file/z_file.h"
#include "formats/zonge/zonge_avg_parser.h"
#include "tests/support/temporary_folder.h"

namespace {

constexpr std::size_t file_size = 2'000'000;  // bytes, about

/// The middle as often as it takes.
std::string repeated(const std::string& head, const std::string& middle, const std::string& end = {}) {
  std::string text = head;
  while (text.size() < file_size) {
    text += middle;
  }
  return text + end;
}

std::string xml_block(const std::string& name, const std::string& numbers) {
  std::string text = "<" + name + " type=\"complex\" size=\"2 2\" units=\"[mV/km]/[nT]\">\n";
  for (const char* const output : {"Ex", "Ey"}) {
    for (const char* const input : {"Hx", "Hy"}) {
      text += std::string("<value name=\"Z\" output=\"") + output + "\" input=\"" + input + "\">" + numbers +
              "</value>\n";
    }
  }
  return text + "</" + name + ">\n";
}

std::string xml_file() {
  return repeated("<EM_TF><Site><Id>A</Id></Site><Data>\n",
                  "<Period value=\"4.654550e+00\" units=\"secs\">\n" +
                      xml_block("Z", "-1.160949e-01 -2.708645e-01") + xml_block("Z.VAR", "1.125022e-03") +
                      "</Period>\n",
                  "</Data></EM_TF>\n");
}

std::string z_file() {
  return repeated(
      " TRANSFER FUNCTIONS IN MEASUREMENT COORDINATES\nstation    :S7\n"
      "coordinate    -19.500   236.250 declination    5.00\nnumber of channels   4   number of frequencies   "
      "1\n"
      " orientations and tilts of each channel\n    1     0.00     0.00 S7  Hx\n    2    90.00     0.00 S7  "
      "Hy\n"
      "    3     0.00     0.00 S7  Ex\n    4    90.00     0.00 S7  Ey\n\n",
      "period :      4.65455    decimation level   1    freq. band from   25 to   30\n"
      "number of data point  64340 sampling freq.   1.000 Hz\n Transfer Functions\n"
      "  0.1598E+00  0.1481E+00  0.1286E+01  0.1517E+01\n -0.5449E+00  0.8695E+00  0.1254E+01 -0.2018E+01\n"
      " Inverse Coherent Signal Power Matrix\n  0.2420E+04 -0.4039E-04\n"
      " -0.8548E+03 -0.7702E+03  0.1154E+04 -0.1958E-04\n Residual Covariance\n  0.1461E-04 -0.0000E+00\n"
      " -0.6693E-06 -0.2479E-05  0.3267E-05 -0.0000E+00\n");
}

std::string j_file() {
  return repeated(
      "S07\nRXY\n100000\n",
      " 4.654550  97.83710 -15.23762 101.0450 94.62923 -14.29828 -16.17696 0.7276786 0.5479196\n");
}

std::string avg_file() {
  return repeated(
      "$ ASPACE=  50.0m\nskp Station Freq  Comp Amps     Emag     Ephz      Hmag     Hphz  Resistivity   "
      "Phase   %Rho   sPhz\n",
      " 2   150.0   8192 ExHy  5.00  3.1061e+2  1371.6  9.2137e-2  1953.2  2.7746e+2  -581.6   14.7  "
      "136.0\n");
}

std::string csv_file() {
  return repeated("line,station,data_type,frequency_Hz,resistivity_ohm_m,phase_deg,masked\n",
                  "200E,100.5,ExHy,4096.5,123.456787,45.1234512,0\n");
}

void require_points(bool there) {
  if (!there) {
    throw std::runtime_error("the made file gave no point");
  }
}

std::size_t read_xml(const std::string& path) {
  formats::FileReport report;
  const auto function = formats::emtf_xml::read_emtf_xml(bytes_of(path), report);
  require_points(!function.points.empty());
  return function.points.size();
}

template <class Read>
std::size_t read_lines(const std::string& path, const Read& read) {
  formats::FileReport report;
  LineReader lines(path);
  const std::size_t count = read(lines, report);
  require_points(count > 0);
  return count;
}

std::size_t read_z(const std::string& path) {
  return read_lines(path, [](LineReader& lines, formats::FileReport& report) {
    return formats::z_file::read_z_file(lines, report).points.size();
  });
}

std::size_t read_j(const std::string& path) {
  return read_lines(path, [](LineReader& lines, formats::FileReport& report) {
    return formats::j_format::read_j_format(lines, report).points.size();
  });
}

std::size_t read_avg(const std::string& path) {
  return read_lines(path, [](LineReader& lines, formats::FileReport& report) {
    return formats::zonge::read_zonge_avg(lines, report).size();
  });
}

std::size_t read_csv(const std::string& path) {
  return read_lines(path, [](LineReader& lines, formats::FileReport& report) {
    return formats::csv::read_curve_table(lines, report).size();
  });
}

void parse_beside_bare_loop(benchmark::State& state, std::size_t (*read)(const std::string&),
                            const std::string& text) {
  const TemporaryFolder folder;
  const std::string path = folder.write("made.txt", text);
  read_beside_bare_loop(state, path, text.size(), read,
                        [](const std::string& file) { return numbers_of(file).size(); });
}

}  // namespace

BENCHMARK_CAPTURE(parse_beside_bare_loop, emtf_xml, read_xml, xml_file())
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(parse_beside_bare_loop, z_file, read_z, z_file())
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(parse_beside_bare_loop, j_format, read_j, j_file())
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(parse_beside_bare_loop, zonge_avg, read_avg, avg_file())
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(parse_beside_bare_loop, curve_table, read_csv, csv_file())
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
