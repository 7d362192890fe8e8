// made_run.h: a small run of an inversion by hand, and a test that reads it.
#pragma once
#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "occam/occam_files.h"
#include "tests/support/recording_interface.h"
#include "tests/support/temporary_folder.h"

namespace made {

// Two rows and four columns of cells; a fixed resistivity fills the upper left cell.
inline const std::string mesh =
    " a mesh\n"
    "     0     5     3     1     0     2\n"
    " 1000.0\n"
    "  30.0  10.0\n\n  20.0, 40.0\n"
    "  5.0  50.0\n"
    "     0\n"
    "1???\n1???\n1???\n1???\n"
    "????\n????\n????\n????\n";

// The first layer: a fixed block of one column, free blocks of two and one; the second: two blocks.
inline const std::string model =
    "FORMAT:           OCCAM2MTMOD_1.0\n"
    "MODEL NAME:       by hand\n"
    "DESCRIPTION:      SIMPLE INVERSION\n"
    "MESH FILE:        MESH\n"
    "MESH TYPE:        PW2D\n"
    "STATICS FILE:     none\n"
    "PREJUDICE FILE:   none\n"
    "BINDING OFFSET:   100.0\n"
    "NUM LAYERS:       2\n"
    "     1     3\n"
    "     1\n     2    1\n"
    "     1     2\n"
    "     1     3\n"
    "NO. EXCEPTIONS:   0\n";

// Two sites and two frequencies, with the rows of one component.
inline const std::string data =
    "FORMAT            OCCAM2MTDATA_1.0\n"
    "TITLE             by hand\n"
    "SITES             2\n"
    "station_110.0\nstation_130.0\n"
    "OFFSETS\n"
    "       110.0\n       130.0\n"
    "FREQUENCIES       2\n"
    "      1.0000\n     10.0000\n"
    "NO.DATABLOCKS     4\n"
    "SITE,FREQUENCY,DATATYPE,DATUM,ERROR\n"
    "     1           1       5       2.0000      0.1000\n"
    "     1           1       6      45.0000      2.0000\n"
    "     2           2       5       3.0000      0.1000\n"
    "     2           2       6      30.0000      2.0000\n";

inline std::string replaced(std::string text, const std::string& part, const std::string& by) {
  const std::size_t at = text.find(part);
  EXPECT_NE(at, std::string::npos) << part;
  return at == std::string::npos ? text : text.replace(at, part.size(), by);
}

inline std::string with_crlf(const std::string& text) {
  std::string result;
  for (const char c : text) {
    result += c == '\n' ? std::string("\r\n") : std::string(1, c);
  }
  return result;
}

using Messages = std::vector<std::string>;

class OccamTest : public ::testing::Test {
 protected:
  TemporaryFolder folder;
  RecordingInterface interface;
};

}  // namespace made
