#include "occam/windows/short_site_name.h"

#include <string_view>

namespace Module_occam {

QString short_site_name(const std::string& name) {
  constexpr std::string_view word = "station_";
  constexpr int longest = 20;  // characters; files of other programs may have more
  const QString whole = QString::fromStdString(name.starts_with(word) ? name.substr(word.size()) : name);
  return whole.size() > longest ? whole.left(longest - 1) + QChar(0x2026) : whole;
}

}  // namespace Module_occam
