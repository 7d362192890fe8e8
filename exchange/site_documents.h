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
  std::vector<std::string> remarks;                   // what a user has to know, sentences with its name
  std::string refusal;  // why no file can be written, a sentence likewise; empty if one can. Without points
};

/// What a station's curves give at the frequencies that are switched on, ascending. The values are those of
/// the merged curves with their static factors, the sign of Ey turned back where the readings have it turned.
/// Each component stands for itself, with the values that the station's tensor has; a phase of a diagonal
/// element that an import has masked for its sign is a value, but nothing that somebody has masked. In turned
/// axes only what has a whole tensor, or a whole tipper, is there, whatever masks diagonal elements have.
///
/// The place is that of the station's site; who has another one, by a projection, puts it there. Needs an
/// open survey; throws dao::Error.
/// @param rotation  azimuth of x, degrees from north, that impedances and tipper are turned to; none: as
///                  measured
StationDocument station_document(const Module_tensor::LineChoice& choice,
                                 const Module_tensor::StationCurves& curves, const Frequencies& frequencies,
                                 std::optional<double> rotation);

}  // namespace Module_exchange
