#include "exchange/windows/told_export.h"

#include <algorithm>
#include <string_view>
#include <vector>

using namespace Module_exchange;

namespace {

constexpr std::size_t most_remarks_told = 8;

/// What is said in the same words of several stations.
struct SharedRemark {
  std::string_view words;  // without the station
  std::string_view first;  // the whole of the first one
  std::size_t count = 0;
  bool of_stations = false;  // which are named before the words
};

/// Where the words begin after "Station 300 (ET003): "; 0 without a station.
std::size_t start_of_words(std::string_view remark) {
  constexpr std::string_view station = "Station ";
  constexpr std::string_view end_of_name = ": ";
  const std::size_t end = remark.starts_with(station) ? remark.find(end_of_name) : std::string_view::npos;
  return end == std::string_view::npos ? 0 : end + end_of_name.size();
}

std::vector<SharedRemark> shared_remarks(const std::vector<std::string>& remarks) {
  std::vector<SharedRemark> shared;
  for (const std::string_view remark : remarks) {
    const std::size_t start = start_of_words(remark);
    const std::string_view words = remark.substr(start);
    auto same = std::ranges::find_if(shared, [&](const SharedRemark& other) {
      return other.words == words && other.of_stations == (start > 0);
    });
    if (same == shared.end()) {
      same = shared.insert(shared.end(), {words, remark, 0, start > 0});
    }
    ++same->count;
  }
  return shared;
}

std::string text_of(const SharedRemark& remark) {
  if (remark.count == 1) {
    return std::string(remark.first);
  }
  const std::string count = std::to_string(remark.count);
  return remark.of_stations ? count + " stations: " + std::string(remark.words)
                            : std::string(remark.words) + " (" + count + " times)";
}

}  // namespace

std::string told_export(const ExportChoices& choices, const ExportResult& result) {
  std::string text = export_summary(choices, result);
  if (result.files.empty()) {
    return text;
  }
  const std::vector<SharedRemark> remarks = shared_remarks(result.remarks);
  const std::size_t shown = std::min(remarks.size(), most_remarks_told);
  std::size_t left = result.remarks.size();
  for (std::size_t index = 0; index < shown; ++index) {
    text += (index == 0 ? "\n\n" : "\n") + text_of(remarks[index]);
    left -= remarks[index].count;
  }
  if (left > 0) {
    text +=
        "\nand " + std::to_string(left) + (left == 1 ? " more remark" : " more remarks") + ", see the table";
  }
  return text;
}
