#include "projections/definition_list.h"

#include <algorithm>
#include <memory>

#include <gtest/gtest.h>

#include "core/session_state.h"
#include "platform/settings_store/settings_store.h"
#include "projections/projection_file.h"
#include "tests/projections/definitions.h"
#include "tests/support/recording_interface.h"
#include "tests/support/temporary_folder.h"

using namespace Module_projections;
using Names = std::vector<std::string>;

class Definition_list : public ::testing::Test {
 protected:
  Definition_list() {
    reset_session_state();
    earlier_ = install_settings_store(std::make_unique<MemorySettingsStore>());
  }

 public:
  ~Definition_list() override { install_settings_store(std::move(earlier_)); }

 protected:
  Names listed() const {
    Names names;
    for (const CoordSystem& definition : coord_systems) {
      names.push_back(definition.name);
    }
    return names;
  }
  static Names stored() { return settings_store().keys("Marrowgate", "Projection"); }
  static std::string stored_text(const std::string& name) {
    return settings_store().value("Marrowgate", "Projection", name, "none");
  }
  static void put_into_store(const std::string& name, const std::string& text) {
    settings_store().set_value("Marrowgate", "Projection", name, text);
  }
  void add(const CoordSystem& definition) {
    ASSERT_EQ(add_coord_definitions_to_list(coord_systems, definition), 0);
  }
  void restart() { ASSERT_EQ(load_coord_system_definitions(coord_systems), 0); }
  int read(const std::string& contents) {
    std::string path = folder.write("projection.csv", contents);
    return read_coord_projection_file(path, coord_systems);
  }

  CoordSystems coord_systems;
  TemporaryFolder folder;
  RecordingInterface interface;

 private:
  std::unique_ptr<SettingsStore> earlier_;
};

TEST_F(Definition_list, Keeps_names_and_values_once_each_in_order_of_names) {
  add(zone_definition("mga 55", 55));
  add(zone_definition("MGA 54", 54));
  add(zone_definition("AMG", 50));
  add(zone_definition("  ", 51));
  EXPECT_EQ(listed(), (Names{"AMG", "MGA 54", "mga 55"}));
  ASSERT_EQ(save_coord_system_definitions(coord_systems, 0), 0);
  EXPECT_EQ(stored_text("mga 55"), "4283;2;2;0;0;0;0;0;0;0;6;55");

  add(zone_definition("MGA 55", 55));  // the same but for the case of its letters
  EXPECT_EQ(listed(), (Names{"AMG", "MGA 54", "mga 55"}));

  add(zone_definition("MGA 54", 49));  // the name with other values
  EXPECT_EQ(coord_systems[1].zone_number, 49);

  add(zone_definition("zone 50", 50));  // the values under another name
  EXPECT_EQ(listed(), (Names{"MGA 54", "mga 55", "zone 50"}));
  EXPECT_EQ(stored(), (Names{"MGA 54", "mga 55"}));  // the new one waits for being saved
  EXPECT_TRUE(interface->messages.empty());

  add(zone_definition("mga 55", 49));  // the name of one with the values of another
  EXPECT_EQ(listed(), (Names{"mga 55", "zone 50"}));
  EXPECT_EQ(stored(), Names{"mga 55"});
}

TEST_F(Definition_list, Comes_back_from_the_store_exactly) {
  add(lambert_definition("Lambert / mine | for \"north\""));
  add(zone_definition("MGA 55", 55));
  ASSERT_EQ(save_coord_system_definitions(coord_systems, 1), 0);
  EXPECT_EQ(stored(), Names{"Lambert / mine | for \"north\""});
  EXPECT_EQ(save_coord_system_definitions(coord_systems, 3), -1);
  EXPECT_EQ(interface.take_messages(),
            Names{"An error occurred while adding the saving the coordinate system definitions: there is no "
                  "definition 3"});
  restart();
  ASSERT_EQ(coord_systems.size(), 1U);
  EXPECT_TRUE(compare_coordinate_system_values(coord_systems[0], lambert_definition("")));
}

