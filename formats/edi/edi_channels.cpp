#include "formats/edi/edi_channels.h"

#include <algorithm>
#include <utility>

#include "core/number_text.h"
#include "formats/edi/edi_lines.h"

namespace formats::edi {

void EdiChannelList::take(std::string_view line, std::string_view tag) {
  const bool magnetic = tag == "HMEAS";
  if (!magnetic && tag != "EMEAS") {
    return;
  }
  EdiChannel channel;
  channel.ID = option_item(line, "ID");
  channel.CHTYPE = option_item(line, "CHTYPE");
  channel.X = option_number(line, "X");
  channel.Y = option_number(line, "Y");
  channel.Z = option_number(line, "Z");
  if (magnetic) {
    channel.AZM = option_number(line, "AZM");
    channel.is_local = !reference_id_.empty() && numeric_value(channel.ID) == numeric_value(reference_id_);
    if (!channel.is_local) {
      reference_id_ = channel.ID;
    }
  }
  channels_.push_back(std::move(channel));
}

void EdiChannelList::mark_local() {
  const auto last_electric =
      std::find_if(channels_.rbegin(), channels_.rend(),
                   [](const EdiChannel& channel) { return channel.CHTYPE.starts_with('E'); });
  if (last_electric == channels_.rend()) {
    return;
  }
  const auto first_remote = last_electric.base();
  std::for_each(channels_.begin(), first_remote, [](EdiChannel& channel) { channel.is_local = true; });
  std::for_each(first_remote, channels_.end(), [](EdiChannel& channel) { channel.is_local = false; });
}

}  // namespace formats::edi
