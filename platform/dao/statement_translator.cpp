#include "platform/dao/statement_translator.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "core/text_fields.h"
#include "platform/dao/error.h"
#include "platform/dao/expression_translator.h"
#include "platform/dao/tokens.h"

namespace dao {

namespace {

constexpr std::int64_t longest_text = 1073741823;  // characters; what a memo of a foreign file may hold

/// Reads a statement token by token; anything unexpected is a syntax error.
class StatementReader {
 public:
  explicit StatementReader(std::string_view statement)
      : statement_(statement), tokens_(tokens_of(statement)) {}

  [[noreturn]] void fail() const { throw syntax_error(statement_); }
  [[nodiscard]] const Token& peek(std::size_t ahead = 0) const {
    return tokens_[std::min(place_ + ahead, tokens_.size() - 1)];
  }
  [[nodiscard]] bool at_end() const { return peek().kind == Token::Kind::end; }
  [[nodiscard]] std::size_t place() const { return place_; }
  [[nodiscard]] std::size_t end() const { return tokens_.size() - 1; }
  void go_to(std::size_t place) { place_ = place; }
  [[nodiscard]] const std::vector<Token>& tokens() const { return tokens_; }
  [[nodiscard]] std::string_view statement() const { return statement_; }

  bool take_word(std::string_view word) {
    if (!peek().is_word(word)) {
      return false;
    }
    ++place_;
    return true;
  }
  bool take_sign(std::string_view sign) {
    if (!peek().is_sign(sign)) {
      return false;
    }
    ++place_;
    return true;
  }
  void expect_word(std::string_view word) {
    if (!take_word(word)) {
      fail();
    }
  }
  void expect_sign(std::string_view sign) {
    if (!take_sign(sign)) {
      fail();
    }
  }
  std::string take_name() {
    if (!peek().is_name()) {
      fail();
    }
    return tokens_[place_++].text;
  }
  void expect_end() const {
    if (!at_end()) {
      fail();
    }
  }
  /// The place of the next such word from here on, or the end.
  [[nodiscard]] std::size_t find_word(std::string_view word) const {
    std::size_t place = place_;
    while (place < end() && !tokens_[place].is_word(word)) {
      ++place;
    }
    return place;
  }

