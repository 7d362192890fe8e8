// import_choice_controls.h: what the controls of the import's second page say, and why it is proposed.
#pragma once
#include <QObject>

#include "import/import_entries.h"
#include "import/proposals/proposals.h"

namespace Ui {
class Form_import_MTData;
}

/// The choices live here; they change with the controls, and the controls with them.
class ImportChoiceControls : public QObject {
  Q_OBJECT

 public:
  /// @param lasting  takes what the user sets by hand there; like the controls it must outlive this
  ImportChoiceControls(Ui::Form_import_MTData& ui, Module_data_file::LastingChoices& lasting,
                       QObject* parent);

  /// Shows choices; nobody is told.
  void show(const Module_data_file::ImportChoices& choices);
  [[nodiscard]] const Module_data_file::ImportChoices& choices() const { return choices_; }
  /// Puts the reasons beside the controls, as far as the controls still say what is proposed.
  void show_reasons(const Module_data_file::Proposals& proposals);
  /// Sections of EDI files number themselves: nothing is to be chosen for events if there are no others.
  void open_events(bool open);

  /// Whether the user has chosen stations since the choices were shown as proposed.
  [[nodiscard]] bool has_chosen_stations() const { return has_chosen_stations_; }
  void propose_stations_again(bool again) { has_chosen_stations_ = !again; }

 Q_SIGNALS:
  void changed();

 private:
  void connect_controls();
  void user_changed();
  [[nodiscard]] Module_data_file::ImportChoices read() const;
  [[nodiscard]] QString reason(const Module_data_file::Proposals& proposals,
                               Module_data_file::ProposedChoice choice, bool is_as_proposed) const;

  Ui::Form_import_MTData& ui_;
  Module_data_file::LastingChoices& lasting_;
  Module_data_file::ImportChoices choices_;
  Module_data_file::DecodeTable decode_;  // as the grid has it
  bool updating_ = false;
  bool has_chosen_stations_ = false;
};
