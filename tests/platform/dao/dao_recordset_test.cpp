// Rows one at a time: moving, searching, editing, and what is refused.
#include <cmath>
#include <cstdint>
#include <functional>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/dao/database.h"
#include "tests/support/temporary_folder.h"

namespace {

class Dynaset : public ::testing::Test {
 protected:
  Dynaset() {
    database_.execute(
        "CREATE TABLE Readings (ID COUNTER,Line TEXT(8),Station Double,Event LONG,Rate SINGLE,Used BIT,"
        "Day DATETIME,Data LONGBINARY)");
  }

  void add(dao::Recordset& rows, const std::string& line, double station, std::int32_t event = 0) {
    rows.add_new();
    rows.set_text("Line", line);
    rows.set_double("Station", station);
    rows.set_long("Event", event);
    rows.update();
  }

  // The events from the current row to the end.
  static std::vector<std::int32_t> events(dao::Recordset& rows) {
    std::vector<std::int32_t> found;
    for (; !rows.eof(); rows.move_next()) {
      found.push_back(rows.get_long("Event"));
    }
    return found;
  }

  static std::string error_of(const std::function<void()>& operation) {
    try {
      operation();
    } catch (const dao::Error& failure) {
      return failure.what();
    }
    return {};
  }

  using Events = std::vector<std::int32_t>;
  TemporaryFolder folder_;
  dao::Database database_ = dao::Database::create(folder_.path("survey.mdb"), "");
};

TEST_F(Dynaset, Keeps_the_current_row_when_one_is_added_and_shows_it_at_its_end) {
  dao::Recordset rows = database_.open_recordset("SELECT * FROM Readings ORDER BY Station");
  EXPECT_TRUE(rows.eof());
  add(rows, "1", 30.0, 3);
  EXPECT_TRUE(rows.eof());
  add(rows, "1", 20.0, 2);
  rows.requery();
  EXPECT_EQ(rows.get_long("Event"), 2);
  add(rows, "1", 10.0, 1);
  EXPECT_EQ(rows.get_long("Event"), 2);
  EXPECT_EQ(rows.record_count(), 3);
  EXPECT_EQ(events(rows), (Events{2, 3, 1}));
  rows.requery();
  EXPECT_EQ(events(rows), (Events{1, 2, 3}));
}

TEST_F(Dynaset, Finds_the_first_row_in_its_own_order_and_moves_on_from_there) {
  dao::Recordset rows = database_.open_recordset("SELECT * FROM Readings ORDER BY Station DESC");
  for (const int event : {1, 2, 3, 4, 5}) {
    add(rows, event % 2 == 0 ? "even" : "odd", 10.0 * event, event);
  }
  rows.requery();
  rows.find_first("Line = 'odd'");
  EXPECT_FALSE(rows.no_match());
  EXPECT_EQ(rows.get_long("Event"), 5);
  rows.find_first("Line = 'even'");
  EXPECT_EQ(rows.get_long("Event"), 4);
  rows.find_first("Line = 'none'");
  EXPECT_TRUE(rows.no_match());
  EXPECT_FALSE(rows.eof());
  EXPECT_EQ(rows.get_long("Event"), 4);
  rows.move_next();
  EXPECT_EQ(events(rows), (Events{3, 2, 1}));
  // A row that this dynaset has added comes after all others.
  add(rows, "odd", 90.0, 9);
  rows.find_first("Line = 'odd'");
  EXPECT_EQ(rows.get_long("Event"), 5);
  rows.find_first("Event = 9");
  EXPECT_FALSE(rows.no_match());
  rows.move_next();
  EXPECT_TRUE(rows.eof());
}

TEST_F(Dynaset, Keeps_its_rows_and_their_order_while_they_are_edited) {
  dao::Recordset filling = database_.open_recordset("SELECT * FROM Readings");
  for (const int event : {1, 2, 3, 4}) {
    add(filling, "a", 10.0 * event, event);
  }
  dao::Recordset rows = database_.open_recordset("SELECT * FROM Readings WHERE Line = 'a' ORDER BY Station");
  rows.find_first("Event = 2");
  rows.edit();
  rows.set_text("Line", "b");
  rows.set_double("Station", 99.0);
  EXPECT_EQ(rows.get_text("Line"), "b");
  rows.update();
  EXPECT_EQ(rows.get_text("Line"), "b");
  rows.move_next();
  EXPECT_EQ(events(rows), (Events{3, 4}));
  rows.requery();
  EXPECT_EQ(events(rows), (Events{1, 3, 4}));
}

TEST_F(Dynaset, Goes_to_the_following_row_behind_a_deleted_one) {
  for (const char* statement : {"SELECT * FROM Readings", "SELECT * FROM Readings ORDER BY Event",
                                "SELECT * FROM Readings WHERE Event > 0"}) {
    SCOPED_TRACE(statement);
    database_.execute("DELETE FROM Readings");
    dao::Recordset filling = database_.open_recordset("SELECT * FROM Readings");
    for (const int event : {1, 2, 3, 4}) {
      add(filling, "a", 0.0, event);
    }
    dao::Recordset rows = database_.open_recordset(statement);
    rows.find_first("Event = 2");
    rows.delete_row();
    EXPECT_EQ(error_of([&] { (void)rows.get_long("Event"); }), "record is deleted");
    rows.move_next();
    EXPECT_EQ(rows.get_long("Event"), 3);
    rows.delete_row();
    EXPECT_EQ(rows.record_count(), 2);
    rows.move_next();
    EXPECT_EQ(rows.get_long("Event"), 4);
    rows.delete_row();
    rows.move_next();
    EXPECT_TRUE(rows.eof());
    rows.move_first();
    EXPECT_EQ(events(rows), (Events{1}));
  }
}

TEST_F(Dynaset, Goes_to_a_row_by_its_place) {
  dao::Recordset rows = database_.open_recordset("SELECT * FROM Readings ORDER BY Station");
  for (const std::int32_t event : {3, 1, 2}) {
    add(rows, "1", 10.0 * event, event);
  }
  rows.requery();
  rows.set_absolute_position(2);
  EXPECT_EQ(rows.get_long("Event"), 3);
  rows.set_absolute_position(0);
  EXPECT_EQ(rows.get_long("Event"), 1);
  rows.move_next();
  EXPECT_EQ(rows.get_long("Event"), 2);
  for (const std::int32_t beyond : {-1, 3}) {
    EXPECT_EQ(error_of([&] { rows.set_absolute_position(beyond); }), "no current record");
  }
  EXPECT_EQ(rows.get_long("Event"), 2);
}

TEST_F(Dynaset, Goes_to_the_row_that_it_added_among_rows_alike) {
  dao::Recordset rows = database_.open_recordset("SELECT * FROM Readings ORDER BY Station");
  EXPECT_EQ(error_of([&] { rows.go_to_added(); }), "no current record");
  add(rows, "1", 30.0, 1);
  add(rows, "1", 30.0, 2);
  rows.move_first();
  rows.go_to_added();
  EXPECT_EQ(rows.get_long("Event"), 2);
  EXPECT_EQ(rows.get_long("ID"), 2);
  rows.move_next();
  EXPECT_TRUE(rows.eof());
  rows.requery();
  EXPECT_EQ(error_of([&] { rows.go_to_added(); }), "no current record");
}

// The first look takes the whole list of a few rows, and only the first of many.
TEST_F(Dynaset, Goes_through_the_rows_of_a_condition_however_many_they_are) {
  dao::Recordset table = database_.open_recordset("SELECT * FROM Readings");
  for (std::int32_t event = 40; event > 0; --event) {
    add(table, "1", event, event);
  }
  for (const std::int32_t count : {0, 1, 15, 16, 17, 18, 40}) {
    SCOPED_TRACE(count);
    dao::Recordset rows = database_.open_recordset(
        "SELECT * FROM Readings WHERE Event <= " + std::to_string(count) + " ORDER BY Station");
    Events expected;
    for (std::int32_t event = 1; event <= count; ++event) {
      expected.push_back(event);
    }
    EXPECT_EQ(rows.eof(), count == 0);
    EXPECT_EQ(events(rows), expected);
    add(rows, "1", 0.0, 99);
    expected.push_back(99);
    rows.move_first();
    EXPECT_EQ(events(rows), expected);
    EXPECT_EQ(rows.record_count(), count + 1);
    rows.go_to_added();
    rows.delete_row();
  }
}

TEST_F(Dynaset, Tells_the_size_of_bytes_without_reading_them) {
  dao::Recordset rows = database_.open_recordset("SELECT * FROM Readings");
  rows.add_new();
  rows.set_binary("Data", dao::Bytes(4800));
  EXPECT_EQ(rows.field_size("Data"), 4800);
  rows.update();
  add(rows, "1", 1.0);
  rows.move_first();
  EXPECT_EQ(rows.field_size("Data"), 4800);
  rows.move_next();
  EXPECT_EQ(rows.field_size("Data"), 0);
  EXPECT_FALSE(error_of([&] { (void)rows.field_size("Line"); }).empty());
}

TEST_F(Dynaset, Sees_what_others_changed_and_deleted) {
  dao::Recordset rows = database_.open_recordset("SELECT * FROM Readings");
  add(rows, "a", 0.0, 1);
  rows.move_first();
  EXPECT_EQ(rows.get_long("Event"), 1);
  database_.execute("UPDATE Readings SET Event = 7");
  EXPECT_EQ(rows.get_long("Event"), 7);
  database_.execute("DELETE FROM Readings WHERE Event = 7");
  EXPECT_EQ(error_of([&] { (void)rows.get_long("Event"); }), "record is deleted");
  EXPECT_EQ(error_of([&] { rows.edit(); }), "record is deleted");
}

TEST_F(Dynaset, Gives_back_every_value_exactly) {
  dao::Recordset rows = database_.open_recordset("SELECT * FROM Readings");
  const float singles[] = {0.0F,
                           0.1F,
                           33.3F,
                           24000.0F / 7.0F,
                           -1e32F,
                           16777216.0F,
                           16777217.0F * 3.0F,
                           std::numeric_limits<float>::max(),
                           std::numeric_limits<float>::lowest(),
                           std::numeric_limits<float>::min(),
                           std::numeric_limits<float>::denorm_min(),
                           std::numeric_limits<float>::infinity(),
                           std::nextafter(1.0F, 2.0F)};
  const dao::Bytes bytes{std::byte{0}, std::byte{0xFF}, std::byte{'1'}};
  for (const float single : singles) {
    SCOPED_TRACE(single);
    rows.add_new();
    rows.set_single("Rate", single);
    rows.set_double("Station", double{single} / 3.0);
    rows.set_long("Event", std::numeric_limits<std::int32_t>::min());
    rows.set_text("Line", "  007é ");
    rows.set_bit("Used", true);
    rows.set_date("Day", -693593.75);
    rows.set_binary("Data", bytes);
    rows.update();
    rows.move_last();
    EXPECT_EQ(rows.get_single("Rate"), single);
    EXPECT_EQ(rows.get_double("Station"), double{single} / 3.0);
    EXPECT_EQ(rows.get_long("Event"), std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(rows.get_text("Line"), "  007é ");
    EXPECT_TRUE(rows.get_bit("Used"));
    EXPECT_EQ(rows.get_date("Day"), -693593.75);
    EXPECT_EQ(rows.get_binary("Data"), bytes);
  }
  rows.edit();
  rows.set_single("Rate", 33.3F);
  rows.set_binary("Data", {});
  rows.set_text("Line", "");
  rows.update();
  EXPECT_EQ(rows.get_double("Rate"), 33.3);
  EXPECT_FALSE(rows.is_null("Data"));
  EXPECT_FALSE(rows.is_null("Line"));
}

TEST_F(Dynaset, Reads_a_null_as_nothing) {
  dao::Recordset rows = database_.open_recordset("SELECT * FROM Readings");
  rows.add_new();
  rows.update();
  rows.move_first();
  EXPECT_EQ(rows.get_long("ID"), 1);
  for (const char* field : {"Line", "Station", "Event", "Rate", "Used", "Day", "Data"}) {
    EXPECT_TRUE(rows.is_null(field)) << field;
  }
  EXPECT_EQ(rows.get_text("Line"), "");
  EXPECT_EQ(rows.get_double("Station"), 0.0);
  EXPECT_EQ(rows.get_long("Event"), 0);
  EXPECT_FALSE(rows.get_bit("Used"));
  EXPECT_TRUE(rows.get_binary("Data").empty());
}

TEST_F(Dynaset, Refuses_what_makes_no_sense_and_stays_as_it_was) {
  dao::Recordset rows = database_.open_recordset("SELECT * FROM Readings");
  add(rows, "a", 1.0, 1);
  rows.move_first();
  dao::Recordset empty = database_.open_recordset("SELECT * FROM Readings WHERE Event = 2");
  struct Case {
    const char* part_of_the_message;
    std::function<void()> operation;
  };
  const Case cases[] = {
      {"without add_new or edit", [&] { rows.update(); }},
      {"without add_new or edit", [&] { rows.set_long("Event", 2); }},
      {"no current record", [&] { empty.edit(); }},
      {"no current record", [&] { empty.delete_row(); }},
      {"no current record", [&] { empty.move_next(); }},
      {"no current record", [&] { (void)empty.get_long("Event"); }},
      {"field 'Nothing'", [&] { (void)rows.get_long("Nothing"); }},
      {"field 'Line'", [&] { (void)rows.get_long("Line"); }},
      {"field 'Station'", [&] { (void)rows.get_single("Station"); }},
      {"field 'Event'", [&] { rows.add_new(), rows.set_text("Event", "2"); }},
      {"'Line' is longer than its 8 characters", [&] { rows.add_new(), rows.set_text("Line", "123456789"); }},
      {"'Line' is not valid UTF-8", [&] { rows.add_new(), rows.set_text("Line", "\xC3("); }},
      {"'Rate' is not a number", [&] { rows.add_new(), rows.set_single("Rate", std::nanf("")); }},
      {"counter", [&] { rows.edit(), rows.set_long("ID", 5); }},
      {"without add_new or edit", [&] { rows.edit(), rows.move_first(), rows.update(); }},
      {"no such column: Nothing", [&] { rows.find_first("Nothing = 1"); }},
  };
  for (const Case& c : cases) {
    const std::string error = error_of(c.operation);
    EXPECT_NE(error.find(c.part_of_the_message), std::string::npos) << c.part_of_the_message << "; " << error;
  }
  rows.add_new();
  rows.set_text("Line", "1234567é");
  rows.move_first();  // drops the new row
  rows.requery();
  EXPECT_EQ(rows.record_count(), 1);
  EXPECT_EQ(rows.get_long("Event"), 1);
}

TEST_F(Dynaset, That_was_closed_says_so) {
  dao::Recordset rows = database_.open_recordset("SELECT * FROM Readings");
  dao::Recordset others = database_.open_recordset("SELECT DISTINCT Event FROM Readings");
  rows.close();
  rows.close();
  EXPECT_FALSE(rows.is_open());
  EXPECT_EQ(error_of([&] { rows.move_first(); }), "the recordset is closed");
  database_.close();
  database_.close();
  EXPECT_FALSE(others.is_open());
  EXPECT_EQ(error_of([&] { (void)others.eof(); }), "the database is closed");
  EXPECT_EQ(error_of([&] { database_.execute("DELETE FROM Readings"); }), "the database is closed");
  EXPECT_EQ(error_of([&] { (void)database_.open_recordset("SELECT * FROM Readings"); }),
            "the database is closed");
}

TEST_F(Dynaset, Is_kept_or_dropped_with_its_transaction) {
  dao::Recordset rows = database_.open_recordset("SELECT * FROM Readings");
  {
    const dao::Transaction dropped(database_);
    add(rows, "a", 0.0, 1);
    rows.find_first("Event = 1");
    EXPECT_EQ(rows.get_long("Event"), 1);
    EXPECT_THROW(dao::Transaction nested(database_), dao::Error);
  }
  EXPECT_EQ(error_of([&] { (void)rows.get_long("Event"); }), "record is deleted");
  rows.requery();
  EXPECT_TRUE(rows.eof());
  dao::Transaction kept(database_);
  add(rows, "a", 0.0, 2);
  kept.commit();
  rows.requery();
  EXPECT_EQ(rows.get_long("Event"), 2);
}

TEST_F(Dynaset, Of_distinct_or_computed_rows_is_a_snapshot) {
  dao::Recordset rows = database_.open_recordset("SELECT * FROM Readings");
  for (const char* line : {"20E", "10e ", "10E", "20E"}) {
    rows.add_new();
    rows.set_text("Line", line);
    rows.set_single("Rate", 33.3F);
    rows.update();
  }
  dao::Recordset lines = database_.open_recordset("SELECT DISTINCT Line FROM Readings ORDER BY Line;");
  EXPECT_EQ(lines.record_count(), 2);
  EXPECT_EQ(lines.get_text("line"), "10e");
  lines.move_last();
  EXPECT_EQ(lines.get_text("Line"), "20E");
  EXPECT_THROW(lines.edit(), dao::Error);
  const dao::Recordset rates = database_.open_recordset("SELECT DISTINCT Rate FROM Readings ORDER BY Rate");
  EXPECT_EQ(rates.get_single("Rate"), 33.3F);
  const dao::Recordset largest = database_.open_recordset("SELECT MAX(ID) AS Max FROM Readings");
  EXPECT_EQ(largest.get_long("MAX"), 4);
  const dao::Recordset none = database_.open_recordset("SELECT MAX(ID) AS Max FROM Readings WHERE ID > 9");
  EXPECT_FALSE(none.eof());
  EXPECT_TRUE(none.is_null("MAX"));
}

}  // namespace
