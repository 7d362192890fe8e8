#include "batch/line_options.h"

#include "batch/command.h"
#include "batch/reading_option.h"
#include "core/text_fields.h"

namespace Batch {

void add_line_options(Parser& parser, LineOptions& options, LineIs line) {
  add_survey_argument(parser, options.survey);
  const bool is_required = line == LineIs::required;
  Option line_option = parser.add_option(
      "--line", options.line, is_required ? "survey line, as 200E" : "survey line, as 200E; left out: all");
  line_option.checked([](const std::string& text) {
    return trimmed(text).empty() ? std::string("the line has no name") : std::string();
  });
  if (is_required) {
    line_option.required();
  }
  parser
      .add_option("--reference", options.reference_type,
                  std::string(reference_types_help) + "; may be left out if the line has one")
      .in_range(0, last_reference_type);
  parser.add_option("--dipole", options.dipole, "dipole length, m; may be left out if the line has one");
}

int with_lines(const LineOptions& options,
               const std::function<int(const std::vector<Module_tensor::LineChoice>&)>& work,
               LineKinds kinds) {
  bool wrong_usage = false;
  const int status = with_open_survey(options.survey, [&] {
    const std::vector<Module_tensor::LineChoice> choices = Module_exchange::choose_lines(
        {options.line.empty() ? std::vector<std::string>() : std::vector{options.line},
         options.reference_type, options.dipole, "--reference and --dipole"},
        kinds);
    const int worked = choices.empty() ? status_wrong_usage : work(choices);
    wrong_usage = worked == status_wrong_usage;
    return worked;
  });
  return wrong_usage ? status_wrong_usage : status;
}

int with_line(const LineOptions& options, const std::function<int(const Module_tensor::LineChoice&)>& work) {
  return with_lines(
      options, [&](const std::vector<Module_tensor::LineChoice>& choices) { return work(choices.front()); });
}

}  // namespace Batch
