// emtf_xml_writer.h: one site in the XML format of the archives of transfer functions (Kelbert 2020).
//
// Impedances and tippers are written with their variances; what can be computed from them isn't. Values have
// nine digits, more than the 32 bits hold in which a survey keeps them.
#pragma once
#include <string>

#include "formats/transfer_function/site_document.h"

namespace formats::emtf_xml {

/// The text of the file, UTF-8: periods ascend, absent values are left out, and so is a period without any.
/// What nobody knows of the site has no element.
std::string emtf_xml_text(const transfer_function::SiteDocument& site);

}  // namespace formats::emtf_xml
