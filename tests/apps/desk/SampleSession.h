// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KYCollisionBase/result/KyResultItem.h"

#include <chrono>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>

#include "ConvertedModels.h"
#include "desk/core/Session.h"
#include "kyclash/SystemRoot.h"
#include "support/TemporaryFolder.h"

/// A session for the sample building, which it reads when told to.
class SampleSession : public testing::Test {
  protected:
    void SetUp() override {
        const std::string reason = ifchost::testing::WhyNoConversion();
        if (!reason.empty()) GTEST_SKIP() << "models cannot be converted: " << reason;
        std::vector<std::string> remarks;
        ASSERT_TRUE(kyclash::SetSystemRoot(kyclash::ShippedDataFolder() / "system-root", remarks));
        session_ = NewSession();
    }

    static std::unique_ptr<desk::Session> NewSession() {
        desk::SessionOptions options;
        options.loading.cacheDir = DESK_CACHE_DIR;
        return std::make_unique<desk::Session>(options);
    }

    // The outcome of what is going on.
    desk::ActivityOutcome Wait() {
        while (true) {
            if (auto outcome = session_->Poll()) return *outcome;
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    }

    desk::ActivityOutcome Open(const std::filesystem::path& model = DESK_SAMPLE_IFC) {
        session_->StartOpen({model});
        return Wait();
    }

    desk::ActivityOutcome OpenResults(const std::filesystem::path& file) {
        session_->StartOpenResults(file);
        return Wait();
    }

    // Everything.
    desk::CheckRequest WholeRequest() const {
        desk::CheckRequest request;
        for (const auto& floor : session_->Floors())
            request.floors.push_back(floor.name);
        for (desk::KindCount kind : session_->Kinds())
            request.kinds.push_back(kind.kind.categoryIndex());
        return request;
    }

    desk::ActivityOutcome Check(const desk::CheckRequest& request) {
        session_->StartCheck(request);
        return Wait();
    }

    desk::Session::Item& Clash(const std::wstring& main, const std::wstring& second) const {
        for (desk::Session::Item* item : session_->Results()) {
            if (item->GetNameA() == main && item->GetNameB() == second) return *item;
        }
        throw std::runtime_error("no such clash");
    }

    kycbtest::TemporaryFolder scratch_;
    std::unique_ptr<desk::Session> session_;
};
