#include "display/selection.h"

#include "core/number_text.h"
#include "tests/display/made_survey.h"

using namespace Module_display_data;
using Module_averaged_data::data_sets;
using Module_Brenlox::undo_count;

namespace {

class Selection : public MadeSurveyTest {
 protected:
  static std::int32_t store_at(const std::string& line, double station, const std::string& data_type = "ExHy",
                               std::int32_t reference_type = 0) {
    made::ReadingKey key = made::key(64.0F, station);
    key.line = line;
    key.data_type = data_type;
    key.reference_type = reference_type;
    return made::store(key, 1, made::reading({{1.0F, 10.0F, 40.0F}, {2.0F, 20.0F, 50.0F}}));
  }

  /// Lines 100E (200, 300) and 1000E (100), reduced, for both modes and two reference types.
  void open_two_lines() {
    for (const std::int32_t type : {0, 1}) {
      add_file(type);
      for (const std::string data_type : {"EyHx", "ExHy", "ExHx"}) {
        store_at("1000E", 100.0, data_type, type);
        store_at("100E", 300.0, data_type, type);
        store_at("100E", 200.0, data_type, type);
      }
    }
    ASSERT_EQ(Module_averaged_data::recalculate_merged(), 0);
    ASSERT_EQ(fill_selection_lists(lists), 0);
  }

  /// What the window does: displays the station that a choice asks for.
  static Redisplay follow(const Redisplay& choice) { return display_station(choice.station_to_display, {}); }
};

}  // namespace

TEST_F(Selection, A_line_in_two_letter_cases_is_one_line_even_without_a_row_of_its_files) {
  for (const char* const line : {"200e", "200E"}) {
    store_at(line, line == std::string("200e") ? 200.0 : 100.0);
  }
  ASSERT_EQ(Module_averaged_data::recalculate_merged(), 0);
  ASSERT_EQ(fill_selection_lists(lists), 0);
  ASSERT_EQ(lists.reference_types.size(), 1U);
  EXPECT_EQ(lists.lines, std::vector<std::string>{"200e"});
  EXPECT_EQ(session().stations_in_line, 2);
  EXPECT_EQ(session().station_line, (std::vector<std::string>{"200e", "200e"}));
  EXPECT_FALSE(display_station(1, {}).failed);
  EXPECT_EQ(session().current_line, "200e");
  EXPECT_EQ(data_sets().profile.columns.size(), 2U);
}

TEST_F(Selection, Lists_and_stations_of_a_survey) {
  open_two_lines();
  const SessionState& state = session();
  ASSERT_EQ(lists.reference_types.size(), 2U);
  EXPECT_EQ(lists.reference_types[0].text, "Not Remote Ref");
  EXPECT_EQ(lists.reference_types[1].text, "Remote Ref");
  EXPECT_EQ(lists.data_types, (std::vector<std::string>{"ExHx", "ExHy", "EyHx"}));
  EXPECT_EQ(lists.data_type_index, 2);
  EXPECT_EQ(lists.dipoles, (std::vector<float>{50.0F}));
  EXPECT_EQ(lists.lines, (std::vector<std::string>{"100E", "1000E"}));
  EXPECT_EQ(state.station_count, 3);
  EXPECT_EQ(state.stations_in_line, 2);
  EXPECT_EQ(state.station_value, (std::vector<double>{200.0, 300.0, 100.0}));
  EXPECT_EQ(state.line_of_station, (std::vector<std::int32_t>{1, 1, 2}));
  EXPECT_EQ(state.first_station_of_line, (std::vector<std::int32_t>{1, 3, 4}));
  EXPECT_EQ(state.current_data_type, "EyHx");
  EXPECT_EQ(state.current_reference_type, 0);
  EXPECT_EQ(state.current_dipole, 50.0F);
  EXPECT_EQ(state.frequencies.count(), 2U);
  EXPECT_EQ(state.current_station_index, -1);
  EXPECT_FALSE(state.updating_controls);
  EXPECT_EQ(first_station_of_current_line(), 1);
}

TEST_F(Selection, Principal_data_type_is_chosen_at_first) {
  struct Case {
    std::vector<std::string> types;
    const char* chosen;
  };
  const Case cases[] = {{{"ExHx", "ExHy"}, "ExHy"}, {{"EyHy", "QP"}, "EyHy"}, {{"EyHx", "QP"}, "EyHx"}};
  add_file(2);
  for (const Case& c : cases) {
    Module_database::open_survey().database.execute("DELETE FROM ReadingsDataTable");
    for (const std::string& type : c.types) {
      store_at("100E", 100.0, type, 2);
    }
    ASSERT_EQ(fill_selection_lists(lists), 0);
    EXPECT_EQ(session().current_data_type, c.chosen);
    EXPECT_EQ(lists.reference_types.at(0).text, "Cross Ref");
    EXPECT_EQ(session().stations_in_line, 1);
  }
}

