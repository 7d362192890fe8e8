#include "platform/dao/snapshot.h"

namespace dao {

namespace {

class Snapshot final : public RowSource {
 public:
  Snapshot(const std::shared_ptr<Connection>& connection, SelectStatement select)
      : RowSource(connection, connection->table(select.table)), statement_(std::move(select.whole)) {
    read();
  }

  void find_first(std::string_view /*criteria*/) override {
    throw Error("operation is not supported: searching a snapshot");
  }
  bool eof() override { return (void)connection(), current_ >= rows_.size(); }
  void move_first() override { (void)connection(), current_ = 0; }
  void move_next() override {
    if (eof()) {
      throw Error("no current record");
    }
    ++current_;
  }
  void move_last() override {
    (void)connection();
    current_ = rows_.empty() ? 0 : rows_.size() - 1;
  }
  std::int32_t record_count() override {
    (void)connection();
    return static_cast<std::int32_t>(rows_.size());
  }
  void set_absolute_position(std::size_t position) override { current_ = position; }
  void requery() override { read(); }
  void add_new() override { refuse(); }
  void edit() override { refuse(); }
  void update() override { refuse(); }
  void go_to_added() override { refuse(); }
  void delete_row() override { refuse(); }

  std::string row_name() override { return "a row of " + table_->name; }

  Value value(const Field& field) override {
    if (eof()) {
      throw Error("no current record");
    }
    return rows_[current_][static_cast<std::size_t>(&field - fields_.data())];
  }
  Bytes bytes(const Field& field) override {
    const Value held = value(field);
    const Bytes* const bytes = std::get_if<Bytes>(&held);
    return bytes == nullptr ? Bytes() : *bytes;
  }
  std::int64_t size(const Field& field) override { return static_cast<std::int64_t>(bytes(field).size()); }
  void set(const Field& /*field*/, Value /*value*/) override { refuse(); }

 private:
  [[noreturn]] static void refuse() { throw Error("can't update: the recordset is a snapshot"); }

  void read() {
    Statement statement(connection(), statement_.sql);
    statement.bind(statement_.parameters);
    fields_.clear();
    rows_.clear();
    current_ = 0;
    const int columns = statement.column_count();
    for (int i = 0; i < columns; ++i) {
      std::string name = statement.column_name(i);
      const Column* const column = table_->find(name);
      fields_.push_back({std::move(name), column});
    }
    while (statement.step()) {
      std::vector<Value>& row = rows_.emplace_back();
      row.reserve(fields_.size());
      for (int i = 0; i < columns; ++i) {
        row.push_back(statement.value(i));
      }
    }
  }

  Fragment statement_;
  std::vector<std::vector<Value>> rows_;
  std::size_t current_ = 0;
};

}  // namespace

std::unique_ptr<RowSource> make_snapshot(const std::shared_ptr<Connection>& connection,
                                         SelectStatement select) {
  return std::make_unique<Snapshot>(connection, std::move(select));
}

}  // namespace dao
