// scope_guard.h: restores something at the end of a scope, however the scope is left.
#pragma once
#include <utility>

/// Runs an action when it goes out of scope. The action must not throw.
template <class Action>
class ScopeGuard {
 public:
  explicit ScopeGuard(Action action) : action_(std::move(action)) {}
  ScopeGuard(const ScopeGuard&) = delete;
  ScopeGuard& operator=(const ScopeGuard&) = delete;
  ~ScopeGuard() { action_(); }

 private:
  Action action_;
};

/// Sets a variable for the life of a scope and puts its earlier value back.
template <class T>
class ScopedValue {
 public:
  ScopedValue(T& variable, T value)
      : variable_(variable), earlier_(std::exchange(variable, std::move(value))) {}
  ScopedValue(const ScopedValue&) = delete;
  ScopedValue& operator=(const ScopedValue&) = delete;
  ~ScopedValue() { variable_ = std::move(earlier_); }

 private:
  T& variable_;
  T earlier_;
};
