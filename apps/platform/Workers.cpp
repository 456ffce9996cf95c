// SPDX-License-Identifier: Apache-2.0
#include "platform/Workers.h"

#include <algorithm>
#include <chrono>
#include <memory>
#include <stdexcept>
#include <thread>

#if !defined(_WIN32)
#include <csignal>

#include <sys/wait.h>
#include <unistd.h>
#endif

namespace kyclash {

#if defined(_WIN32)

std::size_t MostWorkers(std::size_t) {
    return 1;
}

void RunInWorkers(const std::vector<std::size_t>&, std::size_t, const WorkerTask&,
                  const WorkerDone&, const std::atomic<bool>&) {
    throw std::runtime_error("this system has no worker processes");
}

#else

namespace {

// Short against a floor's check, long enough to cost nothing.
constexpr auto kPollInterval = std::chrono::milliseconds(5);

struct FileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, FileCloser>;

struct Worker {
    pid_t process;
    std::size_t task;
    File file;
};

// What the copy of the process does. It leaves at once, so that nothing is done twice that this
// process will do at its own end.
[[noreturn]] void Work(const WorkerTask& work, std::size_t task, std::FILE* out) {
    bool isWhole = false;
    try {
        isWhole = work(task, out) && std::fflush(out) == 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "kyclash: %s\n", error.what());
    }
    ::_exit(isWhole ? EXIT_SUCCESS : EXIT_FAILURE);
}

Worker Start(const WorkerTask& work, std::size_t task) {
    File file(std::tmpfile());
    if (!file) throw std::runtime_error("no temporary file for a worker process");
    // What stands in the buffers of this process is its own to write.
    std::fflush(nullptr);
    const pid_t process = ::fork();
    if (process < 0) throw std::runtime_error("no worker process can be started");
    if (process == 0) Work(work, task, file.get());
    return {process, task, std::move(file)};
}

// The running workers. However they are left, none outlives this.
class Workers {
  public:
    explicit Workers(const WorkerDone& done) : done_(done) {}
    ~Workers() {
        Stop();
        for (const Worker& worker : running_) {
            ::waitpid(worker.process, nullptr, 0);
        }
    }
    Workers(const Workers&) = delete;
    Workers& operator=(const Workers&) = delete;

    std::size_t Count() const { return running_.size(); }
    void Add(Worker worker) { running_.push_back(std::move(worker)); }

    void Stop() {
        for (const Worker& worker : running_) {
            ::kill(worker.process, SIGTERM);
        }
    }

    /// Hands over what the ended ones wrote.
    void Collect() {
        for (std::size_t i = 0; i < running_.size();) {
            int status = 0;
            if (::waitpid(running_[i].process, &status, WNOHANG) == 0) {
                ++i;
                continue;
            }
            const Worker ended = std::move(running_[i]);
            running_.erase(running_.begin() + static_cast<std::ptrdiff_t>(i));
            std::rewind(ended.file.get());
            done_(ended.task, WIFEXITED(status) && WEXITSTATUS(status) == EXIT_SUCCESS,
                  ended.file.get());
        }
    }

  private:
    const WorkerDone& done_;
    std::vector<Worker> running_;
};

}  // namespace

std::size_t MostWorkers(std::size_t wanted) {
    return wanted;
}

void RunInWorkers(const std::vector<std::size_t>& tasks, std::size_t jobs, const WorkerTask& work,
                  const WorkerDone& done, const std::atomic<bool>& cancel) {
    Workers workers(done);
    auto next = tasks.begin();
    bool isStopped = false;
    while (next != tasks.end() || workers.Count() > 0) {
        if (cancel.load() && !isStopped) {
            isStopped = true;
            next = tasks.end();
            workers.Stop();
        }
        while (next != tasks.end() && workers.Count() < std::max<std::size_t>(jobs, 1)) {
            workers.Add(Start(work, *next++));
        }
        workers.Collect();
        if (workers.Count() > 0) std::this_thread::sleep_for(kPollInterval);
    }
}

#endif

}  // namespace kyclash
