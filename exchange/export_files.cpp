#include "exchange/export_files.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <set>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "core/file_names.h"
#include "core/number_text.h"
#include "core/session_state.h"
#include "core/text_fields.h"
#include "core/text_lists.h"
#include "core/trap_errors.h"
#include "database/survey_database.h"
#include "exchange/csv_curves.h"
#include "exchange/csv_rhoplus.h"
#include "exchange/csv_tables.h"
#include "exchange/csv_tensors.h"
#include "exchange/export_plan.h"
#include "exchange/line_marks.h"
#include "exchange/plan_rows.h"
#include "formats/edi/edi_writer.h"
#include "formats/emtf_xml/emtf_xml_writer.h"
#include "platform/files/files_in_use.h"
#include "platform/files/folder_access.h"
#include "platform/files/safe_files.h"
#include "reduction/unsupported_curves.h"

namespace fs = std::filesystem;

namespace Module_exchange {

namespace {

constexpr double planning_share = 0.2;  // of the time that an export takes, for the progress display

std::string files_text(std::size_t count) {
  return plain_text(static_cast<std::int64_t>(count)) + (count == 1 ? " file" : " files");
}

/// Names of files that the survey was imported from, in capitals.
std::set<std::string> imported_names() {
  std::set<std::string> names;
  dao::Recordset rows =
      Module_database::open_survey().database.open_recordset("SELECT DISTINCT SurveyFile FROM FileTable");
  for (; !rows.eof(); rows.move_next()) {
    names.insert(upper_case(Module_util::file_name_only(rows.get_text("SurveyFile"))));
  }
  return names;
}

/// One export on its way.
class Export {
 public:
  Export(const ExportChoices& choices, const std::function<bool(double)>& progress, ExportResult& result)
      : choices_(choices), progress_(progress), result_(result) {}

  /// @return 0, or -1 after a message
  int run();

 private:
  [[nodiscard]] fs::path path_of(const std::string& file) const { return fs::path(choices_.folder) / file; }
  void take_remarks();
  void remark_unsupported();
  void check_targets() const;
  [[nodiscard]] bool may_replace() const;

  /// Goes on to the next file. @return false if the user has stopped it
  bool goes_on(double part = 0.0);
  void written(const fs::path& path) { result_.files.push_back(path.string()); }

  int write_sites();
  bool write_line_of_sites(LineContents& line, std::size_t choice_index);
  int write_tables();
  bool write_tables_of(const LineTables& tables, const std::string& line_id);
  void write_places();

