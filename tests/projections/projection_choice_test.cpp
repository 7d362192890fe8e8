#include "projections/projection_choice.h"

#include <memory>

#include <gtest/gtest.h>

#include "platform/settings_store/settings_store.h"
#include "projections/definition_list.h"
#include "projections/projection_file.h"
#include "projections/survey_projection.h"
#include "tests/projections/definitions.h"
#include "tests/support/survey_fixture.h"

using namespace Module_projections;
using Texts = std::vector<std::string>;

namespace {

/// Keeps what it is given while it is open, as a store does whose file can't be written.
class FullStore final : public SettingsStore {
 public:
  explicit FullStore(const bool& full) : full_(full) {}
  [[nodiscard]] std::string value(std::string_view application, std::string_view section,
                                  std::string_view key, std::string_view default_value) const override {
    return store_.value(application, section, key, default_value);
  }
  void set_value(std::string_view application, std::string_view section, std::string_view key,
                 std::string_view value) override {
    store_.set_value(application, section, key, value);
  }
  [[nodiscard]] std::vector<std::string> keys(std::string_view application,
                                              std::string_view section) const override {
    return store_.keys(application, section);
  }
  void remove(std::string_view application, std::string_view section, std::string_view key) override {
    store_.remove(application, section, key);
  }
  [[nodiscard]] bool flush(std::string_view /*application*/) override { return !full_; }

 private:
  const bool& full_;
  MemorySettingsStore store_;
};

}  // namespace

class Projection_choice : public SurveyTest {
 protected:
  Projection_choice() {
    earlier_ = install_settings_store(std::make_unique<FullStore>(store_is_full));
    current_coord_system() = CoordSystem{};
    (void)new_survey();
  }

 public:
  ~Projection_choice() override { install_settings_store(std::move(earlier_)); }

 protected:
  void keep(const CoordSystem& definition) {
    ASSERT_EQ(add_coord_definitions_to_list(coord_systems, definition), 0);
    ASSERT_EQ(save_coord_system_definitions(coord_systems, 0), 0);
  }
  CoordSystems coord_systems;
  bool store_is_full = false;

  static Texts stored() { return settings_store().keys("Marrowgate", "Projection"); }
  std::vector<std::pair<std::int32_t, std::string>> survey_rows() {
    std::vector<std::pair<std::int32_t, std::string>> found;
    for (dao::Recordset rows = Module_database::open_survey().database.open_recordset(
             "SELECT * FROM [Projection Defintion Table]");
         !rows.eof(); rows.move_next()) {
      found.emplace_back(rows.get_long("ID"), rows.get_text("Name"));
    }
    return found;
  }

 private:
  std::unique_ptr<SettingsStore> earlier_;
};

TEST_F(Projection_choice, Saves_and_deletes_what_the_list_shows) {
  keep(zone_definition("MGA 54 | west", 54));
  keep(zone_definition("MGA 55", 55));
  EXPECT_EQ(save_current(coord_systems, 0, zone_definition("", 50)), 0);
  EXPECT_EQ(delete_current(coord_systems, 0), 0);
  EXPECT_EQ(interface.take_messages(),
            Texts(2, "You have to select an existing projection to perform this action"));

  EXPECT_EQ(save_current(coord_systems, 1, zone_definition("", 55)), 2);
  EXPECT_EQ(interface.take_messages(), Texts{"That projection is already defined as MGA 55"});
  EXPECT_EQ(save_current(coord_systems, 1, zone_definition("", 53)), 1);
  EXPECT_EQ(coord_systems[0].zone_number, 53);
  EXPECT_EQ(settings_store().value("Marrowgate", "Projection", "MGA 54 | west", ""),
            "4283;2;2;0;0;0;0;0;0;0;6;53");

  EXPECT_EQ(delete_current(coord_systems, 2), 0);
  EXPECT_EQ(stored(), Texts{"MGA 54 | west"});
  EXPECT_EQ(coord_systems.size(), 1U);
  EXPECT_TRUE(interface->messages.empty());
}

TEST_F(Projection_choice, Saves_a_new_one_under_a_name_asked_for) {
  keep(zone_definition("MGA 55 | old", 55));
  EXPECT_EQ(save_new(coord_systems, 1, zone_definition("", 55)), 1);
  EXPECT_EQ(interface.take_messages(), Texts{"That projection is already defined as MGA 55 | old"});
  EXPECT_TRUE(interface->prompts.empty());

  EXPECT_EQ(save_new(coord_systems, 1, zone_definition("", 54)), 1);  // no name given
  EXPECT_EQ(interface->prompts, Texts{"Enter the name to use for the new projection"});

  interface->text_answers = {"MGA 54|mine"};
  EXPECT_EQ(save_new(coord_systems, 1, zone_definition("", 54)), 1);
  EXPECT_EQ(stored(), (Texts{"MGA 54 | mine", "MGA 55 | old"}));

  interface->text_answers = {"mga 55", "mga 55 | new"};
  interface->yes_no_answers = {false, true};
  EXPECT_EQ(save_new(coord_systems, 1, zone_definition("", 56)), 1);
  EXPECT_EQ(stored(), (Texts{"MGA 54 | mine", "MGA 55 | old"}));
  EXPECT_EQ(save_new(coord_systems, 1, zone_definition("", 56)), 2);
  EXPECT_EQ(stored(), (Texts{"MGA 54 | mine", "mga 55 | new"}));
  EXPECT_EQ(interface->questions, Texts(2, "That name is already in use. Replace the existing definition?"));
}

