#include "veltrane/platform/process/module.h"

#include <optional>
#include <stdexcept>

#include "support/support.h"

namespace {

TEST(Module, IsRegisteredAsLongAsItsObjectLives) {
    EXPECT_THROW(CDynLinkLibrary{L"veltrane_base"}, std::logic_error) << "the library itself";
    std::optional<CDynLinkLibrary> first{L"first"};
    std::optional<CDynLinkLibrary> second{L"second"};
    std::optional<CDynLinkLibrary> third{L"third"};
    EXPECT_FALSE(IsModuleRegistered(L"Third")) << "case counts";
    second.reset();  // from the middle of the list
    EXPECT_TRUE(IsModuleRegistered(L"first"));
    EXPECT_FALSE(IsModuleRegistered(L"second"));
    EXPECT_TRUE(IsModuleRegistered(L"third"));
    first.reset();
    third.reset();
    EXPECT_FALSE(IsModuleRegistered(L"third"));
    EXPECT_TRUE(IsModuleRegistered(L"veltrane_base")) << "a refused module takes nothing away";
    EXPECT_NO_THROW(CDynLinkLibrary{L"first"}) << "the name is free again";
}

}  // namespace
