#include "collections/xmap.h"

#include "support/support.h"

TEST(XMap, EmptyTextMakesNoEntry) {
    XMapInt2CString map;
    map.Insert(3, L"");
    EXPECT_EQ(map.Size(), 0);
}
