// Any texts as the response of a two-dimensional inversion and, after a line "====", the data file that
// heads it.
#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <stdexcept>
#include <string_view>

#include "formats/occam/response_file.h"
#include "fuzz/input_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace Module_occam;
  constexpr std::string_view divider = "\n====\n";
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const std::size_t response_size = std::min(text.find(divider), size);
  const std::string response = write_input_file(data, response_size, "RESP01.resp");
  const std::string header = input_folder() + "/occamdat";
  std::ofstream(header, std::ios::binary) << text.substr(std::min(response_size + divider.size(), size));
  try {
    const OccamResponse read = read_response_file(response, header);
    // Numbers are those of the lists; the last row of all is found at its place.
    for (const OccamResponse::FileRow& row : read.rows()) {
      if (!read.has(row.type) || row.site_number > read.resp_sites() ||
          row.frequency_number > read.resp_frequency_count()) {
        std::abort();
      }
    }
    if (!read.rows().empty()) {
      const OccamResponse::FileRow& last = read.rows().back();
      const OccamResponse::Row found = read.row(last.type, last.site_number, last.frequency_number);
      if (std::memcmp(&found, &last.values, sizeof found) != 0) {
        std::abort();
      }
    }
  } catch (const std::runtime_error&) {  // texts that aren't a response
  }
  return 0;
}
