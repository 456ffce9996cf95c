// SPDX-License-Identifier: Apache-2.0
#include "desk/view/SceneColors.h"

#include <map>

#include "desk/core/DisposeState.h"

namespace desk {
namespace {

// Below this a ground counts as dark.
constexpr int kDarkGround = 128;

}  // namespace

bool IsDark(const QPalette& palette) {
    return qGray(palette.color(QPalette::Base).rgb()) < kDarkGround;
}

QColor SceneGround(const QPalette& palette) {
    return IsDark(palette) ? QColor(0x1B, 0x1F, 0x24) : QColor(0xF1, 0xF4, 0xF7);
}

QColor GhostColor(const QPalette& palette) {
    return IsDark(palette) ? QColor(0xB8, 0xC4, 0xD0) : QColor(0x7C, 0x8A, 0x99);
}

QColor EdgeColor(const QPalette& palette) {
    return IsDark(palette) ? QColor(0xD8, 0xE0, 0xE8) : QColor(0x2A, 0x33, 0x3D);
}

QColor SpecialtyColor(const std::wstring& specialty) {
    static const std::map<std::wstring, QColor> kColors{
        {L"土建", QColor(0xD8, 0xD2, 0xC6)},   {L"钢筋", QColor(0xB3, 0x7A, 0x5A)},
        {L"给排水", QColor(0x3F, 0x8F, 0xD2)}, {L"暖通", QColor(0x4F, 0xB0, 0x8C)},
        {L"电气", QColor(0xE0, 0xA8, 0x3A)},   {L"弱电", QColor(0x9A, 0x7B, 0xC8)},
        {L"消防", QColor(0xD6, 0x5A, 0x50)},   {L"钢结构", QColor(0x8E, 0x98, 0xA6)},
    };
    const auto found = kColors.find(specialty);
    if (found != kColors.end()) return found->second;
    const auto hash = static_cast<int>(qHash(QString::fromStdWString(specialty), 0) % 360U);
    return QColor::fromHsv(hash, 70, 200);
}

QColor MainColor() {
    return {0xF2, 0x8C, 0x1E};
}
QColor SecondColor() {
    return {0x2D, 0x7D, 0xE0};
}
QColor ClashPointColor() {
    return {0xD4, 0x1C, 0x3C};
}

QColor StateColor(int state, const QPalette& palette) {
    const bool dark = IsDark(palette);
    switch (static_cast<DisposeState>(state)) {
        case DisposeState::kOpen:
            return palette.color(QPalette::Text);
        case DisposeState::kAssigned:
            return dark ? QColor(0xF0, 0xB4, 0x5C) : QColor(0xA8, 0x5B, 0x00);
        case DisposeState::kResolved:
            return dark ? QColor(0x6F, 0xD0, 0x8C) : QColor(0x1D, 0x7A, 0x3E);
        case DisposeState::kAccepted:
            return dark ? QColor(0x96, 0xA0, 0xAC) : QColor(0x6A, 0x73, 0x7D);
    }
    return dark ? QColor(0xC3, 0xA0, 0xE8) : QColor(0x6B, 0x3F, 0xA0);
}

}  // namespace desk
