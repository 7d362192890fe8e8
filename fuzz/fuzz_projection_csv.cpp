// Any text as projection.csv: it gives definitions or one clear failure, and what was read comes back the
// same from the file that is written of it.
#include <cstdint>
#include <cstdlib>
#include <stdexcept>
#include <string_view>
#include <vector>

#include "projections/definition_list.h"
#include "projections/projection_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using Module_projections::CoordSystem;
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  std::vector<CoordSystem> read;
  try {
    read = Module_projections::definitions_from_csv(text);
  } catch (const std::runtime_error&) {
    return 0;
  }
  const std::vector<CoordSystem> again =
      Module_projections::definitions_from_csv(Module_projections::definitions_as_csv(read));
  if (again.size() != read.size()) {
    std::abort();
  }
  for (std::size_t index = 0; index < read.size(); ++index) {
    std::string fault;
    const auto stored =
        Module_projections::definition_from_text(Module_projections::definition_text(read[index]), fault);
    if (again[index].values() != read[index].values() || again[index].name != read[index].name || !stored ||
        *stored != read[index].values()) {
      std::abort();
    }
    (void)Module_projections::coordinate_system_fault(read[index]);
  }
  return 0;
}
