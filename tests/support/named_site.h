// named_site.h: gives stations of the open survey the names that field files give them.
#pragma once
#include <string>

#include "database/sites.h"

/// Each name comes with a file of its own, so that the first one of a station stays.
inline void name_site(const std::string& line, double station, const std::string& name) {
  Module_database::Site site;
  site.line = line;
  site.station = station;
  site.name = name;
  site.SurveyFile = name + ".edi";
  (void)Module_database::keep_site(site);
}
