#include "tests/formats/zonge/made_zonge_raw.h"

#include <array>
#include <cmath>
#include <cstdio>

#include "core/number_text.h"

namespace {

std::string number_text(double value, int width, int digits) {
  std::array<char, 64> text{};
  std::snprintf(text.data(), text.size(), "%*.*g", width, digits, value);
  return text.data();
}

std::string type_line(const std::string& type, const std::string& rest) {
  std::string text = type;
  text.resize(9, ' ');
  return text + "2004-05-12 08:15:22 12.4v " + rest + "\n";
}

std::string data_line(int channel, const std::string& name, double station, double frequency) {
  const bool magnetic = name.front() == 'H';
  return number_text(channel, 2, 2) + " " + name + " " + number_text(station, 7, 7) + " " +
         number_text(magnetic ? 0.0123 : 12.345, 9, 5) + "m " +
         number_text(made_phase(frequency, channel), 7, 5) + " " +
         number_text(magnetic ? 0.0 : made_resistivity(frequency, channel), 10, 6) +
         (channel % 2 == 0 ? " IN " : " O ") + number_text(std::exp2(channel % 5), 4, 4) +
         "  0.8  -3.5mV  1.2k  1\n";
}

const std::array<const char*, 7> names{"", "Hy", "Ex", "Ex", "Ex", "Hx", "Ey"};

}  // namespace

std::string made_block(int number, const std::string& lines) {
  std::string digits = std::to_string(number);
  return std::string(digits.size() < 4 ? 4 - digits.size() : 0, '0') + digits + "\r\n" + lines + "\r\n";
}

double made_resistivity(double frequency, int channel) {
  const double value = 100.0 + 40.0 * std::sin(std::log10(frequency)) + channel;
  return numeric_value(number_text(value, 0, 6));
}

double made_phase(double frequency, int channel) {
  const double value = 45.0 + 10.0 * std::cos(std::log10(frequency)) + 0.1 * channel;
  return numeric_value(number_text(value, 0, 5));
}

std::string made_header(int number, const std::string& configuration, const std::string& spacing) {
  return made_block(number, type_line("CSAMT", configuration) + "OPER 7   TX ID 3   A-SP " + spacing +
                                "   LINE 12 N   Robust   EPROM 32.5\n"
                                "Passed  Gain  Ch  Name  Notch  S/N\n"
                                "  38      8   2   Ex    60    14.2\n"
                                "  40      2   1   Hy    OUT   20\n");
}

std::string made_csamt(int number, double frequency, double first_station) {
  std::string lines = type_line("CSAMT", "") + "Tx 1   Rx " + plain_text(first_station) + " N\n" +
                      plain_text(frequency) +
                      " Hz   64 Bursts   8 Stacks   1024 Samples   16 Cyc   Tx Curr 7.5 A\n"
                      "Ch Name Stn     Mag       Phase   Res   I/O Gain SEM SP CRes Ext\n";
  for (int channel = 1; channel < static_cast<int>(names.size()); ++channel) {
    const std::string name = names[static_cast<std::size_t>(channel)];
    const double offset = channel == 3 || channel == 4 ? 100.0 * (channel - 2) : 0.0;
    lines += data_line(channel, name, first_station + offset, frequency);
  }
  return made_block(number, lines);
}

std::string made_amt(int number, double base_frequency, double station, const std::vector<int>& harmonics) {
  std::string lines = type_line("AMT", "TENSOR") + "Rx " + plain_text(station) +
                      "\nbase frequency: " + plain_text(base_frequency) + " Hz\n";
  const std::array<const char*, 5> tensor{"", "Ex", "Ey", "Hx", "Hy"};
  for (int channel = 1; channel < static_cast<int>(tensor.size()); ++channel) {
    lines += data_line(channel, tensor[static_cast<std::size_t>(channel)], station, base_frequency);
  }
  lines += "HARMONICS\n";
  for (int channel = 1; channel < static_cast<int>(tensor.size()); ++channel) {
    for (const int harmonic : harmonics) {
      const double frequency = base_frequency * harmonic;
      lines += " " + std::to_string(channel) + " " + std::to_string(harmonic) + " 3.21 " +
               number_text(made_phase(frequency, channel), 7, 5) + " " +
               number_text(made_resistivity(frequency, channel), 10, 6) + "\n";
    }
  }
  return made_block(number, lines);
}

std::string made_zonge_raw(int soundings) {
  int number = 1;
  std::string text = made_block(number++, type_line("SYNC", "") + "OPER 7\n");
  text += made_block(number++, type_line("SYNC", "") + "Tx 1 Rx 1\n 1 0.01\n");
  text += made_header(number++);
  for (int sounding = 0; sounding < soundings; ++sounding) {
    for (const double frequency : {4096.0, 512.0, 64.0, 8.0, 0.5}) {
      text += made_csamt(number++, frequency, 100.0 + 300.0 * sounding);
    }
    text += made_block(number++, type_line("CSAMT", "") + "Tx ISys\n 1 Hy 100 1 2 3 O 4\n");
    text += made_block(number++, type_line("csamt", "") + "TX ical  Rx 1\n 1 Hy 100 1 2 3 O 4\n");
    text += made_block(number++, type_line("TEM", "") + "Tx 1\n  1 0.001 5.3\n  2 0.002 4.1\n");
  }
  text += made_block(number++, type_line("RIP", "") + "OPER 7\n");
  text += made_block(number++, type_line("RIP", "") + "Tx 1\n");
  text += made_block(number++, type_line("CR", "") + "Tx 1\n");
  text += made_block(number++, type_line("TDIP", "") + "Tx 1\n");
  text += made_block(number++, type_line("NANOTEM", "") + "Tx 1\n");
  text += made_block(number++, type_line("DIAG", "") + "all well\n");
  return text + made_amt(number, 2.0, 100.0, {7, 3, 5});
}

std::string made_stn(int stations) {
  std::string text = "/line 200\nstn x y elevation\n";
  for (int index = 1; index <= stations; ++index) {
    text += plain_text(100 * index) + ", " + plain_text(500000 + 100 * index) + ", 6200000, " +
            plain_text(350 + index) + "\n";
  }
  return text;
}
