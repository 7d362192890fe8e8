// Any texts as the files of a run that is to be inverted, one behind the other with lines "====" between:
// start, data, model, mesh. What passes the checks has a response, unless the section refuses it with a
// reason.
#include <algorithm>
#include <array>
#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "fuzz/input_file.h"
#include "occam/inversion/inversion_input.h"
#include "occam/inversion/run_problem.h"

using namespace Module_occam;

namespace {

constexpr std::string_view divider = "\n====\n";
constexpr std::array<const char*, 4> names{"startup", "occamdat", "inmodel", "mesh"};

void write_run(std::string_view text) {
  for (const char* const name : names) {
    const std::size_t end = std::min(text.find(divider), text.size());
    std::ofstream(input_folder() + "/" + name, std::ios::binary) << text.substr(0, end);
    text.remove_prefix(std::min(end + divider.size(), text.size()));
  }
}

/// A larger one keeps the fuzzer waiting.
bool is_small(const InversionInput& input) {
  return input.model.node_x.size() * input.model.node_z.size() <= 300 && input.data.frequencies.size() <= 4 &&
         input.data.rows.size() <= 40;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  write_run({reinterpret_cast<const char*>(data), size});
  try {
    const InversionInput input = read_inversion_input(input_folder(), names[0]);
    (void)named_files(input_folder(), input);
    (void)roughness_of(input, RunProblem(input.model, input.data, {}, {}));
    if (!is_small(input)) {
      return 0;
    }
    RunRules rules;
    rules.threads = 1;
    const RunProblem run(input.model, input.data, rules, {});
    const std::vector<double> model = run.model_of(input.start.parameters);
    const auto modelled = run.modelled(model, numerics::occam_inversion::Derivatives::yes);
    if (modelled.values.size() != input.data.rows.size() ||
        modelled.sensitivities.size() != modelled.values.size() * run.parameters()) {
      std::abort();
    }
  } catch (const std::runtime_error&) {  // texts that can't be inverted
  } catch (const std::invalid_argument&) {
  }
  return 0;
}
