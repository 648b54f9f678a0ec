#pragma once
// A part of the work, as it is told on standard error: how long it took, and a bar while it lasts.

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <string>
#include <thread>

namespace tool {

struct CommonOptions;

/// While it lives, a bar is drawn as soon as half a second has passed, when somebody watches (standard error
/// is a terminal); at its end the bar is wiped away, and with --verbose a line tells the time. The bar has a
/// thread of its own: a single long step shows that the program is alive.
class Stage {
 public:
  /// `shown`: to whoever watches. `forced`: into a file as well.
  enum class Bar { shown, hidden, forced };

  Stage(const CommonOptions& options, std::string name, std::size_t steps = 0, Bar bar = Bar::shown);
  ~Stage();
  Stage(const Stage&) = delete;
  Stage& operator=(const Stage&) = delete;
  void Step() { ++done_; }

 private:
  void Watch(std::stop_token stop);
  void Draw() const;

  std::string name_;
  std::size_t steps_;
  bool verbose_;
  std::atomic<std::size_t> done_{0};
  std::chrono::steady_clock::time_point begin_ = std::chrono::steady_clock::now();
  std::mutex mutex_;
  std::condition_variable_any ended_;
  /// Last, so that it stops before what it uses is gone.
  std::jthread watcher_;
};

}  // namespace tool
