#include "veltrane/foundation/xexception.h"

#include <cerrno>

#include "support/support.h"
#include "veltrane/foundation/xdebug.h"
#include "veltrane/foundation/xoci.h"
#include "veltrane/foundation/xraise.h"

static CString TextOf(const XException& error) {
    CString text = L"to be overwritten";
    error.GetErrorText(text);
    return text;
}

static XException Raised() {
    XException error;
    error.SetError(-1, ".\\xoption", "XOption::A", 91, L"first");  // narrow, as __FILE__ and __FUNCTION__ are
    return error;
}

TEST(XException, LocationsShowMethodFileNameAndLine) {
    EXPECT_EQ(XException::GetLocationString(L".\\sub\\xset", L"XSet::Find", 7), L"<XSet::Find> in [xset], line [7]");
    EXPECT_EQ(XException::GetLocationString(L"./", L"M", 7), L"<M> in [./], line [7]");  // slashes separate nothing
    EXPECT_EQ(XException::GetLocationString(L"sub\\", L"%n", 7), L"<%n> in [], line [7]");
    EXPECT_EQ(XException::GetLocationString(L".\\xset", L"", 7), L"");
}

TEST(XException, ShowsChainsThatGrowInFrontAndMessagesAtTheEnd) {
    XException error = Raised();
    error.AddError(L".\\xoption", L"XOption::B", 92, L"second %s");
    error.AddMessage(L"detail");
    BoxRecorder recorder;
    error.Show();
    EXPECT_EQ(recorder.boxes.at(0).style, 0x10U);
    EXPECT_EQ(recorder.boxes[0].text,
              L"An error occured:\r\n"
              L"location:\t<XOption::B> in [xoption], line [92]\r\n"
              L"               \t<XOption::A> in [xoption], line [91]\r\n"
              L"message:\tsecond %s\r\nreason: \tfirst\r\n\tdetail");
}

TEST(XException, AnErrorWithoutNumberTakesNoReason) {
    XException error;
    error.AddError(L".\\x", L"M", 1, L"ignored");
    EXPECT_EQ(TextOf(error), L"An error occured:\r\nlocation:\t\r\nmessage:\t\r\nnumber:\t0");
    error.AddMessage(L"alone");
    EXPECT_EQ(error.GetMessage(), L"alone") << "without a joint in front";
}

TEST(XException, SetErrorReplacesTheChainsAndKeepsTheWarning) {
    XException error = Raised();
    error.SetWarning(L".\\y", L"W", 2, L"warned");
    EXPECT_EQ(TextOf(error), L"An error occured:\r\nlocation:\t<W> in [y], line [2]\r\nmessage:\twarned");
    XException plain = Raised();
    plain.SetNumber(5);
    error.SetError(&plain);
    EXPECT_EQ(TextOf(error), TextOf(plain));
    EXPECT_TRUE(XException{error}.IsWarning());  // copies take the mark, SetError does not
}

TEST(XException, TakesOverADatabaseRecordLastEntryInFront) {
    XOCI::XError record;
    XException error = Raised();
    error.SetError(record);
    EXPECT_EQ(error.GetMessage(), L"first") << "an empty record changes nothing";
    record.Add(100, L".\\a", L"A", 1, L"unused", nullptr);
    record.Add(-1, L".\\b", L"B", 2, L"fetch failed", nullptr);
    error.SetError(record);
    EXPECT_EQ(error.GetLocation(), L"<B> in [b], line [2]\r\n               \t<A> in [a], line [1]");
    EXPECT_EQ(error.GetMessage(), L"fetch failed\r\nreason: \tOracle OCI-Error: 'OCI_NO_DATA'");
    EXPECT_EQ(error.GetNumber(), 100);
}

TEST(XFileException, NamesFileOrFolderInFrontOfTheCallersMessage) {
    XFileException error{L"C:\\x.ini"};
    error.SetFileNotFoundError(L".\\f", L"M", 1, L"gone");
    EXPECT_EQ(error.GetMessage(), L"File <C:\\x.ini> not found!\r\n\tgone");
    error.SetPathNotFoundError(L".\\f", L"M", 1, L"");
    EXPECT_EQ(error.GetMessage(), L"Folder <C:\\x.ini> does not exist!\r\n\t") << "a joint even for nothing";
    error.SetOpenError(L".\\f", L"M", 1, CFileException{CFileException::none, EACCES, L""});
    EXPECT_EQ(error.GetNumber(), 5) << "the cause follows the system's number, not the one in the record";
    EXPECT_EQ(error.GetMessage(), L"Cannot open file <C:\\x.ini>!\r\n\tAccess denied!");
}

TEST(XFileException, EveryCauseHasItsText) {
    CString texts;
    for (int cause = -1; cause <= 15; ++cause) texts += XFileException::GetMessage(cause) + L" ";
    EXPECT_EQ(texts,
              L"Unknown error! None! Generic exception! File not found! Bad path! Too many open files! Access denied! "
              L"Invalid file! Remove current directory! Directory full! Bad seek! Hard IO! Sharing violation! "
              L"Lock violation! Disk full! End of file! Unknown error! ");
}

TEST(WithReason, EnrichesTheSameObjectAndReplacesForeignExceptions) {
    constexpr XSource here{L".\\sample"};
    constexpr XFailure<CString> failure{L"Error of <%s>!", L"An unknown exception in <%s>!"};
    const auto run = [&](auto body) { WithReason(here(L"Outer", 5), failure, body, CString{L"%s"}); };
    const auto file = ErrorOf<XFileException>([&] { run([&] { throw MakeMissingFile(here(L"In"), L"f", L"m"); }); });
    EXPECT_EQ(file.GetMessage(), L"Error of <%s>!\r\nreason: \tFile <f> not found!\r\n\tm");
    EXPECT_EQ(file.GetNumber(), -1);
    const auto foreign = ErrorOf([&] { run([] { throw 7; }); });
    EXPECT_EQ(foreign.GetLocation(), L"<Outer> in [sample], line [5]");
    EXPECT_EQ(foreign.GetMessage(), L"An unknown exception in <%s>!");
}

TEST(XDebug, PrintsInAnInformationBoxWhileOn) {
    BoxRecorder recorder;
    for (const bool on : {false, true, false}) {
        SetDebug(on);
        EXPECT_EQ(IsDebug(), on);
        PrintDebug(L"%s seen");
    }
    ASSERT_EQ(recorder.boxes.size(), 1U);
    EXPECT_EQ(recorder.boxes[0].text, L"%s seen");
    EXPECT_EQ(recorder.boxes[0].style, 0x40U);
}
