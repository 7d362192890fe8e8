// expression_translator.h: conditions, orders and select lists of the dialect turned into SQL.
#pragma once
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/dao/column.h"
#include "platform/dao/sql_fragment.h"
#include "platform/dao/table_definition.h"
#include "platform/dao/tokens.h"
#include "platform/dao/value.h"

namespace dao {

/// Translates runs of tokens; the SQL of all of them is in fragment().
class ExpressionTranslator {
 public:
  /// @param statement  as written, for error messages
  /// @param tables  for conditions that look into other tables; without it there are none
  ExpressionTranslator(std::string_view statement, const TableDefinition& table, TableLookup tables = {})
      : statement_(statement), table_(table), tables_(std::move(tables)) {}

  /// Tokens first to end as a condition or another expression: text is compared without regard to case and
  /// trailing blanks, a date literal means its whole day. "column IN (SELECT column FROM table WHERE ...)"
  /// looks into another table.
  void expression(const std::vector<Token>& tokens, std::size_t first, std::size_t end);

  /// The terms of an ORDER BY. Val(column) is followed by the column itself, so that lines of one number and
  /// different letters are not mixed.
  void order(const std::vector<Token>& tokens, std::size_t first, std::size_t end);

  /// The items of a SELECT; a text column is given without its trailing blanks, as DISTINCT compares it.
  void select_list(const std::vector<Token>& tokens, std::size_t first, std::size_t end);

  /// A literal, perhaps with a minus sign, as the value that a column stores.
  /// @return the place after it
  std::size_t assigned_literal(const std::vector<Token>& tokens, std::size_t place, const Column& column);

  Fragment& fragment() { return fragment_; }

 private:
  [[noreturn]] void fail() const;
  void check_text_literals(const std::vector<Token>& tokens, std::size_t first, std::size_t end) const;
  void put(std::string_view sql);
  void put_parameter(Value value);
  std::size_t put_word(const std::vector<Token>& tokens, std::size_t place, std::size_t end);
  std::size_t put_column(const std::vector<Token>& tokens, std::size_t place, std::size_t end);
  std::size_t put_function(const std::vector<Token>& tokens, std::size_t place, std::size_t end);
  std::size_t put_rows_of_other_table(const std::vector<Token>& tokens, std::size_t place, std::size_t end);
  void put_compared_column(const Column& column);
  void put_day_comparison(const Column& column, bool equal, double day);
  void put_folded_comparison(const Column& column, bool equal, const std::string& literal);
  void check_comparison(const Column& column, const Token& literal) const;

  std::string_view statement_;
  const TableDefinition& table_;
  TableLookup tables_;
  Fragment fragment_;
};

}  // namespace dao
