#include "stage.h"

#include <unistd.h>
#include <algorithm>
#include <cstdio>
#include <iostream>

#include "commands.h"

namespace tool {

namespace {

using std::chrono::milliseconds;
/// What is over sooner needs no bar.
constexpr milliseconds kPatience{500};
constexpr milliseconds kBetweenPictures{100};
constexpr std::size_t kBarWidth = 40;

}  // namespace

Stage::Stage(const CommonOptions& options, std::string name, std::size_t steps, Bar bar)
    : name_(std::move(name)), steps_(steps), verbose_(options.verbose) {
  if (bar == Bar::forced || (bar == Bar::shown && isatty(STDERR_FILENO) != 0))
    watcher_ = std::jthread([this](std::stop_token stop) { Watch(stop); });
}

Stage::~Stage() {
  if (watcher_.joinable()) {
    watcher_.request_stop();
    watcher_.join();
  }
  if (!verbose_) return;
  const std::chrono::duration<double, std::milli> time = std::chrono::steady_clock::now() - begin_;
  char line[64];
  std::snprintf(line, sizeof line, "%12.3f ms  ", time.count());
  std::cerr << line << name_ << '\n';
}

void Stage::Watch(std::stop_token stop) {
  std::unique_lock lock(mutex_);
  const auto never = [] { return false; };
  ended_.wait_for(lock, stop, kPatience, never);
  if (stop.stop_requested()) return;
  while (!stop.stop_requested()) {
    Draw();
    ended_.wait_for(lock, stop, kBetweenPictures, never);
  }
  std::cerr << "\r\033[K" << std::flush;
}

void Stage::Draw() const {
  const std::size_t done = done_;
  const auto seconds =
      std::chrono::duration_cast<std::chrono::seconds>(std::chrono::steady_clock::now() - begin_).count();
  std::string line = "\r" + name_;
  if (steps_ > 0) {
    const std::size_t filled = std::min(kBarWidth, kBarWidth * done / steps_);
    line += " [" + std::string(filled, '#') + std::string(kBarWidth - filled, ' ') + "] " +
            std::to_string(done) + " of " + std::to_string(steps_);
  }
  std::cerr << line << ", " << seconds << " s\033[K" << std::flush;
}

}  // namespace tool
