// import_file_chooser.h: the first page of the import: folders, their files, and the list to import.
#pragma once
#include <QFileSystemModel>
#include <QFrame>
#include <memory>

#include "import/import_files.h"

namespace Ui {
class import_file_chooser;
}

class ImportFileChooser : public QFrame {
  Q_OBJECT

 public:
  explicit ImportFileChooser(QWidget* parent = nullptr);
  ~ImportFileChooser() override;

  [[nodiscard]] const std::vector<std::string>& files() const { return list_.paths(); }
  /// Takes files and folders into the list; folders stand for the field files below them.
  void take_paths(const QStringList& paths);
  /// Says that no files are chosen, and how they are.
  void ask_for_files();
  [[nodiscard]] QString folder() const;
  [[nodiscard]] QString extension() const;

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  void fill_drives();
  void go_to_folder(const QString& folder);
  void show_drive();
  void type_folder();
  void show_folder_files();
  void add_shown(bool only_selected);
  void add_all();
  void clear_selected();
  void show_list();

  std::unique_ptr<Ui::import_file_chooser> ui_;
  QFileSystemModel* folders_;
  Module_data_file::ImportFileList list_;
};
