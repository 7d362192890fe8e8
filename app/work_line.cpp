#include "app/work_line.h"

#include <QDesktopServices>
#include <QFileInfo>
#include <QLabel>
#include <QTime>
#include <QToolButton>
#include <QUrl>
#include <algorithm>
#include <utility>

#include "platform/widgets/panel_controls.h"

namespace {

constexpr const char* folder_link = "folder";
constexpr const char* report_link = "report";
constexpr const char* report_title = "Show report";

QString link_to(const QString& target, const QString& shown) {
  return "<a href=\"" + target + "\">" + shown + "</a>";
}

}  // namespace

WorkLine::WorkLine(QWidget* parent)
    : QStatusBar(parent),
      Label_work_(named(new QLabel, "Label_work")),
      Command_forget_work_(named(new QToolButton, "Command_forget_work")) {
  setObjectName("Status_work");
  setSizeGripEnabled(false);
  Label_work_->setTextFormat(Qt::RichText);
  Label_work_->setTextInteractionFlags(Qt::LinksAccessibleByMouse | Qt::LinksAccessibleByKeyboard);
  Label_work_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  connect(Label_work_, &QLabel::linkActivated, this, &WorkLine::follow);
  Command_forget_work_->setText("\u00d7");
  Command_forget_work_->setAutoRaise(true);
  Command_forget_work_->setToolTip("Takes this line away");
  Command_forget_work_->setAccessibleName("Take the line about the last work away");
  Command_forget_work_->setFocusPolicy(Qt::TabFocus);
  connect(Command_forget_work_, &QToolButton::clicked, this, [this] { tell({}, {}); });
  QSizePolicy keeps_its_place = Command_forget_work_->sizePolicy();
  keeps_its_place.setRetainSizeWhenHidden(true);  // graphs don't move when there is something to tell
  Command_forget_work_->setSizePolicy(keeps_its_place);
  addWidget(Label_work_, 1);
  addPermanentWidget(Command_forget_work_);
  tell({}, {});
}

void WorkLine::tell(const QString& text, const QString& path, std::function<void()> show_report) {
  const QStringList sentences = text.split('\n', Qt::SkipEmptyParts);
  text_ = text.isEmpty() ? text : QTime::currentTime().toString("HH:mm") + "  " + sentences.join(". ");
  const QFileInfo written(path);
  folder_ = path.isEmpty() || written.isDir() ? path : written.absolutePath();
  show_report_ = std::move(show_report);
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
  constexpr int margins_and_button = 60;
  const QString report = show_report_ ? "&nbsp; " + link_to(report_link, report_title) : QString();
  const int for_report = show_report_ ? fontMetrics().horizontalAdvance(QString("   ") + report_title) : 0;
  const int room = std::max(width() - margins_and_button - for_report, 0);
  const QString shown = fontMetrics().elidedText(text_, Qt::ElideMiddle, room).toHtmlEscaped();
  Label_work_->setText((folder_.isEmpty() ? shown : link_to(folder_link, shown)) + report);
}

void WorkLine::follow(const QString& link) const {
  if (link == report_link && show_report_) {
    const std::function<void()> show = show_report_;  // another work may be told meanwhile
    show();
  } else {
    QDesktopServices::openUrl(QUrl::fromLocalFile(folder_));
  }
}
