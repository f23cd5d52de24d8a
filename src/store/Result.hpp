#pragma once

#include <utility>
#include <variant>

#include "platform/Error.hpp"

namespace quillan::store {

// A value or the platform error that prevented it (a throwing call on the phone).
template <typename T>
class Result {
 public:
  Result(T value) : content_(std::move(value)) {}
  Result(platform::Error error) : content_(std::move(error)) {}

  bool ok() const { return std::holds_alternative<T>(content_); }
  explicit operator bool() const { return ok(); }
  const T& value() const { return std::get<T>(content_); }
  T& value() { return std::get<T>(content_); }
  const platform::Error& error() const { return std::get<platform::Error>(content_); }

 private:
  std::variant<T, platform::Error> content_;
};

}  // namespace quillan::store
