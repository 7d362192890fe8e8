// work_line.h: the status bar of the main window: what the last work has written and where. A click opens the
// folder, and where there are remarks a button shows them.
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
  /// @param path  of a file or folder; empty: nothing to open
  /// @param show_remarks  empty: there are none
  void tell(const QString& text, const QString& path, const std::function<void()>& show_remarks = {});

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  void show_text();
  void open_folder() const;

  QLabel* Label_work_;
  QToolButton* Command_work_remarks_;
  QToolButton* Command_forget_work_;
  QString text_;
  QString folder_;
  std::function<void()> show_remarks_;
};
