// line_contents.h: what is loaded of a line for the files that are made of it.
#pragma once
#include <cstddef>
#include <vector>

#include "core/frequencies.h"
#include "exchange/export_choices.h"
#include "exchange/site_documents.h"
#include "tensor/line_tensors.h"

namespace Module_exchange {

struct LineContents {
  Module_tensor::LineChoice choice;
  Frequencies frequencies;                 // of the reference type
  Module_tensor::LineTensors tensors;      // as measured
  std::vector<StationDocument> documents;  // rotated as chosen, in the order of the tensors' stations
};

/// Reads one of the lines chosen; merged curves that are missing are computed. Needs an open survey; throws
/// dao::Error.
/// @return 0, or -1 after a message
[[nodiscard]] int load_line(const ExportChoices& choices, std::size_t choice_index, LineContents& line);

/// Whether a frequency has been switched off in the list.
bool is_switched_off(const Frequencies& frequencies, float frequency);

}  // namespace Module_exchange
