// beside_bound.h: work measured beside its bound, the least that any program has to do for the same result.
// Both take turns in one run, so that both see the same machine. Counters: work_ms and bound_ms, each for one
// turn, and their ratio.
#pragma once
#include <chrono>
#include <ctime>
#include <fstream>
#include <string>
#include <utility>
#include <vector>

#include <benchmark/benchmark.h>

/// Of the processor, for this process: other work on the machine doesn't change it.
inline double cpu_seconds() { return static_cast<double>(std::clock()) / CLOCKS_PER_SEC; }

/// As a person waits for it.
inline double wall_seconds() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

class BesideBound {
 public:
  using Clock = double (*)();
  explicit BesideBound(benchmark::State& state, Clock clock = cpu_seconds) : state_(state), clock_(clock) {}
  BesideBound(const BesideBound&) = delete;
  BesideBound& operator=(const BesideBound&) = delete;
  ~BesideBound() {
    const auto mean = benchmark::Counter::kAvgIterations;
    state_.counters["work_ms"] = benchmark::Counter(1000.0 * working_, mean);
    state_.counters["bound_ms"] = benchmark::Counter(1000.0 * bounding_, mean);
    state_.counters["ratio"] = working_ / bounding_;
  }

  template <class Work>
  void work(Work&& work) {
    const double seconds = seconds_of(std::forward<Work>(work));
    working_ += seconds;
    state_.SetIterationTime(seconds);
  }
  template <class Bound>
  void bound(Bound&& bound) {
    bounding_ += seconds_of(std::forward<Bound>(bound));
  }
  /// Seconds of all turns.
  [[nodiscard]] double working() const { return working_; }

 private:
  template <class Work>
  double seconds_of(Work&& work) const {
    const double start = clock_();
    std::forward<Work>(work)();
    return clock_() - start;
  }

  benchmark::State& state_;
  Clock clock_;
  double working_ = 0.0;
  double bounding_ = 0.0;
};

/// The benchmark's whole loop.
template <class Work, class Bound>
void run_beside_bound(benchmark::State& state, Work work, Bound bound,
                      BesideBound::Clock clock = cpu_seconds) {
  BesideBound measure(state, clock);
  for (auto _ : state) {
    measure.work(work);
    measure.bound(bound);
  }
}

/// The bytes of a file, as any reader has to get them.
inline std::string bytes_of(const std::string& path) {
  std::ifstream stream(path, std::ios::binary);
  std::vector<char> chunk(1U << 16U);
  std::string bytes;
  while (stream.read(chunk.data(), static_cast<std::streamsize>(chunk.size())) || stream.gcount() > 0) {
    bytes.append(chunk.data(), static_cast<std::size_t>(stream.gcount()));
  }
  return bytes;
}

/// A reader beside a bare loop over the same file.
/// @param size  of the file at `path`, bytes
/// @param read, bare_loop  go through the file; what they give is looked at by nobody, but has to be worked
/// out
template <class Read, class BareLoop>
void read_beside_bare_loop(benchmark::State& state, const std::string& path, std::size_t size, Read read,
                           BareLoop bare_loop) {
  run_beside_bound(
      state, [&] { benchmark::DoNotOptimize(read(path)); },
      [&] { benchmark::DoNotOptimize(bare_loop(path)); });
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(size));
}
