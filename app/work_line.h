// work_line.h: the status bar of the main window: what the last work has written and where. A click opens the
// folder.
#pragma once
#include <QStatusBar>
#include <functional>

class QLabel;
class QToolButton;

class WorkLine : public QStatusBar {
  Q_OBJECT

 public:
  /// Blank until there is something to tell.
  explicit WorkLine(QWidget* parent = nullptr);

  /// @param text  empty takes the line away
  /// @param path         of a file or folder; empty: nothing to open
  /// @param show_report  what a second link does, which is there if the work has more to say
  void tell(const QString& text, const QString& path, std::function<void()> show_report = {});

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  void show_text();
  void follow(const QString& link) const;

  QLabel* Label_work_;
  QToolButton* Command_forget_work_;
  QString text_;
  QString folder_;
  std::function<void()> show_report_;
};
