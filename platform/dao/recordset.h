// recordset.h: rows of a statement, one at a time, with search and editing.
//
// A dynaset remembers which rows it has and in which order, and reads a row's values when it comes to it;
// rows added through it join it at its end until the next requery. It starts on its first row, or at its end
// when there is none. The list of rows is built only when something needs it (moving, counting, eof),
// so that opening, adding, searching and requery cost no walk through a large table. An error (dao::Error) is
// thrown for: use after close or after the database's close; reading or editing without a current row; a
// write outside add_new/edit ... update; an unknown field; a getter or setter that doesn't fit the column's
// type; a text longer than its column; a number out of the column's range; editing a snapshot.
#pragma once
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "platform/dao/value.h"

namespace dao {

class RowSource;

class Recordset {
 public:
  Recordset();  // closed
  explicit Recordset(std::unique_ptr<RowSource> rows);
  Recordset(Recordset&&) noexcept;
  Recordset& operator=(Recordset&&) noexcept;
  ~Recordset();

  [[nodiscard]] bool is_open() const;
  void close();  // closing twice is harmless

  /// Finds the first row, in this recordset's order, that matches the criteria ("FileID = 3 AND DataType =
  /// 'ExHy'"). A match becomes the current row; without one the current row stays and no_match() is true.
  void find_first(std::string_view criteria);
  [[nodiscard]] bool no_match() const;

  [[nodiscard]] bool eof() const;
  void move_first();
  void move_next();
  void move_last();
  [[nodiscard]] std::int32_t record_count() const;

  /// Goes to a row by its place in the order, from 0; reads none of the rows before it. A place beyond the
  /// rows is an error.
  void set_absolute_position(std::int32_t position);

  /// Runs the statement again; the first row becomes current.
  void requery();

  /// add_new starts an empty row, edit a copy of the current one; setters write to it and update stores it.
  /// After updating a new row the row that was current before stays current. Moving away without update drops
  /// the edit.
  void add_new();
  void edit();
  void update();

  /// Goes to the row that was added last, whatever it holds; an error if none was added since the recordset
  /// was opened or queried again. Cheaper than a search for what was just written, and not misled by rows
  /// alike.
  void go_to_added();

  /// Deletes the current row. There is no current row until the next move.
  void delete_row();

  // The current row's values, or those of the edit under way. A null reads as 0, false, an empty text, no
  // bytes.
  [[nodiscard]] bool is_null(std::string_view field) const;
  [[nodiscard]] std::int32_t get_long(std::string_view field) const;  // COUNTER, LONG
  [[nodiscard]] float get_single(std::string_view field) const;       // SINGLE
  [[nodiscard]] double get_double(std::string_view field) const;      // DOUBLE; SINGLE by its decimal; LONG
  [[nodiscard]] double get_date(std::string_view field) const;        // DATETIME: days since 30 December 1899
  [[nodiscard]] std::string get_text(std::string_view field) const;   // TEXT
  [[nodiscard]] bool get_bit(std::string_view field) const;           // BIT
  [[nodiscard]] Bytes get_binary(std::string_view field) const;       // LONGBINARY

  /// The number of bytes of a LONGBINARY field, without reading them; 0 for a null.
  [[nodiscard]] std::int64_t field_size(std::string_view field) const;

  void set_null(std::string_view field);
  void set_long(std::string_view field, std::int32_t value);
  void set_single(std::string_view field, float value);
  void set_double(std::string_view field, double value);
  void set_date(std::string_view field, double days);
  void set_text(std::string_view field, std::string_view value);
  void set_bit(std::string_view field, bool value);
  void set_binary(std::string_view field, std::span<const std::byte> value);

 private:
  std::unique_ptr<RowSource> rows_;
};

}  // namespace dao
