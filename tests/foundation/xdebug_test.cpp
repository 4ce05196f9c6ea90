#include "veltrane/foundation/xdebug.h"

#include "support/support.h"

namespace {

TEST(XDebug, PrintsInAnInformationBoxWhileOn) {
    BoxRecorder recorder;
    EXPECT_FALSE(IsDebug());
    PrintDebug(L"unseen");
    SetDebug(true);
    EXPECT_TRUE(IsDebug());
    PrintDebug(L"%s seen");
    SetDebug(false);
    ASSERT_EQ(recorder.boxes.size(), 1U);
    EXPECT_EQ(recorder.boxes[0].text, L"%s seen");
    EXPECT_EQ(recorder.boxes[0].style, 0x40U);
}

}  // namespace
