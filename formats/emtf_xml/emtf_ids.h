// emtf_ids.h: what a file of the archives calls its site and itself.
#pragma once
#include <string>
#include <string_view>

#include "formats/transfer_function/site_document.h"

namespace formats::emtf_xml {

/// The Id of a site: letters and digits only, as archives want it, those of its name, else of line and
/// station. A number that is the whole name keeps its point as a letter: "100.5" becomes "100p5", "mt_1_2"
/// becomes "mt12". What the document's id has behind the name, because others have the same, stays: "100p52".
/// Two sites may come out equal; the ProductId tells them apart.
std::string emtf_site_id(const transfer_function::SiteDocument& site);

/// "Survey.200E_100.2019": letters, digits, point, underscore and dash only. A part that is empty is left
/// out.
std::string emtf_product_id(std::string_view survey, std::string_view document_id, std::string_view year);

}  // namespace formats::emtf_xml