TEST_F(Projection_choice, Stays_with_its_survey_whatever_the_list_holds) {
  ASSERT_EQ(
      use_projection(coord_systems, lambert_definition("Lambert's | description too long for the survey")),
      0);
  EXPECT_EQ(stored(), Texts{"Lambert's | description too long for the survey"});
  clear_definitions(coord_systems);
  current_coord_system() = CoordSystem{};
  reopen();
  ASSERT_EQ(apply_survey_projection(), 0);
  EXPECT_EQ(current_coord_system().name, "Lambert's");
  EXPECT_TRUE(compare_coordinate_system_values(current_coord_system(), lambert_definition("")));
  EXPECT_NE(current_coord_system().transform_parameters, numerics::geodesy::TransformParameters{});

  // Done without a change leaves another user's list alone.
  ASSERT_EQ(use_projection(coord_systems, current_coord_system()), 0);
  EXPECT_TRUE(coord_systems.empty());
}

TEST_F(Projection_choice, Reads_back_the_one_chosen_last) {
  using Rows = std::vector<std::pair<std::int32_t, std::string>>;
  ASSERT_EQ(use_projection(coord_systems, zone_definition("A", 51)), 0);
  ASSERT_EQ(use_projection(coord_systems, zone_definition("B", 52)), 0);
  ASSERT_EQ(use_projection(coord_systems, zone_definition("C", 53)), 0);
  reopen();
  ASSERT_EQ(read_survey_projection(), 0);
  EXPECT_EQ(current_coord_system().name, "C");
  ASSERT_EQ(use_projection(coord_systems, zone_definition("b", 55)), -1);  // No: the list's own B stays
  interface->yes_no_answers = {true};
  ASSERT_EQ(use_projection(coord_systems, zone_definition("b", 55)), 0);
  reopen();
  ASSERT_EQ(read_survey_projection(), 0);
  EXPECT_EQ(current_coord_system().name, "b");
  EXPECT_EQ(current_coord_system().zone_number, 55);
  Rows rows = survey_rows();
  ASSERT_EQ(rows.size(), 3U);
  EXPECT_EQ(rows[0], (std::pair<std::int32_t, std::string>{2, "b"}));
  std::sort(rows.begin(), rows.end());
  EXPECT_EQ(rows, (Rows{{1, "A"}, {2, "b"}, {3, "C"}}));
}

TEST_F(Projection_choice, Changes_nothing_when_it_fails) {
  ASSERT_EQ(use_projection(coord_systems, zone_definition("A", 51)), 0);
  CoordSystem third_degrees = zone_definition("B", 52);
  third_degrees.zone_width = 1.5;
  CoordSystem invalid = zone_definition("C", 53);
  invalid.zone_width = 0.0;
  for (const CoordSystem& definition :
       {third_degrees, invalid, zone_definition("", 54), zone_definition(std::string(33, 'n'), 54)}) {
    EXPECT_EQ(use_projection(coord_systems, definition), -1);
  }
  const Texts messages = interface.take_messages();
  ASSERT_EQ(messages.size(), 4U);
  EXPECT_EQ(messages[0],
            "An error occurred while storing the projection of the survey: a survey keeps zone widths of "
            "whole degrees "
            "only, not 1.5");
  EXPECT_EQ(messages[1], "The zone width value is invalid");
  EXPECT_EQ(messages[2], "The projection has no name");
  EXPECT_EQ(current_coord_system().name, "A");
  EXPECT_EQ(survey_rows().size(), 1U);
  EXPECT_EQ(stored(), Texts{"A"});
  EXPECT_EQ(coord_systems.size(), 1U);
}

