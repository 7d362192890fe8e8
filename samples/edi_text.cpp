#include "samples/edi_text.h"

#include <cmath>
#include <cstdint>
#include <string_view>

#include "core/number_text.h"
#include "core/text_fields.h"
#include "numerics/constants.h"
#include "numerics/impedance/apparent_resistivity.h"
#include "numerics/impedance/layered_earth.h"

namespace Module_samples {
namespace {

constexpr std::array<std::string_view, 4> element_names{"XX", "XY", "YX", "YY"};

std::string metres(double value) { return format_number(value, "0.0"); }

/// "-34:20:28.690"; a thousandth of a second is 3 cm.
std::string degrees_minutes_seconds(double degrees) {
  constexpr std::int64_t units_in_minute = 60000;  // thousandths of a second
  const std::int64_t units = std::llround(std::abs(degrees) * 60.0 * static_cast<double>(units_in_minute));
  const std::int64_t minutes = units / units_in_minute;
  return (degrees < 0.0 ? "-" : "") + std::to_string(minutes / 60) + ':' + format_number(minutes % 60, "00") +
         ':' + format_number(static_cast<double>(units % units_in_minute) / 1000.0, "00.000");
}

void append_head(const EdiSection& section, std::string& text) {
  text +=
      ">HEAD\n  DATAID=\"" + section.data_id +
      "\"\n  ACQBY=\"Brenlox sample survey\"\n  FILEBY=\"brenlox_make_samples\"\n  ACQDATE=" + section.date +
      "\n  FILEDATE=" + section.date + "\n  LAT=" + degrees_minutes_seconds(section.latitude) +
      "\n  LONG=" + degrees_minutes_seconds(section.longitude) + "\n  ELEV=" + metres(section.elevation) +
      "\n  DATUM=WGS84\n  UNITS=M\n  STDVERS=\"SEG 1.0\"\n  MAXSECT=1\n  EMPTY=1.0E+32\n\n>INFO\n" +
      section.remark + '\n';
}

// The electric dipoles are centred on the station; the second electrode is the positive end.
void append_channels(const EdiSection& section, std::string& text) {
  const std::string north = metres(section.north);
  const std::string east = metres(section.east);
  const std::string height = metres(section.elevation);
  const double half = section.dipole / 2.0;
  const double half_east = section.ey_end == EyEnd::east ? half : -half;
  const std::string channels = section.has_tipper() ? "5" : "4";
  const std::string place = " X=" + north + " Y=" + east + " Z=" + height;
  const auto electrode = [&](std::string_view suffix, double x, double y) {
    const std::string end(suffix);
    return " X" + end + "=" + metres(x) + " Y" + end + "=" + metres(y) + " Z" + end + "=" + height;
  };
  text += ">=DEFINEMEAS\n  MAXCHAN=" + channels + "\n  MAXRUN=1\n  MAXMEAS=" + channels +
          "\n  UNITS=M\n  REFTYPE=CART\n";
  text += "  REFLAT=" + degrees_minutes_seconds(section.latitude) +
          "\n  REFLONG=" + degrees_minutes_seconds(section.longitude) + "\n  REFELEV=" + height + '\n';
  text += ">HMEAS ID=1001.001 CHTYPE=HX" + place + " AZM=0.0\n";
  text += ">HMEAS ID=1002.001 CHTYPE=HY" + place + " AZM=90.0\n";
  if (section.has_tipper()) {
    text += ">HMEAS ID=1005.001 CHTYPE=HZ" + place + " AZM=0.0\n";
  }
  text += ">EMEAS ID=1003.001 CHTYPE=EX" + electrode("", section.north - half, section.east) +
          electrode("2", section.north + half, section.east) + '\n';
  text += ">EMEAS ID=1004.001 CHTYPE=EY" + electrode("", section.north, section.east - half_east) +
          electrode("2", section.north, section.east + half_east) + "\n\n";
}

void append_block(const std::string& tag, const std::vector<double>& values, std::string& text) {
  constexpr std::size_t values_in_line = 6;
  text += '>' + tag + " // " + std::to_string(values.size()) + '\n';
  for (std::size_t index = 0; index < values.size(); ++index) {
    text += pad_field(format_number(values[index], "0.000000E+00"), 15);
    if ((index + 1) % values_in_line == 0 || index + 1 == values.size()) {
      text += '\n';
    }
  }
}

/// One value for each frequency.
template <class Value>
std::vector<double> each(const EdiSection& section, Value value) {
  std::vector<double> values;
  values.reserve(section.frequencies.size());
  for (std::size_t index = 0; index < section.frequencies.size(); ++index) {
    values.push_back(value(index));
  }
  return values;
}

void append_impedances(const EdiSection& section, std::size_t element, std::string& text) {
  const TensorElement& tensor = section.elements[element];
  const std::string tag = "Z" + std::string(element_names[element]);
  append_block(tag + "R ROT=NORTH", each(section, [&](auto k) { return tensor.impedance[k].real(); }), text);
  append_block(tag + "I ROT=NORTH", each(section, [&](auto k) { return tensor.impedance[k].imag(); }), text);
  // Of the complex value: both parts have the deviation.
  append_block(tag + ".VAR ROT=NORTH",
               each(section, [&](auto k) { return 2.0 * tensor.deviation[k] * tensor.deviation[k]; }), text);
}

// Errors by first-order propagation: d rho / rho = 2 d|Z| / |Z|, d phi = d|Z| / |Z|.
void append_resistivities(const EdiSection& section, std::size_t element, std::string& text) {
  const TensorElement& tensor = section.elements[element];
  const std::string name(element_names[element]);
  const auto resistivity = [&](std::size_t k) {
    return numerics::impedance::apparent_resistivity(tensor.impedance[k], section.frequencies[k]);
  };
  const auto relative_error = [&](std::size_t k) {
    return tensor.deviation[k] / std::abs(tensor.impedance[k]);
  };
  append_block("RHO" + name, each(section, resistivity), text);
  append_block("RHO" + name + ".ERR",
               each(section, [&](auto k) { return 2.0 * resistivity(k) * relative_error(k); }), text);
  append_block("PHS" + name,
               each(section, [&](auto k) { return numerics::impedance::phase_degrees(tensor.impedance[k]); }),
               text);
  append_block("PHS" + name + ".ERR",
               each(section, [&](auto k) { return numerics::degrees_per_radian * relative_error(k); }), text);
}

void append_tipper(const EdiSection& section, std::size_t element, std::string& text) {
  const TensorElement& tipper = section.tipper[element];
  const std::string tag = element == 0 ? "TX" : "TY";
  append_block(tag + "R.EXP ROT=TROT", each(section, [&](auto k) { return tipper.impedance[k].real(); }),
               text);
  append_block(tag + "I.EXP ROT=TROT", each(section, [&](auto k) { return tipper.impedance[k].imag(); }),
               text);
  append_block(tag + "VAR.EXP ROT=TROT",
               each(section, [&](auto k) { return 2.0 * tipper.deviation[k] * tipper.deviation[k]; }), text);
}

}  // namespace

std::string edi_text(const EdiSection& section) {
  std::string text;
  append_head(section, text);
  append_channels(section, text);
  text += ">=MTSECT\n  SECTID=\"" + section.section_id +
          "\"\n  NFREQ=" + std::to_string(section.frequencies.size()) + "\n  HX=1001.001\n  HY=1002.001" +
          (section.has_tipper() ? "\n  HZ=1005.001" : "") + "\n  EX=1003.001\n  EY=1004.001\n\n";
  append_block("FREQ ORDER=DEC", section.frequencies, text);
  append_block("ZROT", std::vector<double>(section.frequencies.size(), 0.0), text);
  for (std::size_t element = 0; element < section.elements.size(); ++element) {
    append_impedances(section, element, text);
    append_resistivities(section, element, text);
  }
  if (section.has_tipper()) {
    append_block("TROT.EXP", std::vector<double>(section.frequencies.size(), 0.0), text);
    append_tipper(section, 0, text);
    append_tipper(section, 1, text);
  }
  return text + ">END\n";
}

}  // namespace Module_samples
