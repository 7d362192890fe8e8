#include "platform/dao/expression_translator.h"

#include <algorithm>
#include <array>
#include <utility>

#include "core/text_fields.h"
#include "platform/dao/case_folding.h"

namespace dao {

namespace {

// Words that go into the SQL as they are; every other word is a column.
constexpr std::array<std::string_view, 7> operator_words{"AND", "OR", "NOT", "IS", "NULL", "IN", "BETWEEN"};
constexpr std::array<std::string_view, 7> function_words{"Val", "Abs", "Max", "Min", "Count", "Sum", "Avg"};

template <std::size_t n>
const std::string_view* find_word(const std::array<std::string_view, n>& words, const Token& token) {
  const auto found =
      std::find_if(words.begin(), words.end(), [&](std::string_view word) { return token.is_word(word); });
  return found == words.end() ? nullptr : &*found;
}

bool is_comparison(const Token& token) {
  return token.kind == Token::Kind::sign && (token.text == "=" || token.text == "<>" || token.text == "<" ||
                                             token.text == ">" || token.text == "<=" || token.text == ">=");
}

bool is_literal(const Token& token) {
  return token.kind == Token::Kind::text || token.kind == Token::Kind::number ||
         token.kind == Token::Kind::date;
}

bool is_direction(const Token& token) { return token.is_word("ASC") || token.is_word("DESC"); }

std::string compared_text(std::string_view column) {
  return "rtrim(" + quoted_name(column) + ") COLLATE NOCASE";
}

}  // namespace

void ExpressionTranslator::fail() const { throw syntax_error(statement_); }

void ExpressionTranslator::put(std::string_view sql) {
  if (!fragment_.sql.empty()) {
    fragment_.sql += ' ';
  }
  fragment_.sql += sql;
}

void ExpressionTranslator::put_parameter(Value value) {
  put("?");
  fragment_.parameters.push_back(std::move(value));
}

// A text that reached a statement without text_literal could carry words of the dialect behind an apostrophe.
// These two rules let such words only narrow a condition: nothing but AND follows a text literal, and OR must
// be in parentheses.
void ExpressionTranslator::check_text_literals(const std::vector<Token>& tokens, std::size_t first,
                                               std::size_t end) const {
  bool has_text = false;
  bool has_outer_or = false;
  int depth = 0;
  for (std::size_t place = first; place < end; ++place) {
    const Token& token = tokens[place];
    depth += token.is_sign("(") ? 1 : token.is_sign(")") ? -1 : 0;
    has_outer_or = has_outer_or || (depth == 0 && token.is_word("OR"));
    if (token.kind == Token::Kind::text) {
      has_text = true;
      const bool followed_well = place + 1 == end || tokens[place + 1].is_word("AND") ||
                                 tokens[place + 1].is_sign(")") || tokens[place + 1].is_sign(",");
      if (!followed_well) {
        fail();
      }
    }
  }
  if (has_text && has_outer_or) {
    fail();
  }
}

void ExpressionTranslator::expression(const std::vector<Token>& tokens, std::size_t first, std::size_t end) {
  if (first >= end) {
    fail();
  }
  check_text_literals(tokens, first, end);
  int depth = 0;
  for (std::size_t place = first; place < end;) {
    const Token& token = tokens[place];
    switch (token.kind) {
      case Token::Kind::word:
      case Token::Kind::bracketed_name:
        place = put_word(tokens, place, end);
        continue;
      case Token::Kind::number:
        put_parameter(token.is_integer ? Value(token.integer) : Value(token.number));
        break;
      case Token::Kind::text:
        put_parameter(std::string(without_trailing_blanks(token.text)));
        break;
      case Token::Kind::date:
        put_parameter(token.number);
        break;
      case Token::Kind::sign:
        depth += token.text == "(" ? 1 : token.text == ")" ? -1 : 0;
        if (depth < 0) {
          fail();
        }
        put(token.text);
        break;
      case Token::Kind::end:
        fail();
    }
    ++place;
  }
  if (depth != 0) {
    fail();
  }
}

std::size_t ExpressionTranslator::put_word(const std::vector<Token>& tokens, std::size_t place,
                                           std::size_t end) {
  const Token& token = tokens[place];
  if (const std::string_view* const word = find_word(operator_words, token); word != nullptr) {
    put(*word);
    const bool has_rows = token.is_word("IN") && place + 2 < end && tokens[place + 1].is_sign("(") &&
                          tokens[place + 2].is_word("SELECT");
    return has_rows ? put_rows_of_other_table(tokens, place + 1, end) : place + 1;
  }
  if (token.is_word("True") || token.is_word("False")) {
    put(token.is_word("True") ? "1" : "0");
    return place + 1;
  }
  if (token.kind == Token::Kind::word && place + 1 < end && tokens[place + 1].is_sign("(")) {
    return put_function(tokens, place, end);
  }
  return put_column(tokens, place, end);
}

// From the opening parenthesis on; the condition inside is checked as one of its own.
std::size_t ExpressionTranslator::put_rows_of_other_table(const std::vector<Token>& tokens, std::size_t place,
                                                          std::size_t end) {
  std::size_t close = place;
  for (int depth = 0; close < end; ++close) {
    depth += tokens[close].is_sign("(") ? 1 : tokens[close].is_sign(")") ? -1 : 0;
    if (depth == 0) {
      break;
    }
  }
  const bool is_plain = tables_ && close < end && place + 4 < close && tokens[place + 2].is_name() &&
                        tokens[place + 3].is_word("FROM") && tokens[place + 4].is_name();
  if (!is_plain) {
    fail();
  }
  const TableDefinition& table = tables_(tokens[place + 4].text);
  ExpressionTranslator inside(statement_, table, tables_);
  inside.select_list(tokens, place + 2, place + 3);
  put("(SELECT " + inside.fragment_.sql + " FROM " + quoted_name(table.name));
  if (place + 5 < close) {
    if (!tokens[place + 5].is_word("WHERE")) {
      fail();
    }
    inside.fragment_ = {};
    inside.expression(tokens, place + 6, close);
    put("WHERE " + inside.fragment_.sql);
    fragment_.parameters.insert(fragment_.parameters.end(), inside.fragment_.parameters.begin(),
                                inside.fragment_.parameters.end());
  }
  put(")");
  return close + 1;
}

std::size_t ExpressionTranslator::put_function(const std::vector<Token>& tokens, std::size_t place,
                                               std::size_t end) {
  const std::string_view* const name = find_word(function_words, tokens[place]);
  if (name == nullptr) {
    throw Error("undefined function '" + tokens[place].text + "' in expression");
  }
  put(*name);
  // One plain column between the parentheses is the argument as it is stored.
  const bool has_plain_argument = place + 3 < end && tokens[place + 3].is_sign(")");
  if (!has_plain_argument) {
    return place + 1;
  }
  const Token& argument = tokens[place + 2];
  if (argument.is_name()) {
    fragment_.sql.append("(").append(quoted_name(argument.text)).append(")");
    return place + 4;
  }
  if (argument.is_sign("*") && *name == "Count") {
    fragment_.sql += "(*)";
    return place + 4;
  }
  return place + 1;
}

std::size_t ExpressionTranslator::put_column(const std::vector<Token>& tokens, std::size_t place,
                                             std::size_t end) {
  const Column* const column = table_.find(tokens[place].text);
  if (column == nullptr) {
    throw Error("no such column: " + tokens[place].text);
  }
  if (place + 2 < end && is_comparison(tokens[place + 1]) && is_literal(tokens[place + 2])) {
    const Token& comparison = tokens[place + 1];
    const Token& literal = tokens[place + 2];
    check_comparison(*column, literal);
    const bool equal = comparison.text == "=";
    if (equal || comparison.text == "<>") {
      if (literal.kind == Token::Kind::date) {
        put_day_comparison(*column, equal, literal.number);
        return place + 3;
      }
      if (literal.kind == Token::Kind::text && !is_ascii(literal.text)) {
        put_folded_comparison(*column, equal, literal.text);
        return place + 3;
      }
    }
  }
  put_compared_column(*column);
  return place + 1;
}

void ExpressionTranslator::put_compared_column(const Column& column) {
  put(column.type == ColumnType::text ? compared_text(column.name) : quoted_name(column.name));
}

void ExpressionTranslator::put_day_comparison(const Column& column, bool equal, double day) {
  const std::string name = quoted_name(column.name);
  put("(");
  put(name + (equal ? " >= ? AND " : " < ? OR "));
  put(name + (equal ? " < ? )" : " >= ? )"));
  fragment_.parameters.emplace_back(day);
  fragment_.parameters.emplace_back(day + 1.0);
}

// The engine's own comparison ignores the case of ASCII letters only. The text before the first other letter
// narrows the search, which can use an index for it.
void ExpressionTranslator::put_folded_comparison(const Column& column, bool equal,
                                                 const std::string& literal) {
  const std::string folded = folded_text(literal);
  if (!equal) {
    put("fold_case(" + quoted_name(column.name) + ") <> ?");
    fragment_.parameters.emplace_back(folded);
    return;
  }
  const auto first_beyond = std::find_if(folded.begin(), folded.end(), [](char c) { return c < 0; });
  const std::string prefix(folded.begin(), first_beyond);
  const std::string name = compared_text(column.name);
  put("(");
  put(name + " >= ? AND");
  put(name + " < ? AND");
  put("fold_case(" + quoted_name(column.name) + ") = ? )");
  fragment_.parameters.emplace_back(prefix);
  fragment_.parameters.emplace_back(prefix + "\xF4\x8F\xBF\xBF");  // the last character of Unicode
  fragment_.parameters.emplace_back(folded);
}

void ExpressionTranslator::check_comparison(const Column& column, const Token& literal) const {
  const bool fits = column.type == ColumnType::text        ? literal.kind == Token::Kind::text
                    : column.type == ColumnType::date_time ? literal.kind != Token::Kind::text
                                                           : literal.kind == Token::Kind::number;
  if (!fits) {
    throw Error("data type mismatch: field '" + column.name + "' in \"" + std::string(statement_) + "\"");
  }
}

void ExpressionTranslator::order(const std::vector<Token>& tokens, std::size_t first, std::size_t end) {
  std::size_t place = first;
  while (true) {
    std::size_t term_end = place;
    int depth = 0;
    while (term_end < end && (depth > 0 || !tokens[term_end].is_sign(","))) {
      depth += tokens[term_end].is_sign("(") ? 1 : tokens[term_end].is_sign(")") ? -1 : 0;
      ++term_end;
    }
    const bool has_direction = term_end > place && is_direction(tokens[term_end - 1]);
    const std::size_t expression_end = has_direction ? term_end - 1 : term_end;
    expression(tokens, place, expression_end);
    const std::string direction = has_direction ? " " + upper_case(tokens[term_end - 1].text) : "";
    fragment_.sql += direction;
    const bool is_val_of_column = expression_end == place + 4 && tokens[place].is_word("Val");
    if (is_val_of_column) {
      put(",");
      expression(tokens, place + 2, place + 3);
      fragment_.sql += direction;
    }
    if (term_end >= end) {
      return;
    }
    put(",");
    place = term_end + 1;
  }
}

void ExpressionTranslator::select_list(const std::vector<Token>& tokens, std::size_t first, std::size_t end) {
  std::size_t place = first;
  while (true) {
    std::size_t item_end = place;
    while (item_end < end && !tokens[item_end].is_sign(",")) {
      ++item_end;
    }
    const bool has_name =
        item_end >= place + 3 && tokens[item_end - 2].is_word("AS") && tokens[item_end - 1].is_name();
    if (item_end == place + 1 && tokens[place].is_sign("*")) {
      put("*");
    } else {
      expression(tokens, place, has_name ? item_end - 2 : item_end);
      if (has_name || (item_end == place + 1 && tokens[place].is_name())) {
        put("AS " + quoted_name(tokens[item_end - 1].text));
      }
    }
    if (item_end >= end) {
      return;
    }
    put(",");
    place = item_end + 1;
  }
}

std::size_t ExpressionTranslator::assigned_literal(const std::vector<Token>& tokens, std::size_t place,
                                                   const Column& column) {
  const bool negative = tokens[place].is_sign("-");
  const Token& literal = tokens[negative ? place + 1 : place];
  const std::size_t behind = place + (negative ? 2 : 1);
  if (literal.is_word("Null") && !negative) {
    put("NULL");
    return behind;
  }
  if ((literal.is_word("True") || literal.is_word("False")) && !negative && column.type == ColumnType::bit) {
    put_parameter(std::int64_t{literal.is_word("True")});
    return behind;
  }
  if (!is_literal(literal) || (negative && literal.kind != Token::Kind::number)) {
    fail();
  }
  check_comparison(column, literal);
  const double number = negative ? -literal.number : literal.number;
  switch (column.type) {
    case ColumnType::text:
      put_parameter(stored_text(column, literal.text));
      break;
    case ColumnType::counter:
    case ColumnType::long_integer:
      if (!literal.is_integer) {
        throw Error("data type mismatch: field '" + column.name + "' takes whole numbers");
      }
      put_parameter(stored_long(column, negative ? -literal.integer : literal.integer));
      break;
    case ColumnType::single_float:
      put_parameter(stored_single(column, static_cast<float>(number)));
      break;
    case ColumnType::bit:
      put_parameter(std::int64_t{number != 0.0});
      break;
    case ColumnType::double_float:
    case ColumnType::date_time:
      put_parameter(number);
      break;
    case ColumnType::long_binary:
      throw Error("data type mismatch: field '" + column.name + "' holds bytes");
  }
  return behind;
}

}  // namespace dao