TEST_F(Definition_list, Loses_malformed_entries_of_the_store_for_good) {
  put_into_store("eleven fields", "4283;2;2;0;0;0;0;0;0;0;6");
  put_into_store("no number", "4283;2;2;0;x;0;0;0;0;0;6;55");
  put_into_store("no whole number", "4283;2;2;0;0;0;0;0;0;0;6;5.5");
  put_into_store("too large", "42830000000;2;2;0;0;0;0;0;0;0;6;55");
  put_into_store("nothing", "");
  put_into_store("cut", "4283;2;2;0;0;0;0;0;0;0;6;");
  put_into_store("good", "4283;2;2;0;0;0;0;0;0;0;6;55");
  put_into_store("good, with blanks and more", " 4283 ; 2;2;;0;0;0;0;0;0.9996;6;55;more");
  session().debug_level = 1;
  session().environment.application_data_directory = folder.folder().string();
  restart();
  session().debug_level = 0;
  EXPECT_EQ(listed(), (Names{"good", "good, with blanks and more"}));
  EXPECT_EQ(coord_systems[1].datum, 4283);
  EXPECT_EQ(stored(), listed());
  const std::string log = file_contents(folder.path("Brenlox_debug.log"));
  for (const char* const text : {"load_coord_system_definitions", "coord_system zone_width invalid",
                                 "coord_system zone_number invalid", "coord_system Origin_Latitude invalid",
                                 "coord_system datum invalid"}) {
    EXPECT_NE(log.find(text), std::string::npos) << text;
  }
}

TEST_F(Definition_list, Collapses_equal_values_under_two_names_into_the_later_one) {
  put_into_store("A", "4283;2;2;0;0;0;0;0;0;0;6;55");
  put_into_store("B", "4283;2;2;0;0;0;0;0;0;0;6;55");
  restart();
  EXPECT_EQ(listed(), Names{"B"});
  EXPECT_EQ(stored(), Names{"B"});
}

TEST_F(Definition_list, Stored_names_lose_what_is_around_them) {
  put_into_store(" AMG\t", "4283;2;2;0;0;0;0;0;0;0;6;50");
  put_into_store(" MGA ", "4283;2;2;0;0;0;0;0;0;0;6;51");
  put_into_store("MGA", "4283;2;2;0;0;0;0;0;0;0;6;55");
  put_into_store("  ", "4283;2;2;0;0;0;0;0;0;0;6;56");
  restart();
  EXPECT_EQ(listed(), (Names{"AMG", "MGA"}));
  EXPECT_EQ(coord_systems[1].zone_number, 55);
  EXPECT_EQ(stored(), (Names{"AMG", "MGA"}));
}

TEST_F(Definition_list, Goes_through_a_file_and_comes_back) {
  const Names names{"\"quoted\", with comma | and, \"so\" on", "Lambert | a|b", "None of these", "zone Süd"};
  for (std::size_t index = 0; index < names.size(); ++index) {
    add(index == 1 ? lambert_definition(names[index])
                   : zone_definition(names[index], static_cast<int>(index) + 50));
  }
  const std::vector<CoordSystem> written = coord_systems;
  const std::string path = folder.path("projection.csv");
  CoordSystem of_two_lines = zone_definition("zone", 60);
  of_two_lines.name = "zone | of two\r\nlines";
  ASSERT_EQ(write_coord_projection_file(path, {of_two_lines}), 0);
  EXPECT_EQ(std::ranges::count(file_contents(path), '\n'), 2) << "a heading and one definition";
  ASSERT_EQ(write_coord_projection_file(path, coord_systems), 0);
  EXPECT_EQ(
      file_contents(path).substr(0, file_contents(path).find("\r\n")),
      "Name,Datum,projection,hemisphere,Origin_Longitude,Origin_Latitude,Standard_parallel_1,"
      "Standard_parallel_2,Description,False_easting,False_northing,Scale_factor,Zone_width,Zone_number,ERM");
  coord_systems.clear();
  std::string again = path;
  ASSERT_EQ(read_coord_projection_file(again, coord_systems), 0);
  EXPECT_EQ(listed(), names);
  for (std::size_t index = 0; index < written.size(); ++index) {
    EXPECT_TRUE(compare_coordinate_system_values(coord_systems[index], written[index]));
  }
  EXPECT_EQ(write_coord_projection_file(folder.path("no/such/folder.csv"), coord_systems), -1);
  EXPECT_EQ(
      interface.take_messages().at(0).find("An error occurred while writing the coordinate projection file "),
      0U);
}

