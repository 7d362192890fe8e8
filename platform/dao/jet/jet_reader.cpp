#include "platform/dao/jet/jet_reader.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string_view>
#include <system_error>

#include "platform/dao/error.h"

namespace dao {

namespace {

constexpr std::size_t long_value_header =
    12;                                // bytes in the row before a long value that is stored inside it
constexpr unsigned max_columns = 255;  // Jet's own limits for a table
constexpr unsigned max_indexes = 64;   // 32, and as many for relations
constexpr int max_text = 255;

// How a value is stored in a row, and how long it has to be.
struct StoredType {
  int jet_type;
  ColumnType type;
  std::size_t length;  // bytes; 0 where it varies
};

constexpr StoredType stored_types[] = {
    {MDB_BOOL, ColumnType::bit, 0},
    {MDB_BYTE, ColumnType::long_integer, 1},
    {MDB_INT, ColumnType::long_integer, 2},
    {MDB_LONGINT, ColumnType::long_integer, 4},
    {MDB_MONEY, ColumnType::double_float, 8},
    {MDB_FLOAT, ColumnType::single_float, 4},
    {MDB_DOUBLE, ColumnType::double_float, 8},
    {MDB_DATETIME, ColumnType::date_time, 8},
    {MDB_TEXT, ColumnType::text, 0},
    {MDB_OLE, ColumnType::long_binary, 0},
    {MDB_MEMO, ColumnType::text, 0},
    {MDB_NUMERIC, ColumnType::double_float, 17},
};

StoredType stored_type(int jet_type) {
  for (const StoredType& stored : stored_types) {
    if (stored.jet_type == jet_type) {
      return stored;
    }
  }
  return {jet_type, ColumnType::long_binary, 0};
}

// A number from its bytes, little-endian in the file.
template <class T>
T number(std::span<const std::byte> bytes) {
  static_assert(std::endian::native == std::endian::little);
  T value;
  std::memcpy(&value, bytes.data(), sizeof value);
  return value;
}

// A sign byte, then four 32-bit words, the most significant first.
double decimal_number(std::span<const std::byte> bytes, int scale) {
  double magnitude = 0.0;
  for (std::size_t word = 0; word < 4; ++word) {
    magnitude = magnitude * 4294967296.0 + number<std::uint32_t>(bytes.subspan(1 + 4 * word));
  }
  const bool negative = (bytes[0] & std::byte{0x80}) != std::byte{0};
  return (negative ? -magnitude : magnitude) / std::pow(10.0, scale);
}

[[noreturn]] void fail(const std::string& what) { throw Error("The database is damaged: " + what + "."); }

// The page size of a sound file's version; the library itself would take files of zeros.
std::size_t page_size_of(const std::string& path) {
  constexpr std::string_view signature("\0\1\0\0Standard Jet DB\0", 20);
  std::array<char, 21> header{};
  std::ifstream stream(path, std::ios::binary);
  if (!stream) {
    throw Error("The database '" + path + "' can't be read.");
  }
  stream.read(header.data(), header.size());
  if (stream.gcount() < std::ssize(header) || std::string_view(header.data(), 20) != signature) {
    throw Error("The file '" + path + "' is not a Jet database.");
  }
  switch (header[20]) {
    case 0:
      return 2048;
    case 1:
      return 4096;
    default:
      throw Error("The database '" + path + "' is of a version of Jet that can't be read.");
  }
}

std::size_t count_pages(const std::string& path) {
  const std::size_t page_size = page_size_of(path);
  std::error_code failure;
  const std::uintmax_t bytes = std::filesystem::file_size(path, failure);
  if (failure) {
    throw Error("The database '" + path + "' can't be read: " + failure.message() + ".");
  }
  if (bytes % page_size != 0) {
    fail("the file is cut off in the middle of a page");
  }
  return bytes / page_size;
}

JetHandle open_handle(const std::string& path) {
  // They would change how texts are decoded and rows are looked up.
  for (const char* variable : {"MDBICONV", "MDB_JET3_CHARSET", "MDBOPTS"}) {
    unsetenv(variable);
  }
  JetHandle handle(mdb_open(path.c_str(), MDB_NOFLAGS));
  if (!handle) {
    throw Error("The database '" + path + "' can't be opened as a Jet database.");
  }
  return handle;
}

bool is_plain_name(const std::string& name) {
  constexpr std::string_view never_in_names = "[].!`";  // Jet's rule, so that names can be used in statements
  for (const char c : name) {
    if (static_cast<unsigned char>(c) < ' ' || never_in_names.find(c) != std::string_view::npos) {
      return false;
    }
  }
  return !name.empty();
}

}  // namespace

JetTable::JetTable(MdbHandle* file, std::size_t page_count, const std::string& name,
                   std::uint32_t definition_page)
    : file_(file), page_count_(page_count), name_(name), entry_(std::make_unique<MdbCatalogEntry>()) {
  entry_->mdb = file_;
  entry_->object_type = MDB_TABLE;
  entry_->table_pg = definition_page;
  name_.copy(entry_->object_name, sizeof entry_->object_name - 1);
  if (definition_page == 0 || definition_page >= page_count_) {
    fail_definition();
  }
  table_.reset(mdb_read_table(entry_.get()));
  if (!table_ || table_->num_cols == 0 || table_->num_cols > max_columns) {
    fail_definition();
  }
  // At once, before anything else is read: the library goes on from its current page.
  if (mdb_read_columns(table_.get()) == nullptr || table_->columns->len != table_->num_cols) {
    fail_definition();
  }
  read_columns();
  read_primary_index();
  if (table_->usage_map == nullptr || table_->map_sz < 5) {
    fail("the list of the pages of table " + name_ + " can't be read");
  }
  mdb_rewind_table(table_.get());
}

void JetTable::fail_definition() const { fail("the definition of table " + name_ + " can't be read"); }

MdbColumn& JetTable::column_at(std::size_t column_index) const {
  return *static_cast<MdbColumn*>(g_ptr_array_index(table_->columns, column_index));
}

void JetTable::read_columns() {
  const int bytes_per_character = file_->fmt->pg_size == 4096 ? 2 : 1;
  for (std::size_t i = 0; i < table_->num_cols; ++i) {
    const MdbColumn& column = column_at(i);
    Column result{column.name, stored_type(column.col_type).type, 0};
    if (!is_plain_name(result.name)) {
      fail_definition();
    }
    if (column.col_type == MDB_LONGINT && column.is_long_auto != 0) {
      result.type = ColumnType::counter;
    } else if (column.col_type == MDB_TEXT) {
      result.size = column.col_size / bytes_per_character;
      if (result.size < 1 || result.size > max_text) {
        fail_definition();
      }
    } else if (column.col_type == MDB_MEMO) {
      result.size = 0x3fffffff;
    }
    columns_.push_back(std::move(result));
  }
}

void JetTable::read_primary_index() {
  constexpr int primary = 1;
  // The counts are tested first: the library allocates as many as the file says.
  if (table_->num_idxs > max_indexes || table_->num_real_idxs > table_->num_idxs) {
    fail("the indexes of table " + name_ + " can't be read");
  }
  if (table_->num_idxs == 0) {
    return;
  }
  mdb_read_indices(table_.get());
  for (std::size_t i = 0; table_->indices != nullptr && i < table_->indices->len; ++i) {
    const MdbIndex& index = *static_cast<const MdbIndex*>(g_ptr_array_index(table_->indices, i));
    if (index.index_type != primary) {
      continue;
    }
    primary_index_ = {index.name, {}};
    for (std::size_t key = 0; key < std::min<std::size_t>(index.num_keys, MDB_MAX_IDX_COLS); ++key) {
      primary_index_.columns.push_back(column_numbered(index.key_col_num[key] - 1));
    }
  }
  if (!primary_index_.columns.empty() && !is_plain_name(primary_index_.name)) {
    fail("the indexes of table " + name_ + " can't be read");
  }
}

std::string JetTable::column_numbered(int column_number) const {
  for (std::size_t i = 0; i < columns_.size(); ++i) {
    if (column_at(i).col_num == column_number) {
      return columns_[i].name;
    }
  }
  fail("the primary index of table " + name_ + " names a column that isn't there");
}

std::span<const std::byte> JetTable::page() const {
  return std::as_bytes(std::span(file_->pg_buf)).first(static_cast<std::size_t>(file_->fmt->pg_size));
}

bool JetTable::find_row(std::span<const std::byte> page_bytes, std::size_t row_number, Extent& extent) const {
  // The places of the rows follow their count; the first row is the last on the page.
  constexpr unsigned place_bits = 0x1fff;  // the others are flags
  const std::size_t count_place = file_->fmt->row_count_offset;
  const std::size_t row_count = number<std::uint16_t>(page_bytes.subspan(count_place));
  const std::size_t entry = count_place + 2 + 2 * row_number;
  if (row_number >= row_count || entry + 2 > page_bytes.size()) {
    return false;
  }
  extent.first = number<std::uint16_t>(page_bytes.subspan(entry)) & place_bits;
  extent.end =
      row_number == 0 ? page_bytes.size() : number<std::uint16_t>(page_bytes.subspan(entry - 2)) & place_bits;
  return extent.first > entry && extent.first <= extent.end && extent.end <= page_bytes.size();
}

bool JetTable::is_null(const MdbColumn& column, const Extent& row) const {
  // A row ends with a bit for each column, set where there is a value. The row's own count of columns is
  // used, as columns may have been added after it was written.
  const std::span<const std::byte> bytes = page().subspan(row.first, row.end - row.first);
  if (bytes.size() < 2) {
    return true;
  }
  const std::size_t column_count =
      file_->fmt->pg_size == 4096 ? number<std::uint16_t>(bytes) : number<std::uint8_t>(bytes);
  const std::size_t mask_length = (column_count + 7) / 8;
  const auto bit = static_cast<std::size_t>(column.col_num);
  if (mask_length > bytes.size() || bit >= column_count) {
    return true;
  }
  const std::byte mask = bytes[bytes.size() - mask_length + bit / 8];
  return (mask & (std::byte{1} << (bit % 8))) == std::byte{0};
}

std::string JetTable::place_of(std::size_t column_index) const {
  return columns_[column_index].name + " of table " + name_ + ", " + row_label_;
}

JetValue JetTable::read_value(std::size_t column_index, const Extent& row) const {
  const MdbColumn& column = column_at(column_index);
  const StoredType stored = stored_type(column.col_type);
  if (column.col_type == MDB_BOOL) {
    return column.cur_value_len == 0;  // how the library marks a set bit
  }
  if (column.cur_value_len == 0) {
    const bool empty_text = column.col_type == MDB_TEXT && !is_null(column, row);
    return empty_text ? JetValue(std::string()) : JetValue();
  }
  const auto first = static_cast<std::size_t>(column.cur_value_start);
  const auto length = static_cast<std::size_t>(column.cur_value_len);
  if (column.cur_value_start < 0 || column.cur_value_len < 0 || first < row.first ||
      first + length > row.end || (stored.length != 0 && length != stored.length)) {
    fail(place_of(column_index) + " lies outside its row");
  }
  const std::span<const std::byte> bytes = page().subspan(first, length);
  switch (column.col_type) {
    case MDB_BYTE:
      return static_cast<std::int32_t>(bytes[0]);
    case MDB_INT:
      return static_cast<std::int32_t>(number<std::int16_t>(bytes));
    case MDB_LONGINT:
      return number<std::int32_t>(bytes);
    case MDB_FLOAT:
      return number<float>(bytes);
    case MDB_DOUBLE:
    case MDB_DATETIME:
      return number<double>(bytes);
    case MDB_MONEY:
      return static_cast<double>(number<std::int64_t>(bytes)) / 10000.0;  // kept in ten thousandths
    case MDB_NUMERIC:
      return decimal_number(bytes, column.col_scale);
    case MDB_TEXT:
      return read_text(bytes);
    case MDB_MEMO:
      return read_text(read_long_value(bytes, place_of(column_index)));
    case MDB_OLE:
      return read_long_value(bytes, place_of(column_index));
    default:
      return Bytes(bytes.begin(), bytes.end());
  }
}

std::string JetTable::read_text(std::span<const std::byte> encoded) const {
  std::string text(3 * encoded.size() + 1, '\0');  // at most three bytes a character, and the closing zero
  mdb_unicode2ascii(file_, reinterpret_cast<const char*>(encoded.data()), encoded.size(), text.data(),
                    text.size());
  text.resize(std::strlen(text.c_str()));
  return text;
}

std::span<const std::byte> JetTable::long_value_piece(std::uint32_t page_and_row) const {
  const std::uint32_t page_number = page_and_row >> 8;
  if (page_number == 0 || page_number >= page_count_ ||
      mdb_read_alt_pg(file_, page_number) != file_->fmt->pg_size) {
    return {};
  }
  const auto bytes = std::as_bytes(std::span(file_->alt_pg_buf)).first(page().size());
  Extent piece;
  if (!find_row(bytes, page_and_row & 0xff, piece)) {
    return {};
  }
  return bytes.subspan(piece.first, piece.end - piece.first);
}

Bytes JetTable::read_long_value(std::span<const std::byte> stored, const std::string& place) const {
  constexpr std::uint32_t in_row = 0x80000000;
  constexpr std::uint32_t on_one_page = 0x40000000;
  if (stored.size() < long_value_header) {
    fail(place + " can't be read");
  }
  const auto header = number<std::uint32_t>(stored);
  const std::size_t declared = header & 0x3fffffff;
  auto next = number<std::uint32_t>(stored.subspan(4));
  if (declared > page_count_ * page().size()) {
    fail(place + " is said to be longer than the file");
  }
  Bytes value;
  if ((header & in_row) != 0) {
    value.assign(stored.begin() + long_value_header, stored.end());
  } else if ((header & on_one_page) != 0) {
    const std::span<const std::byte> piece = long_value_piece(next);
    value.assign(piece.begin(), piece.end());
  } else {
    // Each piece begins with the place of the next. An empty one ends a damaged chain, the length a circular
    // one.
    value.reserve(declared);
    while (value.size() < declared) {
      const std::span<const std::byte> piece = long_value_piece(next);
      if (piece.size() <= sizeof next) {
        break;
      }
      next = number<std::uint32_t>(piece);
      value.insert(value.end(), piece.begin() + sizeof next, piece.end());
    }
  }
  if (value.size() != declared) {
    fail(place + " has " + std::to_string(value.size()) + " of its " + std::to_string(declared) + " bytes");
  }
  return value;
}

bool JetTable::read_row(std::vector<JetValue>& row) {
  row.clear();
  if (mdb_fetch_row(table_.get()) == 0) {
    if (rows_read_ < table_->num_rows) {
      fail("table " + name_ + " has " + std::to_string(rows_read_) + " of its " +
           std::to_string(table_->num_rows) + " rows");
    }
    return false;
  }
  ++rows_read_;
  row_label_ = "row " + std::to_string(rows_read_);
  Extent extent;
  if (table_->cur_row == 0 || !find_row(page(), table_->cur_row - 1, extent)) {
    fail("table " + name_ + ", " + row_label_ + " can't be read");
  }
  for (std::size_t i = 0; i < columns_.size(); ++i) {
    row.push_back(read_value(i, extent));
    if (columns_[i].type == ColumnType::counter && std::holds_alternative<std::int32_t>(row.back())) {
      row_label_ = columns_[i].name + " " + std::to_string(std::get<std::int32_t>(row.back()));
    }
  }
  return true;
}

JetFile::JetFile(const std::string& path) : page_count_(count_pages(path)), handle_(open_handle(path)) {
  read_table_list();
}

JetTable JetFile::open_table(std::size_t table_index) const {
  return {handle_.get(), page_count_, table_names_[table_index], definition_pages_[table_index]};
}

void JetFile::read_table_list() {
  // The library's own reading of this list also follows the tables' properties, without end in some damaged
  // files.
  constexpr std::uint32_t list_page = 2;
  constexpr std::int32_t table_type = 1;
  constexpr std::uint32_t of_the_engine = 0x80000002;
  JetTable list(handle_.get(), page_count_, "MSysObjects", list_page);
  const auto place = [&list](std::string_view name) {
    for (std::size_t i = 0; i < list.columns().size(); ++i) {
      if (list.columns()[i].name == name) {
        return i;
      }
    }
    fail("the list of its tables can't be read");
  };
  const std::size_t id = place("Id");
  const std::size_t name = place("Name");
  const std::size_t type = place("Type");
  const std::size_t flags = place("Flags");
  std::vector<JetValue> row;
  while (list.read_row(row)) {
    const auto* id_value = std::get_if<std::int32_t>(&row[id]);
    const auto* name_value = std::get_if<std::string>(&row[name]);
    const auto* type_value = std::get_if<std::int32_t>(&row[type]);
    const auto* flags_value = std::get_if<std::int32_t>(&row[flags]);
    if (id_value == nullptr || name_value == nullptr || type_value == nullptr || flags_value == nullptr) {
      fail("the list of its tables can't be read");
    }
    const bool users_own = (static_cast<std::uint32_t>(*flags_value) & of_the_engine) == 0 &&
                           !name_value->starts_with("MSys") && !name_value->starts_with('~');
    if (*type_value == table_type && users_own) {
      table_names_.push_back(*name_value);
      definition_pages_.push_back(static_cast<std::uint32_t>(*id_value) & 0xffffff);
    }
  }
}

}  // namespace dao
