// Form_tutorial.h: the tutorial with its pictures, the keys and the other pages of the manual, beside the
// work; all of them can be searched.
#pragma once
#include <QDialog>

class QBoxLayout;
class QLineEdit;
class QTextBrowser;

class Form_tutorial : public QDialog {
  Q_OBJECT

 public:
  explicit Form_tutorial(QWidget* parent = nullptr);

  /// @param name  of docs/, as "keys.md"
  void show_page(const QString& name);

 protected:
  void showEvent(QShowEvent* event) override;

 private:
  void add_buttons(QBoxLayout& row);
  void open_link(const QUrl& link);
  void search();
  void show_found(std::size_t index);

  QTextBrowser* Text_tutorial_;
  QLineEdit* Text_search_;
};
