// A process that masks, switches, clips and undoes is killed at many moments; whatever the moment, the survey
// must open again, be sound, and stand as after the last edit that had ended or the one under way: the edited
// rows together with the averages and merged curves that follow from them.
#include <random>

#include "core/undo_stack.h"
#include "display/selection.h"
#include "reduction/edits/masks.h"
#include "reduction/edits/set_points.h"
#include "reduction/edits/undo.h"
#include "tests/kills/killed_process.h"
#include "tests/reduction/made_line.h"
#include "tests/support/survey_fixture.h"

using namespace Module_averaged_data;

namespace {

constexpr int station_count = 3;
constexpr int edit_count = 75;

class RandomEdits {
 public:
  /// The survey must be open. The same edits come each time.
  RandomEdits() {
    Module_display_data::SelectionLists lists;
    EXPECT_EQ(Module_display_data::fill_selection_lists(lists), 0);
    show(1);
  }

  void next() {
    using Module_display_data::choose_scan_rate;
    switch (upto(10)) {
      case 0:
        show(1 + upto(station_count));
        break;
      case 1:
        (void)choose_scan_rate(upto(2) == 0 ? "64" : "256");
        break;
      default:
        edit();
    }
  }

 private:
  int upto(int end) { return std::uniform_int_distribution<int>(0, end - 1)(random_); }
  std::size_t place(int end) { return static_cast<std::size_t>(upto(end)); }

  static void show(int station_index) {
    EXPECT_FALSE(Module_display_data::display_station(station_index, {}).failed);
  }

  Edit mask_on_all_stations(Component component) {
    std::vector<CurvePoints> curves;
    for (const ProfileColumn& column : data_sets().profile.columns) {
      curves.push_back({column.ID, {{4.0F, component, upto(2) > 0}}});
    }
    return set_points(curves);
  }

  void edit() {
    const auto component = static_cast<Component>(upto(2));
    const auto flag = static_cast<UseFlag>(upto(3));
    Edit done = Edit::nothing;
    switch (upto(10)) {
      case 0:
      case 1:
        done = toggle_repeat_point(place(made::line_repeats + 1), place(4), component);
        break;
      case 2:
        done = toggle_station_point(place(2), place(5), component);
        break;
      case 3:
        done = set_repeat_use(place(made::line_repeats + 1), flag, upto(3) > 0);
        break;
      case 4:
        done = set_merged_use(flag, upto(2) > 0);
        break;
      case 5:
        done = clip_outliers(static_cast<ClipEnds>(upto(3)), 1, OutlierField::both);
        break;
      case 6:
        done = clear_frequencies(static_cast<FrequencyCommand>(upto(8)), 8.0, OutlierField::both);
        break;
      case 7:
        done = set_static_factor(static_cast<float>(1 + upto(9)));
        break;
      case 8:
        done = mask_on_all_stations(component);
        break;
      default:
        if (const UndoResult undone = undo_last_change(); undone.station_index > 0) {
          done = undone.edit;
          show(undone.station_index);
        }
    }
    EXPECT_NE(done, Edit::failed);
  }

  std::mt19937 random_{3};
};

void expect_whole_rows() {
  dao::Recordset rows =
      Module_database::open_survey().database.open_recordset("SELECT * FROM ReadingsDataTable");
  for (; !rows.eof(); rows.move_next()) {
    const auto count = static_cast<std::size_t>(rows.get_long("NumFrequencies"));
    EXPECT_GT(count, 0U);
    EXPECT_EQ(rows.get_binary("FreqBinary").size(), count * sizeof(float));
    EXPECT_EQ(rows.get_binary("DataBinary").size(), count * Module_database::field_count * sizeof(float));
    EXPECT_EQ(rows.get_binary("MaskBinary").size(), count * 2 * sizeof(std::int32_t));
  }
}

class EditKills : public SurveyTest {
 public:
  EditKills() { Module_Brenlox::clear_undo(); }
  ~EditKills() override { Module_Brenlox::clear_undo(); }

 protected:
  static void open(const std::string& survey) {
    session().database_file = survey;
    ASSERT_EQ(Module_database::open_database(), 0);
  }
  /// Under a name of its own, as a killed process leaves a log beside its file.
  std::string copy_of(const std::string& survey) {
    std::string copy = folder.path("copy_" + std::to_string(++copies_) + ".mdb");
    std::filesystem::copy_file(survey, copy);
    return copy;
  }

 private:
  int copies_ = 0;
};

}  // namespace

TEST_F(EditKills, An_edit_and_what_follows_from_it_are_stored_together_or_not_at_all) {
  const std::string survey = new_survey();
  made::store_line(station_count);
  dao::Recordset& files = Module_database::open_survey().files;
  files.add_new();
  files.set_long("ReferenceType", session().current_reference_type);
  files.update();
  ASSERT_EQ(Module_database::close_database(), 0);

  std::vector<std::string> states;  // the readings before the first edit and after each one
  open(copy_of(survey));
  {
    RandomEdits edits;
    states.push_back(made::whole_readings_table());
    for (int i = 0; i < edit_count; ++i) {
      edits.next();
      states.push_back(made::whole_readings_table());
    }
  }
  ASSERT_EQ(Module_database::close_database(), 0);
  int changes = 0;
  for (std::size_t i = 0; i + 1 < states.size(); ++i) {
    changes += states[i] != states[i + 1] ? 1 : 0;
  }
  ASSERT_GT(changes, edit_count / 2);
  interface.take_messages();

  const auto edit_until = [&](std::int64_t operation, const std::string& copy) {
    return run_until_operation(operation, [&](const TellProgress& tell) {
      open(copy);
      RandomEdits edits;
      for (int i = 0; i < edit_count; ++i) {
        edits.next();
        tell(i + 1);
      }
    });
  };
  std::mt19937 random(5);
  std::uniform_int_distribution<std::int64_t> moments(1, edit_until(0, copy_of(survey)).operations);
  int killed_in_an_edit = 0;
  for (int round = 0; round < 30; ++round) {
    SCOPED_TRACE(round);
    const std::string copy = copy_of(survey);
    const KilledProcess process = edit_until(moments(random), copy);
    EXPECT_TRUE(process.killed);
    killed_in_an_edit += process.progress > 0 ? 1 : 0;  // else in the opening

    open(copy);
    expect_sound_database(copy);
    expect_whole_rows();
    const std::string found = made::whole_readings_table();
    const auto ended = static_cast<std::size_t>(process.progress);
    EXPECT_TRUE(found == states[ended] || (ended < edit_count && found == states[ended + 1]))
        << "killed after " << ended << " edits";
    EXPECT_EQ(recalculate_merged(), 0);
    EXPECT_TRUE(made::whole_readings_table() == found)
        << "averages and merged curves were not of their repeats";
    ASSERT_EQ(Module_database::close_database(), 0);
    EXPECT_EQ(interface.take_messages(), std::vector<std::string>{});
  }
  EXPECT_GT(killed_in_an_edit, 15);
}
