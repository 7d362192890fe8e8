// shared_remarks.h: what is said in the same words of several stations, told once.
#pragma once
#include <cstddef>
#include <string>
#include <vector>

namespace Module_tensor {

struct SharedRemark {
  std::string text;
  std::size_t count = 0;  // of the remarks that it stands for
};

/// "12 stations, 1 (ET1), 2, 3, 4, 5 and 7 more: there is no ExHx" for those that begin with
/// "Station 1 (ET1): " and go on alike; "... (2 times)" for equal ones of no station; others as they are. In
/// the order of the first of each.
std::vector<SharedRemark> shared_remarks(const std::vector<std::string>& remarks);

}  // namespace Module_tensor
