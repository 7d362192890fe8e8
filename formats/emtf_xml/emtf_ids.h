// emtf_ids.h: what a file of the archives calls its site and itself.
#pragma once
#include <string>
#include <string_view>

namespace formats::emtf_xml {

/// The Id of a site from that of its document: letters and digits only, as archives want it. An underscore
/// between digits stands for their point: "100_5" becomes "100p5". Two sites may come out equal; the
/// ProductId tells them apart.
std::string emtf_site_id(std::string_view document_id);

/// "Survey.200E_100.2019": letters, digits, point, underscore and dash only. A part that is empty is left
/// out.
std::string emtf_product_id(std::string_view survey, std::string_view document_id, std::string_view year);

}  // namespace formats::emtf_xml
