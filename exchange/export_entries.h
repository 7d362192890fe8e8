// export_entries.h: an export as a window has it: what was typed and chosen, and what stays for the next
// time.
#pragma once
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "exchange/export_choices.h"
#include "exchange/export_lists.h"

namespace Module_exchange {

/// Stays while the program runs. What belongs to a survey holds for that one alone.
struct ExportEntries {
  ExportFormat format = ExportFormat::edi;
  bool rotate = false;
  std::string rotation = "0";  // as typed
  std::int32_t reduction = Module_database::reduction_merged;
  bool rhoplus = false;
  std::string plot_link;
  std::string folder;  // as typed; blank: none is chosen

  std::string survey;  // path of the survey that the following are of
  std::vector<std::string> lines;
  std::int32_t reference_type = 0;
  float dipole = 0.0F;  // m

  /// Fills in the strike that curves may be rotated to, degrees from north; none: that of another survey
  /// holds no longer. Whether they are rotated is the user's.
  void propose_strike(std::optional<double> strike);
};

// What there is a use for with these entries.
bool takes_rotation(const ExportEntries& entries);
bool takes_csv_choices(const ExportEntries& entries);
bool takes_plot_link(const ExportEntries& entries);

/// What a format is for, a sentence.
std::string_view purpose_of(ExportFormat format);

/// Gets the entries ready for the open survey: of another one than before, its current line, reference type
/// and dipole, and likewise for those that the survey has no longer; without a folder the one that was
/// written to last, or that of the survey.
void begin_export(const ExportLists& lists, ExportEntries& entries);

/// Keeps the folder of the entries in the user's settings.
void keep_export_folder(const ExportEntries& entries);

/// The folder as a whole path: one that isn't is in the survey's folder. Empty if none is chosen.
std::string whole_folder(const ExportEntries& entries);

// What is wrong with what was typed, a sentence without its point; empty if nothing is.
std::string fault_of_rotation(const ExportEntries& entries);
std::string fault_of_folder(const ExportEntries& entries);

/// What isn't plain from a folder as it was typed: its whole path, and that it will be made. Empty for a
/// whole path that is there, and with a fault.
std::string hint_of_folder(const ExportEntries& entries);

/// The choices that the entries stand for, without those that there is no use for.
/// @param rhoplus  settings for the results of Rho+, where these are asked for
ExportChoices choices_of(const ExportLists& lists, const ExportEntries& entries,
                         const Module_output::RhoplusSettings& rhoplus);

/// Whether the files would hold the same, wherever they go.
bool have_same_files(const ExportChoices& a, const ExportChoices& b);

}  // namespace Module_exchange
