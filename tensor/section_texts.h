// section_texts.h: what a pseudo-section tells in words.
#pragma once
#include <optional>
#include <string>

#include "tensor/pseudo_section.h"

namespace Module_tensor {

/// "Survey, line 200: Phase xy".
std::string section_title(const std::string& survey_file, const std::string& line, SectionQuantity quantity);

/// "Station 1250 (ET001)   Period 0.125 s (8 Hz)   Phase xy 45.2 +- 1.3 degrees", with the depth in a depth
/// section; of a masked point it says so.
/// @param separator  between the parts
std::string point_text(const PseudoSection& section, const SectionColumn& column, const SectionPoint& point,
                       const std::string& separator);

/// Why there is nothing to see: in the user's words.
std::string empty_section_note(const PseudoSection& section, bool line_is_empty);

/// A number of a range as people read it: of a logarithmic quantity the number itself.
std::string range_text(const QuantityFacts& facts, double limit);

/// Limits that were typed, or come from a command line. None if they make no range.
std::optional<SectionRange> typed_range(const QuantityFacts& facts, const std::string& lower,
                                        const std::string& upper);

/// Why limits make no range, by limit; empty where nothing is wrong with it.
struct LimitFaults {
  std::string lower;
  std::string upper;
};
LimitFaults limit_faults(const QuantityFacts& facts, const std::string& lower, const std::string& upper);

}  // namespace Module_tensor
