// spectra_channels.h: which row and column of a spectra matrix belongs to which channel.
#pragma once
#include <optional>
#include <string>
#include <vector>

#include "formats/edi/edi_channels.h"
#include "numerics/impedance/mtcomp.h"

namespace formats::edi {

/// A channel as a section names it, in the order of rows and columns.
struct NamedChannel {
  std::string keyword;  // "HX" of "HX=1.001"; empty in a list of ids
  std::string ID;
};

struct SpectraRoles {
  std::optional<numerics::impedance::SpectraChannels> places;
  std::string missing;  // "HX, EY": why there are no places
  std::optional<EdiChannel> local_hx;
};

/// Finds the station's own channels by the CHTYPE of their ids (an id that comes twice means its first and
/// its second definition), or by the keyword where the head doesn't define the id. A second pair of magnetic
/// channels, else of electric ones, is the remote reference, and so are channels named RX, RY, RHX, RHY;
/// without both of a pair the reference is the station's own magnetic field.
SpectraRoles find_roles(const std::vector<NamedChannel>& named, const std::vector<EdiChannel>& defined);

}  // namespace formats::edi
