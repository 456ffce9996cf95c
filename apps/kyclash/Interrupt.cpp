// SPDX-License-Identifier: Apache-2.0
#include "kyclash/Interrupt.h"

#include "KYCollisionBase/logic/CCollisionCheck.h"

#include <csignal>

namespace kyclash {
namespace {

std::atomic<bool> requested{false};

static_assert(std::atomic<bool>::is_always_lock_free, "a signal handler must not wait for a lock");

extern "C" void OnSignal(int) {
    requested.store(true);
    std::atomic_ref<bool>(KYCOLLISION::LOGIC::CCollisionCheck::s_bStopCheck).store(true);
}

}  // namespace

Interrupt::Interrupt() {
    std::signal(SIGINT, OnSignal);
    std::signal(SIGTERM, OnSignal);
}

Interrupt::~Interrupt() {
    std::signal(SIGINT, SIG_DFL);
    std::signal(SIGTERM, SIG_DFL);
}

const std::atomic<bool>& Interrupt::Requested() {
    return requested;
}

}  // namespace kyclash
