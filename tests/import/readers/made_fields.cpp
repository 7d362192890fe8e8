#include "tests/import/readers/made_fields.h"

#include <algorithm>
#include <cstdio>

namespace {

using Complex = std::complex<double>;
using Fields = std::array<Complex, 7>;

std::string number(const char* picture, double value) {
  std::array<char, 40> text{};
  std::snprintf(text.data(), text.size(), picture, value);
  return text.data();
}

// What the seven channels record of source k.
Fields fields_of(int k, const MadeTensor& z) {
  constexpr std::array<Complex, 4> hx{Complex{1.0, 0.2}, Complex{-0.3, 0.8}, Complex{0.1, -0.6},
                                      Complex{0.7, 0.7}};
  constexpr std::array<Complex, 4> hy{Complex{0.4, -0.5}, Complex{0.9, 0.1}, Complex{-0.8, 0.3},
                                      Complex{0.2, 0.6}};
  const Complex x = hx.at(static_cast<std::size_t>(k));
  const Complex y = hy.at(static_cast<std::size_t>(k));
  return {x, y, 0.1 * x, z[0] * x + z[1] * y, z[2] * x + z[3] * y, 30.0 * x - 4.0 * y, 5.0 * x + 20.0 * y};
}

}  // namespace

MadeChannels channels_by_id() {
  return {
      ">HMEAS ID=11.1 CHTYPE=HX X=11 Y=22 Z=33 AZM=12.5\n>HMEAS ID=12.1 CHTYPE=HY X=0 Y=0 AZM=90\n"
      ">HMEAS ID=13.1 CHTYPE=HZ X=0 Y=0\n>EMEAS ID=14.1 CHTYPE=EX X=0 Y=0 X2=1 Y2=0\n"
      ">EMEAS ID=15.1 CHTYPE=EY X=0 Y=0 X2=0 Y2=1\n>HMEAS ID=16.1 CHTYPE=HX X=900 Y=900 Z=9 AZM=1\n"
      ">HMEAS ID=17.1 CHTYPE=HY X=900 Y=900 AZM=91\n",
      "// 7\n 11.1\n 12.1\n 13.1\n 14.1\n 15.1\n 16.1\n 17.1\n",
      {0, 1, 2, 3, 4, 5, 6}};
}

MadeChannels channels_by_keyword() {
  return {
      ">HMEAS ID=1 CHTYPE=HX X=11 Y=22 Z=33 AZM=12.5\n>HMEAS ID=2 CHTYPE=HY X=0 Y=0 AZM=90\n"
      ">EMEAS ID=3 CHTYPE=EX X=0 Y=0 X2=1 Y2=0\n>EMEAS ID=4 CHTYPE=EY X=0 Y=0 X2=0 Y2=1\n",
      " EY=4\n EX = 3\n HY=2\n HX=1\n",
      {4, 3, 1, 0, -1, -1, -1}};
}

std::string made_spectra_block(const MadeFrequency& made, const MadeChannels& channels) {
  std::size_t count = 0;
  while (count < channels.order.size() && channels.order[count] >= 0) {
    ++count;
  }
  std::string text = ">SPECTRA FREQ=" + number("%.6E", made.frequency) + " " + made.options + " // " +
                     std::to_string(count * count) + "\n";
  for (std::size_t row = 0; row < count; ++row) {
    for (std::size_t column = 0; column < count; ++column) {
      Complex power;  // of the channel of the lesser row times the conjugate of the other
      for (int k = 0; k < 4; ++k) {
        const Fields fields = fields_of(k, made.tensor);
        power += fields.at(static_cast<std::size_t>(channels.order[std::min(row, column)])) *
                 std::conj(fields.at(static_cast<std::size_t>(channels.order[std::max(row, column)])));
      }
      text += number(" %.9E", row < column ? -power.imag() : power.real());
    }
    text += "\n";
  }
  return text;
}

std::string made_spectra(const std::vector<MadeFrequency>& frequencies, const MadeChannels& channels) {
  std::string text = ">HEAD\n  DATAID=\"MADE\"\n  FILEDATE=10/22/19\n>=DEFINEMEAS\n  REFELEV=158\n" +
                     channels.definitions +
                     ">=SPECTRASECT\n  SECTID=\"12\"\n  NFREQ=" + std::to_string(frequencies.size()) + "\n" +
                     channels.list + "\n";
  for (const MadeFrequency& made : frequencies) {
    text += made_spectra_block(made, channels);
  }
  return text + ">END\n";
}

std::string made_fixed_columns(const std::vector<MadeRecord>& records) {
  std::string head(66, ' ');
  const auto put = [&](std::size_t column, const std::string& text) {
    head.replace(column - 1, text.size(), text);
  };
  put(1, "DC20191021");
  put(14, "20191105");
  put(24, "Notch");
  put(29, "  1250");
  put(48, "   50");
  put(53, "  100");
  put(62, "12.50");
  std::string text = head + "\n";
  for (const MadeRecord& made : records) {
    std::string record = number("%10.4f", made.frequency) +
                         "         1      99.0       3.0         4       5.0       6.0" +
                         number("%10.4f", made.scalar);
    for (const double value : made.impedance) {
      record += number("%10.3e", value);
    }
    for (const double value : made.variance) {
      record += number("%10.3e", value);
    }
    text += record.substr(0, 80) + "\n" + record.substr(80, 80) + "\n" + record.substr(160) + "\n";
  }
  return text;
}
