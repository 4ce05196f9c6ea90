#include "platform/module.h"

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>

#include "support/support.h"

namespace {

TEST(Module, RegistersTheLibraryItself) {
    EXPECT_TRUE(IsModuleRegistered(L"veltrane_base"));
    EXPECT_FALSE(IsModuleRegistered(L"Veltrane_Base")) << "case counts";
    EXPECT_THROW(CDynLinkLibrary{L"veltrane_base"}, std::logic_error);
    EXPECT_TRUE(IsModuleRegistered(L"veltrane_base")) << "a refused module takes nothing away";
}

TEST(Module, IsRegisteredAsLongAsItsObjectLives) {
    auto first = std::make_unique<CDynLinkLibrary>(L"first");
    auto second = std::make_unique<CDynLinkLibrary>(L"second");
    auto third = std::make_unique<CDynLinkLibrary>(L"third");
    second.reset();  // from the middle of the list
    EXPECT_TRUE(IsModuleRegistered(L"first"));
    EXPECT_FALSE(IsModuleRegistered(L"second"));
    EXPECT_TRUE(IsModuleRegistered(L"third"));
    first.reset();
    third.reset();
    EXPECT_FALSE(IsModuleRegistered(L"first"));
    EXPECT_FALSE(IsModuleRegistered(L"third"));
    EXPECT_TRUE(IsModuleRegistered(L"veltrane_base"));
    EXPECT_NO_THROW(CDynLinkLibrary{L"second"}) << "the name is free again";
}

}  // namespace
