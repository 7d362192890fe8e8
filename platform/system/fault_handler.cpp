#include "platform/system/fault_handler.h"

#include <array>
#include <cstdint>
#include <cstdio>
#include <string>

#include "core/environment.h"

#ifdef _WIN32

#include <windows.h>

namespace {

LONG WINAPI MyExceptionFilter(EXCEPTION_POINTERS* fault) {
  const std::string name = UTIL::fault_name(fault->ExceptionRecord->ExceptionCode);
  std::fprintf(stderr, "MyExceptionFilter: %s\n", name.c_str());
  return EXCEPTION_CONTINUE_SEARCH;
}

}  // namespace

void install_fault_handler() { SetUnhandledExceptionFilter(MyExceptionFilter); }

#else

#include <csignal>

#include <unistd.h>

namespace {

struct Fault {
  int signal;
  int cause;  // si_code; any_cause for all that aren't listed
  std::uint32_t code;
};

constexpr int any_cause = 0;

// The specific rows come before the general one of their signal.
constexpr std::array<Fault, 14> faults = {{{SIGFPE, FPE_INTDIV, 0xC0000094U},
                                           {SIGFPE, FPE_INTOVF, 0xC0000095U},
                                           {SIGFPE, FPE_FLTDIV, 0xC000008EU},
                                           {SIGFPE, FPE_FLTOVF, 0xC0000091U},
                                           {SIGFPE, FPE_FLTUND, 0xC0000093U},
                                           {SIGFPE, FPE_FLTRES, 0xC000008FU},
                                           {SIGFPE, FPE_FLTSUB, 0xC000008CU},
                                           {SIGFPE, any_cause, 0xC0000090U},
                                           {SIGBUS, BUS_ADRALN, 0x80000002U},
                                           {SIGBUS, any_cause, 0xC0000006U},
                                           {SIGILL, ILL_PRVOPC, 0xC0000096U},
                                           {SIGILL, any_cause, 0xC000001DU},
                                           {SIGTRAP, any_cause, 0x80000003U},
                                           {SIGSEGV, any_cause, 0xC0000005U}}};

// Filled before any fault: a handler must not allocate, and after a stack overflow it needs a stack of its
// own.
std::array<std::array<char, 80>, faults.size()> last_words{};
alignas(16) std::array<unsigned char, 65536> handler_stack{};

extern "C" void MyExceptionFilter(int signal, siginfo_t* information, void* /*context*/) {
  for (std::size_t i = 0; i < faults.size(); ++i) {
    if (faults[i].signal == signal &&
        (faults[i].cause == any_cause || faults[i].cause == information->si_code)) {
      std::size_t length = 0;
      while (last_words[i][length] != '\0') {
        ++length;
      }
      static_cast<void>(!write(STDERR_FILENO, last_words[i].data(), length));
      break;
    }
  }
  static_cast<void>(raise(signal));  // takes effect when the handler returns, with the default action
}

}  // namespace

void install_fault_handler() {
  stack_t stack{};
  stack.ss_sp = handler_stack.data();
  stack.ss_size = handler_stack.size();
  sigaltstack(&stack, nullptr);
  struct sigaction action {};
  action.sa_sigaction = MyExceptionFilter;
  action.sa_flags = SA_SIGINFO | SA_ONSTACK | static_cast<int>(SA_RESETHAND);
  sigemptyset(&action.sa_mask);
  for (std::size_t i = 0; i < faults.size(); ++i) {
    const std::string words = "MyExceptionFilter: " + UTIL::fault_name(faults[i].code) + "\n";
    words.copy(last_words[i].data(), last_words[i].size() - 1);
    sigaction(faults[i].signal, &action, nullptr);
  }
}

#endif
