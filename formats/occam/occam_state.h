// occam_state.h: the one data set, model and response that are looked at.
//
// A reader that succeeds replaces its record; after a failure the record is as it was.
#pragma once
#include "formats/occam/occam_data.h"
#include "formats/occam/occam_model.h"

namespace Module_occam {

struct OccamState {
  OccamData data;
  OccamModel model;
  OccamResponse response;
};

/// What is looked at now.
OccamState& occam_state();
/// Forgets all of it; for tests.
void reset_occam_state();

}  // namespace Module_occam
