// Form_tutorial.h: the tutorial with its pictures and the pages it leads to, beside the work.
#pragma once
#include <QDialog>

class QTextBrowser;

class Form_tutorial : public QDialog {
  Q_OBJECT

 public:
  explicit Form_tutorial(QWidget* parent = nullptr);

 protected:
  void showEvent(QShowEvent* event) override;

 private:
  void open_link(const QUrl& link);

  QTextBrowser* Text_tutorial_;
};
