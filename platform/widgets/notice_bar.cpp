#include "platform/widgets/notice_bar.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStyle>
#include <QToolButton>

#include "platform/widgets/panel_controls.h"

NoticeBar::NoticeBar(QWidget* parent)
    : QFrame(parent),
      text_(named(new QLabel, "Label_notice")),
      action_(named(new QPushButton, "Command_notice")) {
  setFrameShape(QFrame::StyledPanel);
  text_->setTextFormat(Qt::PlainText);
  text_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);  // a long text doesn't widen the window
  text_->setWordWrap(true);
  auto* const close = named(new QToolButton, "Command_close_notice");
  close->setIcon(style()->standardIcon(QStyle::SP_TitleBarCloseButton));
  close->setAutoRaise(true);
  close->setToolTip("Close this line");
  close->setAccessibleName("Close this line");
  auto* const items = new QHBoxLayout(this);
  items->setContentsMargins(8, 2, 4, 2);
  items->addWidget(text_, 1);
  items->addWidget(action_);
  items->addWidget(close);
  connect(close, &QToolButton::clicked, this, [this] {
    hide();
    Q_EMIT closed();
  });
  connect(action_, &QPushButton::clicked, this, &NoticeBar::acted);
  hide();
}

void NoticeBar::show_text(const QString& text, const QString& action) {
  text_->setText(text);
  action_->setText(action);
  action_->setVisible(!action.isEmpty());
  show();
}