TEST_F(Selection, An_empty_survey_has_no_lists) {
  ASSERT_EQ(fill_selection_lists(lists), 0);
  EXPECT_TRUE(lists.reference_types.empty() && lists.lines.empty());
  EXPECT_EQ(session().current_reference_type, -1);
  EXPECT_EQ(first_station_of_current_line(), -1);
  add_file(0);
  ASSERT_EQ(fill_selection_lists(lists), 0);
  EXPECT_TRUE(lists.dipoles.empty());
  EXPECT_EQ(session().station_count, 0);
  const Redisplay nothing = display_station(1, {});
  EXPECT_FALSE(nothing.show_line || nothing.draw_profile || nothing.draw_raw);
}

TEST_F(Selection, A_station_loads_what_is_new) {
  open_two_lines();
  Redisplay shown = display_station(1, {});
  EXPECT_TRUE(shown.show_line && shown.draw_profile && shown.mark_station && shown.draw_station &&
              shown.draw_raw);
  EXPECT_FALSE(shown.close_rhoplus_results) << "there was no line before";
  EXPECT_EQ(session().current_line, "100E");
  EXPECT_EQ(session().current_station, 200.0);
  EXPECT_EQ(session().current_profile_column, 1);
  EXPECT_EQ(session().current_scan_rate, 64.0);  // the first one, as none was chosen
  EXPECT_EQ(data_sets().profile.columns.size(), 2U);
  EXPECT_EQ(data_sets().repeats.repeat_count, 1);

  shown = display_station(1, {});
  EXPECT_FALSE(shown.show_line || shown.draw_station || shown.draw_raw);
  shown = display_station(2, {});  // on the same line
  EXPECT_FALSE(shown.draw_profile || shown.close_rhoplus_results);
  EXPECT_TRUE(shown.mark_station && shown.draw_station && shown.draw_raw);
  EXPECT_EQ(session().current_profile_column, 2);
  EXPECT_EQ(data_sets().station.key.station, 300.0);
  EXPECT_EQ(place_in_line(), 2);
  shown = display_station(3, {});  // on the other one
  EXPECT_TRUE(shown.draw_profile && shown.close_rhoplus_results);
  EXPECT_EQ(session().current_line_index, 2);
  EXPECT_EQ(session().stations_in_line, 1);
  EXPECT_EQ(data_sets().profile.columns.size(), 1U);
  EXPECT_EQ(place_in_line(), 1);
  EXPECT_FALSE(display_station(4, {}).show_line);
}

TEST_F(Selection, A_new_line_selects_its_first_station_another_type_stays_and_both_keep_undo) {
  open_two_lines();
  (void)follow({.station_to_display = 2});
  Module_Brenlox::push_undo_static(1, 1.0F);
  struct Case {
    const char* name;
    Redisplay (*choose)();
    std::int32_t station;  // -1: nothing changes
  };
  const Case cases[] = {
      {"the same line", [] { return choose_line(0, "100E"); }, -1},
      {"the same data type", [] { return choose_data_type("EyHx"); }, -1},
      {"the same reference type", [] { return choose_reference_type(0); }, -1},
      {"a data type", [] { return choose_data_type("ExHy"); }, 2},
      {"a line", [] { return choose_line(1, "1000E"); }, 3},
      {"a reference type", [] { return choose_reference_type(1); }, 3},
      {"back to the first line", [] { return choose_line(0, "100E"); }, 1},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const Redisplay chosen = c.choose();
    EXPECT_EQ(chosen.station_to_display, c.station);
    EXPECT_EQ(chosen.close_rhoplus_results, c.station > 0);
    EXPECT_EQ(undo_count(), 1U);
    if (c.station > 0) {
      const Redisplay shown = follow(chosen);
      EXPECT_TRUE(shown.draw_profile && shown.draw_station && shown.draw_raw);
      EXPECT_EQ(data_sets().profile.key.data_type, session().current_data_type);
      EXPECT_EQ(data_sets().station.key.reference_type, session().current_reference_type);
      EXPECT_EQ(data_sets().repeats.key.line, session().current_line);
    }
  }
  for (const std::int32_t no_place : {-1, 2}) {
    EXPECT_EQ(choose_line(no_place, "900E").station_to_display, -1);
  }
}