TEST_F(Definition_list, Reads_files_as_other_programs_write_them) {
  const std::string header =
      "Name,Datum,projection,hemisphere,Origin_Longitude,Origin_Latitude,Standard_parallel_1,"
      "Standard_parallel_2,Description,False_easting,False_northing,Scale_factor,Zone_width,Zone_number,ERM";
  const std::string line = "4283,2,2,0,0,0,0,plain,500000,1e7,0.9996,6,55";
  const std::string files[] = {
      header + "\r\n\r\nNone,,,\r\nMGA 55," + line + ",x,y,z\r\n",  // more than is asked for
      "\xEF\xBB\xBF" + header + "\n  \"MGA 55\"  , " + line,        // mark, quotes, no last line end
      header + "\rMGA 55,\"4283\",2,2,,,,, plain ,500000,10000000,.9996,6,55\rNone",  // CR, nothing is 0
      "Zone_number,ERM,NAME,datum,Projection,Hemisphere,Origin_Longitude,Origin_Latitude,Standard_parallel_1,"
      "Standard_parallel_2,Description,False_easting,False_northing,Scale_factor,Zone_width\n"
      "55,?,MGA 55,4283,2,2,0,0,0,0,plain,500000,10000000,0.9996,6\n",  // another order
  };
  CoordSystem expected = zone_definition("MGA 55 | plain", 55);
  expected.false_easting = 500000.0;
  expected.false_northing = 1e7;
  expected.scale_factor = 0.9996;
  for (const std::string& file : files) {
    SCOPED_TRACE(file);
    coord_systems.clear();
    ASSERT_EQ(read(file), 0);
    ASSERT_EQ(listed(), Names{expected.name});
    EXPECT_TRUE(compare_coordinate_system_values(coord_systems[0], expected));
  }
  EXPECT_TRUE(interface->messages.empty());
}

TEST_F(Definition_list, Takes_nothing_of_a_file_with_a_fault_and_says_where_it_is) {
  const std::string header =
      "Name,Datum,projection,hemisphere,Origin_Longitude,Origin_Latitude,Standard_parallel_1,"
      "Standard_parallel_2,Description,False_easting,False_northing,Scale_factor,Zone_width,Zone_number,ERM\n"
      "Good,4283,2,2,0,0,0,0,,0,0,0,6,54\n";
  struct Case {
    std::string file;
    const char* fault;
  };
  const Case cases[] = {
      {header + "\nBad,4283,2,2,0,0,0,0,,0,0,0,6", "line 4: there are 13 columns where 14 are needed"},
      {header + "Bad,4283,2,2,0,0,0,0,,0,0,0,6deg,55", "line 3: '6deg' in column Zone_width is not a number"},
      {header + "Bad,4283.5,2,2,0,0,0,0,,0,0,0,6,55",
       "line 3: '4283.5' in column Datum is not a whole number"},
      {header + "\"Bad,4283,2,2,0,0,0,0,,0,0,0,6,55", "line 3: a quote has no end"},
      {"Name,projection,hemisphere,Origin_Longitude,Origin_Latitude,Standard_parallel_1,Standard_parallel_2,"
       "False_easting,False_northing,Scale_factor,Zone_width,Zone_number,Datum\nBad,2,2,0,0,0,0,0,0,0,6,54",
       "line 2: there are 12 columns where 13 are needed"},
      {"Name;Datum\nBad;4283", "the header has no column Name"},
      {"Name,Datum,projection,hemisphere\nBad,1,2,3", "the header has no column Origin_Longitude"},
      {std::string("\xFF\xFEN\0\n\0x\0", 8), "the header has no column Name"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.fault);
    EXPECT_EQ(read(c.file), -1);
    EXPECT_EQ(interface.take_messages(),
              Names{std::string("An error occured while reading the projection definitions: ") + c.fault});
    EXPECT_TRUE(coord_systems.empty());
    EXPECT_TRUE(std::filesystem::exists(folder.path("projection.csv")));
  }
}

