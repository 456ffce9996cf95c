// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

/// The attribute summary of one clashing component; all texts are empty by default.
struct SObjAttInfo {
    std::wstring Specialty;    ///< specialty (trade)
    std::wstring Category;     ///< major category
    std::wstring Subcategory;  ///< minor category
    std::wstring Name;         ///< attribute name
    std::wstring SysCode;      ///< code of the building-services system
};
