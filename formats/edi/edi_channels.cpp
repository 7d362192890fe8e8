#include "formats/edi/edi_channels.h"

#include <algorithm>
#include <utility>

#include "core/number_text.h"
#include "core/text_fields.h"
#include "formats/edi/edi_lines.h"
#include "formats/file_report.h"

namespace formats::edi {

namespace {

// HX, EY, RX, RHX: the keywords of channels in the head of a section.
bool names_channel(std::string_view keyword) {
  constexpr std::string_view kinds = "HER";
  constexpr std::string_view axes = "XYZ";
  return keyword.size() >= 2 && keyword.size() <= 4 &&
         kinds.find(keyword.front()) != std::string_view::npos &&
         axes.find(keyword.back()) != std::string_view::npos;
}

template <class Test>
const EdiChannel* nth_channel(const std::vector<EdiChannel>& defined, std::size_t mention, Test is_meant) {
  const EdiChannel* found = nullptr;
  for (const EdiChannel& channel : defined) {
    if (is_meant(channel.ID)) {
      found = &channel;
      if (mention-- == 0) {
        break;
      }
    }
  }
  return found;
}

}  // namespace

std::vector<NamedChannel> named_channels(std::string_view line) {
  std::vector<NamedChannel> named;
  for (std::size_t equals = line.find('='); equals != std::string_view::npos; equals = line.find('=')) {
    const std::string_view before = trimmed(line.substr(0, equals));
    const std::size_t blank = before.find_last_of(" \t,");
    const std::string_view keyword = blank == std::string_view::npos ? before : before.substr(blank + 1);
    line = trimmed(line.substr(equals + 1));
    if (names_channel(keyword)) {
      named.push_back({std::string(keyword), std::string(next_token(line))});
    }
  }
  return named;
}

bool same_id(const std::string& a, const std::string& b) {
  return a == b || (is_numeric(a) && is_numeric(b) && numeric_value(a) == numeric_value(b));
}

const EdiChannel* find_channel(const std::vector<EdiChannel>& defined, const std::string& id,
                               std::size_t mention) {
  const EdiChannel* const as_written =
      nth_channel(defined, mention, [&](const std::string& other) { return other == id; });
  return as_written != nullptr
             ? as_written
             : nth_channel(defined, mention, [&](const std::string& other) { return same_id(other, id); });
}

std::string undefined_channel_text(const NamedChannel& channel) {
  return (channel.keyword.empty() ? "channel " : channel.keyword + "=") + formats::in_quotes(channel.ID) +
         " has no >HMEAS or >EMEAS";
}

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

bool EdiChannelList::has_remote() const {
  const auto is_electric = [](const EdiChannel& channel) { return channel.CHTYPE.starts_with('E'); };
  const auto is_own = [&](const EdiChannel& remote) {
    return std::ranges::any_of(
        channels_, [&](const EdiChannel& own) { return own.is_local && same_id(own.ID, remote.ID); });
  };
  return std::ranges::any_of(channels_, is_electric) &&
         std::ranges::any_of(channels_, [&](const EdiChannel& channel) {
           return !channel.is_local && !is_electric(channel) && !is_own(channel);
         });
}

void EdiChannelList::mark_local() {
  const auto last_electric =
      std::find_if(channels_.rbegin(), channels_.rend(),
                   [](const EdiChannel& channel) { return channel.CHTYPE.starts_with('E'); });
  if (last_electric == channels_.rend()) {
    mark_first_group();
    return;
  }
  const auto first_remote = last_electric.base();
  std::for_each(channels_.begin(), first_remote, [](EdiChannel& channel) { channel.is_local = true; });
  std::for_each(first_remote, channels_.end(), [](EdiChannel& channel) { channel.is_local = false; });
}

// Of magnetic channels alone, as of a station of a tipper, a remote reference begins with a type once more.
void EdiChannelList::mark_first_group() {
  for (auto channel = channels_.begin(); channel != channels_.end(); ++channel) {
    const auto is_of_type = [&](const EdiChannel& before) { return before.CHTYPE == channel->CHTYPE; };
    if (std::any_of(channels_.begin(), channel, is_of_type)) {
      return;
    }
    channel->is_local = true;
  }
}

}  // namespace formats::edi
