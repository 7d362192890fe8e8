#include "core/session_state.h"
#include "core/version.h"
#include "python/bindings/bindings.h"

PYBIND11_MODULE(_brenlox, module) {
  module.doc() = "Compiled part of brenlox; use the package.";
  session().version_text = version_text(BRENLOX_VERSION_MAJOR, BRENLOX_VERSION_MINOR);  // in output files
  module.attr("__version__") = BRENLOX_VERSION;
  Python::bind_rhoplus(module);
  Python::bind_impedance(module);
  Python::bind_tipper(module);
  Python::bind_strike(module);
  Python::bind_earth(module);
  Python::bind_section(module);
  Python::bind_survey(module);
  Python::bind_curves(module);
  Python::bind_edits(module);
  Python::bind_import(module);
  Python::bind_export(module);
  Python::bind_occam(module);
  Python::bind_inversion(module);
}
