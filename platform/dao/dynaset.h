// dynaset.h: the rows of one table that match a condition; they can be searched and edited.
#pragma once
#include <memory>

#include "platform/dao/connection.h"
#include "platform/dao/row_source.h"
#include "platform/dao/statement_translator.h"

namespace dao {

/// The rows of `select.table` that match `select.condition`, in the order of `select.order`.
std::unique_ptr<RowSource> make_dynaset(const std::shared_ptr<Connection>& connection,
                                        SelectStatement select);

}  // namespace dao
