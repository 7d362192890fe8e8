// Which files an export plans and writes, and what it leaves as it was.
#include "exchange/export_files.h"

#include <algorithm>
#include <limits>
#include <tuple>
#include <utility>

#include "core/calendar.h"
#include "exchange/export_lists.h"
#include "exchange/line_marks.h"
#include "exchange/plan_texts.h"
#include "tensor/rotated_readings.h"
#include "tests/exchange/made_export.h"
#include "tests/support/file_size_limit.h"
#include "tests/support/read_only_folder.h"

using namespace Module_exchange;
namespace fs = std::filesystem;

namespace {

using Strings = std::vector<std::string>;

void switch_off(double station) {
  dao::Recordset rows = Module_database::open_survey().database.open_recordset(
      "SELECT * FROM ReadingsDataTable WHERE Station = " + std::to_string(station));
  for (; !rows.eof(); rows.move_next()) {
    rows.edit();
    rows.set_bit("UseReading", false);
    rows.update();
  }
}

void remember_file(const std::string& name) {
  dao::Recordset& files = Module_database::open_survey().files;
  files.add_new();
  files.set_text("SurveyFile", name);
  files.set_text("LineNumber", "200E");
  files.set_double("Station", 100.0);
  files.set_date("DateCollected", day_count(2019, 1, 7));
  files.update();
  files.requery();
}

}  // namespace

TEST_F(ExportTest, Says_which_curves_rest_on_no_reading_in_use) {
  made::store_line(2);
  ASSERT_EQ(write(), 0);  // averages and merges
  EXPECT_TRUE(std::ranges::none_of(result.remarks,
                                   [](const std::string& remark) { return remark.starts_with("Line "); }));
  dao::Recordset rows = Module_database::open_survey().database.open_recordset(
      "SELECT * FROM ReadingsDataTable WHERE ReductionType = 0 AND Station = 100 AND SampleRate = 64");
  for (; !rows.eof(); rows.move_next()) {
    rows.edit();
    rows.set_bit("UseReading", false);
    rows.update();
  }
  for (const ExportFormat format : {ExportFormat::edi, ExportFormat::csv}) {
    choices.format = format;
    choices.folder = folder.path(format == ExportFormat::edi ? "again" : "tables");
    ASSERT_EQ(write(), 0);
    ASSERT_FALSE(result.remarks.empty());
    EXPECT_EQ(result.remarks.front(),
              "Line 200E: No reading is in use, and the earlier curve remains: station 100, ExHy, 64 Hz");
  }
}

TEST_F(ExportTest, Plan_names_a_file_for_each_station_and_says_why_one_gives_none) {
  made::store_line(3);
  made::store_tensor(400.0);
  name_site("200E", 100.0, "A.1");
  name_site("200E", 200.0, "a_1");
  made::place_site(400.0, -20.45614, 139.12344);
  switch_off(300.0);
  ExportPlan plan;
  ASSERT_EQ(make_export_plan(choices, plan), 0);
  EXPECT_EQ(plan.fault, "");
  ASSERT_EQ(plan.rows.size(), 4U);
  EXPECT_EQ(plan.rows[0].file, "A_1.edi");
  EXPECT_EQ(plan.rows[0].site, "A.1");
  EXPECT_EQ(plan.rows[0].components, "ExHy");
  EXPECT_EQ(plan.rows[0].frequencies, 7);  // 1 to 64 Hz, two scan rates
  EXPECT_EQ(plan.rows[1].file, "a_1_2.edi");
  EXPECT_EQ(plan.rows[2].file, "");
  ASSERT_FALSE(plan.rows[2].remarks.empty());
  EXPECT_NE(plan.rows[2].remarks.front().find("300"), std::string::npos) << plan.rows[2].remarks.front();
  EXPECT_EQ(plan.rows[3].file, "200E_400.edi");
  EXPECT_EQ(plan.rows[3].components, "Z");
  EXPECT_EQ(plan.rows[3].place, "20.4561 S, 139.1234 E");
  EXPECT_EQ(plan.file_count(), 3);
  EXPECT_EQ(files_in_folder(), Strings{}) << "a plan writes nothing";

  choices.format = ExportFormat::emtf_xml;
  ASSERT_EQ(write(), 0);
  EXPECT_EQ(files_in_folder(), (Strings{"200E_400.xml", "A_1.xml", "a_1_2.xml"}));
  EXPECT_EQ(result.files.size(), 3U);
  EXPECT_EQ(export_summary(choices, result), "3 files written to " + choices.folder);
}

