// SPDX-License-Identifier: Apache-2.0
#pragma once

/// What a control says about its class while the program runs: its name and its base.
struct CRuntimeClass {
    const char* m_lpszClassName;
    const CRuntimeClass* m_pBaseClass;  ///< null for the outermost base

    /// True for the class itself and for everything derived from `base`.
    constexpr bool IsDerivedFrom(const CRuntimeClass* base) const {
        for (const CRuntimeClass* each = this; each != nullptr; each = each->m_pBaseClass) {
            if (each == base) return true;
        }
        return false;
    }
};
