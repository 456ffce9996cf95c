// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <atomic>
#include <exception>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

namespace desk {

/// How far a long piece of work is. `total` 0 means that nobody knows.
struct TaskProgress {
    std::string step;  ///< UTF-8, what is being done
    std::string subject;
    std::size_t done = 0;
    std::size_t total = 0;
};

/// One piece of work on a thread of its own. The owner polls; the work reports and looks at the
/// stop flag.
///
/// Threads: the owner's operations belong to one thread; Report and StopFlag to the work.
class BackgroundTask {
  public:
    using Work = std::function<void(BackgroundTask& task)>;

    BackgroundTask() = default;
    /// Requests a stop and waits for the work to end.
    ~BackgroundTask();
    BackgroundTask(const BackgroundTask&) = delete;
    BackgroundTask& operator=(const BackgroundTask&) = delete;

    /// Starts the work. Precondition: nothing is going on.
    void Start(Work work);

    /// Whether work was started and Finish has not been called since.
    bool IsBusy() const { return thread_.joinable(); }
    /// Whether the work has come to its end; Finish then returns at once.
    bool IsDone() const { return done_.load(std::memory_order_acquire); }

    /// Waits for the end of the work and hands on the exception that it ended with.
    void Finish();

    void RequestStop() { stop_.store(true); }
    const std::atomic<bool>& StopFlag() const { return stop_; }

    void Report(TaskProgress progress);
    TaskProgress Progress() const;

  private:
    std::thread thread_;
    std::atomic<bool> done_{false};
    std::atomic<bool> stop_{false};
    std::exception_ptr failure_;
    mutable std::mutex progressLock_;
    TaskProgress progress_;
};

}  // namespace desk
