// survey_check.h: whether a file is a survey, by its tables.
#pragma once
#include <string>
#include <string_view>
#include <vector>

#include "platform/dao/database.h"

namespace Module_database {

/// Whether a list of names has this one, in any case of letters and without regard to blanks at its ends.
bool has_name(const std::vector<std::string>& names, std::string_view wanted);

/// A file is a survey if it has six of the seven names that a survey is known by, be they tables or something
/// else in their place.
bool has_required_form(const dao::Database& database);

/// Throws dao::Error that names the first of a survey's tables which is a view or the like, or has a column
/// of another type than it is written with. A table or a column that isn't there is no fault.
void check_tables(dao::Database& survey);

}  // namespace Module_database
