// emtf_xml.h: the XML format of the archives of transfer functions (Kelbert 2020, Geophysics 85, F1-F17).
//
// Files in circulation differ from one another: elements come in any order and case, attributes are missing,
// a bare "&" stands in citations, variances are there, or follow from the covariances, or are not.
#pragma once
#include <cstddef>
#include <string>
#include <string_view>

#include "formats/file_report.h"
#include "formats/transfer_function/transfer_function.h"

namespace formats::emtf_xml {

/// A larger file is no transfer function of one site.
inline constexpr std::size_t largest_file = 16UL << 20U;  // bytes

/// Reads the text of a file, which may be UTF-8, Windows-1252 or UTF-16. Values given in the axes of the
/// channels come in orthogonal ones with x along Hx. Their variances are turned with them where the
/// covariances are there, and left out elsewhere. Values of exp(- i omega t) are conjugated. Of a date
/// without a day and a month the first day of the year is taken. Nothing outside the text is read, whatever
/// it refers to, no entity of its own is put in, and elements may lie within one another to any depth. What
/// can't be read is in the report; its failure says why there is nothing.
transfer_function::TransferFunction read_emtf_xml(std::string text, FileReport& report);

/// Whether the beginning of a text is that of such a file.
bool begins_emtf_xml(std::string_view beginning);

}  // namespace formats::emtf_xml
