#include "screenshots/window_pictures.h"

#include <QAction>
#include <QApplication>
#include <QBasicTimer>
#include <QCheckBox>
#include <QComboBox>
#include <QDeadlineTimer>
#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QFileSystemModel>
#include <QLineEdit>
#include <QListWidget>
#include <QPixmap>
#include <QPushButton>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTimer>
#include <QTreeView>
#include <QTreeWidget>
#include <algorithm>
#include <functional>
#include <utility>

#include "app/Form_main.h"
#include "app/survey_display.h"
#include "core/file_names.h"
#include "core/scope_guard.h"
#include "core/session_state.h"
#include "core/user_interface.h"
#include "import/import_entries.h"
#include "import/import_files.h"
#include "import/import_run.h"
#include "import/sample_choices.h"
#include "occam/occam_files.h"
#include "occam/results/run_results.h"
#include "occam/windows/Form_occam_inversion.h"
#include "projections/windows/Form_define_projection.h"

namespace {

struct WindowPicture {
  const char* name;                                 // of the file, without its extension
  const char* menu_item = nullptr;                  // brings the window up; none: the main window as it is
  std::function<void(QWidget&)> prepare = nullptr;  // fills in the window before its picture is taken
  std::function<void(Form_main&)> open = nullptr;   // in place of a menu item that would ask for more
  bool (*possible)() = [] { return true; };         // with the files beside the survey
};

/// Runs events until a condition holds, for half a minute at most. @return whether it holds
template <class Condition>
bool wait_until(Condition condition) {
  constexpr int patience_milliseconds = 30000;
  const QDeadlineTimer deadline(patience_milliseconds);
  QApplication::processEvents();
  while (!condition() && !deadline.hasExpired()) {
    constexpr int turn_milliseconds = 20;
    QApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents, turn_milliseconds);
  }
  return condition();
}

bool shows_folders(const QTreeView& tree) {
  return tree.isVisible() && qobject_cast<const QFileSystemModel*>(tree.model()) != nullptr;
}

/// Folders are read in the background: the chosen one comes into view when those above it have been read.
bool shows_its_folder(const QTreeView& tree) {
  const QModelIndex chosen = tree.currentIndex();
  return !shows_folders(tree) || !chosen.isValid() ||
         tree.viewport()->rect().intersects(tree.visualRect(chosen));
}

/// Layouts and graphs that follow a change after a delay do so by single-shot timers.
bool is_pending(const QTimer& timer) {
  constexpr int longest_delay_milliseconds = 500;
  return timer.isActive() && timer.isSingleShot() && timer.interval() <= longest_delay_milliseconds;
}

void let_settle(const QWidget& window) {
  const auto trees = window.findChildren<QTreeView*>();
  if (std::ranges::any_of(trees, [](const auto* tree) { return shows_folders(*tree); })) {
    constexpr int until_in_order_milliseconds = 300;  // folders are ordered some time after they were read
    const QDeadlineTimer ordered(until_in_order_milliseconds);
    wait_until([&ordered] { return ordered.hasExpired(); });
  }
  wait_until([&window, &trees] {
    return std::ranges::all_of(trees, [](const auto* tree) { return shows_its_folder(*tree); }) &&
           std::ranges::none_of(window.findChildren<QTimer*>(),
                                [](auto* timer) { return is_pending(*timer); });
  });
}

template <class Widget>
Widget& control(const QWidget& window, const char* name) {
  auto* const found = window.findChild<Widget*>(name);
  if (found == nullptr) {
    qFatal("%s has no %s", qPrintable(window.windowTitle()), name);  // the list of pictures is out of date
  }
  return *found;
}

void press(const QWidget& window, const char* name) { control<QPushButton>(window, name).click(); }

void show_modes_and_periods(const QWidget& window, bool shown) {
  for (const char* const item : {"menu_both_modes", "menu_periods"}) {
    control<QAction>(window, item).setChecked(shown);
  }
}

