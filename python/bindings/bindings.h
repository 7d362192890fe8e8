// bindings.h: the parts of the extension module.
#pragma once
#include <pybind11/pybind11.h>

namespace Python {

void bind_curves(pybind11::module_& module);
void bind_edits(pybind11::module_& module);
void bind_export(pybind11::module_& module);
void bind_import(pybind11::module_& module);
void bind_inversion(pybind11::module_& module);
void bind_occam(pybind11::module_& module);
void bind_rhoplus(pybind11::module_& module);
void bind_impedance(pybind11::module_& module);
void bind_tipper(pybind11::module_& module);
void bind_strike(pybind11::module_& module);
void bind_earth(pybind11::module_& module);
void bind_section(pybind11::module_& module);
void bind_survey(pybind11::module_& module);

}  // namespace Python