TEST_F(ExportTest, Choices_that_make_no_sense_are_refused_with_a_sentence) {
  made::store_line(1);
  const auto fault = [this](const auto& change) {
    ExportChoices changed = choices;
    change(changed);
    ExportPlan plan;
    EXPECT_EQ(make_export_plan(changed, plan), 0);
    EXPECT_EQ(plan.file_count(), 0);
    EXPECT_EQ(export_files(changed, {}, result), -1);
    EXPECT_EQ(interface.take_messages(), Strings{plan.fault});
    return plan.fault;
  };
  EXPECT_EQ(fault([](ExportChoices& c) { c.lines.clear(); }), "There is no line to write");
  EXPECT_EQ(fault([](ExportChoices& c) { c.folder = " "; }), "A folder for the files must be chosen");
  EXPECT_EQ(fault([](ExportChoices& c) { c.rotation = 400.0; }), Module_tensor::bad_azimuth);
  EXPECT_EQ(fault([](ExportChoices& c) { c.rotation = std::numeric_limits<double>::quiet_NaN(); }),
            Module_tensor::bad_azimuth);
  EXPECT_EQ(fault([](ExportChoices& c) { c.reduction = 0; }),
            "Raw and averaged curves are written to CSV only");
  EXPECT_EQ(fault([](ExportChoices& c) {
              c.format = ExportFormat::csv;
              c.reduction = 1;
              c.rotation = 30.0;
            }),
            "Only merged curves can be rotated");
  EXPECT_EQ(fault([](ExportChoices& c) {
              c.format = ExportFormat::kml;
              c.rotation = 30.0;
            }),
            "Files of places have nothing to rotate");
  EXPECT_EQ(fault([](ExportChoices& c) { c.lines = {{"900E", 0, 50.0F}}; }), "There is nothing to write");
  EXPECT_FALSE(fs::exists(choices.folder));
}

TEST_F(ExportTest, Places_need_a_station_that_has_one) {
  made::store_line(3);
  for (const ExportFormat format : {ExportFormat::geojson, ExportFormat::kml}) {
    choices.format = format;
    EXPECT_EQ(write(), -1);
    const Strings messages = interface.take_messages();
    ASSERT_EQ(messages.size(), 1U);
    EXPECT_TRUE(messages.front().starts_with("There are no places to write: ")) << messages.front();
    EXPECT_FALSE(fs::exists(choices.folder));
  }
  made::place_site(100.0, -20.45614, 139.12344);
  made::place_site(200.0, -20.5, 139.2);
  fs::create_directory(choices.folder);
  std::ignore = folder.write("out/200E.pdf", "plots");
  ASSERT_EQ(write(), 0);
  EXPECT_EQ(files_in_folder(), (Strings{"200E.pdf", "north_line.kml"}));
  EXPECT_EQ(result.remarks, Strings{"Left out, as they have no place: 200E 300"});
  EXPECT_NE(written("north_line.kml").find("139.12344"), std::string::npos);
  EXPECT_NE(written("north_line.kml").find("200E.pdf"), std::string::npos);
  choices.format = ExportFormat::geojson;
  choices.plot_link = "https://x.org/{line}/{station}?n={name}";
  made::place_site(100.0, -20.45614, 139.12344, "{line} &1");
  ASSERT_EQ(write(), 0);
  EXPECT_NE(written("north_line.geojson").find("https://x.org/200E/100?n=%7Bline%7D%20%261"),
            std::string::npos);
}

