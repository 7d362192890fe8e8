// data_checks.h: rows of a data file that no inversion can take.
#pragma once
#include "formats/occam/data_file.h"
#include "formats/occam/occam_model.h"

namespace Module_occam {

/// Throws std::runtime_error, with the number of the row from 1, for data types that can't be inverted,
/// errors of 0, frequencies that aren't above 0 and sites off the mesh.
void refuse_unusable_rows(const OccamModel& model, const ObservedData& data);

}  // namespace Module_occam
