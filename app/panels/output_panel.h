// output_panel.h: chooses a line and writes its merged curves for other programs.
#pragma once
#include <QFrame>
#include <memory>
#include <optional>

#include "output/output_choices.h"

namespace Ui {
class output_panel;
}

/// Frame_store of the main window; replaces the graphs while it is open.
class OutputPanel : public QFrame {
  Q_OBJECT

 public:
  explicit OutputPanel(QWidget* parent = nullptr);
  ~OutputPanel() override;

  /// Fills the lists with what the survey has, chooses what the main window shows, and shows what this kind
  /// of output needs. @return false after a message if the survey has nothing to write
  bool open_for(Module_output::OutputKind kind);

  /// Fills in the strike that curves may be rotated to, degrees from north. Whether they are is the user's.
  void propose_strike(std::optional<double> strike);

  /// Puts the focus on the first choice.
  void take_focus();

 Q_SIGNALS:
  /// The user is done with the panel.
  void done();

 private:
  void choose_folder();
  void show_data_types();
  void choose_current_selection();
  void write();

  std::unique_ptr<Ui::output_panel> ui_;
  Module_output::OutputKind kind_ = Module_output::OutputKind::zonge;
  Module_output::OutputLists lists_;
};
