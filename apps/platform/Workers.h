// SPDX-License-Identifier: Apache-2.0
// Independent tasks in processes of their own.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdio>
#include <functional>
#include <vector>

namespace kyclash {

/// What a task does in its process: it writes what it found to `out`. The answer tells whether it
/// came to its end; an exception counts as false.
using WorkerTask = std::function<bool(std::size_t task, std::FILE* out)>;

/// Called in this process as tasks end, in no particular order, with what the task wrote.
/// `isWhole` is false when the task did not come to its end or its process died.
using WorkerDone = std::function<void(std::size_t task, bool isWhole, std::FILE* in)>;

/// How many processes serve at once; 1 where the system knows no copies of a process.
std::size_t MostWorkers(std::size_t wanted);

/// Runs the tasks in the given order, at most `jobs` at a time, each in a copy of this process as
/// it is now. Must be called while this process has one thread. What a task changes is seen by
/// nobody, except what it writes. Once `cancel` is true no task is started, and running ones are
/// asked to end as an interrupt does (SIGTERM); they are waited for.
/// @throws std::runtime_error when no process or no temporary file can be made.
void RunInWorkers(const std::vector<std::size_t>& tasks, std::size_t jobs, const WorkerTask& work,
                  const WorkerDone& done, const std::atomic<bool>& cancel);

}  // namespace kyclash
