// sound_rows.h: rows of a table, past those that are damaged.
#pragma once
#include "platform/dao/database.h"

namespace Module_database {

/// Calls `take` with each row from the current one on. A row with a damaged value is passed over, so that it
/// doesn't hide all others: what is wrong with it is said where its readings are worked on.
template <class Take>
void for_each_sound_row(dao::Recordset& rows, const Take& take) {
  for (; !rows.eof(); rows.move_next()) {
    try {
      take(rows);
    } catch (const dao::Error&) {  // NOLINT(bugprone-empty-catch)
    }
  }
}

}  // namespace Module_database