TEST_F(Selection, Controls_that_are_being_filled_choose_nothing) {
  open_two_lines();
  (void)display_station(1, {});
  session().updating_controls = true;
  EXPECT_EQ(choose_line(1, "1000E").station_to_display, -1);
  EXPECT_EQ(choose_data_type("ExHy").station_to_display, -1);
  EXPECT_EQ(choose_station_in_line(2).station_to_display, -1);
  EXPECT_EQ(neighbours_changed().station_to_display, -1);
  EXPECT_FALSE(choose_dipole(25.0F).close_rhoplus_results);
  EXPECT_EQ(session().current_dipole, 50.0F);
  EXPECT_FALSE(fixed_scale_changed().draw_station);
  EXPECT_FALSE(choose_hide_masked(true).draw_raw);
  EXPECT_FALSE(session().hide_masked_data);
  session().updating_controls = false;
  EXPECT_EQ(choose_station_in_line(2).station_to_display, 2);
  EXPECT_EQ(station_index_of(session().station_id[2]), 3);
  EXPECT_EQ(station_index_of(-7), -1);
  session().current_station_index = 0;  // none is shown
  EXPECT_EQ(neighbours_changed().station_to_display, -1);
  EXPECT_FALSE(fixed_scale_changed().draw_station);
  EXPECT_EQ(readings_changed().station_to_display, -1);
  EXPECT_EQ(place_in_line(), 0);
}

TEST_F(Selection, A_dipole_redraws_nothing_until_the_next_station) {
  open_line(2);
  made::ReadingKey key = made::key(64.0F, 200.0);
  key.dipole = 25.0F;
  made::store(key, 1, made::reading({{1.0F, 9.0F, 9.0F}}));
  ASSERT_EQ(Module_averaged_data::recalculate_merged(), 0);
  Module_Brenlox::push_undo_static(1, 1.0F);
  const Redisplay chosen = choose_dipole(25.0F);
  EXPECT_TRUE(chosen.close_rhoplus_results);
  EXPECT_EQ(chosen.station_to_display, -1);
  EXPECT_FALSE(chosen.draw_profile || chosen.draw_station || chosen.draw_raw);
  EXPECT_EQ(undo_count(), 1U);
  EXPECT_EQ(data_sets().repeats.repeat_count, 4);
  EXPECT_TRUE(choose_scan_rate("256").draw_raw);  // of the curves that are shown
  EXPECT_EQ(data_sets().repeats.repeat_count, 4);
  EXPECT_TRUE(choose_scan_rate("64").draw_raw);
  const Redisplay shown = display_station(2, {});
  EXPECT_TRUE(shown.draw_profile && shown.mark_station);
  EXPECT_EQ(data_sets().repeats.repeat_count, 1);
  EXPECT_EQ(data_sets().station.key.dipole, 25.0F);
  EXPECT_EQ(data_sets().profile.key.dipole, 25.0F);
  EXPECT_EQ(session().current_profile_column, 1);
}

TEST_F(Selection, Other_choices_load_and_draw_their_part) {
  open_line(3);
  const std::size_t repeats = data_sets().repeats.slots.size();
  for (const char* text : {"64", "", "fast"}) {
    EXPECT_FALSE(choose_scan_rate(text).draw_raw) << text;
  }
  const Redisplay rate = choose_scan_rate("256");
  EXPECT_TRUE(rate.draw_raw);
  EXPECT_FALSE(rate.draw_station || rate.draw_profile);
  EXPECT_EQ(data_sets().repeats.slots.size(), repeats);
  EXPECT_EQ(data_sets().repeats.key.scan_rate, 256.0F);

  EXPECT_EQ(choose_station_in_line(1).station_to_display, -1);
  EXPECT_EQ(choose_station_in_line(3).station_to_display, 3);

  const Redisplay neighbours = neighbours_changed();
  EXPECT_EQ(neighbours.station_to_display, 1);
  const Redisplay shown = display_station(1, {true, true, 0, Module_averaged_data::NeighbourSide::both});
  EXPECT_TRUE(shown.draw_station);
  EXPECT_FALSE(shown.draw_profile);
  EXPECT_EQ(data_sets().station.neighbour_count, 2);

  const Redisplay scale = fixed_scale_changed();
  EXPECT_TRUE(scale.draw_station && scale.draw_raw && !scale.draw_profile);
  const Redisplay hide = choose_hide_masked(true);
  EXPECT_TRUE(session().hide_masked_data && hide.draw_profile && hide.draw_station && hide.draw_raw);

  const Redisplay again = readings_changed();  // the fit on show is still of these readings
  EXPECT_EQ(again.station_to_display, 1);
  EXPECT_FALSE(again.close_rhoplus_results);
}

