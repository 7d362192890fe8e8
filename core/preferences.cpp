#include "core/preferences.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <filesystem>
#include <limits>
#include <optional>
#include <stdexcept>
#include <string_view>
#include <system_error>
#include <variant>
#include <vector>

#include "core/debug_log.h"
#include "core/number_text.h"
#include "core/session_state.h"
#include "core/text_fields.h"
#include "core/user_interface.h"
#include "platform/files/input_file.h"
#include "platform/files/line_end.h"
#include "platform/files/safe_files.h"

namespace fs = std::filesystem;

namespace Module_Brenlox {

namespace {

constexpr std::string_view file_name = "Brenlox.prf";
constexpr std::string_view first_line = "Brenlox user preferences";

/// The display scales of the file. Nothing here uses them; they are written back as they were read.
struct DisplayScales {
  bool auto_scale_spectral_resistivity = false;
  float min_real_resistivity = 0.0F;
  float max_real_resistivity = 0.0F;
  float min_imag_resistivity = 0.0F;
  float max_imag_resistivity = 0.0F;
  bool auto_scale_spectral_e_field = false;
  float min_real_e_field = 0.0F;
  float max_real_e_field = 0.0F;
  float min_imag_e_field = 0.0F;
  float max_imag_e_field = 0.0F;
  bool auto_scale_spectral_h_field = false;
  float min_real_h_field = 0.0F;
  float max_real_h_field = 0.0F;
  float min_imag_h_field = 0.0F;
  float max_imag_h_field = 0.0F;
  bool auto_scale_phase = true;
  float min_phase = 0.0F;
  float max_phase = 50.0F;
  bool auto_scale_cagniard = false;
  float min_cagniard = 0.0F;
  float max_cagniard = 0.0F;
  bool auto_scale_e_phase = true;
  float min_e_phase = 0.0F;
  float max_e_phase = 50.0F;
  bool auto_scale_h_phase = true;
  float min_h_phase = 0.0F;
  float max_h_phase = 50.0F;
  bool auto_scale_e_mag = false;
  float min_e_mag = 0.0F;
  float max_e_mag = 0.0F;
  bool auto_scale_h_mag = false;
  float min_h_mag = 0.0F;
  float max_h_mag = 0.0F;
  bool spectral_plot = false;
  bool plot_e_phase = false;
  bool plot_h_phase = false;
};

using Scales = DisplayScales;
using State = SessionState;

/// Where a key's value is kept: display scales, a window size, or a text.
using Field = std::variant<bool Scales::*, float Scales::*, float State::*, std::string State::*>;

struct Key {
  std::string_view text;
  Field field;
  bool after_blank_line = false;
};

/// Every key after the recent files, in the order of the file. A line has the first of them that it contains.
constexpr std::array<Key, 39> keys = {{
    {"Opening picture: ", &State::opening_picture, true},
    {"Form Width : ", &State::form_width, true},
    {"Form Height : ", &State::form_height},
    {"Auto-scale Spectral Resistivity : ", &Scales::auto_scale_spectral_resistivity},
    {"Min Real Resistivity : ", &Scales::min_real_resistivity},
    {"Max Real Resistivity : ", &Scales::max_real_resistivity},
    {"Min Imag Resistivity : ", &Scales::min_imag_resistivity},
    {"Max Imag Resistivity : ", &Scales::max_imag_resistivity},
    {"Auto-scale Spectral E-Field : ", &Scales::auto_scale_spectral_e_field},
    {"Min Real E-Field : ", &Scales::min_real_e_field},
    {"Max Real E-Field : ", &Scales::max_real_e_field},
    {"Min Imag E-Field : ", &Scales::min_imag_e_field},
    {"Max Imag E-Field : ", &Scales::max_imag_e_field},
    {"Auto-scale Spectral H-Field : ", &Scales::auto_scale_spectral_h_field},
    {"Min Real H-Field : ", &Scales::min_real_h_field},
    {"Max Real H-Field : ", &Scales::max_real_h_field},
    {"Min Imag H-Field : ", &Scales::min_imag_h_field},
    {"Max Imag H-Field : ", &Scales::max_imag_h_field},
    {"Auto-scale Phase : ", &Scales::auto_scale_phase},
    {"Min Phase : ", &Scales::min_phase},
    {"Max Phase : ", &Scales::max_phase},
    {"Auto-scale Cagniard : ", &Scales::auto_scale_cagniard},
    {"Min Cagniard : ", &Scales::min_cagniard},
    {"Max Cagniard : ", &Scales::max_cagniard},
    {"Auto-scale E-Phase : ", &Scales::auto_scale_e_phase},
    {"Min E-Phase : ", &Scales::min_e_phase},
    {"Max E-Phase : ", &Scales::max_e_phase},
    {"Auto-scale H-Phase : ", &Scales::auto_scale_h_phase},
    {"Min H-Phase : ", &Scales::min_h_phase},
    {"Max H-Phase : ", &Scales::max_h_phase},
    {"Auto-scale E-Mag : ", &Scales::auto_scale_e_mag},
    {"Min E-Mag : ", &Scales::min_e_mag},
    {"Max E-Mag : ", &Scales::max_e_mag},
    {"Auto-scale H-Mag : ", &Scales::auto_scale_h_mag},
    {"Min H-Mag : ", &Scales::min_h_mag},
    {"Max H-Mag : ", &Scales::max_h_mag},
    {"Spectral Plot : ", &Scales::spectral_plot},
    {"Plot E-PHase : ", &Scales::plot_e_phase},
    {"Plot H-PHase : ", &Scales::plot_h_phase},
}};

template <class... Cases>
struct Overloaded : Cases... {
  using Cases::operator()...;
};
template <class... Cases>
Overloaded(Cases...) -> Overloaded<Cases...>;

struct PreferencesState {
  DisplayScales scales;
  std::string file;         // empty before read_preferences, and when the file that is there can't be read
  fs::path working_folder;  // when the file was read; opening a survey changes it
};

PreferencesState& state() {
  static PreferencesState preferences;
  return preferences;
}

/// The text after the first ":", trimmed; empty if there is none.
std::string_view value_of(std::string_view line) {
  const std::size_t colon = line.find(':');
  return colon == std::string_view::npos ? std::string_view{} : trimmed(line.substr(colon + 1));
}

void read_single(float& target, std::string_view text) {
  const double value = numeric_value(text);
  if (std::abs(value) <= std::numeric_limits<float>::max()) {
    target = static_cast<float>(value);
  }
}

void read_field(const Field& field, std::string_view line) {
  std::visit(Overloaded{[&](bool Scales::*flag) {
                          state().scales.*flag = upper_case(line).find("YES") != std::string::npos;
                        },
                        [&](float Scales::*single) { read_single(state().scales.*single, value_of(line)); },
                        [&](float State::*size) { read_single(session().*size, value_of(line)); },
                        [&](std::string State::*text) { session().*text = value_of(line); }},
             field);
}

std::string field_text(const Field& field) {
  return std::visit(
      Overloaded{[](bool Scales::*flag) -> std::string { return state().scales.*flag ? "yes" : "no"; },
                 [](float Scales::*single) { return criterion_text(state().scales.*single); },
                 [](float State::*size) { return format_number(session().*size, "0"); },
                 [](std::string State::*text) { return std::string(trimmed(session().*text)); }},
      field);
}

/// Leaves no recent file after a blank one.
/// @return how many there are
std::size_t end_recent_files_at_first_blank() {
  auto& files = session().recent_files;
  const auto blank = std::ranges::find_if(files, [](const auto& file) { return trimmed(file).empty(); });
  std::fill(blank, files.end(), std::string());
  for (std::string& file : files) {
    file = std::string(trimmed(file));
  }
  return static_cast<std::size_t>(blank - files.begin());
}

bool is_recent_file_line(std::string_view line) {
  constexpr std::string_view key = "File ";
  const std::string_view text = trimmed(line);
  return text.size() > key.size() + 1 && text.starts_with(key) && text[key.size()] >= '1' &&
         text[key.size()] <= '6' && text[key.size() + 1] == ':';
}

bool apply_file_text(std::string_view text) {
  std::string_view line;
  if (!take_line(text, line) || trimmed(line) != first_line) {
    return false;
  }
  (void)take_line(text, line);  // the second line has no meaning
  for (std::string& file : session().recent_files) {
    if (!take_line(text, line) || trimmed(line).empty()) {
      break;  // the list ends early, and the line is used up
    }
    file = value_of(line);
  }
  std::size_t count = end_recent_files_at_first_blank();
  while (take_line(text, line)) {
    if (is_recent_file_line(line)) {  // an editor may have put a blank line into the list
      if (count < session().recent_files.size() && !value_of(line).empty()) {
        session().recent_files[count++] = value_of(line);
      }
      continue;
    }
    const auto key = std::ranges::find_if(
        keys, [&](const Key& k) { return line.find(trimmed(k.text)) != std::string_view::npos; });
    if (key != keys.end()) {
      read_field(key->field, line);
    }
  }
  return true;
}

void append_recent_files(std::string& text) {
  text.append(first_line).append(line_end).append(line_end);
  for (std::size_t n = 0; n < session().recent_files.size(); ++n) {
    text.append("File ").append(plain_text(static_cast<int>(n) + 1)).append(": ");
    text.append(trimmed(session().recent_files[n])).append(line_end);
  }
}

std::string file_text() {
  std::string text;
  append_recent_files(text);
  for (const Key& key : keys) {
    text.append(key.after_blank_line ? line_end : "").append(key.text).append(field_text(key.field));
    text.append(line_end);
  }
  return text;
}

std::string new_file_text() {
  std::string text;
  append_recent_files(text);
  for (const char* line : {"Opening picture: ", "Output Value: Mean", "Plot Skipped Records : yes"}) {
    text.append(line_end).append(line).append(line_end);
  }
  return text;
}

/// A link keeps its place, and the file that it leads to is replaced. False if that can't be written.
bool replace_file(const std::string& path, std::string_view text) {
  std::error_code failure;
  const fs::path linked = fs::canonical(path, failure);
  try {
    safe_files::write_into_place(failure ? fs::path(path) : linked, text);
    return true;
  } catch (const std::runtime_error&) {
    return false;
  }
}

std::optional<std::string> contents_of(const std::string& path) {
  constexpr std::int64_t most = std::int64_t{16} << 20U;  // bytes; far beyond any list of preferences
  try {
    return read_whole_file(path, most);
  } catch (const std::runtime_error&) {
    return std::nullopt;
  }
}

std::string path_in(const fs::path& directory) { return (directory / file_name).string(); }

/// The path is a full one: opening a survey changes the working directory.
std::string find_or_create_file() {
  std::string working = path_in(fs::current_path());
  const std::string& program = session().environment.program_directory;
  const std::string& configuration = session().environment.windows_directory;
  std::vector<std::string> places = {working};
  for (const std::string& directory : {program, configuration}) {
    if (!directory.empty()) {
      places.push_back(path_in(directory));
    }
  }
  for (const std::string& place : places) {
    std::error_code missing;
    if (fs::is_regular_file(place, missing)) {
      return place;
    }
  }
  if (!replace_file(working, new_file_text()) && !configuration.empty()) {
    std::error_code failure;
    fs::create_directories(configuration, failure);
    if (replace_file(path_in(configuration), new_file_text())) {
      return path_in(configuration);
    }
  }
  return working;
}

void reset_to_defaults() {
  state() = PreferencesState{};
  session().recent_files = {};
  session().recent_count = 0;
  session().opening_picture.clear();
  session().form_width = 0.0F;
  session().form_height = 0.0F;
}

void count_recent_files() {
  session().recent_count = static_cast<std::int32_t>(end_recent_files_at_first_blank());
}

}  // namespace

void read_preferences() {
  reset_to_defaults();
  try {
    state().working_folder = fs::current_path();
    state().file = find_or_create_file();
    const std::optional<std::string> bytes = contents_of(state().file);
    std::error_code missing;
    if (!bytes && !fs::exists(state().file, missing)) {
      return;  // nowhere to write a new one
    }
    if (!bytes) {
      state().file.clear();
    }
    if (!bytes || !apply_file_text(text_from_field_file(*bytes))) {
      user_interface().show_message("Preference file is invalid");
    }
  } catch (const std::exception& failure) {
    Module_debug::write_debug(0, std::string("read_preferences: ") + failure.what());
  }
}

void write_preferences() {
  try {
    if (!state().file.empty() && !replace_file(state().file, file_text())) {
      Module_debug::write_debug(0, "write_preferences: can't write " + state().file);
    }
  } catch (const std::exception& failure) {
    Module_debug::write_debug(0, std::string("write_preferences: ") + failure.what());
  }
}

std::string opening_picture_file() {
  const std::string_view picture = trimmed(session().opening_picture);
  return picture.empty() ? std::string() : (state().working_folder / picture).string();
}

void refresh_recent_file_menu() {
  count_recent_files();
  write_preferences();
}

void add_recent_file(const std::string& path) {
  const std::string_view wanted = trimmed(path);
  if (wanted.empty() || wanted.find_first_of("\r\n") != std::string_view::npos) {
    return;  // the file has one line for each path
  }
  auto& files = session().recent_files;
  auto place = std::ranges::find_if(
      files, [&](const std::string& file) { return equal_ignoring_case(trimmed(file), wanted); });
  if (place != files.begin()) {
    if (place == files.end()) {
      --place;
    }
    std::rotate(files.begin(), place, place + 1);
    files.front() = std::string(wanted);
  }
  count_recent_files();
}

}  // namespace Module_Brenlox
