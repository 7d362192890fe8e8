#include "core/session_state.h"

SessionState& session() {
  static SessionState state;
  return state;
}

void reset_session_state() { session() = SessionState{}; }
