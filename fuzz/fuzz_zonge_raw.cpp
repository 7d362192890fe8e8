// Any bytes as a raw receiver file: every block is read or told as skipped, and a reading has what storing it
// needs.
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <exception>

#include "formats/zonge/zonge_raw_parser.h"
#include "formats/zonge/zonge_stn_file.h"
#include "fuzz/input_file.h"
#include "fuzz/scan_input.h"

using namespace Module_data_file;
using namespace formats::zonge;

namespace {

void require(bool condition) {
  if (!condition) std::abort();
}

void check_channel(const ZongeBlock& block, const ZongeChannel& channel) {
  require(channel.number >= 1 && channel.number <= static_cast<int>(zonge_channel_limit));
  require(std::isfinite(channel.station));
  require(!channel.values.empty() || !block.fault.empty());
  require(channel.values.size() <= zonge_harmonic_limit);
  for (const ZongeValue& value : channel.values) {
    require(std::isfinite(value.resistivity) && std::isfinite(value.phase));
    require(std::ranges::binary_search(block.harmonics, value.harmonic));
  }
}

void check_block(const ZongeBlock& block) {
  require(block.channels.size() <= zonge_channel_limit);
  require(!block.a_spacing || static_cast<float>(*block.a_spacing) > 0.0F);
  for (const ZongeChannel& channel : block.channels) {
    check_channel(block, channel);
  }
  if (block.channels.empty() || !block.fault.empty()) {
    return;
  }
  require(block.base_frequency.has_value());
  for (const double harmonic : block.harmonics) {
    const auto frequency = static_cast<float>(*block.base_frequency * harmonic);
    require(std::isfinite(frequency) && frequency > 0.0F);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  formats::FileReport report;
  const std::string path = write_input_file(data, size, "input.raw");
  try {
    LineReader reader(path);
    ZongeAccount account(report);
    ZongeRawParser parser(reader, account);
    ZongeBlock block;
    while (parser.next_block(block)) {
      if (block.type == ZongeBlockType::mt) check_block(block);
    }
  } catch (const std::exception&) {
    return 0;  // no text file
  }
  // The reader finds the same bytes as its file of stations.
  (void)write_input_file(data, size, "utm.stn");
  for (const ZongeStation& entry : read_stn_file(path, report)) {
    require(std::isfinite(entry.station) && std::isfinite(entry.x));
  }
  scan_input(data, size, format_zonge_raw);
  return 0;
}
