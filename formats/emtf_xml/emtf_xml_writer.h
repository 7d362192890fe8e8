// emtf_xml_writer.h: one site in the XML format of the archives of transfer functions.
#pragma once
#include <string>

#include "formats/transfer_function/site_document.h"

namespace formats::emtf_xml {

/// The text of the file, UTF-8: periods ascend, absent values are left out.
std::string emtf_xml_text(const transfer_function::SiteDocument& site);

}  // namespace formats::emtf_xml
