#include "occam/setup/site_names.h"

#include <algorithm>
#include <cstddef>
#include <map>

#include "core/number_text.h"
#include "core/text_fields.h"
#include "formats/occam/data_file.h"

namespace Module_occam {

namespace {

constexpr std::size_t longest_name = 20;  // bytes

/// A name on one line and in one word; empty if it can't be used.
std::string in_one_word(const std::string& name) {
  std::string word(trimmed(name));
  std::ranges::replace_if(
      word, [](char c) { return c == ' ' || (c >= '\0' && c < ' ') || c == '\x7f'; }, '_');
  return word.size() <= longest_name ? word : std::string();
}

/// How often each name is there, upper and lower case taken as one.
std::map<std::string, int> counted(const std::vector<std::string>& names) {
  std::map<std::string, int> counts;
  for (const std::string& name : names) {
    ++counts[upper_case(name)];
  }
  return counts;
}

}  // namespace

std::vector<std::string> names_in_data_file(const std::vector<InversionSite>& sites) {
  std::vector<std::string> names;
  for (const InversionSite& site : sites) {
    const std::string name = in_one_word(site.name);
    names.push_back(name.empty() ? site_name_at(static_cast<float>(site.station)) : name);
  }
  const std::map<std::string, int> as_given = counted(names);
  for (std::size_t index = 0; index < sites.size(); ++index) {
    if (as_given.at(upper_case(names[index])) > 1 &&
        names[index] != site_name_at(static_cast<float>(sites[index].station))) {
      names[index] += "_" + plain_text(sites[index].station);
    }
  }
  const std::map<std::string, int> numbered = counted(names);
  for (std::size_t index = 0; index < sites.size(); ++index) {
    if (numbered.at(upper_case(names[index])) > 1) {
      names[index] = site_name_at(static_cast<float>(sites[index].station));
    }
  }
  return names;
}

}  // namespace Module_occam
