// j_blocks.h: the two lines that begin a block of the J format, its type and its count.
#pragma once
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "formats/transfer_function/transfer_function.h"

namespace formats::j_format {

enum class BlockKind : std::uint8_t { curve, impedance, tipper, other };
enum class Unit : std::uint8_t { not_said, field, si };

struct BlockType {
  BlockKind kind = BlockKind::other;
  transfer_function::Component component = transfer_function::Component::zxx;
  Unit unit = Unit::not_said;
  std::string name;
  std::size_t series = 0;  // the blocks of the file are numbered
};

/// The type of the block that a line begins; none if it begins no block.
std::optional<BlockType> block_type(std::string_view line);

/// The rows of a block; none if the line is no single whole number.
std::optional<std::int64_t> row_count(std::string_view line);

}  // namespace formats::j_format
