#include <cerrno>
#include <ctime>

#include "support/oci.h"
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
    return MakeError(XSite{L".\\xoption", L"XOption::A", 91}, L"first");
}

TEST(XException, LocationsShowMethodFileNameAndLine) {
    EXPECT_EQ(XException::GetLocationString(L".\\sub\\xset", L"XSet::Find", 7), L"<XSet::Find> in [xset], line [7]");
    EXPECT_EQ(XException::GetLocationString(L"./", L"M", 7), L"<M> in [./], line [7]");  // slashes do not separate
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

TEST(XException, TheInnermostSubjectIsKept) {
    const ErrorSubject inner{.option = L"inner", .reference = L"r", .index = -3};
    XException error = About(inner, Raised());
    error.AddSubject({.option = L"outer", .argument = L"word", .reference = L"s", .index = 4, .places = {{}}});
    const auto& [option, argument, reference, index, places] = *error.GetSubject();
    EXPECT_EQ(std::tie(option, reference, index), std::tie(inner.option, inner.reference, inner.index));
    EXPECT_EQ(argument, L"word");
    EXPECT_EQ(places.size(), 1U);
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

TEST(XException, CopiesADatabaseRecordLastEntryFirst) {
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

TEST(XException, ANewErrorHasItsOwnSubject) {
    XOCI::XError record;
    record.Add(100, L".\\a", L"A", 1, L"", nullptr);
    const XException other = About({.option = L"new"}, Raised());
    CString subjects;
    for (int form = 0; form < 4; ++form) {
        XException error = About({.option = L"old"}, Raised());
        if (form == 0) error.SetError(-1, L".\\a", L"A", 1, L"");
        if (form == 1) error.SetError(other);
        if (form == 2) error.SetError(record);
        if (form == 3) error.SetWarning(L".\\a", L"A", 1, L"");
        subjects += error.GetSubject() ? error.GetSubject()->option : L"-";
    }
    EXPECT_EQ(subjects, L"-new--");
}

static_assert(std::is_nothrow_move_constructible_v<XFileException> &&
              std::is_nothrow_move_assignable_v<XFileException>);

TEST(XException, LongChainsGrowAtTheCostOfWhatIsAdded) {
    constexpr int count = 50'000;  // takes minutes if each one copies those before
    XOCI::XError record;
    for (int i = 0; i < count; ++i) record.Add(i + 101, L".\\a", L"A", i, L"", nullptr);
    const std::clock_t start = std::clock();
    XException error;
    error.SetError(record);
    for (int i = 0; i < count; ++i) error.AddMessage(L"m");
    EXPECT_LT(std::clock() - start, 10 * CLOCKS_PER_SEC);
    EXPECT_EQ(error.GetMessage().GetLength(), count * (18 + 11 + 4) - 11);
    EXPECT_EQ(error.GetLocation().Left(28), L"<A> in [a], line [49999]\r\n  ");
}

TEST(XFileException, NamesFileOrFolderBeforeTheCallersMessageOrCause) {
    XFileException error{L"C:\\x.ini"};
    error.SetFileNotFoundError(L".\\f", L"M", 1, L"gone");
    EXPECT_EQ(error.GetMessage(), L"File <C:\\x.ini> not found!\r\n\tgone");
    error.SetPathNotFoundError(L".\\f", L"M", 1, L"");
    EXPECT_EQ(error.GetMessage(), L"Folder <C:\\x.ini> does not exist!\r\n\t") << "a joint even for nothing";
    error.SetOpenError(L".\\f", L"M", 1, CFileException{CFileException::none, EACCES, L""});
    EXPECT_EQ(error.GetNumber(), 5) << "the cause follows the system's number, not the one in the record";
    EXPECT_EQ(error.GetMessage(), L"Cannot open file <C:\\x.ini>!\r\n\tAccess denied!");
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

static void Add(XOCI::XError& record, int status, void* handle = nullptr, const wchar_t* message = L"Cannot fetch") {
    record.Add(status, ".\\xcursor", "XCursor::Fetch", 88, message, handle);
}

TEST(XError, DescribesEachStatusWithoutTheClient) {
    const ClientGuard guard{{0, 942, "ORA-00942\n"}};
    XOCI::XError record;
    CString described;
    for (const int status : {0, 1, -1, -2, 99, 100, -3123, -24200, 7}) {
        Add(record, status, status == -1 ? nullptr : &record);
        const XOCI::XErrorEntry* entry = record.GetAt(record.GetCount() - 1);
        if (entry) described += FormatText(L"%d %d %s\n", entry->number, entry->oraNumber, entry->message);
    }
    EXPECT_EQ(described,
              L"1 0 \n-1 0 Cannot fetch\n"
              L"-2 0 Oracle OCI-Error: 'OCI_INVALID_HANDLE'\n99 0 Oracle OCI-Error: 'OCI_NEED_DATA'\n"
              L"100 0 Oracle OCI-Error: 'OCI_NO_DATA'\n-3123 0 Oracle OCI-Error: 'OCI_STILL_EXECUTING'\n"
              L"-24200 0 Oracle OCI-Error: 'OCI_CONTINUE'\n7 0 Unknown OCI-Error!\n");
    EXPECT_TRUE(guard.Asked().empty()) << "only an error with a handle asks it";
}

TEST(XError, TakesTextAndNumbersFromTheClient) {
    const std::tuple<const char*, ClientAnswer, const wchar_t*, const wchar_t*, int, int> cases[] = {
        {"usual", {0, 942, "ORA-00942: no table\n"}, L"M", L"M: ORA-00942: no table!", 942, 942},
        {"with info", {1, 0, "ORA-00000: normal\n"}, L"M", nullptr, 0, 0},
        {"five digits at most", {0, 7, "ORA-123456\n"}, L"M", L"M: ORA-123456!", 7, 12345},
        {"fewer digits", {0, 7, "ORA-7x\n"}, L"M", L"M: ORA-7x!", 7, 7},
        {"a sign, no digits", {0, 7, "ORA--7\n"}, L"M", L"M: ORA--7!", 7, 0},
        {"in the caller's message, in front", {0, 7, "ORA-00002\n"}, L"ORA-00001", L"ORA-00001: ORA-00002!", 7, 0},
        {"no ORA", {0, 7, "9876543\n"}, L"M", L"M: 9876543!", 7, 0},
        {"the last character goes, whatever it is", {0, 7, "text"}, L"M", L"M: tex!", 7, 0},
        {"failed with a code", {-1, 12541, ""}, L"M", L"M: !", 12541, 0},
        {"failed with a text alone", {-1, 0, "lost\n"}, L"M", L"M: lost!", -1, 0},
        {"failed with nothing", {100, 0, ""}, L"M", L"M", -1, 0},
    };
    for (const auto& [what, answer, message, text, number, oraNumber] : cases) {
        const ClientGuard guard{answer};
        XOCI::XError record;
        Add(record, -1, &record, message);
        EXPECT_EQ(std::pair(record.GetNumber(), record.GetCount()), std::pair(number, text ? 1 : 0)) << what;
        const XOCI::XErrorEntry entry = text ? *record.GetAt(0) : XOCI::XErrorEntry{};
        EXPECT_EQ(entry.message, text) << what;
        EXPECT_EQ(std::pair(entry.number, entry.oraNumber), std::pair(number, oraNumber)) << what;
    }
}

TEST(XError, SkipsTheColumnThatIsNullAndKeepsTheNumberOfItsFirstEntry) {
    const ClientGuard guard{{0, 1405, "ORA-01405: fetched column value is NULL\n"}};
    XOCI::XError record;
    Add(record, -1, &record);
    EXPECT_EQ(record.GetCount(), 0);
    for (const int status : {100, 99, -1}) Add(record, status, &record);
    EXPECT_EQ(std::pair(record.GetNumber(), record.GetCount()), std::pair(100, 2));
    for (const int outside : {-1, 2}) EXPECT_EQ(record.GetAt(outside), nullptr);
    record.Clear();
    EXPECT_EQ(std::tuple(record.GetNumber(), record.GetCount(), record.GetAt(0)), std::tuple(0, 0, nullptr));
}

TEST(XError, ListsTheLastEntryFirst) {
    XOCI::XError record;
    Add(record, 100);
    record.Add(-1, L".\\xdb", L"XDb::Open", 7, L"100%s", nullptr);
    CString text{L"overwritten"};
    record.GetErrorText(text, L"head");
    EXPECT_EQ(
        text,
        L"head\n\tReason: 100%s\t[method: 'XDb::Open', file: '.\\xdb', line: '7']"
        L"\n\tReason: Oracle OCI-Error: 'OCI_NO_DATA'\t[method: 'XCursor::Fetch', file: '.\\xcursor', line: '88']");
    EXPECT_EQ(XOCI::XError{}.GetErrorText(L"head"), L"head");
}
