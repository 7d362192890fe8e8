// beside_bare_loop.h: a reader measured beside a bare loop over the same file, turn by turn, so that both see
// the same machine.
#pragma once
#include <ctime>
#include <fstream>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

/// Of the processor, for this process.
inline double cpu_seconds() { return static_cast<double>(std::clock()) / CLOCKS_PER_SEC; }

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

/// Reports the rates of both and the ratio of their times.
/// @param size  of the file at `path`, bytes
/// @param read, bare_loop  go through the file; what they give is looked at by nobody, but has to be worked
/// out
template <class Read, class BareLoop>
void read_beside_bare_loop(benchmark::State& state, const std::string& path, std::size_t size, Read read,
                           BareLoop bare_loop) {
  double reading = 0.0;
  double bare = 0.0;
  for (auto _ : state) {
    const double start = cpu_seconds();
    benchmark::DoNotOptimize(read(path));
    const double between = cpu_seconds();
    benchmark::DoNotOptimize(bare_loop(path));
    reading += between - start;
    bare += cpu_seconds() - between;
  }
  const double megabytes = static_cast<double>(size) * static_cast<double>(state.iterations()) / 1e6;
  state.counters["MB/s"] = megabytes / reading;
  state.counters["bare MB/s"] = megabytes / bare;
  state.counters["ratio"] = reading / bare;
}
