#include "tensor/windows/map_names.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace Module_tensor {

namespace {

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

/// Calls `look` with the key of each tile that a room meets, its rows there and a word with the room's pixels
/// of a row, until it returns false.
template <class Look>
bool TakenRooms::all_tiles(const QRectF& room, Look look) {
  if (room.isEmpty()) {
    return true;
  }
  const auto pixel = [](double place) { return static_cast<std::int64_t>(std::floor(place)); };
  const auto last_pixel = [](double end) { return static_cast<std::int64_t>(std::ceil(end)) - 1; };
  const std::int64_t left = pixel(room.left());
  const std::int64_t right = last_pixel(room.right());
  const std::int64_t top = pixel(room.top());
  const std::int64_t bottom = last_pixel(room.bottom());
  const auto tile = [](std::int64_t at) { return at >= 0 ? at / side : (at + 1) / side - 1; };
  constexpr std::int64_t row_of_tiles = 1 << 20;
  for (std::int64_t y = tile(top); y <= tile(bottom); ++y) {
    for (std::int64_t x = tile(left); x <= tile(right); ++x) {
      const auto within = [](std::int64_t at, std::int64_t first) {
        return static_cast<std::size_t>(std::clamp<std::int64_t>(at - first, 0, side - 1));
      };
      constexpr std::uint64_t all = ~std::uint64_t{0};
      const std::uint64_t pixels =
          (all << within(left, x * side)) & (all >> (side - 1 - within(right, x * side)));
      if (!look(y * row_of_tiles + x, within(top, y * side), within(bottom, y * side), pixels)) {
        return false;
      }
    }
  }
  return true;
}

void TakenRooms::take(const QRectF& room) {
  all_tiles(room, [&](std::int64_t key, std::size_t first, std::size_t last, std::uint64_t pixels) {
    Tile& tile = tiles_[key];
    for (std::size_t row = first; row <= last; ++row) {
      tile[row] |= pixels;
    }
    return true;
  });
}

bool TakenRooms::is_free(const QRectF& room) const {
  return all_tiles(room, [&](std::int64_t key, std::size_t first, std::size_t last, std::uint64_t pixels) {
    const auto found = tiles_.find(key);
    return found == tiles_.end() || std::all_of(found->second.begin() + static_cast<std::ptrdiff_t>(first),
                                                found->second.begin() + static_cast<std::ptrdiff_t>(last) + 1,
                                                [&](std::uint64_t row) { return (row & pixels) == 0; });
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
