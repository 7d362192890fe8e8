#include "occam/occam_state.h"

#include "occam/data_file.h"
#include "occam/iteration_file.h"
#include "occam/mesh_file.h"
#include "occam/model_file.h"
#include "occam/response_file.h"

namespace Module_occam {

OccamState& occam_state() {
  static OccamState state;
  return state;
}

void reset_occam_state() { occam_state() = {}; }

}  // namespace Module_occam
