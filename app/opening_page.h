// opening_page.h: what the window shows while no survey is open: the user's opening picture, or what to do
// first.
#pragma once
#include <QPixmap>
#include <QPushButton>
#include <QWidget>

class OpeningPage : public QWidget {
  Q_OBJECT

 public:
  explicit OpeningPage(QWidget* parent = nullptr);

  /// Shows a picture, scaled to the page; an empty path or a file that isn't a picture shows the first steps.
  void set_picture(const QString& path);

  [[nodiscard]] QPushButton* new_button() const { return new_button_; }
  [[nodiscard]] QPushButton* open_button() const { return open_button_; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QWidget* first_steps_;
  QPushButton* new_button_;
  QPushButton* open_button_;
  QPixmap picture_;
};
