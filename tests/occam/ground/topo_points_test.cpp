// The reader of topo files: what counts as a line of data, and each of its messages.
#include "occam/ground/topo_points.h"

#include "tests/formats/occam/made_run.h"

namespace Module_occam {
namespace {

using made::Messages;
using Values = std::vector<double>;

class TopoPointsTest : public made::OccamTest {
 protected:
  LocationsRead read(const std::string& text, const LocationLayout& layout = {}) {
    LocationsRead result;
    EXPECT_EQ(read_locations_file(folder.write("line.dat", text), layout, result), 0);
    return result;
  }
};

TEST_F(TopoPointsTest, Takes_pairs_of_numbers_whatever_is_between_them) {
  const LocationsRead result = read(
      "0 100\n! 1 2\n\\ 3 4\n50,101.5\r\n100;\t-2e1\r'150' ,'1.5E2' more\n"
      "west 7\n200\n250 high\n\n300 1e999\n350 +.5");
  EXPECT_EQ(result.points.station, (Values{0, 50, 100, 150, 350}));
  EXPECT_EQ(result.points.elevation, (Values{100, 101.5, -20, 150, 0.5}));
  EXPECT_EQ(left_out_text(result.left_out),
            "4 lines are left out, the first is line 7: no number for the station or the elevation");
  EXPECT_EQ(left_out_text(read("station elevation\n0 1\n").left_out),
            "Line 1 is left out: no number for the station or the elevation");
  EXPECT_EQ(left_out_text(read("! station elevation\n\n0 1\n \n").left_out), "");
}

TEST_F(TopoPointsTest, Follows_first_line_step_and_columns) {
  const std::string text =
      "station data 1 2\n! a comment counts as a line\na 900 0 b\na 1 1 b\n!\na 901 10 b\na 1 2 b\na 902 20 "
      "b\n";
  const LocationsRead result = read(text, {3, 2, 3, 2});
  EXPECT_EQ(result.points.station, (Values{0, 10, 20}));
  EXPECT_EQ(result.points.elevation, (Values{900, 901, 902}));
  EXPECT_EQ(result.left_out.count, 0) << "what no step reaches is no data";
  EXPECT_TRUE(read(text, {100, 1, 3, 2}).points.station.empty());
  EXPECT_TRUE(read(text, {1, 1, 2000000000, 2}).points.station.empty());
  EXPECT_EQ(read(text, {3, 2000000000, 3, 2}).points.station, Values{0});
}

TEST_F(TopoPointsTest, Tells_what_is_wrong_with_the_entries_in_their_order) {
  const std::string file = folder.write("line.dat", "1 2\n");
  const LocationEntries sound{file, "1", "1", "1", "2"};
  struct Case {
    std::string LocationEntries::*entry;
    std::string text;
    std::string message;
  };
  const Case cases[] = {
      {&LocationEntries::file, " ", "No data file has been specified"},
      {&LocationEntries::file, folder.path("none.dat"), "The specified data file does not exist"},
      {&LocationEntries::first_line, "one", "The number of the first data line is not numeric"},
      {&LocationEntries::first_line, "0", "The number of the first data line must be positive"},
      {&LocationEntries::first_line, "-1e300", "The number of the first data line must be positive"},
      {&LocationEntries::line_step, "0.5", "The step between lines of data must be positive"},
      {&LocationEntries::line_step, "2O", "The step between lines of data is not numeric"},
      {&LocationEntries::station_column, "1l", "The station column location is not numeric"},
      {&LocationEntries::station_column, "x", "The station column location must be positive"},
      {&LocationEntries::station_column, "-1", "The station column location must be positive"},
      {&LocationEntries::elevation_column, "", "The elevation column location is not numeric"},
      {&LocationEntries::elevation_column, "0", "The elevation column location must be positive"},
      {&LocationEntries::station_column, "3", "No valid station values were read"},
      {&LocationEntries::elevation_column, "3", "No valid elevation coordinate values were read"},
      {&LocationEntries::first_line, "1e300", "No valid station values were read"}};
  Topo topo;
  ASSERT_EQ(load_locations(sound, topo), 0);
  for (const Case& c : cases) {
    SCOPED_TRACE(c.message);
    LocationEntries entries = sound;
    entries.*c.entry = c.text;
    EXPECT_EQ(load_locations(entries, topo), -1);
    EXPECT_EQ(interface.take_messages(), Messages{c.message});
    EXPECT_EQ(topo.points.station, Values{1});
  }
  LocationEntries entries = sound;
  entries.file = folder.folder().string();
  EXPECT_EQ(load_locations(entries, topo), -1);
  const Messages messages = interface.take_messages();
  ASSERT_EQ(messages.size(), 1U);
  EXPECT_TRUE(messages.front().starts_with("An error occurred while reading the location file : "));
}

TEST_F(TopoPointsTest, The_curve_takes_points_in_any_order_and_the_mean_of_those_at_one_station) {
  Topo topo;
  ASSERT_EQ(load_locations({folder.write("line.dat", "200 7\n0 5\n100 10\n100 20\n100 30\n")}, topo), 0);
  EXPECT_EQ(topo.points.station.size(), 5U);
  EXPECT_EQ(topo.curve.x, (Values{0, 100, 200}));
  EXPECT_EQ(topo.curve.y, (Values{5, 20, 7}));
  EXPECT_EQ(topo.highest_elevation(), 30.0);

  EXPECT_EQ(load_locations({folder.write("line.dat", "0 1e300\n1e-300 -1e300\n1 1e300\n")}, topo), -1);
  EXPECT_EQ(
      interface.take_messages(),
      Messages{"An error occurred while loading the topo values: the curve is too steep between its points"});
  EXPECT_EQ(topo.points.station.size(), 5U);
}

}  // namespace
}  // namespace Module_occam
