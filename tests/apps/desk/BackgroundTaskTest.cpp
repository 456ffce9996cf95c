// SPDX-License-Identifier: Apache-2.0
#include <future>
#include <stdexcept>

#include <gmock/gmock.h>

#include "desk/core/BackgroundTask.h"

using desk::BackgroundTask;

TEST(BackgroundTask, RunsBesideItsOwner) {
    BackgroundTask task;
    EXPECT_FALSE(task.IsBusy());
    std::promise<void> go;
    task.Start([&](BackgroundTask&) { go.get_future().wait(); });
    EXPECT_TRUE(task.IsBusy());
    EXPECT_FALSE(task.IsDone());
    go.set_value();
    task.Finish();
    EXPECT_TRUE(task.IsDone());
    EXPECT_FALSE(task.IsBusy());
}

TEST(BackgroundTask, HandsProgressToItsOwner) {
    BackgroundTask task;
    std::promise<void> reported;
    std::promise<void> go;
    task.Start([&](BackgroundTask& self) {
        self.Report({"read", "a.ifc", 3, 10});
        reported.set_value();
        go.get_future().wait();
    });
    reported.get_future().wait();
    const desk::TaskProgress progress = task.Progress();
    EXPECT_EQ(progress.step, "read");
    EXPECT_EQ(progress.subject, "a.ifc");
    EXPECT_EQ(progress.done, 3U);
    EXPECT_EQ(progress.total, 10U);
    go.set_value();
    task.Finish();
}

TEST(BackgroundTask, StopsOnRequestAndStartsAfresh) {
    BackgroundTask task;
    task.Start([](BackgroundTask& self) {
        while (!self.StopFlag())
            std::this_thread::yield();
    });
    task.RequestStop();
    task.Finish();
    bool stoppedAtOnce = true;
    task.Start([&](BackgroundTask& self) { stoppedAtOnce = self.StopFlag(); });
    task.Finish();
    EXPECT_FALSE(stoppedAtOnce);
}

TEST(BackgroundTask, HandsOnTheExceptionOnce) {
    BackgroundTask task;
    task.Start([](BackgroundTask&) { throw std::runtime_error("no disk"); });
    EXPECT_THROW(task.Finish(), std::runtime_error);
    EXPECT_NO_THROW(task.Finish());
}

TEST(BackgroundTask, StopsAndWaitsWhenItGoes) {
    bool ended = false;
    {
        BackgroundTask task;
        task.Start([&](BackgroundTask& self) {
            while (!self.StopFlag())
                std::this_thread::yield();
            ended = true;
        });
    }
    EXPECT_TRUE(ended);
}