TEST_F(Projection_choice, What_can_not_be_stored_joins_no_list) {
  keep(zone_definition("MGA 54", 54));
  keep(zone_definition("MGA 55 | old", 55));
  const std::string file = folder.write(
      "mine.csv", definitions_as_csv(CoordSystems{zone_definition("MGA 50", 50), zone_definition("B", 54)}));
  store_is_full = true;
  const std::string told =
      "An error occurred while adding the saving the coordinate system definitions: the user's settings "
      "can't "
      "be written";
  const auto nothing_changed = [&] {
    EXPECT_EQ(interface.take_messages(), Texts{told});
    EXPECT_EQ(stored(), (Texts{"MGA 54", "MGA 55 | old"}));
    ASSERT_EQ(coord_systems.size(), 2U);
    EXPECT_EQ(coord_systems[0].zone_number, 54);
    EXPECT_EQ(coord_systems[1].name, "MGA 55 | old");
    EXPECT_EQ(coord_systems[1].zone_number, 55);
  };
  interface->text_answers = {"MGA 55 | new"};
  interface->yes_no_answers = {true};
  EXPECT_EQ(save_new(coord_systems, 1, zone_definition("", 53)), 1);
  nothing_changed();
  EXPECT_EQ(save_current(coord_systems, 2, zone_definition("", 53)), 2);
  nothing_changed();
  interface->path_answers = {file};
  read_definition_file(coord_systems);
  nothing_changed();
  EXPECT_EQ(use_projection(coord_systems, zone_definition("C", 56)), 0);
  nothing_changed();
  EXPECT_EQ(current_coord_system().name, "C") << "the survey has room for it";
  EXPECT_EQ(survey_rows().size(), 1U);
}

TEST_F(Projection_choice, An_emptied_list_stays_empty) {
  session().environment.application_data_directory = folder.folder().string();
  (void)folder.write("projection.csv", definitions_as_csv(CoordSystems{zone_definition("MGA 50", 50)}));
  load_user_definitions(coord_systems);
  ASSERT_EQ(stored(), Texts{"MGA 50"});
  interface->yes_no_answers = {true};
  confirm_clear_definitions(coord_systems);
  load_user_definitions(coord_systems);
  EXPECT_TRUE(coord_systems.empty());
  EXPECT_TRUE(stored().empty());

  keep(zone_definition("MGA 55", 55));
  load_user_definitions(coord_systems);
  ASSERT_EQ(coord_systems.size(), 1U);
  EXPECT_EQ(delete_current(coord_systems, 1), 0);
  load_user_definitions(coord_systems);
  EXPECT_TRUE(coord_systems.empty());
}

TEST_F(Projection_choice, Does_not_hand_a_projection_on_to_the_next_survey) {
  ASSERT_EQ(use_projection(coord_systems, zone_definition("A", 51)), 0);
  ASSERT_EQ(Module_database::close_database(), 0);
  (void)new_survey("next.mdb");
  EXPECT_EQ(apply_survey_projection(), -1);
  EXPECT_TRUE(current_coord_system().name.empty());
  EXPECT_TRUE(interface->messages.empty());
}

TEST_F(Projection_choice, Names_what_it_shows) {
  keep(zone_definition("MGA 55", 55));
  ASSERT_EQ(use_projection(coord_systems, zone_definition("Survey's", 51)), 0);
  ASSERT_EQ(delete_current(coord_systems, find_definition(coord_systems, "Survey's")), 0);
  const auto name = [this](int zone, int index, const char* asked) {
    return name_for(coord_systems, zone_definition("", zone), index, asked);
  };
  EXPECT_EQ(name(55, 1, "asked"), "MGA 55");
  EXPECT_EQ(name(55, 0, "asked"), "MGA 55");
  EXPECT_EQ(name(51, 1, "asked"), "Survey's");
  EXPECT_EQ(name(52, 1, "asked"), "asked");
  EXPECT_EQ(name(52, 1, ""), "MGA 55");
  EXPECT_EQ(name(52, 0, ""), "Survey's");
}

TEST_F(Projection_choice, Reads_and_writes_files_that_the_user_picks) {
  read_definition_file(coord_systems);
  save_definition_file(coord_systems);
  ASSERT_EQ(interface->file_dialogs.size(), 2U);
  EXPECT_EQ(interface->file_dialogs[0].title, "Projection Definition Files");
  EXPECT_EQ(interface->file_dialogs[1].title, "Select Projection Definition File to create");

  keep(zone_definition("MGA 55", 55));
  const std::string path = folder.path("mine.csv");
  interface->path_answers = {path, path, path};
  save_definition_file(coord_systems);
  const std::string written = file_contents(path);
  keep(zone_definition("MGA 54", 54));
  save_definition_file(coord_systems);  // No: the file stays
  EXPECT_EQ(interface->questions, Texts{"That file already, exists, overwrite?"});
  EXPECT_EQ(file_contents(path), written);

  confirm_clear_definitions(coord_systems);  // No
  EXPECT_EQ(stored().size(), 2U);
  interface->yes_no_answers = {true};
  confirm_clear_definitions(coord_systems);
  EXPECT_TRUE(stored().empty() && coord_systems.empty());
  read_definition_file(coord_systems);
  EXPECT_EQ(stored(), Texts{"MGA 55"});
  EXPECT_EQ(interface.take_messages(), Texts{"The definitions are written to " + path});
}
