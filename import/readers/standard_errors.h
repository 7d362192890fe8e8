// standard_errors.h: what formats say of the errors of a point, brought to the one meaning that curves have.
#pragma once
#include <complex>
#include <cstddef>

#include "database/reading.h"

namespace Module_data_file {

/// The standard error of the real part and, equally, of the imaginary part of an impedance, as a part of its
/// magnitude: sqrt(variance / 2) / |Z|. The variance is that of the complex value; both in one unit.
/// @return no_data where the variance is absent or below 0, or where there is no impedance or it is 0
double relative_error(double variance, std::complex<double> impedance);

/// Sets the errors of a point whose resistivity and phase are known, of first order in the relative error e
/// of its impedance: resistivity 2 rho e, phase e in degrees. One that isn't known sets nothing.
void set_errors(double relative_error, Module_database::Curve& curve, std::size_t index);

/// Sets one error. Programs print 0 or less for what they don't know; that sets nothing, and so does the
/// error of a value that isn't there: a resistivity that isn't above 0, an absent phase.
/// @param error ohm-m
void set_resistivity_error(double error, Module_database::Curve& curve, std::size_t index);
/// @param error degrees; kept up to 90, where nothing is known of a phase
void set_phase_error(double error, Module_database::Curve& curve, std::size_t index);

}  // namespace Module_data_file
