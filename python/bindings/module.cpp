#include "python/bindings/bindings.h"

PYBIND11_MODULE(_brenlox, module) {
  module.doc() = "Compiled part of brenlox; use the package.";
  Python::bind_rhoplus(module);
  Python::bind_impedance(module);
  Python::bind_section(module);
  Python::bind_survey(module);
  Python::bind_curves(module);
  Python::bind_edits(module);
}
