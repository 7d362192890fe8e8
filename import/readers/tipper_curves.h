// tipper_curves.h: the curves of the tipper, the vertical magnetic field over the horizontal one.
//
// Hz = Tx Hx + Ty Hy, z down, exp(+i omega t): HzHx is Tx and HzHy is Ty. Field 1 of a curve is the real
// part, field 2 the imaginary one; both have any sign, and 0 is a value as good as others (it is that of a
// layered ground), so that only an absent one is masked. Errors are those of either part.
#pragma once
#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "database/reading.h"
#include "formats/edi/edi_section.h"
#include "formats/file_report.h"
#include "import/readers/field_reader.h"

namespace Module_data_file {

struct TipperValue {
  double real = 0.0;
  double imaginary = 0.0;
  double error = 0.0;  // of the real part and, equally, of the imaginary part; 0 or less: not known
};

/// Fills the point's fields 1, 2, 9 and 10, the copies that stay as they came in, masks and errors. The other
/// fields that are copied are to be filled before.
void set_tipper_point(const TipperValue& value, Module_database::Curve& curve, std::size_t index);

/// Which components a section has: those with a value in a block of real or imaginary parts. None if all
/// values are 0, as programs write them for stations without a sensor of Hz: that isn't measured.
std::vector<formats::edi::EdiTipper> tipper_of(const formats::edi::EdiSection& section);

/// Whether a section has any block of the tensor.
bool has_tensor(const formats::edi::EdiSection& section);

/// Fills the curve of a component with its blocks. The variance is that of the complex value, so that a part
/// has the error sqrt(variance / 2); it is kept in fields 11 and 12 as it came.
void fill_tipper_curve(const formats::edi::EdiSection& section, formats::edi::EdiTipper element,
                       Module_database::Curve& curve);

/// Says that a tipper isn't taken because it is 0 at all frequencies.
void remark_on_zero_tipper(std::int64_t line_number, formats::FileReport& report);

/// Says that one component is missing.
void remark_on_half_tipper(formats::edi::EdiTipper component, std::int64_t line_number,
                           formats::FileReport& report);

/// What a user has to know of a section's tipper: that it is 0 throughout, what of it is missing or empty,
/// and axes that aren't those of the impedances.
void remark_on_tipper(const formats::edi::EdiSection& section, formats::FileReport& report);

/// Stores a component, which has been filled into the record's curve, or counts it where nothing is stored.
/// The sign of Ey has no say in it. @return false after a failure, whose message was shown
bool take_tipper_reading(FileTask& task, std::size_t element);

}  // namespace Module_data_file
