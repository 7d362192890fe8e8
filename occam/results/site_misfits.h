// site_misfits.h: how well a model fits the data of each site.
#pragma once
#include <optional>
#include <span>
#include <vector>

namespace Module_occam {

/// The root mean square of the misfits of each site, site number 1 first; none for a site without rows. Rows
/// of other numbers, as those of sums of static shifts, belong to no site.
/// @param site_numbers  of each row, from 1
/// @param misfits       of each row, residual over error
std::vector<std::optional<double>> rms_by_site(std::span<const int> site_numbers,
                                               std::span<const double> misfits, int sites);

/// The numbers, ascending, of the few sites whose RMS is well above that of the others.
std::vector<int> poorly_fitted_sites(std::span<const std::optional<double>> rms_of_sites);

}  // namespace Module_occam
