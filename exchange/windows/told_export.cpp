#include "exchange/windows/told_export.h"

#include <algorithm>
#include <vector>

#include "tensor/shared_remarks.h"

using namespace Module_exchange;

namespace {

constexpr std::size_t most_remarks_told = 8;

}  // namespace

std::string told_export(const ExportChoices& choices, const ExportResult& result) {
  std::string text = export_summary(choices, result);
  if (result.files.empty()) {
    return text;
  }
  const std::vector<Module_tensor::SharedRemark> remarks = Module_tensor::shared_remarks(result.remarks);
  const std::size_t shown = std::min(remarks.size(), most_remarks_told);
  std::size_t left = result.remarks.size();
  for (std::size_t index = 0; index < shown; ++index) {
    text += (index == 0 ? "\n\n" : "\n") + remarks[index].text;
    left -= remarks[index].count;
  }
  if (left > 0) {
    text +=
        "\nand " + std::to_string(left) + (left == 1 ? " more remark" : " more remarks") + ", see the table";
  }
  return text;
}