TEST_F(Selection, A_scan_rate_of_many_digits_is_chosen_by_its_text) {
  const float rate = 24000.0F / 7.0F;  // 3428.5715 as a single; lists show seven digits
  made::store(made::key(rate), 1, made::reading({{1.0F, 9.0F, 9.0F}}));
  made::StoredReading average;
  ASSERT_EQ(Module_averaged_data::average_repeats(made::key(rate), made::frequencies(), average), 0);
  open_line(1);
  ASSERT_TRUE(choose_scan_rate("256").draw_raw);
  EXPECT_TRUE(choose_scan_rate(plain_text(rate)).draw_raw);
  EXPECT_EQ(data_sets().repeats.key.scan_rate, rate);
  EXPECT_EQ(data_sets().repeats.repeat_count, 1);
  EXPECT_FALSE(choose_scan_rate(plain_text(rate)).draw_raw) << "it is chosen already";
}

TEST_F(Selection, A_selection_without_merged_curves_shows_nothing) {
  open_line(1);
  made::ReadingKey key = made::key(64.0F);
  key.data_type = "EyHx";
  made::store(key, 1, made::reading({{1.0F, 9.0F, 9.0F}}));  // never reduced
  const Redisplay shown = follow(choose_data_type("EyHx"));
  EXPECT_TRUE(shown.draw_profile && shown.draw_station && shown.draw_raw);
  EXPECT_TRUE(data_sets().profile.columns.empty() && data_sets().station.slots.empty() &&
              data_sets().repeats.slots.empty());
  EXPECT_EQ(session().current_profile_column, 0);
}

TEST_F(Selection, A_survey_read_again_keeps_what_was_selected_and_is_still_there) {
  open_two_lines();
  (void)follow(choose_data_type("ExHy"));
  (void)follow(choose_reference_type(1));
  (void)display_station(2, {});
  Module_Brenlox::push_undo_static(1, 1.0F);
  store_at("50E", 100.0);  // an import puts a line before it
  ASSERT_EQ(refill_selection_lists(lists), 0);
  EXPECT_EQ(lists.lines.front(), "50E");
  EXPECT_EQ(lists.station_index, 3);
  EXPECT_EQ(session().current_data_type, "ExHy");
  EXPECT_EQ(session().current_reference_type, 1);
  EXPECT_EQ(session().current_scan_rate, 64.0);
  EXPECT_EQ(undo_count(), 1U);
  const Redisplay shown = display_station(lists.station_index, {});
  EXPECT_TRUE(shown.draw_profile && shown.draw_station && shown.draw_raw);
  EXPECT_EQ(session().current_line, "100E");
  EXPECT_EQ(session().current_station, 300.0);

  session().current_data_type = "QP";  // nothing of it is left
  session().current_line = "900E";
  session().current_reference_type = 2;
  ASSERT_EQ(refill_selection_lists(lists), 0);
  EXPECT_EQ(lists.station_index, 1);
  EXPECT_EQ(session().current_data_type, "EyHx");
  EXPECT_EQ(session().current_reference_type, 0);
  EXPECT_EQ(session().current_scan_rate, 0.0);
}

TEST(Neighbour_count, Is_two_to_begin_with_where_no_number_is_typed) {
  std::string text = "3";
  EXPECT_EQ(neighbour_count_of(text), 3);
  text = "1e9";
  EXPECT_EQ(neighbour_count_of(text), 1000000) << "the whole line";
  for (const char* bad : {"", "x", "0", "-1"}) {
    text = bad;
    EXPECT_EQ(neighbour_count_of(text), 0);
    EXPECT_EQ(text, "2");
  }
}

TEST_F(Selection, A_tipper_is_in_no_list_and_can_be_shown_by_no_graph) {
  add_file(0);
  store_at("100E", 200.0);
  for (const std::string data_type : {"HzHx", "HzHy", "QP"}) {
    store_at("100E", 200.0, data_type);
  }
  ASSERT_EQ(Module_averaged_data::recalculate_merged(), 0);
  ASSERT_EQ(fill_selection_lists(lists), 0);
  EXPECT_EQ(lists.data_types, (std::vector<std::string>{"ExHy", "QP"}));
  EXPECT_EQ(session().current_data_type, "ExHy");
}
