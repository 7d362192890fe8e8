// made_inversion.h: a small run that can be inverted: 36 blocks, three sites, three frequencies, both modes;
// the data are those of a known ground with errors that alternate about it.
#pragma once
#include <cmath>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "core/number_text.h"
#include "formats/occam/data_file.h"
#include "formats/occam/model_file.h"
#include "occam/results/model_response.h"
#include "tests/support/temporary_folder.h"

namespace made {

inline constexpr int inverted_blocks = 36;

// Node lines across from -11500 m, each 200 m between 0 and 1600 m.
inline std::string inverted_mesh() {
  std::string text =
      " a mesh\n 0 17 9 0 0 2\n 8000 2500 1000 200 200 200 200 200 200 200 200 200 200 1000 2500 8000\n"
      " 50 50 100 200 400 800 1600 3200\n 0\n";
  for (int line = 0; line < 8 * 4; ++line) {
    text += std::string(16, '?') + "\n";
  }
  return text;
}

inline std::string inverted_model(const std::string& statics = "none") {
  std::string text =
      "FORMAT:           OCCAM2MTMOD_1.0\nMODEL NAME:       no exceptions\nDESCRIPTION:      SIMPLE "
      "INVERSION\n"
      "MESH FILE:        mesh\nMESH TYPE:        PW2D\nSTATICS FILE:     " +
      statics + "\nPREJUDICE FILE:   none\nBINDING OFFSET:   0.0\nNUM LAYERS:       6\n";
  for (const int rows : {2, 1, 1, 1, 1, 2}) {
    text += " " + std::to_string(rows) + " 6\n 4 2 2 2 2 4\n";
  }
  return text + "NO. EXCEPTIONS:   0\n";
}

/// @param parameters  log10 ohm-m, one for all
inline std::string inverted_start(const std::string& iterations = "20", const std::string& target = "1.0",
                                  int parameters = inverted_blocks) {
  std::string text =
      "FORMAT:           OCCAMITER_1.0\nDESCRIPTION:      by hand\nMODEL FILE:       inmodel\n"
      "DATA FILE:        occamdat\nDATE/TIME:        today\nMAX ITER:         " +
      iterations + "\nREQ TOL:          " + target +
      "\nIRUF:             1\nDEBUG LEVEL:      1\nITERATION:        0\nPMU:              5.0\n"
      "RLAST:            1.e+07\nTLAST:            100\nIFFTOL:           0\nNO. PARMS:        " +
      std::to_string(parameters) + "\n";
  for (int parameter = 0; parameter < parameters; ++parameter) {
    text += "  2.5\n";
  }
  return text;
}

inline std::vector<double> true_ground() {
  std::vector<double> ground(inverted_blocks, 2.0);
  ground[1 * 6 + 2] = 0.7;
  ground[2 * 6 + 2] = 0.7;
  ground[2 * 6 + 4] = 3.0;
  return ground;
}

/// @param te_shift  decades, added to the TE resistivities of site 2
inline std::string inverted_data(const TemporaryFolder& folder, double te_shift = 0.0) {
  using namespace Module_occam;
  DataFile table;
  table.positions = {200.0F, 600.0F, 1400.0F};
  table.frequencies = {1000.0F, 100.0F, 10.0F};
  table.site_names = {"station_200.0", "pb27", "station_1400.0"};
  for (int site = 1; site <= 3; ++site) {
    for (int frequency = 1; frequency <= 3; ++frequency) {
      for (const Mode& mode : modes) {
        table.rows.push_back({site, frequency, mode.resistivity, 0.0, 0.02});
        table.rows.push_back({site, frequency, mode.phase, 0.0, 1.0});
      }
    }
  }
  const ObservedData observed = read_data_file(folder.write("occamdat", data_file_text(table)));
  OccamData sites;
  sites.site_offsets = table.positions;
  const OccamModel blocks = read_model_file(folder.folder(), "inmodel", sites);
  const auto modelled = model_data(blocks, true_ground(), observed, [](double) { return true; });
  for (std::size_t row = 0; row < table.rows.size(); ++row) {
    DataRow& entry = table.rows[row];
    entry.datum = modelled->modelled[row] + (row % 3 == 0 ? 0.8 : -0.5) * entry.error;
    if (entry.site_number == 2 && entry.type == DataType::te_resistivity) {
      entry.datum += te_shift;
    }
  }
  return data_file_text(table);
}

inline void write_inversion(const TemporaryFolder& folder, double te_shift = 0.0) {
  static_cast<void>(folder.write("mesh", inverted_mesh()));
  static_cast<void>(folder.write("inmodel", inverted_model()));
  static_cast<void>(folder.write("occamdat", inverted_data(folder, te_shift)));
  static_cast<void>(folder.write("startup", inverted_start()));
}

/// Files that hold the same words and, to within a part, the same numbers. Iteration files have seven digits,
/// responses five.
inline constexpr double iteration_part = 1e-5;
inline constexpr double response_part = 1e-4;

inline void expect_same_numbers(const std::string& a, const std::string& b, double tolerance) {
  const auto items = [](const std::string& text) {
    std::vector<std::string> result(1);
    for (const char c : text) {
      if (c == ' ' || c == '\n') {
        result.emplace_back();
      } else {
        result.back() += c;
      }
    }
    std::erase(result, "");
    return result;
  };
  const std::vector<std::string> of_a = items(a);
  const std::vector<std::string> of_b = items(b);
  ASSERT_EQ(of_a.size(), of_b.size());
  for (std::size_t item = 0; item < of_a.size(); ++item) {
    if (is_numeric(of_a[item]) && is_numeric(of_b[item])) {
      const double number = numeric_value(of_a[item]);
      ASSERT_NEAR(number, numeric_value(of_b[item]), tolerance * (1.0 + std::abs(number))) << "item " << item;
    } else {
      ASSERT_EQ(of_a[item], of_b[item]) << "item " << item;
    }
  }
}

}  // namespace made
