#include "platform/system/memory_status.h"

#ifdef _WIN32
#include <windows.h>
// after the one that it needs
#include <psapi.h>
#else
#include <algorithm>
#include <fstream>
#include <sstream>
#include <string>
#endif

namespace UTIL {

#ifdef _WIN32

MemoryStatus memory_status() {
  MemoryStatus status;
  MEMORYSTATUSEX machine{};
  machine.dwLength = sizeof machine;
  if (GlobalMemoryStatusEx(&machine) != 0) {
    status.physical = machine.ullTotalPhys;
    status.free_physical = machine.ullAvailPhys;
    // The system counts physical memory and paging files together here.
    status.paging =
        machine.ullTotalPageFile > machine.ullTotalPhys ? machine.ullTotalPageFile - machine.ullTotalPhys : 0;
    status.free_paging =
        machine.ullAvailPageFile > machine.ullAvailPhys ? machine.ullAvailPageFile - machine.ullAvailPhys : 0;
  }
  PROCESS_MEMORY_COUNTERS process{};
  if (GetProcessMemoryInfo(GetCurrentProcess(), &process, sizeof process) != 0) {
    status.program = process.WorkingSetSize;
    status.program_peak = process.PeakWorkingSetSize;
  }
  return status;
}

#else

namespace {

/// The value of a line such as "MemTotal:  24576 kB", in bytes; 0 if the file has no such line.
std::uint64_t value_in(const std::string& text, const std::string& key) {
  constexpr std::uint64_t kibibyte = 1024;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with(key + ":")) {
      std::uint64_t value = 0;
      std::istringstream(line.substr(key.size() + 1)) >> value;
      return value * kibibyte;
    }
  }
  return 0;
}

std::string text_of(const char* path) {
  std::ostringstream text;
  text << std::ifstream(path).rdbuf();
  return text.str();
}

}  // namespace

MemoryStatus memory_status() {
  const std::string machine = text_of("/proc/meminfo");
  const std::string process = text_of("/proc/self/status");
  MemoryStatus status;
  status.physical = value_in(machine, "MemTotal");
  status.free_physical = value_in(machine, "MemAvailable");
  status.paging = value_in(machine, "SwapTotal");
  status.free_paging = value_in(machine, "SwapFree");
  status.program = value_in(process, "VmRSS");
  status.program_peak = std::max(value_in(process, "VmHWM"), status.program);  // kept to some pages only
  return status;
}

#endif

}  // namespace UTIL
