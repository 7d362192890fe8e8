#include "platform/windows/qt_user_interface.h"

#include <QApplication>
#include <QCoreApplication>
#include <QDir>
#include <QEventLoop>
#include <QFileDialog>
#include <QInputDialog>
#include <QMessageBox>
#include <algorithm>

#include "platform/widgets/folder_model.h"
#include "platform/windows/file_filter.h"

namespace {

constexpr qint64 quiet_milliseconds = 500;  // shorter work shows no progress
constexpr qint64 events_milliseconds = 40;  // about once a frame; more often costs time and shows nothing

/// Dialogs during long work are used with an ordinary pointer.
class OrdinaryPointer {
 public:
  explicit OrdinaryPointer(bool busy) : busy_(busy) {
    if (busy_) {
      QApplication::restoreOverrideCursor();
    }
  }
  OrdinaryPointer(const OrdinaryPointer&) = delete;
  OrdinaryPointer& operator=(const OrdinaryPointer&) = delete;
  ~OrdinaryPointer() {
    if (busy_) {
      QApplication::setOverrideCursor(Qt::WaitCursor);
    }
  }

 private:
  bool busy_;
};

int show_box(QMessageBox::Icon icon, const std::string& text, QMessageBox::StandardButtons buttons,
             QMessageBox::StandardButton default_button) {
  QMessageBox box(icon, QApplication::applicationDisplayName(), QString::fromStdString(text), buttons,
                  QApplication::activeWindow());
  box.setTextFormat(Qt::PlainText);  // a file name may hold "<"
  box.setDefaultButton(default_button);
  return box.exec();
}

/// A name typed without an ending gets that of the file type that is chosen; where this takes all files, the
/// usual one.
void complete_names_by_type(QFileDialog& dialog, const QString& usual_suffix) {
  const auto follow = [&dialog, usual_suffix](const QString& type) {
    const QString suffix = suffix_of_type(type);
    dialog.setDefaultSuffix(suffix.isEmpty() ? usual_suffix : suffix);
  };
  const QStringList types = dialog.nameFilters();
  const auto usual = std::ranges::find(types, usual_suffix, suffix_of_type);
  if (usual != types.end()) {
    dialog.selectNameFilter(*usual);
  }
  follow(dialog.selectedNameFilter());
  QObject::connect(&dialog, &QFileDialog::filterSelected, &dialog, follow);
}

std::string select_file(const FileDialogRequest& request, QFileDialog::AcceptMode mode) {
  PlainFileIcons icons;
  QFileDialog dialog(QApplication::activeWindow(), QString::fromStdString(request.title));
  dialog.setAcceptMode(mode);
  dialog.setFileMode(mode == QFileDialog::AcceptOpen ? QFileDialog::ExistingFile : QFileDialog::AnyFile);
  dialog.setOption(QFileDialog::DontConfirmOverwrite);
  dialog.setIconProvider(&icons);
  dialog.setNameFilters(dialog_filters(request.filter));
  if (mode == QFileDialog::AcceptSave) {
    complete_names_by_type(dialog, dialog_suffix(request.default_extension));
  }
  dialog.setDirectory(request.directory.empty() ? QDir::currentPath()
                                                : QString::fromStdString(request.directory));
  if (!request.suggested_name.empty()) {
    dialog.selectFile(QString::fromStdString(request.suggested_name));
  }
  if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) {
    return {};
  }
  return QDir::toNativeSeparators(dialog.selectedFiles().constFirst()).toStdString();
}

}  // namespace

QtUserInterface::QtUserInterface() = default;
QtUserInterface::~QtUserInterface() { delete progress_; }

void QtUserInterface::show_message(const std::string& text) {
  const OrdinaryPointer pointer(busy_);
  show_box(QMessageBox::Information, text, QMessageBox::Ok, QMessageBox::Ok);
}

bool QtUserInterface::ask_yes_no(const std::string& question) {
  const OrdinaryPointer pointer(busy_);
  return show_box(QMessageBox::Question, question, QMessageBox::Yes | QMessageBox::No, QMessageBox::No) ==
         QMessageBox::Yes;
}

std::string QtUserInterface::select_file_to_open(const FileDialogRequest& request) {
  const OrdinaryPointer pointer(busy_);
  return select_file(request, QFileDialog::AcceptOpen);
}

std::string QtUserInterface::select_file_to_create(const FileDialogRequest& request) {
  const OrdinaryPointer pointer(busy_);
  return select_file(request, QFileDialog::AcceptSave);
}

std::string QtUserInterface::ask_text(const std::string& prompt, const std::string& title,
                                      const std::string& suggestion) {
  const OrdinaryPointer pointer(busy_);
  return QInputDialog::getText(QApplication::activeWindow(), QString::fromStdString(title),
                               QString::fromStdString(prompt), QLineEdit::Normal,
                               QString::fromStdString(suggestion))
      .trimmed()
      .toStdString();
}

void QtUserInterface::set_busy_pointer(bool busy) {
  if (busy == busy_) {
    return;
  }
  busy_ = busy;
  if (busy) {
    QApplication::setOverrideCursor(Qt::WaitCursor);
  } else {
    QApplication::restoreOverrideCursor();
  }
}

void QtUserInterface::process_events() {
  if (events_time_.isValid() && events_time_.elapsed() < events_milliseconds) {
    return;
  }
  QCoreApplication::processEvents(progress_ != nullptr ? QEventLoop::AllEvents
                                                       : QEventLoop::ExcludeUserInputEvents);
  events_time_.start();
}

void QtUserInterface::show_progress(std::string_view what, int percent) {
  if (percent < 0) {
    delete progress_;
    work_time_.invalidate();
    return;
  }
  if (!work_time_.isValid()) {
    work_time_.start();
  }
  if (progress_ == nullptr && work_time_.elapsed() >= quiet_milliseconds) {
    progress_ = new ProgressDialog(QApplication::activeWindow());
    progress_->show();
  }
  if (progress_ != nullptr) {
    progress_->show_progress(QString::fromUtf8(what.data(), static_cast<qsizetype>(what.size())), percent);
  }
  process_events();
}

bool QtUserInterface::stop_requested() {
  process_events();
  return progress_ != nullptr && progress_->stop_requested();
}
