#include "import/survey_file_names.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <set>
#include <string_view>
#include <system_error>
#include <unordered_map>
#include <unordered_set>

#include "core/number_text.h"
#include "core/text_fields.h"
#include "platform/dao/case_folding.h"

namespace Module_data_file {

namespace {

namespace fs = std::filesystem;
using dao::folded_text;

constexpr std::size_t longest_name = 255;  // characters of the column SurveyFile

struct FilePath {
  std::string whole;
  std::vector<std::string> parts;  // the first is empty: a path from the root
};

FilePath path_of(const std::string& file) {
  std::error_code failure;
  fs::path path = fs::absolute(file, failure);
  if (failure) {
    path = file;
  }
  FilePath split{text_from_field_file(path.lexically_normal().generic_string()), {}};
  std::string_view rest = split.whole;
  for (std::size_t slash = rest.find('/'); slash != std::string_view::npos; slash = rest.find('/')) {
    split.parts.emplace_back(rest.substr(0, slash));
    rest.remove_prefix(slash + 1);
  }
  split.parts.emplace_back(rest);
  return split;
}

std::string tail(const FilePath& path, std::size_t count) {
  std::string text;
  for (std::size_t index = path.parts.size() - count; index < path.parts.size(); ++index) {
    text += (index + count == path.parts.size() ? "" : "/") + path.parts[index];
  }
  std::replace(text.begin(), text.end(), '\'', '_');
  return text;
}

// The last characters of a text, at most so many.
std::string cut_at_left(const std::string& text, std::size_t most) {
  std::size_t start = text.size();
  std::size_t characters = 0;
  while (start > 0 && characters < most) {
    --start;
    const bool begins_character = (static_cast<unsigned char>(text[start]) & 0xC0U) != 0x80U;
    characters += begins_character ? 1 : 0;
  }
  return text.substr(start);
}

// Files that differ in nothing but case; how many parts of their paths their names have.
struct CaseVariants {
  std::vector<std::size_t> files;
  std::size_t parts = 1;
};

// Names of files whose bare names are the same.
class NamesakeTails {
 public:
  NamesakeTails(const std::vector<FilePath>& paths, const std::vector<std::size_t>& files) : paths_(paths) {
    std::map<std::string, CaseVariants> variants;
    for (const std::size_t file : files) {
      variants[folded_text(paths[file].whole)].files.push_back(file);
    }
    for (auto& [path, of_path] : variants) {
      variants_.push_back(std::move(of_path));
    }
    tell_paths_apart();
    for (CaseVariants& of_path : variants_) {
      tell_cases_apart(of_path);
    }
  }

  [[nodiscard]] const std::vector<CaseVariants>& variants() const { return variants_; }

 private:
  [[nodiscard]] std::size_t length(const CaseVariants& of_path) const {
    return paths_[of_path.files.front()].parts.size();
  }

  void tell_paths_apart() {
    std::vector<CaseVariants*> alike;
    for (CaseVariants& of_path : variants_) {
      alike.push_back(&of_path);
    }
    while (alike.size() > 1) {
      std::unordered_map<std::string, std::vector<CaseVariants*>> by_tail;
      for (CaseVariants* const of_path : alike) {
        of_path->parts = std::min(of_path->parts + 1, length(*of_path));
        by_tail[folded_text(tail(paths_[of_path->files.front()], of_path->parts))].push_back(of_path);
      }
      alike.clear();
      for (const auto& [text, same] : by_tail) {
        for (CaseVariants* const of_path : same) {
          if (same.size() > 1 && of_path->parts < length(*of_path)) {
            alike.push_back(of_path);
          }
        }
      }
    }
  }

  void tell_cases_apart(CaseVariants& of_path) const {
    const auto all_differ = [&] {
      std::set<std::string> tails;
      return std::all_of(of_path.files.begin(), of_path.files.end(), [&](std::size_t file) {
        return tails.insert(tail(paths_[file], of_path.parts)).second;
      });
    };
    while (of_path.parts < length(of_path) && !all_differ()) {
      ++of_path.parts;
    }
  }

  const std::vector<FilePath>& paths_;
  std::vector<CaseVariants> variants_;
};

// The name itself, or with " (2)" or the next free number behind it.
std::string unused_name(const std::string& name, std::unordered_set<std::string>& used) {
  std::string unused = cut_at_left(name, longest_name);
  for (int number = 2; !used.insert(folded_text(unused)).second; ++number) {
    unused = numbered_name(name, number);
  }
  return unused;
}

}  // namespace

std::vector<SurveyFileName> survey_file_names(const std::vector<std::string>& files) {
  std::vector<SurveyFileName> names(files.size());
  std::vector<FilePath> paths;
  std::unordered_set<std::string> known;
  std::unordered_map<std::string, std::vector<std::size_t>> by_bare_name;
  for (std::size_t index = 0; index < files.size(); ++index) {
    const FilePath& path = paths.emplace_back(path_of(files[index]));
    names[index].name = path.parts.back();
    names[index].repeated = !known.insert(path.whole).second;
    if (!names[index].repeated) {
      by_bare_name[folded_text(path.parts.back())].push_back(index);
    }
  }
  for (const auto& [bare_name, namesakes] : by_bare_name) {
    if (namesakes.size() == 1) {
      continue;
    }
    const NamesakeTails tails(paths, namesakes);
    for (const CaseVariants& of_path : tails.variants()) {
      for (const std::size_t file : of_path.files) {
        names[file].name = tail(paths[file], of_path.parts);
      }
    }
  }
  std::unordered_set<std::string> used;
  for (SurveyFileName& name : names) {
    if (!name.repeated) {
      name.name = unused_name(name.name, used);
    }
  }
  return names;
}

std::vector<std::string> path_tails(const std::string& file) {
  const FilePath path = path_of(file);
  std::vector<std::string> tails;
  for (std::size_t count = path.parts.size(); count > 0; --count) {
    tails.push_back(cut_at_left(tail(path, count), longest_name));
  }
  tails.erase(std::unique(tails.begin(), tails.end()), tails.end());
  return tails;
}

std::string numbered_name(const std::string& name, int number) {
  const std::string mark = " (" + plain_text(number) + ")";
  return cut_at_left(name, longest_name - mark.size()) + mark;
}

std::string_view without_number(std::string_view name) {
  const std::size_t open = name.rfind(" (");
  if (open == std::string_view::npos || !name.ends_with(')')) {
    return name;
  }
  const std::string_view number = name.substr(open + 2, name.size() - open - 3);
  const bool is_number = !number.empty() && number.find_first_not_of("0123456789") == std::string_view::npos;
  return is_number ? name.substr(0, open) : name;
}

}  // namespace Module_data_file
