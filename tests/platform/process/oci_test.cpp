#include "veltrane/platform/process/oci.h"

#include "support/oci.h"
#include "support/support.h"

namespace {

TEST(OCI, AsksForTheFirstRecordOfAnErrorHandle) {
    const ClientGuard client{0, 942, "ORA-00942: table missing\n"};
    int handle = 0;
    ReadOCIError(&handle);
    EXPECT_EQ(client.Asked().count, 1);
    EXPECT_EQ(client.Asked().arguments, std::tuple(&handle, 1U, nullptr, 0, true, 1024U, 2U));
}

TEST(OCI, TakesWhatTheClientHasWritten) {
    const std::tuple<const char*, ClientAnswer, CString> cases[] = {
        {"failed, but with a text", {-1, 12541, "no listener"}, L"no listener"},
        {"UTF-8 and Windows-1252", {0, 1, "\xC3\xA4\xE2\x82\xAC\xE4\x80 \x9F\x81"}, L"ä\x20ACä\x20AC \x178\x81"},
        {"a full buffer without an end", {4711, -7, std::string(2000, 'x')}, CString(L'x', 1023)},
        {"nothing behind the NUL", {0, 1, {"a\0b", 3}}, L"a"},
    };
    for (const auto& [what, answer, text] : cases) {
        SCOPED_TRACE(what);
        const ClientGuard client{answer.status, answer.number, answer.text};
        const OCIErrorText error = ReadOCIError(nullptr);
        EXPECT_TRUE(error.available);
        EXPECT_EQ(error.number, answer.number);
        EXPECT_EQ(error.text, text);
    }
}

TEST(OCI, GoesOnWithoutAClient) {
    SetOCIErrorGet(nullptr);
    if (GetOCIErrorGet()) GTEST_SKIP() << "a client library is installed here";
    const OCIErrorText error = ReadOCIError(nullptr);
    EXPECT_FALSE(error.available);
    EXPECT_EQ(error.number, -1);
    EXPECT_EQ(error.text, L"");
}

}  // namespace
