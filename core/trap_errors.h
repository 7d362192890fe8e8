// trap_errors.h: the one place where a failure becomes a message and a status.
#pragma once
#include <exception>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "core/user_interface.h"

/// Beside std::exception: the failure's own text is a whole sentence for the user, who needs no more than it.
class CompleteMessage {
 public:
  virtual ~CompleteMessage() = default;

 protected:
  CompleteMessage() = default;
  CompleteMessage(const CompleteMessage&) = default;
  CompleteMessage& operator=(const CompleteMessage&) = default;
};

/// What a failure says, in words for a user: those of the standard library name its procedures.
std::string failure_text(const std::exception& failure);

/// The fixed text and what the failure says, or that alone if it is a whole sentence.
std::string failure_message(std::string_view fixed_text, const std::exception& failure);

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
    user_interface().show_message(failure_message(fixed_text, failure));
    return -1;
  }
}
