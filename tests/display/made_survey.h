// made_survey.h: a test with a survey of made lines, its lists read.
#pragma once
#include "core/undo_stack.h"
#include "display/plan_view.h"
#include "display/selection.h"
#include "reduction/data_sets/data_sets.h"
#include "tests/reduction/made_line.h"
#include "tests/support/survey_fixture.h"

class MadeSurveyTest : public SurveyTest {
 public:
  MadeSurveyTest() {
    new_survey();
    Module_averaged_data::reset_data_sets();
  }
  ~MadeSurveyTest() override { Module_Brenlox::clear_undo(); }

 protected:
  static void add_file(std::int32_t reference_type, const std::string& name = "a.edi") {
    dao::Recordset& files = Module_database::open_survey().files;
    files.add_new();
    files.set_text("SurveyFile", name);
    files.set_long("ReferenceType", reference_type);
    files.update();
  }

  /// Line 200E with so many stations, read and with its first station displayed.
  void open_line(int stations) {
    made::store_line(stations);
    for (int file = 1; file <= 7; ++file) {  // the made readings say that they came from file 7
      add_file(0, std::to_string(file) + ".edi");
    }
    ASSERT_EQ(Module_display_data::fill_selection_lists(lists), 0);
    ASSERT_FALSE(Module_display_data::display_station(1, {}).failed);
  }

  Module_display_data::SelectionLists lists;
};
