#include "formats/occam/model_file.h"

#include <utility>

#include "core/number_text.h"
#include "core/text_fields.h"
#include "formats/occam/mesh_file.h"
#include "formats/occam/model_blocks.h"
#include "formats/occam/text_input.h"

namespace Module_occam {

namespace {

constexpr std::string_view line_end = "\r\n";
constexpr std::size_t count_width = 6;
constexpr std::size_t full_line = 150;  // a line of column counts ends once it is this long

void add_line(std::string& text, std::string_view label, std::string_view value) {
  text.append(label).append(value).append(line_end);
}

std::string count_field(std::int64_t count) { return pad_field(format_number(count, "0"), count_width); }

void add_layer(std::string& text, const LayerLines& layer) {
  add_line(text, count_field(layer.rows), count_field(static_cast<std::int64_t>(layer.block_columns.size())));
  std::size_t line_length = 0;
  for (const int columns : layer.block_columns) {
    text += count_field(columns);
    line_length += count_width;
    if (line_length >= full_line) {
      text += line_end;
      line_length = 0;
    }
  }
  if (line_length > 0) {
    text += line_end;
  }
}

/// What a model file holds.
struct ModelLines {
  ModelNames names;
  double binding_offset = 0.0;
  std::vector<OccamLayer> layers;
};

OccamLayer read_layer(TextInput& input) {
  std::string_view line = input.filled_line();
  OccamLayer layer;
  layer.layer_rows = integer_value(next_token(line));
  const int blocks = integer_value(next_token(line));
  std::vector<double> columns;
  if (read_value_list(input, blocks, columns) != 0) {
    throw Refusal("The specified mesh file is not correctly defined");
  }
  for (const double count : columns) {
    layer.block_columns.push_back(integer_of(count));
  }
  return layer;
}

std::string name_or_none(std::string_view line) {
  const std::string_view name = behind_colon(line);
  return equal_ignoring_case(name, "none") ? std::string() : std::string(name);
}

/// The shifts of a statics file in the run's folder; none where the file is missing.
void take_statics(OccamModel& model, const std::filesystem::path& run_folder, const std::string& name) {
  std::error_code ignored;
  const std::filesystem::path file = run_folder / name;
  if (name.empty() || !std::filesystem::is_regular_file(file, ignored)) {
    return;
  }
  StaticsFile statics = read_shift_file(file.string());
  model.static_shifts = std::move(statics.shifts);
  model.shift_constraint = statics.constraint;
  model.shift_constraint_error = statics.constraint_error;
}

ModelLines read_lines(TextInput& input) {
  if (input.filled_line().find("OCCAM2MTMOD_1.0") == std::string_view::npos) {
    throw Refusal("The file does not have the correct format");
  }
  input.line();  // name
  input.line();  // description
  ModelLines lines;
  lines.names.mesh_file = behind_colon(input.filled_line());
  if (input.filled_line().find("PW2D") == std::string_view::npos) {
    throw Refusal("The specified mesh type is not supported");
  }
  lines.names.statics_file = name_or_none(input.filled_line());
  lines.names.prejudice_file = name_or_none(input.filled_line());
  lines.binding_offset = numeric_value(behind_colon(input.filled_line()));
  const int layers = integer_value(behind_colon(input.filled_line()));
  for (int layer = 0; layer < layers; ++layer) {
    lines.layers.push_back(read_layer(input));
  }
  input.filled_line();  // exceptions
  return lines;
}

}  // namespace

std::string model_file_text(const std::string& model_name, double binding_offset,
                            const std::vector<LayerLines>& layers) {
  std::string text;
  add_line(text, "FORMAT:           ", "OCCAM2MTMOD_1.0");
  add_line(text, "MODEL NAME:       ", trimmed(model_name));
  add_line(text, "DESCRIPTION:      ", "SIMPLE INVERSION");
  add_line(text, "MESH FILE:        ", "MESH");
  add_line(text, "MESH TYPE:        ", "PW2D");
  add_line(text, "STATICS FILE:     ", "none");
  add_line(text, "PREJUDICE FILE:   ", "none");
  add_line(text, "BINDING OFFSET:   ", format_number(binding_offset, "0.0"));
  add_line(text, "NUM LAYERS:       ", std::to_string(layers.size()));
  for (const LayerLines& layer : layers) {
    add_layer(text, layer);
  }
  add_line(text, "NO. EXCEPTIONS:   ", "0");
  return text;
}

ModelNames read_model_names(const std::string& path) {
  TextInput input(path);
  return read_lines(input).names;
}

OccamModel read_model_file(const std::filesystem::path& run_folder, const std::string& name,
                           const OccamData& sites) {
  const std::string path = (run_folder / name).string();
  ModelLines lines = [&path] {
    TextInput input(path);
    return read_lines(input);
  }();
  const std::string mesh_path = find_mesh_file(lines.names.mesh_file, run_folder, path);
  if (mesh_path.empty()) {
    throw Refusal("The specified mesh file does not exist");
  }
  OccamMesh mesh = read_named_file(mesh_path, [&] { return read_mesh_file(mesh_path); });
  OccamModel model = build_model(std::move(mesh), std::move(lines.layers), lines.binding_offset);
  take_statics(model, run_folder, lines.names.statics_file);
  model.site_node = place_sites(model, sites.site_offsets);
  model.mesh_file = mesh_path;
  return model;
}

}  // namespace Module_occam
