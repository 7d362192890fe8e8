// remark_kinds.h: which remarks on field files say the same of different places.
//
// Remarks of one kind differ in what they were made of: numbers, quoted values, names of blocks and channels.
#pragma once
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Module_data_file {

/// The same text for all remarks of a kind: "block ... is not used".
std::string remark_kind(std::string_view remark);

/// What the remarks of a kind have in common, while they are added.
class CommonText {
 public:
  /// @param remark of the same kind as those before
  void add(std::string_view remark);
  /// The words that all remarks have, an ellipsis where they differ.
  [[nodiscard]] std::string text() const;
  /// Which words of a remark stand where they differ: ">COH"; empty if all are the same.
  [[nodiscard]] std::string differing(std::string_view remark) const;

 private:
  std::vector<std::string> words_;  // of the first remark
  std::vector<bool> differs_;       // by word
};

}  // namespace Module_data_file
