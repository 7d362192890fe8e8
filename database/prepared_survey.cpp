#include "database/prepared_survey.h"

#include <cstdint>
#include <optional>
#include <system_error>
#include <utility>

#include "core/debug_log.h"
#include "core/scope_guard.h"
#include "database/compacted_mark.h"
#include "database/legacy_check.h"
#include "database/other_names.h"
#include "database/survey_check.h"
#include "database/survey_database.h"
#include "database/survey_moment.h"
#include "database/upgrade.h"
#include "platform/dao/compact.h"
#include "platform/dao/sidecar_files.h"

namespace fs = std::filesystem;

namespace Module_database {

namespace {

fs::path compacted_neighbour(const fs::path& survey) {
  fs::path neighbour = survey;
  neighbour += ".compacting";
  return neighbour;
}

// The name under which the bytes of a genuine Jet file are kept for good. A copy that an interrupted opening
// has left is used again.
fs::path jet_keeping_place(const fs::path& survey) {
  for (int number = 1;; ++number) {
    const std::string ending = number == 1 ? "_jet" : "_jet_" + std::to_string(number);
    fs::path place = survey.parent_path() / (survey.stem().string() + ending + survey.extension().string());
    if (!fs::exists(place) || safe_files::same_contents(place, survey)) {
      return place;
    }
  }
}

// Looks at a file before it is worked on. A genuine Jet file has no checksums and shows its damage only in
// what no writer would have stored.
void look_through(const fs::path& file, PreparedSurvey& result) {
  dao::Database database = dao::Database::open(file.string(), dao::Access::read_only);
  result.is_survey = has_required_form(database);
  if (!result.is_survey) {
    return;
  }
  check_tables(database);
  if (result.is_jet) {
    check_legacy_survey(database);
  }
  result.taken_out = database.other_objects();
  std::erase_if(result.taken_out, [](const dao::SchemaObject& object) {
    return object.kind == dao::SchemaObject::Kind::virtual_table;
  });
}

// Once the fresh file takes the survey's place, its contents must be no reason any more for an opening to
// fail. Nothing in a file's schema is run here; from the fresh file it is gone, so that other programs don't
// run it either.
void bring_up_to_date(const fs::path& fresh, PreparedSurvey& result) {
  {
    const ScopeGuard close([] { reset_module(); });
    open_survey().database = dao::Database::open(fresh.string());
    if (!result.taken_out.empty()) {
      open_survey().database.drop_triggers_and_views();
    }
    Module_debug::write_debug(1, "upgrade_survey");
    result.missing_tables = upgrade_survey();
    open_recordsets();
  }
  result.is_up_to_date = true;
  dao::recover_database(fresh.string());  // complete without its log, or there is no room for that
  safe_files::flush_file(fresh);
}

// Writes a recovered survey, compacted and converted, to `fresh`.
PreparedSurvey make_fresh(const fs::path& survey, const fs::path& fresh, const OpeningProgress& progress) {
  PreparedSurvey result;
  result.is_jet = dao::file_kind(survey.string()) == dao::FileKind::genuine_jet;
  Module_debug::write_debug(1, "compact_database");
  progress.show("checking", 0.0);
  dao::compact_database(survey.string(), fresh.string(), progress.of_compaction());
  look_through(fresh, result);
  if (result.is_survey) {
    bring_up_to_date(fresh, result);
  }
  return result;
}

// Beyond this reading a survey through would take as long as the compaction that is left out.
constexpr std::uintmax_t most_bytes_checked = 512U << 20U;

// A survey that was closed compact and that nothing has written since is taken as it is; only its backup is
// made, once the survey was found sound. Nothing comes back if it needs more.
std::optional<PreparedSurvey> keep_compacted(const fs::path& survey, const fs::path& backup,
                                             const OpeningProgress& progress) {
  if (!is_marked_compacted(survey) || has_other_names(survey)) {
    return std::nullopt;
  }
  dao::recover_database(survey.string());  // one that is in use is refused, and one with a log changes
  PreparedSurvey result;
  look_through(survey, result);
  if (!result.is_survey || !result.taken_out.empty()) {
    return std::nullopt;
  }
  Module_debug::write_debug(1, "keep_compacted");
  if (fs::file_size(survey) <= most_bytes_checked) {
    dao::check_database(survey.string(), progress.of_compaction());
  }
  const safe_files::Watch watch = progress.of_copy();
  watch(0.0);
  result.backup = std::make_unique<safe_files::WaitingCopy>(survey, backup, watch);
  if (!is_marked_compacted(survey)) {
    return std::nullopt;  // another program wrote it meanwhile, and the copy may be of two moments
  }
  return result;
}

// The earlier bytes become the backup and the fresh file takes the survey's place, unless another program has
// written the survey since: its rows would be lost with the file that goes.
void replace(const fs::path& survey, const SurveyMoment& moment, const fs::path& backup,
             const fs::path& fresh, const PreparedSurvey& result, const OpeningProgress& progress) {
  const auto stop_if_written = [](bool unchanged) {
    if (!unchanged) {
      throw dao::Error(
          "another program has written the survey meanwhile. It is as that program has left it; open it "
          "again "
          "when that one has finished.");
    }
  };
  std::error_code ignored;
  fs::permissions(fresh, fs::status(survey).permissions(), ignored);
  std::optional<safe_files::WaitingCopy> jet;
  if (!result.jet_kept_at.empty() && !fs::exists(result.jet_kept_at)) {
    jet.emplace(survey, result.jet_kept_at);
  }
  const safe_files::Watch watch = progress.of_copy();
  watch(0.0);
  safe_files::WaitingCopy earlier(survey, backup, watch);
  stop_if_written(moment.is_now());
  const auto move_into_places = [&] {
    stop_if_written(moment.is_now_by_times());
    if (jet) {
      jet->put_into_place();
    }
    earlier.put_into_place();
    safe_files::move_into_place(fresh, survey);
  };
  if (result.is_jet) {
    move_into_places();
  } else {
    dao::with_no_other_process(survey.string(), move_into_places);
  }
}

}  // namespace

PreparedSurvey prepare_in_place(const fs::path& survey, const fs::path& backup,
                                const OpeningProgress& progress) {
  const fs::path fresh = compacted_neighbour(survey);
  dao::remove_database_file(fresh.string());  // of a crashed opening; nothing in it is anyone's only copy
  if (std::optional<PreparedSurvey> kept = keep_compacted(survey, backup, progress)) {
    return std::move(*kept);
  }
  const ScopeGuard tidy([&] { dao::remove_database_file(fresh.string()); });
  dao::recover_database(survey.string());
  const SurveyMoment moment(survey);
  PreparedSurvey result = make_fresh(survey, fresh, progress);
  if (!result.is_survey && (result.is_jet || fs::exists(backup))) {
    return result;  // what isn't a survey costs none its backup
  }
  if (result.is_jet) {
    result.jet_kept_at = jet_keeping_place(survey);
  }
  if (has_other_names(survey)) {
    result.other_name = words_for_other_name(survey);
  }
  replace(survey, moment, backup, fresh, result, progress);
  return result;
}

PreparedSurvey prepare_private_copy(const fs::path& survey, const OpeningProgress& progress) {
  Module_debug::write_debug(1, "prepare_private_copy");
  auto folder = std::make_unique<PrivateFolder>();
  const fs::path copy = folder->path() / survey.filename();
  copy_with_log(survey, copy, progress.of_copy());
  dao::recover_database(copy.string());
  const fs::path fresh = compacted_neighbour(copy);
  PreparedSurvey result = make_fresh(copy, fresh, progress);
  safe_files::move_into_place(fresh, copy);
  result.private_folder = std::move(folder);
  result.private_copy = copy;
  return result;
}

}  // namespace Module_database
