// heading_label.h: a line of text over a panel, which may be narrower than the text.
#pragma once
#include <QLabel>
#include <QStringList>

/// Takes what room is left and no more. A text that is longer is cut with "..." and shown whole in the tool
/// tip, above what else that says.
class HeadingLabel : public QLabel {
  Q_OBJECT

 public:
  explicit HeadingLabel(QWidget* parent = nullptr);

  /// Shows a text, or in a narrow panel the first of the shorter ones that fits; text() is the whole one.
  void set_texts(const QString& text, const QStringList& shorter);
  /// What is to be seen of the text now.
  [[nodiscard]] QString shown_text() const;
  [[nodiscard]] QSize minimumSizeHint() const override;

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  QString whole_;  // that the shorter texts belong to
  QStringList shorter_;
};
