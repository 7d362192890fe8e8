// edi_writer.h: one site as an EDI file with an impedance section, in the form that other packages read.
#pragma once
#include <string>

#include "formats/transfer_function/site_document.h"

namespace formats::edi {

/// The text of the file, lines ended by CR LF: head, history, channels, section, then the blocks of the
/// components that have values, frequencies descending, absent values as 1.0E+32, nine digits, so that a
/// 32-bit value comes back as it was. A variance is that of the complex value; >RHOxx.ERR is the error of
/// the decimal logarithm, as in most files. The tipper has all six blocks or none, as readers ask for all
/// of them. A place or date that isn't known has no line: a zero would be a place.
///
/// Texts keep to one line each, and quotes within them are left out.
std::string edi_text(const transfer_function::SiteDocument& site);

}  // namespace formats::edi
