// short_site_name.h: what a site is called on the axis of a picture.
#pragma once
#include <QString>
#include <string>

namespace Module_occam {

/// The name of a site without the prefix of our own data files: "100.0" for "station_100.0"; the end of a
/// long one is an ellipsis.
QString short_site_name(const std::string& name);

}  // namespace Module_occam
