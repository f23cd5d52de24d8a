#pragma once

#include <pthread.h>

#include <cstddef>
#include <functional>
#include <stdexcept>

namespace quillan::testing {

// Runs `work` to its end on a thread whose stack holds `bytes`, as small as a
// phone's secondary threads get: a recursion as deep as its input overflows
// it where the main thread's eight megabytes would hide the fault.
inline void runOnStackOf(std::size_t bytes, const std::function<void()>& work) {
  pthread_attr_t attributes;
  if (pthread_attr_init(&attributes) != 0) throw std::runtime_error("pthread_attr_init failed");
  pthread_attr_setstacksize(&attributes, bytes);
  auto body = [](void* argument) -> void* {
    (*static_cast<const std::function<void()>*>(argument))();
    return nullptr;
  };
  pthread_t thread;
  const int created = pthread_create(&thread, &attributes, body, const_cast<std::function<void()>*>(&work));
  pthread_attr_destroy(&attributes);
  if (created != 0) throw std::runtime_error("pthread_create failed");
  pthread_join(thread, nullptr);
}

}  // namespace quillan::testing
