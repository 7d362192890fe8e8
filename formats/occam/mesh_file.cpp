#include "formats/occam/mesh_file.h"

#include <array>
#include <cmath>
#include <span>
#include <stdexcept>

#include "core/file_names.h"
#include "core/number_text.h"
#include "core/text_fields.h"
#include "formats/occam/text_input.h"

namespace fs = std::filesystem;

namespace Module_occam {

namespace {

constexpr std::string_view line_end = "\r\n";
constexpr std::size_t count_width = 6;
constexpr std::size_t size_width = 14;
constexpr std::size_t full_line = 80;            // a line of sizes ends once it is this long
constexpr std::size_t longest_code_line = 1000;  // a longer row continues on further lines

/// The fewer decimals, the larger the height, so that every height fits its field.
std::string_view height_picture(double height) {
  struct Step {
    double below;
    std::string_view picture;
  };
  static constexpr std::array<Step, 6> steps{{{100.0, "0.000000"},
                                              {1000.0, "0.00000"},
                                              {100000.0, "0.0000"},
                                              {1e6, "0.000"},
                                              {1e7, "0.00"},
                                              {1e8, "0.0"}}};
  for (const Step& step : steps) {
    if (height < step.below) {
      return step.picture;
    }
  }
  return "0";
}

template <class PictureOf>
void add_sizes(std::string& text, std::span<const double> sizes, PictureOf picture_of) {
  std::size_t line_length = 0;
  for (const double size : sizes) {
    const std::string field = pad_field(format_number(size, picture_of(size)), size_width);
    // A size that fills its field would run into the one before, and both would be read as one number.
    if (line_length >= full_line || (line_length > 0 && field.front() != ' ')) {
      text += line_end;
      line_length = 0;
    }
    text += field;
    line_length += size_width;
  }
  if (line_length > 0) {
    text += line_end;
  }
}

void add_code_line(std::string& text, std::string_view codes) {
  do {
    text.append(codes.substr(0, longest_code_line)).append(line_end);
    codes.remove_prefix(std::min(longest_code_line, codes.size()));
  } while (!codes.empty());
}

fs::path with_other_case(const fs::path& path) {
  std::error_code failure;
  const fs::path folder = path.has_parent_path() ? path.parent_path() : fs::path(".");
  const std::string name = path.filename().string();
  for (fs::directory_iterator entry(folder, failure), end; !failure && entry != end;
       entry.increment(failure)) {
    if (equal_ignoring_case(entry->path().filename().string(), name)) {
      return entry->path();
    }
  }
  return {};
}

/// The file itself, or one whose name differs only in case; empty if there is neither.
fs::path existing_file(const fs::path& path) {
  std::error_code ignored;
  if (fs::is_regular_file(path, ignored)) {
    return path;
  }
  fs::path other = with_other_case(path);
  return fs::is_regular_file(other, ignored) ? other : fs::path();
}

struct MeshHead {
  std::array<int, 6> numbers{};  // type, node columns, node rows, fixed resistivities, frequencies, unused
};

MeshHead read_head(TextInput& input) {
  input.line();  // title
  std::string_view line = input.line();
  MeshHead head;
  for (int& number : head.numbers) {
    number = integer_value(next_token(line));
  }
  if (head.numbers[0] != 0) {
    throw Refusal("The specified mesh type is not supported");
  }
  return head;
}

void read_sizes(TextInput& input, std::int64_t count, std::vector<double>& sizes, const char* message) {
  if (read_value_list(input, count, sizes) != 0) {
    throw Refusal(message);
  }
  for (const double size : sizes) {
    if (!(std::isfinite(size) && size > 0.0)) {
      throw std::runtime_error("the mesh has a cell of the size " + plain_text(size));
    }
  }
}

/// The table after the sizes holds nothing that we use.
void skip_table(TextInput& input) {
  int items = integer_value(behind_colon(input.line()));
  while (items > 0) {
    std::string_view line = input.line();
    while (items > 0 && !next_token(line).empty()) {
      --items;
    }
  }
}

std::string read_code_line(TextInput& input, std::size_t columns) {
  std::string codes;
  while (codes.size() < columns) {
    codes += input.line().substr(0, columns - codes.size());
  }
  return codes;
}

}  // namespace

std::string mesh_file_text(const OccamMesh& mesh, MeshCodes codes) {
  std::string text = " MESH FILE FROM Brenlox\r\n     0";
  text += pad_field(format_number(mesh.node_columns(), "0"), count_width);
  text += pad_field(format_number(mesh.node_rows(), "0"), count_width);
  // Codes of fixed triangles are indices of the table of fixed resistivities.
  const std::span fixed =
      std::span(mesh.fixed_res).first(codes == MeshCodes::all_free ? 0 : mesh.fixed_res.size());
  text += pad_field(std::to_string(fixed.size()), count_width);
  text += "     0     2\r\n";
  for (const double resistivity : fixed) {
    text.append(" ").append(plain_text(resistivity)).append(line_end);
  }
  add_sizes(text, mesh.node_widths, [](double) { return "0.000000"; });
  add_sizes(text, mesh.node_heights, height_picture);
  text += "     0\r\n";
  const CodeLines all_free = [&mesh] {
    CodeLines lines;
    lines.fill(std::string(mesh.node_widths.size(), free_code));
    return lines;
  }();
  for (std::size_t row = 0; row < mesh.node_heights.size(); ++row) {
    for (const std::string& line : codes == MeshCodes::all_free ? all_free : mesh.mesh_code.at(row)) {
      add_code_line(text, line);
    }
  }
  return text;
}

std::string find_mesh_file(const std::string& name, const fs::path& run_folder,
                           const std::string& model_path) {
  if (name.empty()) {
    return {};
  }
  fs::path found = existing_file(run_folder / name);
  if (found.empty()) {
    found = existing_file(fs::path(Module_util::directory_of(model_path)) / name);
  }
  return found.string();
}

OccamMesh read_mesh_file(const std::string& path) {
  TextInput input(path);
  const auto [type, node_columns, node_rows, fixed, frequencies, unused] = read_head(input).numbers;
  OccamMesh mesh;
  if (read_value_list(input, fixed, mesh.fixed_res) != 0) {
    throw Refusal("There was an error reading the fixed resistivities");
  }
  if (std::vector<double> dropped; read_value_list(input, frequencies, dropped) != 0) {
    throw Refusal("There was an error reading the frequencies");
  }
  read_sizes(input, std::int64_t{node_columns} - 1, mesh.node_widths,
             "There was an error reading the node widths");
  read_sizes(input, std::int64_t{node_rows} - 1, mesh.node_heights,
             "There was an error reading the node heights");
  if (mesh.node_widths.empty() || mesh.node_heights.empty()) {
    throw std::runtime_error("the mesh has no cells");
  }
  skip_table(input);
  for (int row = 0; row < mesh.rows(); ++row) {
    CodeLines& lines = mesh.mesh_code.emplace_back();
    for (std::string& line : lines) {
      line = read_code_line(input, mesh.node_widths.size());
    }
  }
  return mesh;
}

}  // namespace Module_occam
