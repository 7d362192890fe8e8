// spectra_channels.h: which row and column of a spectra matrix belongs to which channel.
#pragma once
#include <optional>
#include <string>
#include <vector>

#include "formats/edi/edi_channels.h"
#include "numerics/impedance/mtcomp.h"

namespace formats::edi {

struct SpectraRoles {
  std::optional<numerics::impedance::SpectraChannels> places;
  std::string missing;                  // "HX, EY": why there are no places
  std::vector<NamedChannel> undefined;  // those that the head doesn't define
  std::optional<EdiChannel> local_hx;
};

/// Finds the station's own channels by the CHTYPE of their ids (an id that comes twice means its first and
/// its second definition), or by the keyword where the head doesn't define the id. A second pair of magnetic
/// channels, else of electric ones, is the remote reference, and so are channels named RX, RY, RHX, RHY;
/// without both of a pair the reference is the station's own magnetic field. Hz is the station's own; without
/// one there is no tipper.
/// @param named in the order of rows and columns
SpectraRoles find_roles(const std::vector<NamedChannel>& named, const std::vector<EdiChannel>& defined);

}  // namespace formats::edi
