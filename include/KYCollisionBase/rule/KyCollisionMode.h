// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KYCollisionBase/Export.h"

#include <string>

namespace KYCOLLISION::Rule {

/// How a component kind is tested. Other values than the named ones are kept as they are read.
enum EnumModeType : int {
    eModeHard = 0,       ///< plain bodies
    eModeClearance = 1,  ///< bodies grown by the clearance that the two kinds call for
    eModeTolerance = 2,  ///< bodies shrunk by the tolerance
};

/// The mode of a rule item with its tolerance. A plain value.
class KYCB_API KyCollisionMode {
  public:
    /// Sets both. The tolerance is the leading whole number of the text, 0 without one; it is
    /// stored whatever the type.
    void InitParams(EnumModeType type, const std::wstring& tolerance);

    EnumModeType GetModeType() const { return modeType_; }
    void SetModeType(EnumModeType type) { modeType_ = type; }

    /// The tolerance (mm) when the type is eModeTolerance, else 0.
    int GetTolerance() const { return modeType_ == eModeTolerance ? tolerance_ : 0; }
    void SetTolerance(int tolerance) { tolerance_ = tolerance; }

  private:
    EnumModeType modeType_ = eModeHard;
    int tolerance_ = 0;
};

}  // namespace KYCOLLISION::Rule
