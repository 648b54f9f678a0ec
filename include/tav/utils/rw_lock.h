#pragma once
// The two bring std::chrono along, whose min() and max() a Windows host's macros would break.
#pragma push_macro("min")
#pragma push_macro("max")
#undef min
#undef max
#include <mutex>
#include <shared_mutex>
#pragma pop_macro("max")
#pragma pop_macro("min")

#include "lumo/export.h"

namespace TavUtils {

/// A reader-writer lock: many readers or one writer.
class LUMO_TYPE ThreadLock {
 public:
  ThreadLock() = default;
  ThreadLock(const ThreadLock&) = delete;
  ThreadLock& operator=(const ThreadLock&) = delete;

 private:
  friend class ReadLock;
  friend class WriteLock;
  std::shared_mutex mutex_;
};

/// Holds the lock for reading while it lives.
class LUMO_TYPE ReadLock {
 public:
  /// Waits for the lock.
  explicit ReadLock(ThreadLock& lock) : lock_(lock.mutex_) {}

 private:
  std::shared_lock<std::shared_mutex> lock_;
};

/// Holds the lock for writing while it lives.
class LUMO_TYPE WriteLock {
 public:
  /// Waits for the lock.
  explicit WriteLock(ThreadLock& lock) : lock_(lock.mutex_) {}

 private:
  std::unique_lock<std::shared_mutex> lock_;
};

}  // namespace TavUtils
