// What threads may do side by side: pure functions, and objects that each thread has for itself.
#include <thread>

#include "support/arguments.h"
#include "support/support.h"
#include "veltrane/collections/xsetint.h"
#include "veltrane/config/xconfiguration.h"
#include "veltrane/config/xregistry.h"
#include "veltrane/foundation/xaction.h"
#include "veltrane/foundation/xpath.h"
#include "veltrane/logging/xlogging.h"
#include "veltrane/options/xoption.h"
#include "veltrane/platform/files/filesystem.h"
#include "veltrane/platform/process/localtime.h"

#ifdef __SANITIZE_THREAD__  // it does not see the lock that the C library's tzset takes
extern "C" [[gnu::visibility("default")]] const char* __tsan_default_suppressions() {
    return "race:tzset_internal";
}
#endif

// One thread's work below a folder of its own. @return what it read, written and renamed
static std::string Work(const TempFolder& folder, const std::string& name) {
    const CString own = folder.Wide(name);
    XLogging log;
    if (!CreateDirectoryW(own)) return "no folder";
    log.StartLogging(own + L"/run.log", L"tool", L"1.0", LocalTimeText(L"%H:%M:%S", CurrentTime()));
    XOption options;
    options.KeepOrigins(true);
    options.Initialize(folder.Wide(), L"tool", L"", L"", L"");
    options.OpenConfiguration();
    options.ReadConfiguration();
    CString value = options.GetOptionString(L"logfile", -1);
    CString other;
    XRegistry{L"tool"}.GetValue(other, L"ROOT", L"data");
    for (int i = 0; i < 20; ++i) {
        XSetInt numbers;
        numbers.BuildSet(L"3,1,2");
        numbers.Sort();
        XConfiguration{folder.Wide(".metadata/tool.ini")}.GetKeyValue(value, L"ROOT", L"logfile",
                                                                      /*assignEmpty*/ false);
        if (!FileExists(own + L"/RUN.LOG") || numbers.GetConstRefAt(0) != 1) return "";
        log.WriteLog(value.MakeUpper() + XAction{}.ElapsedStr(), /*newLine*/ true, /*timeStamp*/ true);
    }
    log.CloseLogFile();
    return ToUtf8(value) + folder.Read(name + "/run.log").substr(0, 3);
}

TEST(Threads, WorkSideBySideWithObjectsOfTheirOwn) {
    const TempFolder folder;
    folder.Write(".metadata/tool.ini", "[ROOT]\nlogfile=x.log\nname=db\n[db]\ndictionary-name=d\nrole=r\nregistry=g\n");
    const ArgumentsGuard arguments{{}};
    std::vector<std::string> results(4);
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < results.size(); ++i) {
        threads.emplace_back([&, i] { results[i] = Work(folder, "thread" + std::to_string(i)); });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(results, std::vector<std::string>(4, "X.LOG***"));
}
