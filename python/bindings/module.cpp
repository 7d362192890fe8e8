#include "python/bindings/bindings.h"

PYBIND11_MODULE(_brenlox, module) {
  module.doc() = "Compiled part of brenlox; use the package.";
  Python::bind_rhoplus(module);
  Python::bind_impedance(module);
  Python::bind_section(module);
  Python::bind_survey(module);
  Python::bind_import(module);
  Python::bind_export(module);
  Python::bind_occam(module);
  Python::bind_inversion(module);
}
