// roughness.h: how rough a model of blocks is: the weighted squares of the differences between neighbours.
//
// de Groot-Hedlin & Constable (1990), Geophysics 55, 1613-1624, on blocks of any width: two blocks are
// neighbours where a whole side of one lies on the other and begins or ends with it. Links, types and
// weights are those of the public program whose files are read and written, so that a roughness means the
// same in both.
#pragma once
#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace numerics::occam_inversion {

/// A block between node lines of the mesh, which count from the left and from the top.
struct Block {
  int left = 0;  // node lines
  int right = 0;
  int top = 0;
  int bottom = 0;
  double width = 0.0;   // m, as it counts: the outermost blocks as wide as their inner neighbours
  double height = 0.0;  // m, likewise: the last layer as thick as the one above, if that has as many blocks
  double first_row_bottom = 0.0;         // m, depth of the bottom of its first row of cells
  std::optional<std::size_t> parameter;  // none for a block that is fixed
};

/// A link whose weight is set by hand, between parameters.
struct LinkWeight {
  std::size_t first = 0;
  std::size_t second = 0;
  double weight = 0.0;
};

struct RoughnessRules {
  /// 1: differences as they are; 3: by height over width; 4: by depth; 101 to 199 and 201 to 299: links
  /// beside, or below, weighted by the last two digits. Others give no roughness at all and are refused.
  int type = 1;
  bool diagonals = false;           // blocks that touch in a corner are neighbours, too
  std::vector<LinkWeight> by_hand;  // the first of a pair counts; a pair that is no neighbour becomes one
};

/// A value that a parameter is drawn to.
struct Prejudice {
  std::size_t parameter = 0;
  double value = 0.0;   // log10 ohm-m
  double weight = 0.0;  // the square of the difference counts weight^2
};

struct Link {
  std::size_t first = 0;  // parameters
  std::size_t second = 0;
  double weight = 1.0;  // the square of the difference counts weight^2
};

class Roughness {
 public:
  /// @param parameters  those of the blocks and any behind them, which have no links
  /// Throws std::invalid_argument for rules that can't be followed.
  Roughness(std::span<const Block> blocks, std::size_t parameters, const RoughnessRules& rules,
            std::vector<Prejudice> prejudices = {});

  [[nodiscard]] std::size_t parameters() const { return parameters_; }
  [[nodiscard]] const std::vector<Link>& links() const { return links_; }
  [[nodiscard]] const std::vector<Prejudice>& prejudices() const { return prejudices_; }

  /// The sum over the links of weight^2 times the squared difference; prejudices don't count.
  /// @param model  log10 ohm-m, of each parameter
  [[nodiscard]] double of(std::span<const double> model) const;

  /// The parameters that hang together by links, each group by one number; a parameter without links is a
  /// group of its own.
  [[nodiscard]] std::vector<std::size_t> groups() const;

 private:
  std::size_t parameters_;
  std::vector<Link> links_;
  std::vector<Prejudice> prejudices_;
};

}  // namespace numerics::occam_inversion
