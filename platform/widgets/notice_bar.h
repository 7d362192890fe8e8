// notice_bar.h: a text over a panel that says something once, with a button that acts on it.
#pragma once
#include <QFrame>

class QLabel;
class QPushButton;

class NoticeBar : public QFrame {
  Q_OBJECT

 public:
  explicit NoticeBar(QWidget* parent = nullptr);

  /// @param text    of one line or more; a narrow panel breaks them
  /// @param action  of the button; without one there is no button
  void show_text(const QString& text, const QString& action = {});

 Q_SIGNALS:
  void acted();
  /// The user has closed it.
  void closed();

 private:
  QLabel* text_;
  QPushButton* action_;
};
