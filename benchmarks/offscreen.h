// offscreen.h: benchmarks of what is drawn, without a display.
#pragma once
#include <QApplication>

#include <benchmark/benchmark.h>

/// Runs the registered benchmarks in an application off screen.
/// @param close_windows  called at the end: windows go before the application
inline int run_offscreen(
    int argc, char** argv, void (*close_windows)() = [] {}) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(argc, argv);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  close_windows();
  return 0;
}
