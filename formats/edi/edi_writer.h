// edi_writer.h: one site as an EDI file with an impedance section, in the form that other packages read.
#pragma once
#include <string>

#include "formats/transfer_function/site_document.h"

namespace formats::edi {

/// The text of the file, lines ended by CR LF: head, history, channels, section, then the blocks of the
/// components that have values, frequencies descending, absent values as 1.0E+32. The variance is that of the
/// complex value; an error of resistivity is that of its decimal logarithm.
std::string edi_text(const transfer_function::SiteDocument& site);

}  // namespace formats::edi
