// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace KYCOLLISION::MODEL {

/// The level of a node of the category tree.
enum EnumNodeType : int {
    eNodeNone = 0,     ///< no node: invalid for every query
    eNodeZhuanye = 1,  ///< specialty
    eNodeDaLei = 2,    ///< major category
    eNodeXiaoLei = 3,  ///< minor category
};

}  // namespace KYCOLLISION::MODEL
