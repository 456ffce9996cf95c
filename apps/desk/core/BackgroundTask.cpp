// SPDX-License-Identifier: Apache-2.0
#include "desk/core/BackgroundTask.h"

#include <utility>

namespace desk {

BackgroundTask::~BackgroundTask() {
    RequestStop();
    if (thread_.joinable()) thread_.join();
}

void BackgroundTask::Start(Work work) {
    done_ = false;
    stop_ = false;
    failure_ = nullptr;
    Report({});
    thread_ = std::thread([this, work = std::move(work)] {
        try {
            work(*this);
        } catch (...) {
            failure_ = std::current_exception();
        }
        done_.store(true, std::memory_order_release);
    });
}

void BackgroundTask::Finish() {
    if (thread_.joinable()) thread_.join();
    if (failure_) std::rethrow_exception(std::exchange(failure_, nullptr));
}

void BackgroundTask::Report(TaskProgress progress) {
    const std::lock_guard guard(progressLock_);
    progress_ = std::move(progress);
}

TaskProgress BackgroundTask::Progress() const {
    const std::lock_guard guard(progressLock_);
    return progress_;
}

}  // namespace desk
