// Conversion of genuine Jet files, measured on the legacy surveys beside the checkout.
#include <chrono>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <map>
#include <random>
#include <span>
#include <string>
#include <vector>

#include <glib.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "platform/dao/database.h"
#include "platform/dao/error.h"
#include "platform/dao/jet/jet_file.h"
#include "platform/dao/jet/jet_reader.h"
#include "platform/dao/recordset.h"
#include "tests/support/temporary_folder.h"

namespace {

using nlohmann::json;

const std::filesystem::path legacy_folder = std::filesystem::path(BRENLOX_FIELD_DATA) / "legacy_jet";

std::string sha256(std::span<const std::byte> bytes) {
  gchar* digest = g_compute_checksum_for_data(G_CHECKSUM_SHA256,
                                              reinterpret_cast<const guchar*>(bytes.data()), bytes.size());
  std::string result = digest;
  g_free(digest);
  return result;
}

// "2000-03-14T16:45:30" or "1999-12-31" as days since 30 December 1899.
double days_of(const std::string& date) {
  int year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0;
  std::sscanf(date.c_str(), "%d-%d-%dT%d:%d:%d", &year, &month, &day, &hour, &minute, &second);
  const auto calendar_day = [](int y, int m, int d) {
    return std::chrono::sys_days(std::chrono::year(y) / m / d);
  };
  const auto days = (calendar_day(year, month, day) - calendar_day(1899, 12, 30)).count();
  return static_cast<double>(days) + (hour * 3600 + minute * 60 + second) / 86400.0;
}

std::string type_words(const dao::Column& column) {
  switch (column.type) {
    case dao::ColumnType::counter:
      return "COUNTER";
    case dao::ColumnType::long_integer:
      return "LONG";
    case dao::ColumnType::single_float:
      return "SINGLE";
    case dao::ColumnType::double_float:
      return "DOUBLE";
    case dao::ColumnType::text:
      return "TEXT(" + std::to_string(column.size) + ")";
    case dao::ColumnType::bit:
      return "BIT";
    case dao::ColumnType::long_binary:
      return "LONGBINARY";
    case dao::ColumnType::date_time:
      return "DATETIME";
  }
  return {};
}

void expect_blob(const dao::Bytes& bytes, const json& expected) {
  EXPECT_EQ(bytes.size(), expected["bytes"]);
  EXPECT_EQ(sha256(bytes), expected["sha256"].get<std::string>());
}

void expect_value(const dao::Recordset& rows, const dao::Column& column, const json& expected) {
  SCOPED_TRACE(column.name);
  EXPECT_EQ(rows.is_null(column.name), expected.is_null());
  if (expected.is_null()) {
    return;
  }
  switch (column.type) {
    case dao::ColumnType::counter:
    case dao::ColumnType::long_integer:
      EXPECT_EQ(rows.get_long(column.name), expected.get<std::int32_t>());
      break;
    case dao::ColumnType::single_float:
      EXPECT_EQ(rows.get_single(column.name), expected.get<float>());
      break;
    case dao::ColumnType::double_float:
      EXPECT_EQ(rows.get_double(column.name), expected.get<double>());
      break;
    case dao::ColumnType::text:
      EXPECT_EQ(rows.get_text(column.name), expected.get<std::string>());
      break;
    case dao::ColumnType::bit:
      EXPECT_EQ(rows.get_bit(column.name), expected.get<bool>());
      break;
    case dao::ColumnType::long_binary:
      expect_blob(rows.get_binary(column.name), expected);
      break;
    case dao::ColumnType::date_time:
      EXPECT_NEAR(rows.get_date(column.name), days_of(expected.get<std::string>()), 0.1 / 86400.0);
      break;
  }
}

// Compares every column that the expected row names.
void expect_row(const dao::Recordset& rows, const std::vector<dao::Column>& columns, const json& expected) {
  std::size_t compared = 0;
  for (const dao::Column& column : columns) {
    if (expected.contains(column.name)) {
      expect_value(rows, column, expected[column.name]);
      ++compared;
    }
  }
  EXPECT_GE(compared, 4U);
}

std::vector<float> singles(const dao::Bytes& bytes) {
  std::vector<float> values(bytes.size() / sizeof(float));
  if (!values.empty()) {
    std::memcpy(values.data(), bytes.data(), values.size() * sizeof(float));
  }
  return values;
}

std::vector<std::int32_t> longs(const dao::Bytes& bytes) {
  std::vector<std::int32_t> values(bytes.size() / sizeof(std::int32_t));
  if (!values.empty()) {
    std::memcpy(values.data(), bytes.data(), values.size() * sizeof(std::int32_t));
  }
  return values;
}

// The points of a reading in the file of expected values, places counted from 1.
void expect_points(const dao::Recordset& row, const json& expected) {
  const std::vector<float> frequencies = singles(row.get_binary("FreqBinary"));
  const std::vector<float> data = singles(row.get_binary("DataBinary"));
  const std::vector<std::int32_t> mask = longs(row.get_binary("MaskBinary"));
  ASSERT_EQ(data.size(), 20 * frequencies.size());
  ASSERT_EQ(mask.size(), 2 * frequencies.size());
  json first = json::array();
  json absent[2] = {json::array(), json::array()};
  json masked[2] = {json::array(), json::array()};
  for (std::size_t i = 0; i < frequencies.size(); ++i) {
    for (std::size_t part = 0; part < 2; ++part) {
      if (data[20 * i + part] == -1e32F) {
        absent[part].push_back(i + 1);
      }
      if (mask[2 * i + part] == 0) {
        masked[part].push_back(i + 1);
      }
    }
  }
  EXPECT_EQ(absent[0], expected["absent_resistivity"]);
  EXPECT_EQ(absent[1], expected["absent_phase"]);
  EXPECT_EQ(masked[0], expected["masked_resistivity"]);
  EXPECT_EQ(masked[1], expected["masked_phase"]);
  for (std::size_t i = 0; i < expected["first_frequencies"].size(); ++i) {
    const json& point = expected["first_frequencies"][i];
    EXPECT_EQ(frequencies.at(i), point["frequency"].get<float>());
    EXPECT_EQ(data[20 * i], point["field1"].get<float>());
    EXPECT_EQ(data[20 * i + 1], point["field2"].get<float>());
    EXPECT_EQ(mask[2 * i], point["mask"][0].get<std::int32_t>());
    EXPECT_EQ(mask[2 * i + 1], point["mask"][1].get<std::int32_t>());
  }
}

int count_rows(dao::Database& database, const std::string& table) {
  return database.open_recordset("SELECT * FROM [" + table + "]").record_count();
}

class Legacy_survey : public ::testing::Test {
 protected:
  void SetUp() override {
    if (!std::filesystem::exists(legacy_folder / "expected.json")) {
      GTEST_SKIP() << "no legacy surveys beside the checkout";
    }
    expected_ = json::parse(file_contents((legacy_folder / "expected.json").string()));
  }

