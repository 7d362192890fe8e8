// opening_page.h: what the window shows while no survey is open: the user's opening picture, or what to do
// first.
#pragma once
#include <QPixmap>
#include <QPushButton>
#include <QWidget>
#include <vector>

#include "app/recent_surveys.h"

class QLabel;
class QVBoxLayout;

class OpeningPage : public QWidget {
  Q_OBJECT

 public:
  explicit OpeningPage(QWidget* parent = nullptr);

  /// Shows a picture, scaled to the page; an empty path or a file that isn't a picture shows the first steps.
  void set_picture(const QString& path);
  void show_recent(const std::vector<RecentSurvey>& surveys);

 Q_SIGNALS:
  void new_wanted();
  void open_wanted();
  void sample_wanted();
  void tutorial_wanted();
  /// From 0, as in the list that was shown.
  void recent_chosen(int index);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QWidget* first_steps_;
  QLabel* recent_heading_;
  QVBoxLayout* recent_rows_;
  QPixmap picture_;
};
