#include "app/session_start.h"

#include "core/preferences.h"
#include "core/session_state.h"
#include "core/version.h"
#include "output/rhoplus_settings.h"

namespace Module_Brenlox {

void start_session(const UTIL::DisplayFacts& display) {
  session().debug_level = 0;
  session().version_text = version_text(BRENLOX_VERSION_MAJOR, BRENLOX_VERSION_MINOR);
  initialise_from_system(display);
  read_preferences();
  Module_output::rhoplus_settings() = Module_output::load_rhoplus_settings();
  session().hide_masked_data = false;
  session().coord_system = 0;
  session().x_column = 1;
  session().y_column = 2;
}

}  // namespace Module_Brenlox
