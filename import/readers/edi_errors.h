// edi_errors.h: from the error blocks of an EDI section to the standard errors of its curves.
#pragma once
#include <cstddef>

#include "database/reading.h"
#include "formats/edi/edi_section.h"

namespace Module_data_file {

/// What the numbers of >RHOxx.ERR are. The format doesn't say: of 233 public files 215 have the error of the
/// decimal logarithm and 18 that of the resistivity.
enum class ResistivityErrorKind { of_logarithm, ohm_m };

/// Tells the kinds apart by the phase errors p of the section, in rad, as the error of the impedance makes
/// both: p is 1.1513 times an error of the logarithm, and an error in ohm-m divided by 2 rho. The kind that
/// is nearer to the phase errors in logarithm, in the median over all elements, is right for 232 of the 233
/// files. Without phase errors it is that of the logarithm, unless half of the numbers are above 1, which is
/// a factor of ten. Blocks that make the variance of an element as errors of the logarithm are such.
ResistivityErrorKind resistivity_error_kind(const formats::edi::EdiSection& section);

/// Sets the standard errors of an element's curve, which has been filled. Where the variance of the impedance
/// gives an error anywhere, it alone counts; otherwise >RHOxx.ERR and >PHSxx.ERR do. These count, too, where
/// they make the variance, |Z|^2 (a^2 + b^2) with a of the resistivity and b of the phase, to five digits:
/// then it is their sum, and they are the errors of each, as in the files that this program writes.
void fill_errors(const formats::edi::EdiSection& section, std::size_t element, ResistivityErrorKind kind,
                 Module_database::Curve& curve);

}  // namespace Module_data_file
