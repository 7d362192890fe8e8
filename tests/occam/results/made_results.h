// made_results.h: a small finished run in a folder: five columns of blocks in two layers, two iterations,
// sites over the second and the fourth block.
#pragma once
#include <string>
#include <vector>

#include "tests/formats/occam/made_run.h"

namespace made {

// Node lines across at -900 100 110 130 160 200 1200 m, down at 0 20 40 540 m.
inline const std::string results_mesh =
    " a mesh\n     0     7     4     0     0     2\n"
    " 1000.0 10.0 20.0 30.0 40.0 1000.0\n 20.0 20.0 500.0\n     0\n"
    "??????\n??????\n??????\n??????\n??????\n??????\n??????\n??????\n??????\n??????\n??????\n??????\n";

inline const std::string results_model =
    "FORMAT:           OCCAM2MTMOD_1.0\nMODEL NAME:       by hand\nDESCRIPTION:      SIMPLE INVERSION\n"
    "MESH FILE:        MESH\nMESH TYPE:        PW2D\nSTATICS FILE:     none\nPREJUDICE FILE:   none\n"
    "BINDING OFFSET:   100.0\nNUM LAYERS:       2\n"
    "     1     5\n     1     1     1     2     1\n"
    "     2     4\n     1     2     2     1\n"
    "NO. EXCEPTIONS:   0\n";

inline std::string iteration_text(int number, const std::string& parameters) {
  return "FORMAT:           OCCAMITER_1.0\nDESCRIPTION:      by hand\nMODEL FILE:       inmodel\n"
         "DATA FILE:        occamdat\nDATE/TIME:        today\nMAX ITER:         10\nREQ TOL:          1.0\n"
         "IRUF:             1\nDEBUG LEVEL:      1\nITERATION:        " +
         std::to_string(number) +
         "\nPMU:              5.0\nRLAST:            20.5\nTLAST:            " + std::to_string(number + 1) +
         ".25\nIFFTOL:           0\nNO. PARMS:        9\n" + parameters;
}

// Of the blocks from left to right, layer by layer.
inline const std::string nine_parameters = " 2.0 1.0 1.5 2.0 2.0\n 2.0 3.0 2.5 2.0\n";

/// made::data with a row of each of these data types at both sites and frequencies instead.
inline std::string data_of_types(const std::vector<int>& types) {
  std::string rows;
  for (int place = 0; place < 4; ++place) {
    for (const int type : types) {
      rows += std::to_string(place / 2 + 1) + " " + std::to_string(place % 2 + 1) + " " +
              std::to_string(type) + " 1.5 0.25\n";
    }
  }
  return replaced(data.substr(0, data.find("     1           1       5")), "DATABLOCKS     4",
                  "DATABLOCKS     " + std::to_string(4 * types.size())) +
         rows;
}

inline const std::vector<int> computed_types = {1, 2, 3, 4, 5, 6, 9, 10, 13, 14, 15, 16};

/// @param place within the folder, "" or "run/". @return the path of the start file
inline std::string write_results(const TemporaryFolder& folder, const std::string& place = "") {
  static_cast<void>(folder.write(place + "mesh", results_mesh));
  static_cast<void>(folder.write(place + "inmodel", results_model));
  static_cast<void>(folder.write(place + "occamdat", data));
  static_cast<void>(folder.write(place + "ITER_1", iteration_text(1, nine_parameters)));
  static_cast<void>(folder.write(place + "iter_3", iteration_text(3, nine_parameters)));
  return folder.write(place + "startup", iteration_text(0, nine_parameters));
}

}  // namespace made
