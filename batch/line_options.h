// line_options.h: the options of commands that work on a line's tensors, and the way to what they choose.
#pragma once
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "batch/options.h"
#include "exchange/asked_lines.h"
#include "tensor/line_curves.h"

namespace Batch {

struct LineOptions {
  std::string survey;
  std::string line;                   // empty: all lines
  std::optional<int> reference_type;  // none: the only one that the line has
  std::optional<float> dipole;        // m; none likewise
};

enum class LineIs { required, optional };

/// Adds the positional SURVEY.mdb, --line, --reference and --dipole.
void add_line_options(Parser& parser, LineOptions& options, LineIs line = LineIs::required);

using Module_exchange::LineKinds;

/// Opens the survey, runs `work` on the curves of each line that the options choose, and closes it again. Of
/// all lines, one without such curves is left out with a sentence.
/// Nothing is run unless they choose one reference type and dipole of each: then a sentence names what the
/// survey or the line has.
/// @param work  0 done, -1 failed after a message, status_wrong_usage after a message on an option
/// @return the exit status
int with_lines(const LineOptions& options,
               const std::function<int(const std::vector<Module_tensor::LineChoice>&)>& work,
               LineKinds kinds = LineKinds::one);

/// The same for a command that needs a line.
int with_line(const LineOptions& options, const std::function<int(const Module_tensor::LineChoice&)>& work);

}  // namespace Batch
