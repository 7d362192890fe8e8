#include "numerics/occam_inversion/roughness.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <map>
#include <numeric>
#include <set>
#include <stdexcept>
#include <unordered_map>
#include <utility>

namespace numerics::occam_inversion {

namespace {

enum class Side { beside, below };

// The weight of the link from a block to its neighbour beside or below.
class Weights {
 public:
  explicit Weights(int type) : type_(std::abs(type)) {
    const bool known = type_ == 1 || type_ == 3 || type_ == 4 || (type_ > 100 && type_ < 200) ||
                       (type_ > 200 && type_ < 300);
    if (!known) {
      throw std::invalid_argument("roughness type " + std::to_string(type) +
                                  " measures no roughness; the types are 1, 3, 4, 101 to 199 and 201 to 299");
    }
  }

  [[nodiscard]] double of(const Block& block, const Block& neighbour, Side side) const {
    if (type_ == 3) {
      return 2.0 * block.height / (block.width + neighbour.width);
    }
    if (type_ == 4) {
      return std::log10(block.first_row_bottom);
    }
    return type_ > 100 && (side == Side::beside) == (type_ < 200) ? type_ % 100 : 1.0;
  }
  [[nodiscard]] double of_diagonal(const Block& block, const Block& neighbour) const {
    return type_ > 100 ? 1.0 : of(block, neighbour, Side::beside);
  }

 private:
  int type_;
};

// Blocks by one corner or another, so that neighbours are found without a look at all pairs.
class BlockCorners {
 public:
  using Corner = std::pair<int, int>;  // node line across, node line down

  explicit BlockCorners(std::span<const Block> blocks) {
    for (std::size_t index = 0; index < blocks.size(); ++index) {
      top_left_.emplace(key({blocks[index].left, blocks[index].top}), index);
      top_right_.emplace(key({blocks[index].right, blocks[index].top}), index);
      bottom_left_.emplace(key({blocks[index].left, blocks[index].bottom}), index);
    }
  }
  [[nodiscard]] std::optional<std::size_t> with_top_left(Corner corner) const {
    return find(top_left_, corner);
  }
  [[nodiscard]] std::optional<std::size_t> with_top_right(Corner corner) const {
    return find(top_right_, corner);
  }
  [[nodiscard]] std::optional<std::size_t> with_bottom_left(Corner corner) const {
    return find(bottom_left_, corner);
  }

 private:
  using Index = std::unordered_map<long long, std::size_t>;
  static long long key(Corner corner) { return (static_cast<long long>(corner.first) << 32) + corner.second; }
  static std::optional<std::size_t> find(const Index& index, Corner corner) {
    const auto found = index.find(key(corner));
    return found == index.end() ? std::nullopt : std::optional(found->second);
  }

  Index top_left_;
  Index top_right_;
  Index bottom_left_;
};

using Pair = std::pair<std::size_t, std::size_t>;

Pair ordered(std::size_t a, std::size_t b) { return {std::min(a, b), std::max(a, b)}; }

std::vector<Link> links_of(std::span<const Block> blocks, const RoughnessRules& rules) {
  const Weights weights(rules.type);
  const BlockCorners corners(blocks);
  std::vector<Link> links;
  const auto link = [&](const Block& block, std::optional<std::size_t> other, auto&& weight) {
    if (other && blocks[*other].parameter && *block.parameter != *blocks[*other].parameter) {
      links.push_back({*block.parameter, *blocks[*other].parameter, weight(blocks[*other])});
    }
  };
  for (const Block& block : blocks) {
    if (!block.parameter) {
      continue;
    }
    const auto beside = [&](const Block& other) { return weights.of(block, other, Side::beside); };
    const auto below = [&](const Block& other) { return weights.of(block, other, Side::below); };
    const auto diagonal = [&](const Block& other) { return weights.of_diagonal(block, other); };
    const std::optional<std::size_t> right = corners.with_top_left({block.right, block.top});
    if (right && blocks[*right].bottom == block.bottom) {
      link(block, right, beside);
    }
    const std::optional<std::size_t> below_left = corners.with_top_left({block.left, block.bottom});
    const std::optional<std::size_t> below_right = corners.with_top_right({block.right, block.bottom});
    link(block, below_left, below);
    if (below_right != below_left) {
      link(block, below_right, below);
    }
    if (rules.diagonals) {
      link(block, corners.with_top_left({block.right, block.bottom}), diagonal);
      link(block, corners.with_bottom_left({block.right, block.top}), diagonal);
    }
  }
  return links;
}

void weigh_by_hand(const std::vector<LinkWeight>& by_hand, std::size_t parameters, std::vector<Link>& links) {
  std::multimap<Pair, std::size_t> places;
  for (std::size_t place = 0; place < links.size(); ++place) {
    places.emplace(ordered(links[place].first, links[place].second), place);
  }
  std::set<Pair> named;
  for (const LinkWeight& entry : by_hand) {
    if (entry.first >= parameters || entry.second >= parameters) {
      throw std::invalid_argument("an exception of the roughness names parameter " +
                                  std::to_string(std::max(entry.first, entry.second) + 1) + " of " +
                                  std::to_string(parameters));
    }
    const Pair pair = ordered(entry.first, entry.second);
    if (!named.insert(pair).second || pair.first == pair.second) {
      continue;
    }
    const auto [first, last] = places.equal_range(pair);
    for (auto place = first; place != last; ++place) {
      links[place->second].weight *= std::abs(entry.weight);
    }
    if (first == last) {
      links.push_back({entry.first, entry.second, std::abs(entry.weight)});
    }
  }
}

}  // namespace

Roughness::Roughness(std::span<const Block> blocks, std::size_t parameters, const RoughnessRules& rules,
                     std::vector<Prejudice> prejudices)
    : parameters_(parameters), links_(links_of(blocks, rules)), prejudices_(std::move(prejudices)) {
  weigh_by_hand(rules.by_hand, parameters, links_);
  for (const Prejudice& prejudice : prejudices_) {
    if (prejudice.parameter >= parameters) {
      throw std::invalid_argument("a prejudice names parameter " + std::to_string(prejudice.parameter + 1) +
                                  " of " + std::to_string(parameters));
    }
  }
}

double Roughness::of(std::span<const double> model) const {
  double sum = 0.0;
  for (const Link& link : links_) {
    const double difference = link.weight * (model[link.second] - model[link.first]);
    sum += difference * difference;
  }
  return sum;
}

std::vector<std::size_t> Roughness::groups() const {
  std::vector<std::size_t> parent(parameters_);
  std::iota(parent.begin(), parent.end(), std::size_t{0});
  const auto root = [&](std::size_t parameter) {
    while (parent[parameter] != parameter) {
      parent[parameter] = parent[parent[parameter]];
      parameter = parent[parameter];
    }
    return parameter;
  };
  for (const Link& link : links_) {
    if (link.weight != 0.0) {
      const Pair roots = ordered(root(link.first), root(link.second));
      parent[roots.second] = roots.first;
    }
  }
  std::vector<std::size_t> group(parameters_);
  std::size_t count = 0;
  for (std::size_t parameter = 0; parameter < parameters_; ++parameter) {
    const std::size_t first = root(parameter);
    group[parameter] = first == parameter ? count++ : group[first];
  }
  return group;
}

}  // namespace numerics::occam_inversion
