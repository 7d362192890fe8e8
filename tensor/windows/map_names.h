// map_names.h: the names of sites beside their dots, where they have room.
#pragma once
#include <QFontMetricsF>
#include <QPointF>
#include <QRectF>
#include <QString>
#include <unordered_map>
#include <vector>

namespace Module_tensor {

/// The rooms of a picture that are taken, by squares of the picture, so that a question looks at neighbours
/// only.
class TakenRooms {
 public:
  void take(const QRectF& room);
  [[nodiscard]] bool is_free(const QRectF& room) const;

 private:
  std::unordered_map<std::int64_t, std::vector<QRectF>> rooms_;  // each in all squares that it meets
};

struct NamedDot {
  QPointF at;
  double reach = 0.0;  // pixels around it that its own glyph takes
  QString name;
  bool beside = false;  // of an upright row of dots: its name has room to the right and left
};

struct PlacedName {
  QRectF room;
  QString name;
};

/// Above its dot, below, to the right or to the left of it, or between these, whichever is the first to be
/// free; to the right and left first where the dot says so. A name without room is left out. The dots
/// themselves are taken beforehand.
std::vector<PlacedName> placed_names(const std::vector<NamedDot>& dots, const QFontMetricsF& metrics,
                                     const QRectF& area, TakenRooms& taken);

}  // namespace Module_tensor
