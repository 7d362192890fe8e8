#include "projections/survey_projection.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <stdexcept>
#include <string>
#include <vector>

#include "core/number_text.h"
#include "core/text_fields.h"
#include "core/trap_errors.h"
#include "database/stations.h"
#include "database/survey_database.h"

namespace Module_projections {

namespace {

constexpr const char* table = "[Projection Defintion Table]";
constexpr std::size_t max_name_length = 32;  // characters of the column

struct StoredRow {
  std::int32_t id = 0;
  CoordSystem definition;
};

dao::Recordset projection_rows() {
  return Module_database::open_survey().database.open_recordset("SELECT * FROM " + std::string(table));
}

StoredRow read_row(const dao::Recordset& row) {
  StoredRow stored;
  stored.id = row.get_long("ID");
  CoordSystem& definition = stored.definition;
  definition.name = row.get_text("Name");
  definition.projection = row.get_long("Projection");
  definition.datum = row.get_long("Datum");
  definition.hemisphere = row.get_long("Hemisphere");
  definition.origin_longitude = row.get_double("OriginLongitude");
  definition.origin_latitude = row.get_double("OriginLatitude");
  definition.standard_parallel_1 = row.get_double("StandardParallel1");
  definition.standard_parallel_2 = row.get_double("StandardParallel2");
  definition.false_easting = row.get_double("FalseEasting");
  definition.false_northing = row.get_double("FalseNorthing");
  definition.scale_factor = row.get_double("ScaleFactor");
  definition.zone_width = row.get_double("ZoneWidth");
  definition.zone_number = row.get_long("ZoneNumber");
  return stored;
}

std::vector<StoredRow> read_rows() {
  std::vector<StoredRow> stored;
  for (dao::Recordset rows = projection_rows(); !rows.eof(); rows.move_next()) {
    stored.push_back(read_row(rows));
  }
  return stored;
}

// The column holds whole degrees.
std::int32_t whole_zone_width(double width) {
  if (width != std::trunc(width) || std::abs(width) > std::numeric_limits<std::int32_t>::max()) {
    throw std::runtime_error("a survey keeps zone widths of whole degrees only, not " + plain_text(width));
  }
  return static_cast<std::int32_t>(width);
}

// The description is stored only if there is room for it.
std::string stored_name(const std::string& full_name) {
  return full_name.size() <= max_name_length ? std::string(trimmed(full_name)) : name_part(full_name);
}

void write_row(dao::Recordset& row, const StoredRow& stored) {
  const CoordSystem& definition = stored.definition;
  row.set_long("ID", stored.id);
  row.set_text("Name", stored_name(definition.name));
  row.set_long("Projection", definition.projection);
  row.set_long("Datum", definition.datum);
  row.set_long("Hemisphere", definition.hemisphere);
  row.set_double("OriginLongitude", definition.origin_longitude);
  row.set_double("OriginLatitude", definition.origin_latitude);
  row.set_double("StandardParallel1", definition.standard_parallel_1);
  row.set_double("StandardParallel2", definition.standard_parallel_2);
  row.set_double("FalseEasting", definition.false_easting);
  row.set_double("FalseNorthing", definition.false_northing);
  row.set_double("ScaleFactor", definition.scale_factor);
  row.set_long("ZoneWidth", whole_zone_width(definition.zone_width));
  row.set_long("ZoneNumber", definition.zone_number);
  row.update();
}

// Reading uses the first row, so the rows before the current projection move after it; each keeps its ID.
void move_to_end(const std::vector<StoredRow>& stored, std::size_t count) {
  dao::Recordset rows = projection_rows();
  for (std::size_t index = 0; index < count; ++index) {
    rows.move_first();
    rows.delete_row();
    rows.requery();
  }
  for (std::size_t index = 0; index < count; ++index) {
    rows.add_new();
    write_row(rows, stored[index]);
  }
}

void store(const CoordSystem& definition) {
  Module_database::require_writable();
  dao::Transaction transaction(Module_database::open_survey().database);
  const std::vector<StoredRow> stored = read_rows();
  const auto found = std::find_if(stored.begin(), stored.end(), [&](const StoredRow& row) {
    return equal_ignoring_case(name_part(row.definition.name), name_part(definition.name));
  });
  const auto place = static_cast<std::size_t>(found - stored.begin());
  StoredRow row{0, definition};
  dao::Recordset rows = projection_rows();
  if (found == stored.end()) {
    row.id = static_cast<std::int32_t>(Module_database::get_max_value("ID", table)) + 1;
    rows.add_new();
  } else {
    row.id = found->id;
    rows.set_absolute_position(static_cast<std::int32_t>(place));
    rows.edit();
  }
  write_row(rows, row);
  move_to_end(stored, place);
  transaction.commit();
  Module_database::open_survey().projections.requery();
}

}  // namespace

CoordSystem& current_coord_system() {
  static CoordSystem current;
  return current;
}

int read_survey_projection() {
  return trap_errors("An error occurred while reading the projection of the survey: ", [] {
    current_coord_system() = CoordSystem{};
    if (!Module_database::open_survey().database.is_open()) {
      return -1;
    }
    const dao::Recordset rows = projection_rows();
    if (rows.eof()) {
      return -1;
    }
    current_coord_system() = read_row(rows).definition;
    return 0;
  });
}

int apply_survey_projection() {
  return read_survey_projection() == 0 ? decode_coordinate_system(current_coord_system()) : -1;
}

int store_survey_projection() {
  return trap_errors("An error occurred while storing the projection of the survey: ",
                     [] { store(current_coord_system()); });
}

}  // namespace Module_projections