std::vector<std::string> field_files() {
  return Module_data_file::find_import_files(Module_util::directory_of(session().database_file), "edi");
}

/// Adds all files of a folder to the list. The list of the folder's files may be read again at any time while
/// the folders beside it are still being read.
void choose_folder(const QWidget& import_dialog, const QString& folder) {
  const auto& list = control<QTreeWidget>(import_dialog, "ListView_binary");
  const auto& found = control<QPushButton>(import_dialog, "Command_find_and_add_files");
  auto& typed = control<QLineEdit>(import_dialog, "Text_folder");
  const int files = list.topLevelItemCount();
  wait_until([&] {
    if (!found.isEnabled() || QDir(typed.text()) != QDir(folder)) {
      typed.setText(folder);
      Q_EMIT typed.returnPressed();
    }
    press(import_dialog, "Command_find_and_add_files");
    return list.topLevelItemCount() > files;
  });
}

void choose_files(const QWidget& import_dialog) {
  if (const std::vector<std::string> files = field_files(); !files.empty()) {
    choose_folder(import_dialog, QFileInfo(QString::fromStdString(files.front())).absolutePath());
  }
}

void choose_data(const QWidget& import_dialog) {
  press(import_dialog, "Command_process_files");
  press(import_dialog, "Command_as_last_time");
}

/// Gives the report of a scan something to report: one file is cut short, one isn't a field file.
void scan_damaged_files(const QWidget& import_dialog) {
  constexpr std::size_t sound_files = 3;
  const QTemporaryDir folder;
  const std::vector<std::string> files = field_files();
  for (std::size_t i = 0; i < std::min(files.size(), sound_files); ++i) {
    const QString path = QString::fromStdString(files[i]);
    QFile::copy(path, folder.filePath(QFileInfo(path).fileName()));
    QFile damaged(folder.filePath("Cut_" + QFileInfo(path).fileName()));
    QFile sound(path);
    if (i == 0 && sound.open(QFile::ReadOnly) && damaged.open(QFile::WriteOnly)) {
      damaged.write(sound.read(sound.size() * 3 / 5));
    }
  }
  QFile notes(folder.filePath("Field_notes.edi"));
  if (notes.open(QFile::WriteOnly)) {
    notes.write("Rain since noon, electrode 3 dry.\n");
  }
  notes.close();
  press(import_dialog, "Command_clear_list");
  choose_folder(import_dialog, folder.path());
  choose_data(import_dialog);
  press(import_dialog, "Command_import_data_0");
}

/// The last iteration file of a run in the survey's folder or below it; empty if there is none.
QString iteration_file() {
  QDirIterator files(QString::fromStdString(Module_util::directory_of(session().database_file)), {"ITER*"},
                     QDir::Files, QDirIterator::Subdirectories);
  if (!files.hasNext()) {
    return {};
  }
  const QDir run = QFileInfo(files.next()).dir();
  return run.filePath(run.entryList({"ITER*"}, QDir::Files, QDir::Name).back());
}

bool has_run() { return !iteration_file().isEmpty(); }

void show_results(Form_main& window) {
  Module_occam::RunResults results;
  if (open_results(iteration_file().toStdString(), results) == 0) {
    Form_occam_inversion(std::move(results), &window).exec();
  }
}

void show_panel(QWidget& window) {
  if (auto* const results = qobject_cast<Form_occam_inversion*>(&window)) {
    results->show_inversion();
  }
}

