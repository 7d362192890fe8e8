#include "formats/occam/occam_state.h"

namespace Module_occam {

OccamState& occam_state() {
  static OccamState state;
  return state;
}

void reset_occam_state() { occam_state() = {}; }

}  // namespace Module_occam