  dao::Database converted(const std::string& name) {
    const std::string destination = folder_.path("converted_" + name);
    dao::convert_jet_database((legacy_folder / name).string(), destination);
    return dao::Database::open(destination);
  }

  json expected_;
  TemporaryFolder folder_;
};

TEST_F(Legacy_survey, Has_the_columns_and_primary_indexes_of_a_new_one) {
  const dao::Database database = converted("survey_jet4.mdb");
  const dao::JetFile file((legacy_folder / "survey_jet4.mdb").string());
  ASSERT_EQ(database.table_names().size(), expected_["schema"].size());
  for (std::size_t i = 0; i < file.table_names().size(); ++i) {
    const std::string& table = file.table_names()[i];
    SCOPED_TRACE(table);
    json columns = json::array();
    for (const dao::Column& column : database.columns(table)) {
      columns.push_back({{"name", column.name}, {"type", type_words(column)}});
    }
    EXPECT_EQ(columns, expected_["schema"][table]["columns"]);
    const dao::JetIndex index = file.open_table(i).primary_index();
    const json& wanted = expected_["schema"][table]["primary_index"];
    EXPECT_EQ(index.columns, wanted.is_null() ? std::vector<std::string>()
                                              : wanted["columns"].get<std::vector<std::string>>());
    EXPECT_EQ(index.name, wanted.is_null() ? "" : wanted["name"].get<std::string>());
  }
}

TEST_F(Legacy_survey, Keeps_the_count_of_rows_of_each_file) {
  std::map<std::string, json> counts{{"survey_jet4.mdb", expected_["row_counts"]}};
  for (const auto& [name, contents] : expected_["other_files"].items()) {
    counts[name] = contents["row_counts"];
  }
  EXPECT_EQ(counts.size(), 5U);
  for (const auto& [name, tables] : counts) {
    SCOPED_TRACE(name);
    dao::Database database = converted(name);
    EXPECT_EQ(database.table_names().size(), tables.size());
    for (const auto& [table, rows] : tables.items()) {
      EXPECT_EQ(count_rows(database, table), rows) << table;
    }
  }
}

TEST_F(Legacy_survey, Keeps_every_row_of_its_small_tables_in_the_order_of_the_counter) {
  dao::Database database = converted("survey_jet4.mdb");
  const std::map<std::string, std::string> lists{{"FileTable", "file_table"},
                                                 {"StationsTable", "StationsTable"},
                                                 {"LocationLookupTable", "LocationLookupTable"},
                                                 {"ReadingsFrequencyTable", "ReadingsFrequencyTable"},
                                                 {"Projection Defintion Table", "projection"}};
  for (const auto& [table, list] : lists) {
    SCOPED_TRACE(table);
    const std::vector<dao::Column> columns = database.columns(table);
    dao::Recordset rows = database.open_recordset("SELECT * FROM [" + table + "]");
    for (const json& expected : expected_[list]) {
      SCOPED_TRACE(expected["ID"]);
      ASSERT_FALSE(rows.eof());
      expect_row(rows, columns, expected);
      rows.move_next();
    }
    EXPECT_TRUE(rows.eof());
  }
}

TEST_F(Legacy_survey, Keeps_readings_of_every_kind_in_full) {
  dao::Database database = converted("survey_jet4.mdb");
  const std::vector<dao::Column> columns = database.columns("ReadingsDataTable");
  ASSERT_EQ(expected_["readings"].size(), 20U);
  for (const json& expected : expected_["readings"]) {
    SCOPED_TRACE(expected["note"]);
    dao::Recordset row = database.open_recordset("SELECT * FROM ReadingsDataTable WHERE ID = " +
                                                 std::to_string(expected["ID"].get<int>()));
    ASSERT_FALSE(row.eof());
    expect_row(row, columns, expected);
    expect_points(row, expected);
  }
}

TEST_F(Legacy_survey, Keeps_every_byte_of_every_reading) {
  dao::Database database = converted("survey_jet4.mdb");
  const json& expected = expected_["all_readings"];
  std::map<std::string, int> data_types;
  std::map<std::string, dao::Bytes> joined;
  dao::Recordset rows = database.open_recordset("SELECT * FROM ReadingsDataTable");
  EXPECT_EQ(rows.get_long("ID"), expected["first_id"]);
  for (; !rows.eof(); rows.move_next()) {
    ++data_types[rows.get_text("DataType")];
    for (const char* column : {"FreqBinary", "DataBinary", "MaskBinary"}) {
      const dao::Bytes bytes = rows.get_binary(column);
      joined[column].insert(joined[column].end(), bytes.begin(), bytes.end());
    }
  }
  EXPECT_EQ(json(data_types), expected["data_types"]);
  for (const auto& [column, bytes] : joined) {
    expect_blob(bytes, expected[column + "_joined_by_id"]);
  }
  EXPECT_EQ(joined.size(), 3U);
}

TEST_F(Legacy_survey, Counts_new_rows_on_from_its_last_ID) {
  dao::Database database = converted("survey_jet4.mdb");
  dao::Recordset rows = database.open_recordset("SELECT * FROM ReadingsDataTable");
  rows.add_new();
  rows.set_long("FileID", 1);
  rows.update();
  rows.move_last();
  EXPECT_EQ(rows.get_long("ID"), 160);
}

TEST_F(Legacy_survey, Of_another_trade_keeps_its_memo_and_currency_values) {
  dao::Database database = converted("not_a_survey.mdb");
  dao::Recordset customers = database.open_recordset("SELECT * FROM Customers");
  EXPECT_FALSE(customers.get_text("Notes").empty());
  dao::Recordset orders = database.open_recordset("SELECT * FROM Orders");
  EXPECT_GT(orders.get_double("Total"), 0.0);
}

// Converts and gives the error's text; empty when it went through.
std::string conversion_error(const std::string& source, const std::string& destination) {
  try {
    dao::convert_jet_database(source, destination);
  } catch (const dao::Error& failure) {
    EXPECT_FALSE(std::filesystem::exists(destination));
    return failure.what();
  }
  return {};
}

TEST_F(Legacy_survey, That_is_damaged_gives_a_plain_error_and_no_file) {
  const std::string whole = file_contents((legacy_folder / "survey_jet4.mdb").string());
  const std::string flipped = file_contents((legacy_folder / "bitflips.mdb").string());
  const std::string cut = file_contents((legacy_folder / "truncated.mdb").string());
  constexpr std::size_t page_size = 4096;

  // The long DataBinary of 500 frequencies: 40,000 bytes on a chain of pages. Its first piece is made to
  // point to itself.
  std::string circular = whole;
  const std::size_t header = whole.find(std::string("\x40\x9c\0\0", 4));
  ASSERT_NE(header, std::string::npos);
  std::uint32_t piece = 0;
  std::memcpy(&piece, whole.data() + header + 4, sizeof piece);
  const std::size_t page = (piece >> 8) * page_size;
  std::uint16_t place = 0;
  std::memcpy(&place, whole.data() + page + 14 + std::size_t{2} * (piece & 0xff), sizeof place);
  circular.replace(page + (place & 0x1fffU), 4, whole, header + 4, 4);

  struct Case {
    const char* name;
    std::string contents;
    const char* part_of_the_message;
  };
  const Case cases[] = {
      {"cut in a page", cut, "middle of a page"},
      {"cut behind a page", whole.substr(0, 125 * page_size), "rows"},
      {"changed bytes", flipped, "FreqBinary of table ReadingsDataTable, ID 19"},
      {"circular chain of pages", circular, "DataBinary of table ReadingsDataTable, ID 140"},
      {"header alone", whole.substr(0, page_size), "MSysObjects"},
      {"empty", "", "not a Jet database"},
      {"zeros", std::string(page_size, '\0'), "not a Jet database"},
      {"text", "a letter home\n", "not a Jet database"},
      {"later version", std::string(whole).replace(0x14, 1, 1, '\2'), "version"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const std::string source = folder_.write("damaged.mdb", c.contents);
    testing::internal::CaptureStderr();
    const std::string error = conversion_error(source, folder_.path("new.mdb"));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");  // the library's own lines
    EXPECT_NE(error.find(c.part_of_the_message), std::string::npos) << error;
    EXPECT_EQ(file_contents(source), c.contents);
  }
  EXPECT_FALSE(conversion_error(folder_.path("missing.mdb"), folder_.path("new.mdb")).empty());
}

TEST_F(Legacy_survey, Is_never_converted_over_another_file) {
  const std::string other = folder_.write("other.mdb", "precious");
  EXPECT_THROW(dao::convert_jet_database((legacy_folder / "six_tables.mdb").string(), other), dao::Error);
  EXPECT_EQ(file_contents(other), "precious");
}

// A copy with a few bytes changed: anywhere, in the heads of pages, or in pages other than data; or cut.
std::string damaged_copy(const std::string& whole, std::uint32_t seed) {
  constexpr std::size_t page_size = 4096;
  std::mt19937 random(seed);
  const auto below = [&random](std::size_t limit) { return random() % limit; };
  std::string copy = whole;
  const std::size_t kind = below(4);
  if (kind == 0) {
    copy.resize(page_size * (1 + below(copy.size() / page_size)));
  }
  for (std::size_t changes = 1 + below(30); changes > 0; --changes) {
    std::size_t page = page_size * below(copy.size() / page_size);
    for (int tries = 0; kind == 1 && copy[page] == '\1' && tries < 1000; ++tries) {
      page = page_size * below(copy.size() / page_size);
    }
    copy[page + below(kind == 2 ? 64 : page_size)] = static_cast<char>(random());
  }
  return copy;
}

// Reads everything in a file; false if an error stops it.
bool reads_through(const std::string& source) {
  try {
    const dao::JetFile file(source);
    for (std::size_t i = 0; i < file.table_names().size(); ++i) {
      dao::JetTable table = file.open_table(i);
      std::vector<dao::JetValue> row;
      while (table.read_row(row)) {
      }
    }
    return true;
  } catch (const dao::Error&) {
    return false;
  }
}

TEST_F(Legacy_survey, With_random_damage_converts_or_gives_an_error) {
  const std::string whole = file_contents((legacy_folder / "survey_jet4.mdb").string());
  const std::string destination = folder_.path("new.mdb");
  int refused = 0;
  for (std::uint32_t seed = 1; seed <= 400; ++seed) {
    SCOPED_TRACE(seed);
    const std::string source = folder_.write("damaged.mdb", damaged_copy(whole, seed));
    const bool readable = reads_through(source);
    refused += readable ? 0 : 1;
    if (seed % 10 == 0) {  // each writes a file down to the disk, which is slow
      const std::string error = conversion_error(source, destination);
      EXPECT_TRUE(readable || !error.empty());
      std::filesystem::remove(destination);
    }
  }
  EXPECT_GT(refused, 100);  // much of the damage hits values of the right length, where nothing shows it
}

}  // namespace
