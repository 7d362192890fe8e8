// The list of keys is built only when something needs it. Until then the dynaset knows its current row's key
// alone, and a search is one indexed look-up. No statement stays open between calls.
#include "platform/dao/dynaset.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "platform/dao/sql_fragment.h"

namespace dao {

namespace {

using Key = std::int64_t;

constexpr std::size_t few_rows = 16;  // as many as a station or a file usually has

enum class Place {
  before_first_look,  // on the first row, which hasn't been needed yet
  on_row,
  after_deleted,  // the row is gone; the next move goes to the one that followed it
  at_end
};

enum class Editing { none, new_row, current_row };

class Dynaset final : public RowSource {
 public:
  Dynaset(const std::shared_ptr<Connection>& connection, SelectStatement select)
      : RowSource(connection, connection->table(select.table)),
        table_name_(quoted_name(table_->name)),
        condition_(std::move(select.condition)),
        order_(std::move(select.order)) {
    for (const Column& column : table_->columns) {
      const bool wanted = select.columns.empty() || std::find(select.columns.begin(), select.columns.end(),
                                                              column.name) != select.columns.end();
      if (wanted) {
        fields_.push_back({column.name, &column});
      }
    }
    for (const Field& field : fields_) {
      const bool is_bytes = field.column->type == ColumnType::long_binary;
      (is_bytes ? bytes_fields_ : row_fields_).push_back(&field);
    }
    // A statement that doesn't fit the table fails at opening, not at the first move.
    Statement check(*connection_, keys_statement({}));
  }

  void find_first(std::string_view criteria) override;
  bool eof() override;
  void move_first() override;
  void move_next() override;
  void move_last() override;
  std::int32_t record_count() override;
  void set_absolute_position(std::size_t position) override;
  void requery() override;
  void add_new() override;
  void edit() override;
  void update() override;
  void go_to_added() override;
  void delete_row() override;

  std::string row_name() override { return "row " + std::to_string(current_key()) + " of " + table_->name; }
  Value value(const Field& field) override;
  Bytes bytes(const Field& field) override;
  std::int64_t size(const Field& field) override;
  void set(const Field& field, Value value) override;

 private:
  struct Change {
    const Field* field;
    Value value;
  };

  [[nodiscard]] std::string row_statement(const std::vector<const Field*>& fields) const;
  [[nodiscard]] std::string keys_statement(std::string_view criteria, std::size_t most = 0) const;
  void bind_keys_statement(Statement& statement, const Fragment& criteria) const;
  void look_at_first();
  void build_keys();
  void find_in_keys();
  void keep_place_before_write();
  void go_to(Key key) {
    place_ = Place::on_row;
    key_ = key;
    row_is_read_ = false;
    row_bytes_.clear();
  }
  void go_to_index(std::size_t index);
  void drop_edit() {
    editing_ = Editing::none;
    changes_.clear();
  }
  Key current_key();
  void read_row();
  void read_row_bytes();
  Change* change_of(const Field& field);
  void insert_row();
  void update_row();

  std::string table_name_;
  Fragment condition_;
  std::string order_;
  // Byte strings are stored far after the other fields of a row; they are read, all at once, when one is
  // needed.
  std::string row_statement_;
  std::string bytes_statement_;
  std::vector<const Field*> row_fields_;
  std::vector<const Field*> bytes_fields_;

  Place place_ = Place::before_first_look;
  Key key_ = 0;
  bool row_is_read_ = false;
  std::int64_t changes_at_reading_ = 0;
  std::vector<Value> row_;
  std::int64_t changes_at_reading_bytes_ = 0;
  std::vector<std::optional<Bytes>> row_bytes_;  // none: not read, or handed out; empty: of no row

  bool has_keys_ = false;
  std::vector<Key> keys_;
  std::optional<std::size_t> index_;  // of the current row in keys_, or of the row after a deleted one
  std::vector<Key> added_;            // through this dynaset, since it was opened or queried again

