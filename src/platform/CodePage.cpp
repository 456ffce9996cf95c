// SPDX-License-Identifier: Apache-2.0
#include "KYCollisionBase/platform/CodePage.h"

#include <atomic>

#include "platform/Converter.h"

namespace KYTOOLS {
namespace {

using kycb::text::Converter;
using kycb::text::InvalidBytes;

std::string& Name() {
    static std::string name = "windows-936";
    return name;
}

/// Counts the calls of Set, so that each thread knows when its converter is out of date.
std::atomic<unsigned> generation{0};

/// Opening a converter costs far more than converting a name, and sorting converts many.
Converter& ThreadConverter() {
    thread_local std::optional<Converter> converter;
    thread_local unsigned openedIn = 0;
    const unsigned current = generation.load(std::memory_order_acquire);
    if (!converter || openedIn != current) {
        converter = Converter::Open(Name());
        openedIn = current;
    }
    return *converter;
}

}  // namespace

bool CodePage::Set(std::string_view name) {
    if (!Converter::Open(name)) return false;
    Name() = name;
    generation.fetch_add(1, std::memory_order_release);
    return true;
}

std::string CodePage::ToAnsi(std::wstring_view text) {
    return ThreadConverter().Encode(text);
}

std::wstring CodePage::FromAnsi(std::string_view bytes) {
    return *ThreadConverter().Decode(bytes, InvalidBytes::kReplace);
}

}  // namespace KYTOOLS