TEST_F(ExportTest, Links_to_plots_are_put_into_percents_once) {
  const std::pair<const char*, const char*> cases[] = {
      {"plots of/{name}.pdf", "plots%20of/MT%201%23.pdf"},
      {"My%20Line#1/{line}/{station}.pdf", "My%20Line%231/200E/100.5.pdf"},
      {"https://x.org/a%20b?n={name}#top", "https://x.org/a%20b?n=MT%201%23#top"},
      {"50%/{x}", "50%25/%7Bx%7D"}};
  for (const auto& [link, address] : cases) {
    EXPECT_EQ(plot_link(link, "200E", "100.5", "MT 1#"), address) << link;
  }
  made::store_line(1);
  made::place_site(100.0, -20.5, 139.25, "MT 1");
  choices.plot_link = "plots of/{name}.pdf";
  for (const ExportFormat format : {ExportFormat::geojson, ExportFormat::kml}) {
    choices.format = format;
    ASSERT_EQ(write(), 0);
    EXPECT_NE(written(format == ExportFormat::kml ? "north_line.kml" : "north_line.geojson")
                  .find("plots%20of/MT%201.pdf"),
              std::string::npos);
  }
}

TEST_F(ExportTest, A_line_with_QP_alone_has_curves_and_no_tensors) {
  made::ReadingKey key = made::key(64.0F);
  key.data_type = "QP";
  made::store(key, 1, made::reading({{1, -3.25F, 2}}));
  ExportLists lists;
  ASSERT_EQ(read_export_lists(lists), 0);
  EXPECT_EQ(lists.lines, Strings{"200E"});
  EXPECT_EQ(kind_of_line(lists, "200E", 0, 50.0F), choices.lines.front());

  ExportPlan plan;
  ASSERT_EQ(make_export_plan(choices, plan), 0);
  EXPECT_EQ(plan.fault, "There is nothing to write");
  ASSERT_EQ(plan.rows.size(), 1U);
  EXPECT_EQ(
      plan.rows[0].remarks,
      Strings{"Line 200E has no readings of a tensor element or tipper with reference type 0 and dipole "
              "50"});
  plan.fault.clear();
  EXPECT_EQ(plan_summary(plan), "0 files; 1 line gives none");

  choices.format = ExportFormat::csv;
  ASSERT_EQ(write(), 0);
  const made::Table curves(written("200E_curves.csv"));
  ASSERT_EQ(curves.rows.size(), 1U);
  EXPECT_EQ(curves.rows[0].at("resistivity_ohm_m"), "-3.25");
}

TEST(Export_plan_texts, Count_lines_and_stations_that_give_none_apart) {
  ExportPlan plan;
  plan.rows.resize(4);
  plan.rows[0].file = "200E_curves.csv";  // of the whole line
  plan.rows[1].stations = {300.0};
  plan.rows[2].remarks = {"Line 400E has no readings"};
  plan.rows[3].file = "300.edi";
  plan.rows[3].stations = {300.0};
  plan.rows[3].remarks = {"there is no tipper"};
  EXPECT_EQ(plan_summary(plan), "2 files; 1 line and 1 station give none; 1 has remarks");
}

TEST_F(ExportTest, Files_are_replaced_when_the_user_agrees) {
  made::store_line(8);
  ASSERT_EQ(write(), 0);
  EXPECT_TRUE(interface->questions.empty());
  const std::string text = written("200E_100.edi");
  std::ignore = folder.write("out/200E_100.edi", "field data");

  ASSERT_EQ(write(), 0);
  EXPECT_TRUE(result.declined);
  EXPECT_EQ(export_summary(choices, result), "Nothing is written");
  EXPECT_EQ(written("200E_100.edi"), "field data");
  EXPECT_EQ(interface->questions, Strings{"8 files already exist, overwrite? 200E_100.edi, 200E_200.edi, "
                                          "200E_300.edi, 200E_400.edi, 200E_500.edi and 3 more are in " +
                                          choices.folder});

  remember_file("somewhere\\200e_100.EDI");
  interface->yes_no_answers = {true};
  ASSERT_EQ(write(), 0);
  EXPECT_EQ(written("200E_100.edi"), text);
  EXPECT_NE(interface->questions.back().find("these may be field data"), std::string::npos);
}

