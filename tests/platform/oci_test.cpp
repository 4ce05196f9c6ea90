#include "platform/oci.h"

#include <gtest/gtest.h>

#include "support/oci.h"
#include "support/support.h"

namespace {

TEST(OCI, AsksForTheFirstRecordOfAnErrorHandle) {
    const ClientGuard client{0, 942, "ORA-00942: table missing\n"};
    int handle = 0;
    const OCIErrorText error = ReadOCIError(&handle);
    EXPECT_TRUE(error.available);
    EXPECT_EQ(error.number, 942);
    EXPECT_EQ(error.text, L"ORA-00942: table missing\n");
    EXPECT_EQ(client.Asked().count, 1);
    EXPECT_EQ(client.Asked().handle, &handle);
    EXPECT_EQ(client.Asked().record, 1U);
    EXPECT_EQ(client.Asked().sqlState, nullptr);
    EXPECT_EQ(client.Asked().codeBefore, 0);
    EXPECT_TRUE(client.Asked().isBufferZero);
    EXPECT_EQ(client.Asked().bufferSize, 1024U);
    EXPECT_EQ(client.Asked().handleType, 2U);
}

TEST(OCI, TakesWhatTheClientHasWritten) {
    struct {
        const char* what;
        std::int32_t status;
        std::int32_t number;
        std::string bytes;
        CString text;
    } const cases[] = {
        {"with info", 1, 24344, "warning\n", L"warning\n"},
        {"no such record", 100, 0, "", L""},
        {"failed, but with a text", -1, 12541, "no listener", L"no listener"},
        {"an unknown status", 4711, -7, "x", L"x"},
        {"UTF-8", 0, 1, "\xC3\xA4\xE2\x82\xAC", L"ä\x20AC"},
        {"Windows-1252", 0, 1, "\xE4\x80 \x9F\x81", L"ä\x20AC \x178\x81"},
        {"both", 0, 1, "\xC3\xA4\xE4", L"ää"},
        {"a full buffer without an end", 0, 1, std::string(2000, 'x'), CString(L'x', 1023)},
        {"nothing behind the NUL", 0, 1, {"a\0b", 3}, L"a"},
    };
    for (const auto& [what, status, number, bytes, text] : cases) {
        SCOPED_TRACE(what);
        const ClientGuard client{status, number, bytes};
        const OCIErrorText error = ReadOCIError(nullptr);
        EXPECT_TRUE(error.available);
        EXPECT_EQ(error.number, number);
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
