// site_documents.h: from the merged curves of a line to what is written about its stations.
#pragma once
#include <optional>
#include <string>
#include <vector>

#include "core/frequencies.h"
#include "formats/transfer_function/site_document.h"
#include "tensor/line_choice.h"
#include "tensor/line_curves.h"

namespace Module_exchange {

struct StationDocument {
  formats::transfer_function::SiteDocument document;  // its id isn't set yet
  std::string name;                                   // of the site; empty if it has none
  std::vector<std::string> remarks;                   // what a user has to know, sentences
  std::string refusal;  // why no file can be written, a sentence without its point; empty if one can
};

/// What a station's curves give.
/// @param rotation  azimuth of x, degrees from north, that impedances and tipper are turned to; none: as
///                  measured
StationDocument station_document(const Module_tensor::LineChoice& choice,
                                 const Module_tensor::StationCurves& curves, const Frequencies& frequencies,
                                 std::optional<double> rotation);

}  // namespace Module_exchange
