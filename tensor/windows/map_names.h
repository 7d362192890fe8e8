// map_names.h: the names of sites beside their dots, where they have room.
#pragma once
#include <QFontMetricsF>
#include <QPointF>
#include <QRectF>
#include <QString>
#include <array>
#include <cstdint>
#include <unordered_map>
#include <vector>

namespace Module_tensor {

/// The rooms of a picture that are taken, as its pixels: a question costs the same beside thousands of dots
/// as beside one. A pixel that a room meets is taken as a whole.
class TakenRooms {
 public:
  void take(const QRectF& room);
  [[nodiscard]] bool is_free(const QRectF& room) const;

 private:
  static constexpr int side = 64;
  using Tile = std::array<std::uint64_t, side>;  // a word for each row, a bit for each pixel

  template <class Look>
  static bool all_tiles(const QRectF& room, Look look);

  std::unordered_map<std::int64_t, Tile> tiles_;
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
