// shared_remarks.h: what is said of several stations in the same words, said once.
#pragma once
#include <cstddef>
#include <string>
#include <vector>

namespace Module_tensor {

struct SharedRemark {
  std::string text;  // "Stations 100, 150, 200 and 21 more: there is no tipper"
  std::size_t count = 0;
};

/// Remarks that begin with a station ("Station 300 (ET003): ...") and go on in the same words become one, as
/// do others that are equal; in the order of the first of each.
std::vector<SharedRemark> shared_remarks(const std::vector<std::string>& remarks);

/// Shows each of them, once, in a message of its own.
void tell_shared(const std::vector<std::string>& remarks);

}  // namespace Module_tensor