  Editing editing_ = Editing::none;
  std::vector<Change> changes_;
};

std::string Dynaset::row_statement(const std::vector<const Field*>& fields) const {
  std::string columns;
  for (const Field* const field : fields) {
    columns += ", " + quoted_name(field->name);
  }
  return "SELECT rowid" + columns + " FROM " + table_name_ + " WHERE rowid = ?";
}

// Parameters: the condition's, the criteria's, and with rows added the key of the first of them. Added rows
// come after all others. All keys, or the first `most`.
std::string Dynaset::keys_statement(std::string_view criteria, std::size_t most) const {
  std::string sql = "SELECT rowid FROM " + table_name_;
  const bool has_both = !condition_.sql.empty() && !criteria.empty();
  if (has_both) {
    sql.append(" WHERE (").append(condition_.sql).append(") AND (").append(criteria).append(")");
  } else if (!condition_.sql.empty() || !criteria.empty()) {
    sql.append(" WHERE ").append(condition_.sql).append(criteria);
  }
  sql += " ORDER BY ";
  if (!order_.empty()) {
    sql += added_.empty() ? "" : "CASE WHEN rowid >= ? THEN rowid ELSE -1 END, ";
    sql += order_ + ", ";
  }
  sql += "rowid";
  return most > 0 ? sql + " LIMIT " + std::to_string(most) : sql;
}

void Dynaset::bind_keys_statement(Statement& statement, const Fragment& criteria) const {
  statement.bind(condition_.parameters);
  statement.bind(criteria.parameters);
  if (!order_.empty() && !added_.empty()) {
    statement.bind_integer(added_.front());
  }
}

void Dynaset::find_first(std::string_view criteria) {
  const Fragment translated = translate_criteria(criteria, *table_);
  Statement statement(connection(), keys_statement(translated.sql, 1));
  bind_keys_statement(statement, translated);
  drop_edit();
  no_match_ = !statement.step();
  if (!no_match_) {
    go_to(statement.integer(0));
    index_.reset();
  }
}

void Dynaset::look_at_first() {
  Connection& open_connection = connection();
  if (place_ != Place::before_first_look) {
    return;
  }
  // The rows of a condition are usually few, and then the first look has their whole list.
  const std::size_t wanted = condition_.sql.empty() ? 1 : few_rows + 1;
  Statement statement(open_connection, keys_statement({}, wanted));
  bind_keys_statement(statement, {});
  std::vector<Key> first_keys;
  while (first_keys.size() < wanted && statement.step()) {
    first_keys.push_back(statement.integer(0));
  }
  if (!has_keys_ && !condition_.sql.empty() && first_keys.size() < wanted) {
    keys_ = first_keys;
    has_keys_ = true;
  }
  if (first_keys.empty()) {
    place_ = Place::at_end;
  } else {
    go_to(first_keys.front());
    index_.reset();
  }
}

bool Dynaset::eof() {
  look_at_first();
  return place_ == Place::at_end;
}

void Dynaset::build_keys() {
  Statement statement(connection(), keys_statement({}));
  bind_keys_statement(statement, {});
  keys_.clear();
  while (statement.step()) {
    keys_.push_back(statement.integer(0));
  }
  has_keys_ = true;
}

void Dynaset::find_in_keys() {
  if (index_) {
    return;
  }
  const bool had_keys = has_keys_;
  if (!had_keys) {
    build_keys();
  }
  const auto find = [&] { return std::find(keys_.begin(), keys_.end(), key_); };
  auto found = find();
  if (found == keys_.end() && had_keys) {
    build_keys();  // a search may come to rows that others have added
    found = find();
  }
  if (found == keys_.end()) {
    throw Error("record is deleted");
  }
  index_ = static_cast<std::size_t>(found - keys_.begin());
}

// A write can make the current row fail the condition or move it in the order, so its place in the list must
// be found before. The plain order of a whole table can't change that way.
void Dynaset::keep_place_before_write() {
  if (!condition_.sql.empty() || !order_.empty()) {
    find_in_keys();
  }
}

void Dynaset::go_to_index(std::size_t index) {
  if (index < keys_.size()) {
    go_to(keys_[index]);
    index_ = index;
  } else {
    place_ = Place::at_end;
    index_.reset();
  }
}

void Dynaset::move_first() {
  (void)connection();
  drop_edit();
  if (has_keys_) {
    go_to_index(0);
  } else {
    place_ = Place::before_first_look;
  }
}

void Dynaset::move_next() {
  look_at_first();
  drop_edit();
  if (place_ == Place::at_end) {
    throw Error("no current record");
  }
  if (place_ == Place::after_deleted) {
    if (!index_) {
      build_keys();  // in the table's own order, which the key alone gives
      index_ = static_cast<std::size_t>(std::upper_bound(keys_.begin(), keys_.end(), key_) - keys_.begin());
    }
    go_to_index(*index_);
    return;
  }
  find_in_keys();
  go_to_index(*index_ + 1);
}

void Dynaset::move_last() {
  (void)connection();
  drop_edit();
  if (!has_keys_) {
    build_keys();
  }
  go_to_index(keys_.empty() ? 0 : keys_.size() - 1);
}

std::int32_t Dynaset::record_count() {
  look_at_first();
  if (!has_keys_) {
    build_keys();
  }
  return static_cast<std::int32_t>(keys_.size());
}

void Dynaset::set_absolute_position(std::size_t position) {
  drop_edit();
  if (!has_keys_) {
    build_keys();
  }
  go_to_index(position);
}

void Dynaset::requery() {
  (void)connection();
  drop_edit();
  keys_.clear();
  has_keys_ = false;
  added_.clear();
  index_.reset();
  row_is_read_ = false;
  row_bytes_.clear();
  place_ = Place::before_first_look;
  no_match_ = false;
}

Key Dynaset::current_key() {
  look_at_first();
  if (place_ == Place::after_deleted) {
    throw Error("record is deleted");
  }
  if (place_ == Place::at_end) {
    throw Error("no current record");
  }
  return key_;
}

void Dynaset::read_row() {
  const Key key = current_key();
  const std::int64_t changes_now = connection().changes();
  if (row_is_read_ && changes_at_reading_ == changes_now) {
    return;
  }
  row_is_read_ = false;
  if (row_statement_.empty()) {
    row_statement_ = row_statement(row_fields_);
  }
  Statement statement(connection(), row_statement_);
  statement.bind_integer(key);
  if (!statement.step()) {
    throw Error("record is deleted");
  }
  row_.assign(fields_.size(), Null());
  for (std::size_t i = 0; i < row_fields_.size(); ++i) {
    row_[static_cast<std::size_t>(row_fields_[i] - fields_.data())] =
        statement.value(static_cast<int>(i) + 1);
  }
  row_is_read_ = true;
  changes_at_reading_ = changes_now;
}

void Dynaset::read_row_bytes() {
  if (bytes_statement_.empty()) {
    bytes_statement_ = row_statement(bytes_fields_);
  }
  const std::int64_t changes_now = connection().changes();
  Statement statement(connection(), bytes_statement_);
  statement.bind_integer(current_key());
  if (!statement.step()) {
    throw Error("record is deleted");
  }
  row_bytes_.clear();
  for (std::size_t i = 0; i < bytes_fields_.size(); ++i) {
    if (!statement.is_bytes_or_null(static_cast<int>(i) + 1)) {
      throw damaged_row(*this, *bytes_fields_[i], "bytes");
    }
    row_bytes_.emplace_back(statement.bytes(static_cast<int>(i) + 1));
  }
  changes_at_reading_bytes_ = changes_now;
}

Dynaset::Change* Dynaset::change_of(const Field& field) {
  const auto found = std::find_if(changes_.begin(), changes_.end(),
                                  [&](const Change& change) { return change.field == &field; });
  return found == changes_.end() ? nullptr : &*found;
}

Value Dynaset::value(const Field& field) {
  if (const Change* const change = change_of(field); change != nullptr) {
    return change->value;
  }
  if (editing_ == Editing::new_row) {
    return Null();
  }
  if (field.column->type == ColumnType::long_binary) {
    Statement statement(connection(), "SELECT " + quoted_name(field.name) + " IS NULL FROM " + table_name_ +
                                          " WHERE rowid = ?");
    statement.bind_integer(current_key());
    if (!statement.step()) {
      throw Error("record is deleted");
    }
    return statement.integer(0) != 0 ? Value(Null()) : Value(Bytes());
  }
  read_row();
  return row_[static_cast<std::size_t>(&field - fields_.data())];
}

Bytes Dynaset::bytes(const Field& field) {
  if (const Change* const change = change_of(field); change != nullptr) {
    const Bytes* const held = std::get_if<Bytes>(&change->value);
    return held == nullptr ? Bytes() : *held;
  }
  if (editing_ == Editing::new_row) {
    return {};
  }
  const auto place =
      static_cast<std::size_t>(std::ranges::find(bytes_fields_, &field) - bytes_fields_.begin());
  (void)current_key();
  if (row_bytes_.empty() || !row_bytes_[place] || changes_at_reading_bytes_ != connection().changes()) {
    read_row_bytes();
  }
  return *std::exchange(row_bytes_[place], std::nullopt);
}

std::int64_t Dynaset::size(const Field& field) {
  if (editing_ == Editing::new_row || change_of(field) != nullptr) {
    return static_cast<std::int64_t>(bytes(field).size());
  }
  // The engine takes the length from the row's head and leaves the bytes where they are.
  Statement statement(connection(), "SELECT length(" + quoted_name(field.name) + ") FROM " + table_name_ +
                                        " WHERE rowid = ?");
  statement.bind_integer(current_key());
  if (!statement.step()) {
    throw Error("record is deleted");
  }
  return statement.integer(0);
}

void Dynaset::set(const Field& field, Value value) {
  if (editing_ == Editing::none) {
    throw Error("a field was set without add_new or edit");
  }
  if (field.column->type == ColumnType::counter && editing_ == Editing::current_row) {
    throw Error("field '" + field.name + "' is a counter and can't be changed");
  }
  if (Change* const change = change_of(field); change != nullptr) {
    change->value = std::move(value);
  } else {
    changes_.push_back({&field, std::move(value)});
  }
}

void Dynaset::add_new() {
  look_at_first();  // or the new row could become the first
  drop_edit();
  editing_ = Editing::new_row;
}

void Dynaset::edit() {
  drop_edit();
  read_row();
  keep_place_before_write();
  editing_ = Editing::current_row;
}

void Dynaset::update() {
  (void)connection();
  switch (editing_) {
    case Editing::none:
      throw Error("update without add_new or edit");
    case Editing::new_row:
      insert_row();
      break;
    case Editing::current_row:
      update_row();
      break;
  }
  drop_edit();
}

void Dynaset::go_to_added() {
  (void)connection();
  drop_edit();
  if (added_.empty()) {
    throw Error("no current record");
  }
  go_to(added_.back());
  index_.reset();
}

void Dynaset::insert_row() {
  std::string columns;
  std::string places;
  for (const Change& change : changes_) {
    columns.append(columns.empty() ? "" : ", ").append(quoted_name(change.field->name));
    places += places.empty() ? "?" : ", ?";
  }
  const std::string values =
      changes_.empty() ? " DEFAULT VALUES" : " (" + columns + ") VALUES (" + places + ")";
  Statement statement(connection(), "INSERT INTO " + table_name_ + values);
  for (const Change& change : changes_) {
    statement.bind(change.value);
  }
  statement.step();
  const Key key = sqlite3_last_insert_rowid(connection().handle());
  added_.push_back(key);
  if (has_keys_) {
    keys_.push_back(key);
  }
}

void Dynaset::update_row() {
  if (changes_.empty()) {
    return;
  }
  std::string assignments;
  for (const Change& change : changes_) {
    assignments.append(assignments.empty() ? "" : ", ")
        .append(quoted_name(change.field->name))
        .append(" = ?");
  }
  Statement statement(connection(), "UPDATE " + table_name_ + " SET " + assignments + " WHERE rowid = ?");
  for (const Change& change : changes_) {
    statement.bind(change.value);
  }
  statement.bind_integer(current_key());
  statement.step();
  if (sqlite3_changes64(connection().handle()) == 0) {
    throw Error("record is deleted");
  }
}

void Dynaset::delete_row() {
  const Key key = current_key();
  drop_edit();
  if (has_keys_ || !condition_.sql.empty() || !order_.empty()) {
    find_in_keys();
  }
  Statement statement(connection(), "DELETE FROM " + table_name_ + " WHERE rowid = ?");
  statement.bind_integer(key);
  statement.step();
  if (sqlite3_changes64(connection().handle()) == 0) {
    throw Error("record is deleted");
  }
  place_ = Place::after_deleted;
  if (has_keys_) {
    keys_.erase(keys_.begin() + static_cast<std::ptrdiff_t>(*index_));
  }
  std::erase(added_, key);
}

}  // namespace

std::unique_ptr<RowSource> make_dynaset(const std::shared_ptr<Connection>& connection,
                                        SelectStatement select) {
  return std::make_unique<Dynaset>(connection, std::move(select));
}

}  // namespace dao
