// SPDX-License-Identifier: Apache-2.0
// The category tree of the whole test program: it is loaded once for the life of a process.
#include "KYCollisionBase/model/KyEntityCategoryMgr.h"
#include "KYCollisionBase/platform/HostServices.h"

#include <gtest/gtest.h>

#include "support/TempFolder.h"

namespace {

class CategoryTree : public testing::Environment {
  public:
    /// In an order that is neither that of the code points nor that of the code page.
    void SetUp() override {
        const kycbtest::TempFolder folder;
        folder.Write("config/system/productsort.xml",
                     "<root><zhuanye name=\"电气\"/><zhuanye/><zhuanye name=\"土建\"/>"
                     "<zhuanye name=\"给排水\"/><zhuanye name=\"Revit\"/></root>");
        BASETOOLS::SetSysRoot(folder.File(""));
        ASSERT_EQ(KYCOLLISION::MODEL::KyEntityCategoryMgr::GetInstance()->GetSpecNodeCount(), 5);
        BASETOOLS::SetSysRoot(L"");
    }
};

const testing::Environment* const kCategoryTree =
    testing::AddGlobalTestEnvironment(new CategoryTree);

}  // namespace
