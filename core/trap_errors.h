// trap_errors.h: the one place where a failure becomes a message and a status.
#pragma once
#include <exception>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "core/user_interface.h"

/// Runs `operation`. A failure inside it is shown once, as the fixed text followed by the engine's own
/// description.
/// @return 0, or what the operation returns when it reports a status itself (-1 when a callee has told the
///         user already); -1 after a failure
template <class Operation>
[[nodiscard]] int trap_errors(std::string_view fixed_text, Operation&& operation) {
  try {
    if constexpr (std::is_void_v<std::invoke_result_t<Operation>>) {
      std::forward<Operation>(operation)();
      return 0;
    } else {
      return std::forward<Operation>(operation)();
    }
  } catch (const std::exception& failure) {
    user_interface().show_message(std::string(fixed_text) + failure.what());
    return -1;
  }
}
