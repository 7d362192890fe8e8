// site_curves.h: from what a file of one site holds to the curves of its readings.
//
// Such files have the impedance, or resistivity and phase, or both. What a file has of these two counts as it
// stands, as somebody may have edited it; what it lacks follows from the impedance.
#pragma once
#include <vector>

#include "database/reading.h"
#include "formats/edi/edi_section.h"
#include "formats/file_report.h"
#include "formats/transfer_function/transfer_function.h"

namespace Module_data_file {

/// The readings that a file gives: an element of the tensor with a value at any frequency is one, and so is a
/// component of the tipper, unless the whole tipper is 0, as for stations without a sensor of Hz.
struct SiteReadings {
  explicit SiteReadings(const formats::transfer_function::TransferFunction& function);

  [[nodiscard]] std::size_t count() const { return elements.size() + tipper.size(); }
  [[nodiscard]] bool empty() const { return count() == 0; }

  std::vector<formats::edi::EdiElement> elements;
  std::vector<formats::edi::EdiTipper> tipper;
  bool has_zero_tipper = false;
};

/// Hz, in the order of the file; two may be equal.
std::vector<float> frequencies_of(const formats::transfer_function::TransferFunction& function);

/// The phases of Zyx in degrees, those of the file or what follows from its impedance; no_data where absent.
std::vector<float> phases_of_yx(const formats::transfer_function::TransferFunction& function);

/// Those of them that the file has itself.
std::vector<float> own_phases_of_yx(const formats::transfer_function::TransferFunction& function);

/// Fills fields 1, 2, 9 to 12, their copies, masks and standard errors of an element. Points that the file
/// switches off are masked. Errors follow from the variance of the impedance; where there is none, they are
/// those that the file has of resistivity and phase.
/// @param turn  the element gets the other sign of Ey, if it is one of Ey
void fill_site_curve(const formats::transfer_function::TransferFunction& function,
                     formats::edi::EdiElement element, bool turn, Module_database::Curve& curve);

/// The same of a component of the tipper: its parts in the place of resistivity and phase.
void fill_site_tipper(const formats::transfer_function::TransferFunction& function,
                      formats::edi::EdiTipper component, Module_database::Curve& curve);

/// Reports what a user has to know of the tipper: that it is 0 throughout, or half of it missing.
void remark_on_site_tipper(const SiteReadings& readings, formats::FileReport& report);

}  // namespace Module_data_file