/// Fills in the pages from the run and from a file of elevations beside it, as far as there are any.
void mask_run(const QWidget& mask_dialog) {
  Module_occam::ControlFile names;
  const QString iteration = iteration_file();
  if (iteration.isEmpty() || read_occam_control_file(iteration.toStdString(), names) != 0) {
    return;
  }
  const QDir run = QFileInfo(iteration).dir();
  const auto fill = [&mask_dialog](const char* name, const QString& text) {
    auto& typed = control<QLineEdit>(mask_dialog, name);
    typed.setText(text);
    Q_EMIT typed.editingFinished();
  };
  fill("Text_occam_model_file", run.filePath(QString::fromStdString(names.model_file)));
  if (const QStringList elevations = run.entryList({"*.xyz"}, QDir::Files); !elevations.isEmpty()) {
    fill("Text_data_locations", run.filePath(elevations.front()));
    press(mask_dialog, "Command_load_locations");
  }
}

/// The modeless window that has come up beside another one; usually none.
QWidget* window_beside(const QWidget& window) {
  for (QWidget* const other : QApplication::topLevelWidgets()) {
    if (other->parentWidget() == &window && other->isVisible() && !other->isModal() &&
        other->windowType() == Qt::Window) {
      return other;
    }
  }
  return nullptr;
}

// States of the main window come first and last, as they stay.
const WindowPicture pictures[] = {
    {"main_window"},
    {"both_modes", nullptr, [](QWidget& window) { show_modes_and_periods(window, true); }},
    {"plan", nullptr,
     [](QWidget& window) {
       show_modes_and_periods(window, false);
       press(window, "Command_show_plan");
     }},
    {"plan_colours", nullptr,
     [](QWidget& window) {
       window.findChild<QComboBox*>("Combo_plan_colour")->setCurrentIndex(1);
       press(window, "Command_show_plan");
     }},
    {"import_files", "menu_import_MT", choose_files},
    {"import_data", "menu_import_MT",
     [](QWidget& window) {
       choose_files(window);
       choose_data(window);
     }},
    {"import_report", "menu_import_MT", scan_damaged_files},
    {"remove", "menu_database_remove"},
    {"rename", "menu_database_rename"},
    {"table_viewer", "menu_view_table_2"},
    {"frequencies", "menu_thresholds"},
    {"pseudo_section", "menu_pseudo_section"},
    {"tensor_map", "menu_tensor_map"},
    {"mask_topo_model", "menu_occam2d_topo_mask", mask_run},
    {"mask_topo_points", "menu_occam2d_topo_mask",
     [](QWidget& window) {
       mask_run(window);
       control<QTabWidget>(window, "Tab_occam_files").setCurrentIndex(1);
     },
     nullptr, has_run},
    {"mask_topo_mesh", "menu_occam2d_topo_mask",
     [](QWidget& window) {
       mask_run(window);
       control<QTabWidget>(window, "Tab_occam_files").setCurrentIndex(2);
     },
     nullptr, has_run},
    {"occam_results", nullptr, nullptr, show_results, has_run},
    {"occam_run", nullptr, show_panel, show_results, has_run},
    {"occam_response", nullptr, [](QWidget& window) { press(window, "Command_display_response"); },
     show_results, has_run},
    {"projection", nullptr, nullptr, [](Form_main& window) { Form_define_projection("", &window).exec(); }},
    {"strike", "menu_strike"},
    {"tutorial", "menu_tutorial"},
    {"keys", "menu_keys"},
    {"about", "menu_about"},
    {"memory_status", "menu_memory_status"},
    {"whats_new", "menu_whats_new"},
    {"find_file", "menu_find_file",
     [](QWidget& window) {
       control<QLineEdit>(window, "Text_file_name").setText("sh");
       press(window, "Command_find_file_in_path");
     }},
    {"rhoplus_options", "menu_rhoplus_options"},
    {"rhoplus_results", nullptr, [](QWidget& window) { press(window, "Command_invert"); }},
    {"rhoplus_log", nullptr,
     [](QWidget& window) {
       press(window, "Command_invert");
       if (const QWidget* const results = window_beside(window)) {
         press(*results, "Command_rhoplus_log");
       }
     }},
    {"rhoplus_line", nullptr,
     [](QWidget& window) {
       press(window, "Command_invert");
       if (const QWidget* const results = window_beside(window)) {
         press(*results, "Command_run_all");
       }
     }},
    {"occam_inversion", nullptr,
     [](QWidget& window) {
       press(window, "Command_invert");
       if (const QWidget* const results = window_beside(window)) {
         press(*results, "Command_occam");
         press(*results, "Command_done");
       }
     }},
    {"transfer_functions", "menu_transfer_functions"},
    {"output_rhoplus", "menu_output_data_0"},
    {"output_panel", "menu_output_data_1"},
};

