#include "database/sites.h"

#include <cstddef>

#include "core/number_text.h"
#include "core/text_fields.h"
#include "database/survey_database.h"
#include "platform/dao/text_literal.h"

namespace Module_database {

namespace {

constexpr std::size_t longest_name = 64;   // characters of SiteName
constexpr std::size_t longest_datum = 20;  // of Datum

/// The first characters of a text in UTF-8.
std::string first_characters(std::string_view text, std::size_t most) {
  std::size_t count = 0;
  for (std::size_t place = 0; place < text.size(); ++place) {
    const bool begins_character = (static_cast<unsigned char>(text[place]) & 0xC0U) != 0x80U;
    if (begins_character && count++ == most) {
      return std::string(text.substr(0, place));
    }
  }
  return std::string(text);
}

std::optional<double> optional_number(const dao::Recordset& row, std::string_view field) {
  return row.is_null(field) ? std::nullopt : std::optional(row.get_double(field));
}

void set_optional(dao::Recordset& row, std::string_view field, const std::optional<double>& value) {
  if (value) {
    row.set_double(field, *value);
  } else {
    row.set_null(field);
  }
}

Site site_of(const dao::Recordset& row) {
  Site site;
  site.line = row.get_text("SurveyLine");
  site.station = row.get_double("Station");
  site.name = row.get_text("SiteName");
  site.latitude = optional_number(row, "Latitude");
  site.longitude = optional_number(row, "Longitude");
  site.elevation = optional_number(row, "Elevation");
  site.datum = row.get_text("Datum");
  site.EySign = row.get_long("EySign");
  site.SurveyFile = row.get_text("SurveyFile");
  return site;
}

void write_site(dao::Recordset& row, const Site& site) {
  row.set_text("SiteName", site.name);
  set_optional(row, "Latitude", site.latitude);
  set_optional(row, "Longitude", site.longitude);
  set_optional(row, "Elevation", site.elevation);
  row.set_text("Datum", site.datum);
  row.set_long("EySign", site.EySign);
  row.set_text("SurveyFile", site.SurveyFile);
}

void fill_missing(Site& site, const Site& from) {
  if (site.name.empty()) {
    site.name = from.name;
  }
  if (!site.latitude || !site.longitude) {
    site.latitude = from.latitude;
    site.longitude = from.longitude;
    site.datum = from.datum;
  }
  if (!site.elevation) {
    site.elevation = from.elevation;
  }
}

std::string criteria(std::string_view line, double station) {
  return "SurveyLine = " + dao::text_literal(line) + " AND Station = " + criterion_text(station);
}

std::vector<Site> sites_where(const std::string& statement) {
  std::vector<Site> sites;
  dao::Recordset rows = open_survey().database.open_recordset(statement);
  for (; !rows.eof(); rows.move_next()) {
    sites.push_back(site_of(rows));
  }
  return sites;
}

/// Whether the survey still has the file that a site came with.
bool is_in_survey(const std::string& SurveyFile) {
  dao::Recordset& files = open_survey().files;
  files.find_first("SurveyFile = " + dao::text_literal(SurveyFile));
  return !files.no_match();
}

}  // namespace

std::optional<std::string> keep_site(const Site& site) {
  Site given = site;
  given.name = first_characters(trimmed(site.name), longest_name);
  given.datum = first_characters(trimmed(site.datum), longest_datum);
  dao::Recordset& sites = open_survey().sites;
  sites.find_first(criteria(site.line, site.station));
  if (sites.no_match()) {
    sites.add_new();
    sites.set_text("SurveyLine", site.line);
    sites.set_double("Station", site.station);
    write_site(sites, given);
    sites.update();
    return std::nullopt;
  }
  const Site before = site_of(sites);
  Site after = before;
  const bool gives_way = before.SurveyFile.empty() ||
                         equal_ignoring_case(before.SurveyFile, given.SurveyFile) ||
                         !is_in_survey(before.SurveyFile);
  if (gives_way) {
    after = given;
    after.EySign = before.EySign;
  } else {
    fill_missing(after, given);
  }
  sites.edit();
  write_site(sites, after);
  sites.update();
  const bool other_name = !given.name.empty() && after.name != given.name;
  return other_name ? std::optional(after.name) : std::nullopt;
}

void forget_site(std::string_view line, double station, std::string_view SurveyFile) {
  dao::Recordset& sites = open_survey().sites;
  sites.find_first(criteria(line, station));
  if (sites.no_match() || !equal_ignoring_case(sites.get_text("SurveyFile"), SurveyFile)) {
    return;
  }
  const std::int32_t EySign = sites.get_long("EySign");
  if (EySign == ey_sign_by_rule) {
    sites.delete_row();
    return;
  }
  Site nothing;
  nothing.EySign = EySign;
  sites.edit();
  write_site(sites, nothing);
  sites.update();
}

void set_ey_sign(std::string_view line, double station, std::int32_t sign) {
  require_writable();
  dao::Recordset& sites = open_survey().sites;
  sites.find_first(criteria(line, station));
  if (!sites.no_match()) {
    sites.edit();
    sites.set_long("EySign", sign);
    sites.update();
    return;
  }
  if (sign == ey_sign_by_rule) {
    return;  // what a station without a site has
  }
  Site site;
  site.EySign = sign;
  sites.add_new();
  sites.set_text("SurveyLine", line);
  sites.set_double("Station", station);
  write_site(sites, site);
  sites.update();
}

std::optional<Site> find_site(std::string_view line, double station) {
  const dao::Recordset row =
      open_survey().database.open_recordset("SELECT * FROM SitesTable WHERE " + criteria(line, station));
  return row.eof() ? std::nullopt : std::optional(site_of(row));
}

std::string shown_name(const Site& site) {
  const bool repeats_number = is_numeric(site.name) && numeric_value(site.name) == site.station;
  return repeats_number ? std::string() : site.name;
}

std::vector<Site> listed_sites() {
  return sites_where("SELECT * FROM SitesTable ORDER BY Val(SurveyLine),Station");
}

std::vector<Site> sites_of_line(std::string_view line) {
  return sites_where("SELECT * FROM SitesTable WHERE SurveyLine = " + dao::text_literal(line) +
                     " ORDER BY Station");
}

}  // namespace Module_database
