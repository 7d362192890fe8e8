// map_contents.h: what a picture of the map shows, and how.
#pragma once
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "tensor/plan_frame.h"
#include "tensor/site_map.h"

namespace Module_tensor {

struct MapLook {
  bool ellipses = true;
  EllipseFill fill = EllipseFill::geometric_phase;
  ColourScale scale = usual_scale(EllipseFill::geometric_phase);
  double ellipse_size = 1.0;  // times what fits the spacing of the sites
  bool real_arrows = true;
  bool imaginary_arrows = true;
  double arrow_size = 1.0;  // times the usual size
  ArrowChoice arrows;
  bool names = true;
};

struct MapContents {
  SiteMap map;
  std::vector<SiteValues> values;  // of each site
  double frequency = 0.0;          // Hz; 0: no site has values
  MapLook look;
  std::optional<PlanFrame> frame;       // none: all sites
  std::optional<std::int32_t> current;  // StationID of the station that the main window shows
  std::string heading;                  // "Line 200"
  std::size_t unread_lines = 0;         // of all lines: reading them was stopped
  std::string note;                     // in place of the sites where there are none

  /// Looks the values of all sites up.
  void show_frequency(double shown);
};

/// What the user has to know of the sites: what their places are, which have none, how many have values.
std::string remarks_text(const MapContents& contents);

}  // namespace Module_tensor