TEST_F(ExportTest, A_stop_keeps_what_was_written) {
  made::store_line(4);
  const auto at_files = [this](std::size_t count) {
    return [this, count](double) { return files_in_folder().size() < count; };
  };
  ASSERT_EQ(export_files(choices, at_files(2), result), 0);
  EXPECT_TRUE(result.stopped);
  EXPECT_EQ(files_in_folder(), (Strings{"200E_100.edi", "200E_200.edi"}));
  EXPECT_EQ(result.files.size(), 2U);
  EXPECT_EQ(export_summary(choices, result), "Stopped; 2 files written to " + choices.folder);

  fs::remove_all(choices.folder);
  ASSERT_EQ(export_files(
                choices, [](double) { return false; }, result),
            0);
  EXPECT_EQ(export_summary(choices, result), "Stopped; nothing is written");
  EXPECT_FALSE(fs::exists(choices.folder));

  std::vector<double> shares;
  ASSERT_EQ(export_files(
                choices, [&](double share) { return shares.push_back(share), true; }, result),
            0);
  EXPECT_TRUE(std::ranges::is_sorted(shares));
  EXPECT_LE(shares.back(), 1.0);
  EXPECT_EQ(files_in_folder().size(), 4U);

  interface->stop = [] { return true; };
  ExportPlan plan;
  ASSERT_EQ(make_export_plan(choices, plan), 0);
  EXPECT_TRUE(plan.stopped);
}

TEST_F(ExportTest, What_is_in_the_way_is_named_and_nothing_is_half_written) {
  made::store_line(2);
  const auto failure = [this] {
    EXPECT_EQ(write(), -1);
    const Strings messages = interface.take_messages();
    EXPECT_EQ(messages.size(), 1U);
    return messages.empty() ? std::string() : messages.front();
  };
  fs::create_directories(folder.path("out/200E_200.edi"));
  EXPECT_EQ(failure(),
            "An error occurred while writing the files: " + folder.path("out/200E_200.edi") + " is a folder");
  EXPECT_EQ(files_in_folder(), Strings{"200E_200.edi"}) << "nothing was begun";
  fs::remove_all(choices.folder);

  std::ignore = folder.write("out", "a file in place of the folder");
  EXPECT_NE(failure().find(choices.folder), std::string::npos);
  fs::remove(choices.folder);

  const std::string usual = std::exchange(choices.folder, folder.path(std::string(300, 'a')));
  EXPECT_NE(failure().find("File name too long"), std::string::npos);
  choices.folder = usual;
  fs::create_directory(choices.folder);
  {
    const ReadOnlyFolder read_only(choices.folder);
    EXPECT_NE(failure().find("200E_100.edi: Permission denied"), std::string::npos);
  }
  EXPECT_EQ(files_in_folder(), Strings{});
  std::ignore = folder.write("out/200E_100.edi", "earlier");
  {
    interface->yes_no_answers = {true};
    const FileSizeLimit full(1000);
    EXPECT_NE(failure().find("200E_100.edi: File too large"), std::string::npos);
  }
  EXPECT_EQ(files_in_folder(), Strings{"200E_100.edi"});
  EXPECT_EQ(written("200E_100.edi"), "earlier");
  EXPECT_TRUE(result.files.empty());

  fs::remove(folder.path("out/200E_100.edi"));
  fs::create_symlink(session().database_file, folder.path("out/200E_100.edi"));
  EXPECT_NE(failure().find("is one of the input files"), std::string::npos);
}

TEST(Export_plan_texts, Remarks_lose_the_name_of_their_own_station_and_nothing_else) {
  ExportRow row;
  row.remarks = {"Station 100: has no place", "The line has no map system"};
  row.stations = {100.0};
  EXPECT_EQ(export_cell_text(row, ExportColumn::remarks), "has no place; The line has no map system");
  row.stations = {100.0, 200.0};
  EXPECT_EQ(export_cell_text(row, ExportColumn::remarks),
            "Station 100: has no place; The line has no map system");
}
