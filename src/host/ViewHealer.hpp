#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

#include "host/LiveHost.hpp"
#include "host/WidgetPictures.hpp"

namespace quillan::host {

// Builds again, on its own thread, the failed views of the widgets on screen
// once their retry is due, and tells `rebuilt` of each widget it retried, so
// a page showing a failed picture heals without anyone asking for it.
class ViewHealer {
 public:
  using Rebuilt = std::function<void(const std::string& kind, std::uint64_t version)>;

  // Looks for due retries every `period`; the retries' own waits are far longer.
  ViewHealer(const LiveHost& host, WidgetPictures& pictures, Rebuilt rebuilt,
             std::chrono::milliseconds period = std::chrono::seconds(1));
  ~ViewHealer();
  ViewHealer(const ViewHealer&) = delete;
  ViewHealer& operator=(const ViewHealer&) = delete;

 private:
  void run();
  void retryDueViews();

  const LiveHost& host_;
  WidgetPictures& pictures_;
  Rebuilt rebuilt_;
  std::chrono::milliseconds period_;
  std::mutex mutex_;
  std::condition_variable wake_;
  bool stopping_ = false;
  std::thread thread_;
};

}  // namespace quillan::host
