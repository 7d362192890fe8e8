#include "app/work_line.h"

#include <QDesktopServices>
#include <QFileInfo>
#include <QLabel>
#include <QTime>
#include <QToolButton>
#include <QUrl>
#include <algorithm>

#include "platform/widgets/panel_controls.h"

WorkLine::WorkLine(QWidget* parent)
    : QStatusBar(parent),
      Label_work_(named(new QLabel, "Label_work")),
      Command_work_remarks_(named(new QToolButton, "Command_work_remarks")),
      Command_forget_work_(named(new QToolButton, "Command_forget_work")) {
  setObjectName("Status_work");
  setSizeGripEnabled(false);
  Label_work_->setTextFormat(Qt::RichText);
  Label_work_->setTextInteractionFlags(Qt::LinksAccessibleByMouse | Qt::LinksAccessibleByKeyboard);
  Label_work_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  connect(Label_work_, &QLabel::linkActivated, this, &WorkLine::open_folder);
  Command_forget_work_->setText("\u00d7");
  Command_forget_work_->setAutoRaise(true);
  Command_forget_work_->setToolTip("Takes this line away");
  Command_forget_work_->setAccessibleName("Take the line about the last work away");
  Command_forget_work_->setFocusPolicy(Qt::TabFocus);
  connect(Command_forget_work_, &QToolButton::clicked, this, [this] { tell({}, {}); });
  QSizePolicy keeps_its_place = Command_forget_work_->sizePolicy();
  keeps_its_place.setRetainSizeWhenHidden(true);  // graphs don't move when there is something to tell
  Command_forget_work_->setSizePolicy(keeps_its_place);
  Command_work_remarks_->setText("Remarks...");
  Command_work_remarks_->setAutoRaise(true);
  Command_work_remarks_->setToolTip("Shows what the work has remarked on its files");
  Command_work_remarks_->setAccessibleName("Remarks on the last work");
  Command_work_remarks_->setFocusPolicy(Qt::TabFocus);
  connect(Command_work_remarks_, &QToolButton::clicked, this, [this] {
    const auto show = show_remarks_;  // what is shown may tell of work of its own
    show();
  });
  addWidget(Label_work_, 1);
  addPermanentWidget(Command_work_remarks_);
  addPermanentWidget(Command_forget_work_);
  tell({}, {});
}

void WorkLine::tell(const QString& text, const QString& path, const std::function<void()>& show_remarks) {
  show_remarks_ = show_remarks;
  Command_work_remarks_->setVisible(show_remarks_ != nullptr);
  const QStringList sentences = text.split('\n', Qt::SkipEmptyParts);
  text_ = text.isEmpty() ? text : QTime::currentTime().toString("HH:mm") + "  " + sentences.join(". ");
  const QFileInfo written(path);
  folder_ = path.isEmpty() || written.isDir() ? path : written.absolutePath();
  Label_work_->setAccessibleName(text_);
  Label_work_->setToolTip(plain_tool_tip(folder_.isEmpty() ? text_ : text_ + "\nA click opens " + folder_));
  Command_forget_work_->setVisible(!text.isEmpty());
  show_text();
}

void WorkLine::resizeEvent(QResizeEvent* event) {
  QStatusBar::resizeEvent(event);
  show_text();
}

/// Both ends of a long line say something: what was done, and the name of the file.
void WorkLine::show_text() {
  const int buttons = 60 + (show_remarks_ ? Command_work_remarks_->sizeHint().width() : 0);
  const QString shown =
      fontMetrics().elidedText(text_, Qt::ElideMiddle, std::max(width() - buttons, 0)).toHtmlEscaped();
  Label_work_->setText(folder_.isEmpty() ? shown : "<a href=\"folder\">" + shown + "</a>");
}

void WorkLine::open_folder() const { QDesktopServices::openUrl(QUrl::fromLocalFile(folder_)); }
