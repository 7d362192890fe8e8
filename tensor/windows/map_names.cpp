#include "tensor/windows/map_names.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace Module_tensor {

namespace {

constexpr double square = 64.0;  // pixels, about a name's width

/// Calls `look` with the key of each square that a room meets, until it returns false.
template <class Look>
bool all_squares(const QRectF& room, Look look) {
  const auto index = [](double pixel) { return static_cast<std::int64_t>(std::floor(pixel / square)); };
  constexpr std::int64_t row = 1 << 20;
  for (std::int64_t y = index(room.top()); y <= index(room.bottom()); ++y) {
    for (std::int64_t x = index(room.left()); x <= index(room.right()); ++x) {
      if (!look(y * row + x)) {
        return false;
      }
    }
  }
  return true;
}

/// From a dot to the upper left corner of its name, the usual place first.
std::array<QPointF, 8> corners_around(const NamedDot& dot, const QSizeF& text) {
  const double reach = dot.reach;
  std::array corners = {QPointF(-text.width() / 2.0, -reach - text.height()),
                        QPointF(-text.width() / 2.0, reach),
                        QPointF(reach, -text.height() / 2.0),
                        QPointF(-reach - text.width(), -text.height() / 2.0),
                        QPointF(reach, -reach - text.height()),
                        QPointF(-reach - text.width(), reach),
                        QPointF(-reach - text.width(), -reach - text.height()),
                        QPointF(reach, reach)};
  if (dot.beside) {
    std::swap(corners[0], corners[2]);
    std::swap(corners[1], corners[3]);
  }
  return corners;
}

}  // namespace

void TakenRooms::take(const QRectF& room) {
  all_squares(room, [&](std::int64_t key) {
    rooms_[key].push_back(room);
    return true;
  });
}

bool TakenRooms::is_free(const QRectF& room) const {
  return all_squares(room, [&](std::int64_t key) {
    const auto found = rooms_.find(key);
    return found == rooms_.end() ||
           std::ranges::none_of(found->second, [&](const QRectF& taken) { return taken.intersects(room); });
  });
}

std::vector<PlacedName> placed_names(const std::vector<NamedDot>& dots, const QFontMetricsF& metrics,
                                     const QRectF& area, TakenRooms& taken) {
  std::vector<PlacedName> names;
  for (const NamedDot& dot : dots) {
    const QSizeF text(metrics.horizontalAdvance(dot.name), metrics.height());
    for (const QPointF corner : corners_around(dot, text)) {
      const QRectF room(dot.at + corner, text);
      if (area.contains(room) && taken.is_free(room)) {
        taken.take(room);
        names.push_back({room, dot.name});
        break;
      }
    }
  }
  return names;
}

}  // namespace Module_tensor