  const ExportChoices& choices_;
  const std::function<bool(double)>& progress_;
  ExportResult& result_;
  ExportPlan plan_;
};

bool Export::goes_on(double part) {
  const double files = static_cast<double>(result_.files.size()) + part;
  const double share = std::min(1.0, files / std::max(1, plan_.file_count()));
  if (progress_ && !progress_(planning_share + (1.0 - planning_share) * share)) {
    result_.stopped = true;
  }
  return !result_.stopped;
}

void Export::take_remarks() {
  for (const ExportRow& row : plan_.rows) {
    result_.remarks.insert(result_.remarks.end(), row.remarks.begin(), row.remarks.end());
  }
}

/// Of curves that are written although they rest on nothing in use: the files look like all others.
void Export::remark_unsupported() {
  if (choices_.reduction == Module_database::reduction_raw) {
    return;  // repeats rest on nothing else
  }
  std::vector<std::string> remarks;
  for (const Module_tensor::LineChoice& choice : choices_.lines) {
    const std::string hint = Module_averaged_data::unsupported_hint(
        {choice.line, choice.reference_type, std::string(), choice.dipole});
    if (!hint.empty()) {
      remarks.push_back("Line " + choice.line + ": " + hint);
    }
  }
  result_.remarks.insert(result_.remarks.begin(), remarks.begin(), remarks.end());
}

/// Throws for a folder or a file in use that is in the way, before anything is asked or written.
void Export::check_targets() const {
  for (const ExportRow& row : plan_.rows) {
    if (row.file.empty()) {
      continue;
    }
    const fs::path path = path_of(row.file);
    std::error_code unreadable;
    if (fs::is_directory(path, unreadable)) {
      throw std::runtime_error(path.string() + " is a folder");
    }
    safe_files::refuse_input(path);
  }
}

bool Export::may_replace() const {
  const std::set<std::string> imported = imported_names();
  std::vector<std::string> earlier;
  bool may_be_field_data = false;
  for (const ExportRow& row : plan_.rows) {
    std::error_code unreadable;
    if (!row.file.empty() && fs::exists(path_of(row.file), unreadable)) {
      earlier.push_back(row.file);
      may_be_field_data = may_be_field_data || imported.contains(upper_case(row.file));
    }
  }
  if (earlier.empty()) {
    return true;
  }
  return user_interface().ask_yes_no(
      std::string(earlier.size() == 1 ? "The specified file already exists"
                                      : files_text(earlier.size()) + " already exist") +
      ", overwrite? " + listed_first(earlier) + (earlier.size() == 1 ? " is" : " are") + " in " +
      fs::absolute(choices_.folder).string() +
      (may_be_field_data ? ". The survey was imported from files of the same names: these may be field data"
                         : ""));
}

/// @return false after a stop
bool Export::write_line_of_sites(LineContents& line, std::size_t choice_index) {
  std::map<double, std::string> files;
  for (const ExportRow& row : plan_.rows) {
    if (row.choice_index == choice_index && !row.file.empty()) {
      files[row.stations.front()] = row.file;
    }
  }
  for (StationDocument& station : line.documents) {
    const auto file = files.find(station.document.station);
    if (file == files.end()) {
      continue;
    }
    if (!goes_on()) {
      return false;
    }
    station.document.id = Module_util::file_stem(file->second);
    const fs::path path = path_of(file->second);
    safe_files::write_into_place(path, choices_.format == ExportFormat::edi
                                           ? formats::edi::edi_text(station.document)
                                           : formats::emtf_xml::emtf_xml_text(station.document));
    written(path);
  }
  return true;
}

int Export::write_sites() {
  for (std::size_t index = 0; index < choices_.lines.size(); ++index) {
    LineContents line;
    if (load_line(choices_, index, line) != 0) {
      return -1;
    }
    if (!write_line_of_sites(line, index)) {
      return 0;
    }
  }
  return 0;
}

/// The tables of a line belong together, so that none is replaced without the others.
/// @return false after a stop
bool Export::write_tables_of(const LineTables& tables, const std::string& line_id) {
  std::vector<safe_files::NewFile> files;
  for (const CsvTable table : tables.tables) {
    if (!goes_on(static_cast<double>(files.size()))) {
      return false;
    }
    std::string text;
    switch (table) {
      case CsvTable::curves:
        text = curves_csv(tables.curves);
        break;
      case CsvTable::tensors:
        text = tensors_csv(tables.line);
        break;
      case CsvTable::tippers:
        text = tippers_csv(tables.line);
        break;
      case CsvTable::parameters:
        text = parameters_csv(tables.line, choices_.rotation);
        break;
      case CsvTable::rhoplus: {
        const double before = static_cast<double>(files.size());
        RhoplusTable fits = rhoplus_csv(tables.line, choices_.rotation, *choices_.rhoplus,
                                        [&](double share) { return goes_on(before + share); });
        if (fits.stopped) {
          result_.stopped = true;
          return false;
        }
        text = std::move(fits.text);
        break;
      }
    }
    files.push_back({path_of(table_file(line_id, table)), std::move(text)});
  }
  safe_files::write_together(files);
  for (const safe_files::NewFile& file : files) {
    written(file.destination);
  }
  return true;
}

int Export::write_tables() {
  const std::vector<std::string> ids = line_ids(choices_);
  for (std::size_t index = 0; index < choices_.lines.size(); ++index) {
    LineTables tables;
    if (load_tables(choices_, index, tables) != 0) {
      return -1;
    }
    if (!write_tables_of(tables, ids[index])) {
      return 0;
    }
  }
  return 0;
}

void Export::write_places() {
  if (!goes_on()) {
    return;
  }
  const PlacedLines placed = placed_lines(choices_);
  const std::string survey = Module_util::file_stem(Module_util::file_name_only(session().database_file));
  const fs::path path = path_of(places_file(choices_));
  safe_files::write_into_place(path, choices_.format == ExportFormat::kml
                                         ? formats::places::kml_text(survey, placed.lines)
                                         : formats::places::geojson_text(placed.lines));
  written(path);
}

int Export::run() {
  const auto planning = [this](double share) { return !progress_ || progress_(planning_share * share); };
  if (build_plan(choices_, planning, plan_) != 0) {
    return -1;
  }
  take_remarks();
  if (!plan_.fault.empty()) {
    user_interface().show_message(plan_.fault);
    return -1;
  }
  if (plan_.stopped) {
    result_.stopped = true;
    return 0;
  }
  check_targets();
  if (!may_replace()) {
    result_.declined = true;
    return 0;
  }
  make_folder(choices_.folder);
  switch (choices_.format) {
    case ExportFormat::edi:
    case ExportFormat::emtf_xml:
      remark_unsupported();
      return write_sites();
    case ExportFormat::csv:
      remark_unsupported();
      return write_tables();
    case ExportFormat::geojson:
    case ExportFormat::kml:
      write_places();
      return 0;
  }
  return 0;
}

}  // namespace

std::string export_summary(const ExportChoices& choices, const ExportResult& result) {
  if (result.declined || (result.stopped && result.files.empty())) {
    return result.declined ? "Nothing is written" : "Stopped; nothing is written";
  }
  return (result.stopped ? "Stopped; " : "") + files_text(result.files.size()) + " written to " +
         choices.folder;
}

int export_files(const ExportChoices& choices, const std::function<bool(double)>& progress,
                 ExportResult& result) {
  result = {};
  return trap_errors("An error occurred while writing the files: ",
                     [&] { return Export(choices, progress, result).run(); });
}

}  // namespace Module_exchange