/// Brings up one window. The menu item of a modal one returns only when it closes, so a timer, which also
/// runs in the window's own event loop, looks for it.
class WindowVisit : public QObject {
 public:
  WindowVisit(Form_main& main_window, const WindowVisitor& visitor)
      : main_window_(main_window), visitor_(visitor) {}

  void show(const WindowPicture& picture) {
    picture_ = &picture;
    prepared_ = visited_ = false;
    look_soon();
    if (picture.open) {
      picture.open(main_window_);
    } else if (picture.menu_item != nullptr) {
      main_window_.findChild<QAction*>(picture.menu_item)->trigger();
    }
    if (!visited_ && !picture.open) {
      prepare_and_visit(main_window_);
    }
    picture_ = nullptr;
    timer_.stop();
  }

 private:
  void look_soon() {
    constexpr int look_milliseconds = 20;
    timer_.start(look_milliseconds, this);
  }

  void timerEvent(QTimerEvent* /*event*/) override {
    timer_.stop();  // started again it also fires while this look still works
    look();
  }

  void look() {
    look_soon();  // preparing may bring up another window, the one to show
    QWidget* const window = QApplication::activeModalWidget();
    if (window != nullptr && window != working_on_) {
      const ScopedValue<QWidget*> working_on(working_on_, window);
      prepare_and_visit(*window);
      window->close();
    }
  }

  void prepare_and_visit(QWidget& window) {
    if (!std::exchange(prepared_, true) && picture_->prepare) {
      picture_->prepare(window);
    }
    let_settle(window);
    if (std::exchange(visited_, true)) {
      return;  // a window that this one brought up
    }
    QWidget* const beside = window_beside(window);
    QWidget* const further = beside != nullptr ? window_beside(*beside) : nullptr;
    for (const QWidget* const shown : {beside, further}) {
      if (shown != nullptr) {
        let_settle(*shown);
      }
    }
    visitor_(picture_->name, further != nullptr ? *further : beside != nullptr ? *beside : window);
    if (beside != nullptr) {
      beside->close();
    }
  }

  Form_main& main_window_;
  const WindowVisitor& visitor_;
  QBasicTimer timer_;
  const WindowPicture* picture_ = nullptr;  // being taken
  QWidget* working_on_ = nullptr;
  bool prepared_ = false;
  bool visited_ = false;
};

}  // namespace

void visit_windows(Form_main& window, const WindowVisitor& visitor) {
  Module_data_file::keep_import_entries(Module_data_file::sample_choices());
  window.show();
  auto& display = *window.findChild<SurveyDisplay*>();
  const SurveyDisplay::Kept kept = display.keep();
  WindowVisit visit(window, visitor);
  for (const WindowPicture& picture : pictures) {
    if (picture.possible()) {
      visit.show(picture);
    }
  }
  if (control<QWidget>(window, "Frame_store").isVisible()) {
    press(window, "Command_done_output");
  }
  display.put_back(kept);
}

int save_window_pictures(Form_main& window, const QString& folder) {
  bool all_saved = QDir().mkpath(folder);
  visit_windows(window, [&](const QString& name, QWidget& shown) {
    const QString file = QDir(folder).filePath(name + ".png");
    if (!shown.grab().save(file, "PNG")) {
      all_saved = false;
      user_interface().show_message("The picture can't be written: " + file.toStdString());
    }
  });
  return all_saved ? 0 : -1;
}
