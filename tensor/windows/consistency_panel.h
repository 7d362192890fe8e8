// consistency_panel.h: masking what no layered earth explains of the shown line: proposes, shows the proposal
// in the main window's graphs, and masks it as one command.
#pragma once
#include <QWidget>
#include <functional>
#include <optional>

#include "rhoplus/mask_proposal.h"
#include "tensor/windows/shown_line.h"

class QCheckBox;
class QLabel;
class QLineEdit;
class QPushButton;

class ConsistencyPanel : public QWidget {
  Q_OBJECT

 public:
  /// The residuals of the shown line as it is now; null if the user stops.
  using Residuals = std::function<const Module_rhoplus::LineConsistency*()>;

  /// @param shown  outlives this panel
  ConsistencyPanel(ShownLine& shown, Residuals residuals, QWidget* parent = nullptr);
  ~ConsistencyPanel() override;
  ConsistencyPanel(const ConsistencyPanel&) = delete;
  ConsistencyPanel& operator=(const ConsistencyPanel&) = delete;

  /// What is proposed now, of the stations of the shown line; none until it is asked for.
  [[nodiscard]] const std::optional<Module_rhoplus::MaskProposal>& proposal() const { return proposal_; }

  /// Proposes what lies beyond the limit.
  void propose();
  /// Masks what is proposed.
  void mask();
  void clear();

 Q_SIGNALS:
  void proposal_changed();

 private:
  void lay_out();
  void make_proposal();
  void show_proposal();
  void take_limits();
  [[nodiscard]] QString summary() const;

  ShownLine& shown_;
  Residuals residuals_;
  Module_rhoplus::ProposalRules rules_;
  std::optional<Module_rhoplus::LineConsistency> consistency_;
  std::optional<Module_rhoplus::MaskProposal> proposal_;
  bool working_ = false;  // events run meanwhile
  QLineEdit* Text_errors_;
  QLineEdit* Text_skew_;
  QCheckBox* Check_three_dimensional_;
  QPushButton* Command_propose_;
  QPushButton* Command_mask_;
  QPushButton* Command_clear_;
  QLabel* Label_proposal_;
};
