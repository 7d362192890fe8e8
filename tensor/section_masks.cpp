#include "tensor/section_masks.h"

#include <vector>

#include "reduction/edits/set_points.h"

namespace Module_tensor {

using namespace Module_averaged_data;

Edit toggle_section_point(const LineTensors& line, std::size_t station, const SectionPoint& point,
                          SectionQuantity quantity) {
  const QuantityFacts& facts = facts_of(quantity);
  const auto frequency = static_cast<float>(point.frequency);
  std::vector<CurvePoints> curves;
  for (const auto& type : facts.curves) {
    const auto ID = type ? line.curves.stations[station].of(*type).ID : 0;
    if (ID == 0) {
      continue;
    }
    CurvePoints& curve = curves.emplace_back();
    curve.ID = ID;
    for (const Component component : {Component::resistivity, Component::phase}) {
      if (facts.component == OutlierField::both ||
          static_cast<int>(facts.component) == static_cast<int>(component)) {
        curve.points.push_back({frequency, component, !point.counts});
      }
    }
  }
  return set_points(curves);
}

}  // namespace Module_tensor
