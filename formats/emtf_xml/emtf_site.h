// emtf_site.h: what a transfer function in XML says of its site.
#pragma once
#include <pugixml.hpp>

#include "formats/file_report.h"
#include "formats/transfer_function/transfer_function.h"

namespace formats::emtf_xml {

/// Name, place and date, and the azimuth of axes that are orthogonal. The date is that at which the
/// site's recording began, of a year its first day.
transfer_function::Site read_site(const pugi::xml_node& root, FileReport& report);

}  // namespace formats::emtf_xml