TEST_F(Definition_list, A_file_without_definitions_is_named_and_moved_only_at_the_default_place) {
  session().environment.application_data_directory = folder.folder().string();
  for (const char* const contents : {"", "Name,Datum\n\n", "Name,Datum\r\nNone,0\r\nNone\r\n   \r\n"}) {
    SCOPED_TRACE(contents);
    const std::string picked = folder.write("picked.csv", contents);
    std::string path = picked;
    EXPECT_EQ(read_coord_projection_file(path, coord_systems), -1);
    EXPECT_EQ(interface.take_messages(), Names{"An error occured while reading the projection definitions: "
                                               "there is no definition in " +
                                               picked});
    EXPECT_EQ(file_contents(picked), contents);
    EXPECT_FALSE(std::filesystem::exists(picked + ".bak"));

    (void)folder.write("projection.csv", contents);
    path.clear();
    ASSERT_EQ(read_coord_projection_file(path, coord_systems), 0);
    EXPECT_FALSE(std::filesystem::exists(folder.path("projection.csv")));
    EXPECT_EQ(file_contents(folder.path("projection.csv.bak")), contents);
  }
  EXPECT_TRUE(interface->messages.empty());
}

TEST_F(Definition_list, Looks_for_the_default_file_in_the_users_folder_then_in_the_programs) {
  session().environment.application_data_directory = folder.path("user");
  session().environment.program_directory = folder.path("program");
  std::string path;
  EXPECT_FALSE(has_default_projection_file());
  EXPECT_EQ(read_coord_projection_file(path, coord_systems), -1);
  EXPECT_EQ(path, folder.path("user/projection.csv"));
  EXPECT_EQ(interface.take_messages(),
            Names{"An error occured while reading the projection definitions: " + path + " doesn't exist"});
  coord_systems.push_back(zone_definition("Program's", 50));
  (void)folder.write("program/projection.csv", definitions_as_csv(coord_systems));
  path.clear();
  EXPECT_TRUE(has_default_projection_file());
  EXPECT_EQ(read_coord_projection_file(path, coord_systems), 0);
  EXPECT_EQ(path, folder.path("program/projection.csv"));
  (void)folder.write("user/projection.csv", definitions_as_csv(coord_systems));
  path.clear();
  EXPECT_EQ(read_coord_projection_file(path, coord_systems), 0);
  EXPECT_EQ(path, folder.path("user/projection.csv"));
}

TEST(Coordinate_system, Is_decoded_or_refused_with_its_first_fault) {
  RecordingInterface interface;
  using Change = void (*)(CoordSystem&);
  struct Case {
    Change change;
    const char* message;
  };
  const Case cases[] = {
      {[](CoordSystem& c) { c.projection = 7; }, "The projection is undefined"},
      {[](CoordSystem& c) { c.projection = -1; }, "The projection is undefined"},
      {[](CoordSystem& c) { c.origin_longitude = 360.5; }, "The Central meridian is invalid"},
      {[](CoordSystem& c) { c.origin_latitude = 90.0; }, "The Central latitude is invalid"},
      {[](CoordSystem& c) { c.standard_parallel_1 = -89.5; }, "Standard latitude 1 is invalid"},
      {[](CoordSystem& c) { c.standard_parallel_2 = 89.5; }, "Standard latitude 2 is invalid"},
      {[](CoordSystem& c) { c.standard_parallel_1 = c.standard_parallel_2; },
       "Standard latitudes 1 and 2 must be distinct"},
      {[](CoordSystem& c) { c.projection = 2; }, "The zone width value is invalid"},
      {[](CoordSystem& c) {
         c.projection = 1;
         c.zone_width = 360.5;
       },
       "The zone width value is invalid"},
      {[](CoordSystem& c) { c.standard_parallel_1 = -c.standard_parallel_2; },
       "An error occurred while adding the decoding the coordinate system Invalid value for an argument"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.message);
    CoordSystem definition = lambert_definition("Lambert");
    c.change(definition);
    EXPECT_EQ(decode_coordinate_system(definition), -1);
    EXPECT_EQ(interface.take_messages(), Names{c.message});
  }
  CoordSystem equal_parallels = lambert_definition("zones don't look at parallels");
  equal_parallels.projection = 2;
  equal_parallels.zone_width = 6.0;
  equal_parallels.standard_parallel_1 = equal_parallels.standard_parallel_2;
  CoordSystem limits = lambert_definition("");
  limits.origin_latitude = limits.standard_parallel_1 = 89.0;
  limits.origin_longitude = -360.0;
  for (CoordSystem good : {CoordSystem{}, lambert_definition(""), equal_parallels, limits}) {
    EXPECT_EQ(decode_coordinate_system(good), 0);
  }
  EXPECT_TRUE(interface->messages.empty());
}
