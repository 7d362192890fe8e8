// progress_in_window.h: shows the progress of long work in the window that started it.
#pragma once
#include <QAbstractButton>
#include <QLabel>
#include <QProgressBar>
#include <initializer_list>
#include <memory>

#include "core/user_interface.h"

/// Hides what shows the progress of work until there is some; nothing changes place when it begins.
void hide_until_work(std::initializer_list<QWidget*> parts);

/// For the life of a scope, progress goes to a bar and a label, and the stop button ends the work; no dialog
/// appears over the window. Everything else is passed on to the interface installed before. Input reaches the
/// windows meanwhile: the caller disables what must wait.
class ProgressInWindow {
 public:
  ProgressInWindow(QProgressBar& bar, QLabel& what, QAbstractButton& stop);
  ProgressInWindow(const ProgressInWindow&) = delete;
  ProgressInWindow& operator=(const ProgressInWindow&) = delete;
  ~ProgressInWindow();

 private:
  std::unique_ptr<UserInterface>* earlier_;  // held by the interface that this installed
};
