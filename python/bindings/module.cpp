#include "python/bindings/bindings.h"

PYBIND11_MODULE(_brenlox, module) {
  module.doc() = "Compiled part of brenlox; use the package.";
  module.attr("__version__") = BRENLOX_VERSION;
  Python::bind_rhoplus(module);
  Python::bind_impedance(module);
  Python::bind_tipper(module);
  Python::bind_strike(module);
  Python::bind_earth(module);
  Python::bind_section(module);
  Python::bind_survey(module);
}
