// brenlox_make_samples: writes the field files of the synthetic survey into a folder.
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>

#include <CLI/CLI.hpp>

#include "samples/sample_survey.h"
#include "samples/tensor_line.h"

namespace {

void write_file(const std::filesystem::path& path, const std::string& text) {
  std::ofstream stream(path, std::ios::binary);
  stream.write(text.data(), static_cast<std::streamsize>(text.size()));
  stream.close();
  if (!stream) {
    throw std::runtime_error(path.string() + " can't be written");
  }
}

int run(int argument_count, char** arguments) {
  CLI::App program(
      "Writes the EDI files of a synthetic survey: two lines of twelve stations over layered ground, two "
      "scan rates, three repeats; or one line of full tensors over two-dimensional ground. The same seed "
      "gives "
      "the same files.");
  std::string folder;
  std::string elevations;
  std::uint64_t seed = Module_samples::default_seed;
  program.add_option("OUTPUT_FOLDER", folder, "folder for the files; created if it is missing")->required();
  program.add_option("--seed", seed, "seed of the random numbers")->capture_default_str();
  bool tensor_line = false;
  program.add_flag("--tensor-line", tensor_line,
                   "instead of these, a line of fifteen stations with full tensors and tippers over "
                   "two-dimensional ground of known strike");
  program.add_option("--elevations", elevations,
                     "also write the elevations of a line's stations to this file, for the mesh of a "
                     "two-dimensional inversion");
  try {
    program.parse(argument_count, arguments);
  } catch (const CLI::ParseError& fault) {
    return program.exit(fault) == 0 ? 0 : 2;
  }
  std::filesystem::create_directories(folder);
  const std::vector<Module_samples::SampleFile> files =
      tensor_line ? Module_samples::make_tensor_line(seed) : Module_samples::make_sample_survey(seed);
  for (const Module_samples::SampleFile& file : files) {
    write_file(std::filesystem::path(folder) / file.name, file.text);
  }
  if (!elevations.empty()) {
    write_file(elevations, Module_samples::elevation_table());
  }
  std::cout << files.size() << " files written to " << folder << '\n';
  return 0;
}

}  // namespace

int main(int argument_count, char** arguments) {
  try {
    return run(argument_count, arguments);
  } catch (const std::exception& failure) {
    std::cerr << failure.what() << '\n';
    return 1;
  }
}
