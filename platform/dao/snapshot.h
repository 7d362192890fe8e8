// snapshot.h: the rows of a statement with DISTINCT or computed columns, read once and never edited.
#pragma once
#include <memory>

#include "platform/dao/connection.h"
#include "platform/dao/row_source.h"
#include "platform/dao/statement_translator.h"

namespace dao {

/// Reads the rows of `select.whole`.
std::unique_ptr<RowSource> make_snapshot(const std::shared_ptr<Connection>& connection,
                                         SelectStatement select);

}  // namespace dao