 private:
  std::string_view statement_;
  std::vector<Token> tokens_;
  std::size_t place_ = 0;
};

const Column& column_of(const TableDefinition& table, const std::string& name) {
  const Column* const column = table.find(name);
  if (column == nullptr) {
    throw Error("table " + table.name + " has no column named " + name);
  }
  return *column;
}

/// WHERE ... up to `end`, if it is there.
Fragment condition_of(StatementReader& reader, const TableDefinition& table, const TableLookup& tables,
                      std::size_t end) {
  if (!reader.take_word("WHERE")) {
    return {};
  }
  ExpressionTranslator translator(reader.statement(), table, tables);
  translator.expression(reader.tokens(), reader.place(), end);
  reader.go_to(end);
  return std::move(translator.fragment());
}

bool is_plain_list(const StatementReader& reader, std::size_t first, std::size_t end) {
  for (std::size_t place = first; place < end; ++place) {
    const Token& token = reader.tokens()[place];
    const bool fits = (place - first) % 2 == 1 ? token.is_sign(",") : token.is_name();
    if (!fits) {
      return false;
    }
  }
  return (end - first) % 2 == 1;
}

std::string column_definition(StatementReader& reader) {
  const std::string name = reader.take_name();
  const std::string word = reader.take_name();
  const std::optional<ColumnType> type = column_type_of(word);
  if (!type) {
    throw Error("unknown column type '" + word + "'");
  }
  std::string definition = quoted_name(name) + ' ';
  // As the key of the rows itself a counter is numbered by the engine, without a table for its state.
  definition += *type == ColumnType::counter ? "INTEGER PRIMARY KEY" : word_of(*type);
  if (*type == ColumnType::text && reader.take_sign("(")) {
    const Token& size = reader.peek();
    if (size.kind != Token::Kind::number || !size.is_integer || size.integer < 1 ||
        size.integer > longest_text) {
      reader.fail();
    }
    definition += '(' + size.text + ')';
    reader.go_to(reader.place() + 1);
    reader.expect_sign(")");
  }
  return definition;
}

Fragment create_table(StatementReader& reader) {
  std::string sql = "CREATE TABLE " + quoted_name(reader.take_name()) + " (";
  reader.expect_sign("(");
  sql += column_definition(reader);
  while (reader.take_sign(",")) {
    sql += ", " + column_definition(reader);
  }
  reader.expect_sign(")");
  reader.expect_end();
  return {sql + ")", {}};
}

// Text is indexed as comparisons see it. The sum of two columns can be indexed like a column.
std::string indexed_column(StatementReader& reader, const TableDefinition& table) {
  const Column& column = column_of(table, reader.take_name());
  const std::string name = quoted_name(column.name);
  if (reader.take_sign("+")) {
    return name + " + " + quoted_name(column_of(table, reader.take_name()).name);
  }
  return column.type == ColumnType::text ? "rtrim(" + name + ") COLLATE NOCASE" : name;
}

Fragment create_index(StatementReader& reader, const TableLookup& tables, bool unique) {
  std::string sql = unique ? "CREATE UNIQUE INDEX " : "CREATE INDEX ";
  if (reader.take_word("IF")) {
    reader.expect_word("NOT");
    reader.expect_word("EXISTS");
    sql += "IF NOT EXISTS ";
  }
  std::string name = reader.take_name();
  reader.expect_word("ON");
  const TableDefinition& table = tables(reader.take_name());
  if (equal_ignoring_case(name, table.name)) {
    name += " Index";  // the engine has one space of names for tables and indexes
  }
  sql += quoted_name(name) + " ON " + quoted_name(table.name) + " (";
  reader.expect_sign("(");
  sql += indexed_column(reader, table);
  while (reader.take_sign(",")) {
    sql += ", " + indexed_column(reader, table);
  }
  reader.expect_sign(")");
  if (reader.take_word("WITH")) {
    reader.expect_word("PRIMARY");
  }
  reader.expect_end();
  return {sql + ")", {}};
}

Fragment drop(StatementReader& reader) {
  const bool is_table = reader.take_word("TABLE");
  if (!is_table) {
    reader.expect_word("INDEX");
  }
  std::string sql = (is_table ? "DROP TABLE " : "DROP INDEX ") + quoted_name(reader.take_name());
  reader.expect_end();
  return {std::move(sql), {}};
}

Fragment delete_from(StatementReader& reader, const TableLookup& tables) {
  reader.expect_word("FROM");
  const TableDefinition& table = tables(reader.take_name());
  Fragment condition = condition_of(reader, table, tables, reader.end());
  reader.expect_end();
  std::string sql = "DELETE FROM " + quoted_name(table.name);
  if (!condition.sql.empty()) {
    sql += " WHERE " + condition.sql;
  }
  return {std::move(sql), std::move(condition.parameters)};
}

Fragment update(StatementReader& reader, const TableLookup& tables) {
  const TableDefinition& table = tables(reader.take_name());
  reader.expect_word("SET");
  ExpressionTranslator assignments(reader.statement(), table);
  std::string sql = "UPDATE " + quoted_name(table.name) + " SET ";
  do {
    const Column& column = column_of(table, reader.take_name());
    reader.expect_sign("=");
    assignments.fragment().sql += quoted_name(column.name) + " =";
    reader.go_to(assignments.assigned_literal(reader.tokens(), reader.place(), column));
    if (reader.peek().is_sign(",")) {
      assignments.fragment().sql += ", ";
    }
  } while (reader.take_sign(","));
  Fragment condition = condition_of(reader, table, tables, reader.end());
  reader.expect_end();
  sql += assignments.fragment().sql;
  if (!condition.sql.empty()) {
    sql += " WHERE " + condition.sql;
  }
  std::vector<Value> parameters = std::move(assignments.fragment().parameters);
  parameters.insert(parameters.end(), condition.parameters.begin(), condition.parameters.end());
  return {std::move(sql), std::move(parameters)};
}

// ... SELECT * FROM source WHERE: all columns of the source, or those of a list.
Fragment insert_rows(StatementReader& reader, const TableLookup& tables, const TableDefinition& table) {
  reader.expect_word("SELECT");
  std::vector<std::string> names;
  if (!reader.take_sign("*")) {
    do {
      names.push_back(reader.take_name());
    } while (reader.take_sign(","));
  }
  reader.expect_word("FROM");
  const TableDefinition& source = tables(reader.take_name());
  if (names.empty()) {
    std::ranges::transform(source.columns, std::back_inserter(names), &Column::name);
  }
  std::string columns;
  for (const std::string& name : names) {
    (void)column_of(source, name);
    columns += (columns.empty() ? "" : ", ") + quoted_name(column_of(table, name).name);
  }
  Fragment condition = condition_of(reader, source, tables, reader.end());
  reader.expect_end();
  std::string sql = "INSERT INTO " + quoted_name(table.name) + " (" + columns + ") SELECT " + columns +
                    " FROM " + quoted_name(source.name);
  if (!condition.sql.empty()) {
    sql += " WHERE " + condition.sql;
  }
  return {std::move(sql), std::move(condition.parameters)};
}

Fragment insert_into(StatementReader& reader, const TableLookup& tables) {
  reader.expect_word("INTO");
  const TableDefinition& table = tables(reader.take_name());
  if (reader.peek().is_word("SELECT")) {
    return insert_rows(reader, tables, table);
  }
  std::vector<const Column*> columns;
  reader.expect_sign("(");
  do {
    columns.push_back(&column_of(table, reader.take_name()));
  } while (reader.take_sign(","));
  reader.expect_sign(")");
  reader.expect_word("VALUES");
  reader.expect_sign("(");
  ExpressionTranslator values(reader.statement(), table);
  std::string names;
  for (const Column* const column : columns) {
    if (column != columns.front()) {
      reader.expect_sign(",");
      values.fragment().sql += ',';
      names += ", ";
    }
    names += quoted_name(column->name);
    reader.go_to(values.assigned_literal(reader.tokens(), reader.place(), *column));
  }
  reader.expect_sign(")");
  reader.expect_end();
  return {
      "INSERT INTO " + quoted_name(table.name) + " (" + names + ") VALUES (" + values.fragment().sql + ")",
      std::move(values.fragment().parameters)};
}

}  // namespace

SelectStatement translate_select(std::string_view statement, const TableLookup& tables) {
  StatementReader reader(statement);
  reader.expect_word("SELECT");
  const bool distinct = reader.take_word("DISTINCT");
  const std::size_t list_first = reader.place();
  const std::size_t list_end = reader.find_word("FROM");
  reader.go_to(list_end);
  reader.expect_word("FROM");
  const TableDefinition& table = tables(reader.take_name());

  const bool all_columns = list_end == list_first + 1 && reader.tokens()[list_first].is_sign("*");
  SelectStatement select;
  select.table = table.name;
  select.is_dynaset = !distinct && (all_columns || is_plain_list(reader, list_first, list_end));
  select.condition = condition_of(reader, table, tables, reader.find_word("ORDER"));
  if (reader.take_word("ORDER")) {
    reader.expect_word("BY");
    ExpressionTranslator order(statement, table);
    order.order(reader.tokens(), reader.place(), reader.end());
    if (!order.fragment().parameters.empty()) {
      reader.fail();
    }
    select.order = order.fragment().sql;
    reader.go_to(reader.end());
  }
  reader.expect_end();

  if (select.is_dynaset) {
    for (std::size_t place = list_first; place < list_end && !all_columns; place += 2) {
      select.columns.push_back(column_of(table, reader.tokens()[place].text).name);
    }
    return select;
  }
  ExpressionTranslator list(statement, table);
  list.select_list(reader.tokens(), list_first, list_end);
  select.whole = std::move(list.fragment());
  select.whole.sql = std::string(distinct ? "SELECT DISTINCT " : "SELECT ") + select.whole.sql + " FROM " +
                     quoted_name(table.name);
  if (!select.condition.sql.empty()) {
    select.whole.sql += " WHERE " + select.condition.sql;
    select.whole.parameters.insert(select.whole.parameters.end(), select.condition.parameters.begin(),
                                   select.condition.parameters.end());
  }
  if (!select.order.empty()) {
    select.whole.sql += " ORDER BY " + select.order;
  }
  return select;
}

Fragment translate_criteria(std::string_view criteria, const TableDefinition& table) {
  const std::vector<Token> tokens = tokens_of(criteria);
  ExpressionTranslator translator(criteria, table);
  translator.expression(tokens, 0, tokens.size() - 1);
  return std::move(translator.fragment());
}

ActionStatement translate_action(std::string_view statement, const TableLookup& tables) {
  StatementReader reader(statement);
  if (reader.take_word("CREATE")) {
    if (reader.take_word("TABLE")) {
      return {create_table(reader), true};
    }
    const bool unique = reader.take_word("UNIQUE");
    reader.expect_word("INDEX");
    return {create_index(reader, tables, unique), true};
  }
  if (reader.take_word("DROP")) {
    return {drop(reader), true};
  }
  if (reader.take_word("DELETE")) {
    return {delete_from(reader, tables), false};
  }
  if (reader.take_word("UPDATE")) {
    return {update(reader, tables), false};
  }
  if (reader.take_word("INSERT")) {
    return {insert_into(reader, tables), false};
  }
  reader.fail();
}

}  // namespace dao
