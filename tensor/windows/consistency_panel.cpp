#include "tensor/windows/consistency_panel.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>
#include <string>
#include <utility>
#include <vector>

#include "core/number_text.h"
#include "core/scope_guard.h"
#include "core/session_state.h"
#include "display/marked_points.h"
#include "platform/widgets/panel_controls.h"

using namespace Module_rhoplus;
using Module_averaged_data::Component;

namespace {

constexpr int limit_characters = 5;

void mark_in_graphs(const LineConsistency& consistency, const MaskProposal& proposal) {
  std::vector<Module_display_data::MarkedPoint> points;
  for (const Module_averaged_data::CurvePoints& curve : points_to_mask(consistency, proposal)) {
    for (const Module_averaged_data::PointMask& point : curve.points) {
      points.push_back({curve.ID, point.frequency, point.component});
    }
  }
  Module_display_data::mark_points(std::move(points));
}

/// The number in a box if it is above 0; else the box shows the earlier one again.
void take_number(QLineEdit& box, double& value) {
  const std::string typed = box.text().toStdString();
  if (is_numeric(typed) && numeric_value(typed) > 0.0) {
    value = numeric_value(typed);
  }
  box.setText(qt_text(plain_text(value)));
}

}  // namespace

ConsistencyPanel::ConsistencyPanel(ShownLine& shown, Residuals residuals, QWidget* parent)
    : QWidget(parent),
      shown_(shown),
      residuals_(std::move(residuals)),
      Text_errors_(make_text("Text_errors", limit_characters)),
      Text_skew_(make_text("Text_skew", limit_characters)),
      Check_three_dimensional_(
          named(new QCheckBox("Also where &three-dimensional"), "Check_three_dimensional")),
      Command_propose_(named(new QPushButton("P&ropose"), "Command_propose")),
      Command_mask_(named(new QPushButton("&Mask"), "Command_mask_proposal")),
      Command_clear_(named(new QPushButton("C&lear"), "Command_clear_proposal")),
      Label_proposal_(named(new QLabel, "Label_proposal")) {
  setObjectName("Panel_consistency");
  Text_errors_->setText(qt_text(plain_text(rules_.errors)));
  Text_skew_->setText(qt_text(plain_text(rules_.limits.skew)));
  lay_out();
  connect(Text_errors_, &QLineEdit::editingFinished, this, &ConsistencyPanel::take_limits);
  connect(Text_skew_, &QLineEdit::editingFinished, this, &ConsistencyPanel::take_limits);
  connect(Check_three_dimensional_, &QCheckBox::toggled, this, &ConsistencyPanel::take_limits);
  connect(Command_propose_, &QPushButton::clicked, this, &ConsistencyPanel::propose);
  connect(Command_mask_, &QPushButton::clicked, this, &ConsistencyPanel::mask);
  connect(Command_clear_, &QPushButton::clicked, this, &ConsistencyPanel::clear);
  connect(&shown_, &ShownLine::line_changed, this, [this] {
    if (!working_) {
      clear();  // the residuals are those of other data
    }
  });
  show_proposal();
}

ConsistencyPanel::~ConsistencyPanel() { Module_display_data::mark_points({}); }

void ConsistencyPanel::lay_out() {
  Text_errors_->setAccessibleName("Number of errors");
  Text_errors_->setToolTip("A point whose residual of Rho+ is larger, in errors of the point, is proposed");
  Text_skew_->setAccessibleName("Skew limit");
  Text_skew_->setToolTip("Skew of the phase tensor, degrees, beyond which a frequency is three-dimensional");
  Check_three_dimensional_->setToolTip(
      "Where the tensor is three-dimensional Rho+ has no reason to fit: without the check such points stay");
  Command_propose_->setToolTip("Finds the points of both modes and rings them in the graphs");
  Command_mask_->setToolTip("Masks what is ringed; one undo takes all of it back");
  Command_clear_->setToolTip("Forgets the proposal");
  auto* const row = new QHBoxLayout;
  row->addWidget(new QLabel("Mask what lies beyond"));
  row->addWidget(Text_errors_);
  row->addWidget(new QLabel("errors"));
  row->addSpacing(8);
  row->addWidget(Check_three_dimensional_);
  row->addWidget(new QLabel("(skew above"));
  row->addWidget(Text_skew_);
  row->addWidget(new QLabel("deg)"));
  row->addSpacing(8);
  for (QPushButton* const button : {Command_propose_, Command_mask_, Command_clear_}) {
    button->setAutoDefault(false);  // Enter ends the typing of a limit
    row->addWidget(button);
  }
  row->addStretch(1);
  Label_proposal_->setWordWrap(true);
  Label_proposal_->setAlignment(Qt::AlignLeft | Qt::AlignTop);
  Label_proposal_->setMinimumHeight(2 * fontMetrics().lineSpacing());  // the buttons stay where they are
  auto* const rows = new QVBoxLayout(this);
  rows->setContentsMargins(0, 0, 0, 0);
  rows->setSpacing(4);
  rows->addLayout(row);
  rows->addWidget(Label_proposal_);
}

void ConsistencyPanel::propose() {
  if (working_) {
    return;
  }
  take_limits();
  const ScopedValue working(working_, true);
  const LineConsistency* const consistency = residuals_();  // events run meanwhile
  if (consistency != nullptr && consistency->stations.size() == shown_.line().stations.size()) {
    consistency_ = *consistency;
    make_proposal();
  }
}

void ConsistencyPanel::take_limits() {
  const ProposalRules before = rules_;
  take_number(*Text_errors_, rules_.errors);
  take_number(*Text_skew_, rules_.limits.skew);
  rules_.three_dimensional = Check_three_dimensional_->isChecked();
  const bool changed = rules_.errors != before.errors || rules_.limits.skew != before.limits.skew ||
                       rules_.three_dimensional != before.three_dimensional;
  if (changed && consistency_) {
    make_proposal();
  }
}

void ConsistencyPanel::make_proposal() {
  proposal_ = mask_proposal(shown_.line(), *consistency_, rules_);
  mark_in_graphs(*consistency_, *proposal_);
  show_proposal();
  shown_.announce_marks();
  Q_EMIT proposal_changed();
}

void ConsistencyPanel::mask() {
  if (working_ || !proposal_ || proposal_->empty()) {
    return;
  }
  using Module_averaged_data::Edit;
  Edit edit = Edit::nothing;
  {
    const ScopedValue working(working_, true);
    edit = Module_averaged_data::set_points(points_to_mask(*consistency_, *proposal_));
  }
  if (edit == Edit::changed) {
    clear();
    shown_.announce_edit(std::nullopt);
  }
}

void ConsistencyPanel::clear() {
  if (!proposal_ && !consistency_) {
    return;
  }
  consistency_.reset();
  proposal_.reset();
  Module_display_data::mark_points({});
  show_proposal();
  if (session().station_count > 0) {  // else the survey is being closed
    shown_.announce_marks();
  }
  Q_EMIT proposal_changed();
}

void ConsistencyPanel::show_proposal() {
  Command_mask_->setEnabled(proposal_ && !proposal_->empty());
  Command_clear_->setEnabled(proposal_.has_value());
  Label_proposal_->setText(summary());
}

QString ConsistencyPanel::summary() const {
  return proposal_
             ? qt_text(proposal_text(*proposal_))
             : QString(
                   "\"Propose\" rings what no layered earth explains; nothing is masked before \"Mask\".");
}
