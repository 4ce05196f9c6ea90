#include <dlfcn.h>
#include <unistd.h>

#include <filesystem>
#include <iostream>
#include <stdexcept>
#include <string>

#include "veltrane/foundation/xaction.h"
#include "veltrane/foundation/xexception.h"
#include "veltrane/options/xoptiondefinition.h"
#include "veltrane/platform/process/messagebox.h"
#include "veltrane/platform/process/module.h"
#include "veltrane/platform/process/oci.h"
#include "veltrane/platform/process/process.h"
#include "veltrane/platform/text/encoding.h"

#include "client/oci.h"  // after the library's own header, unlike in own_names.cpp

using namespace veltrane;

std::string TextOfTheClient();  // the error of the database client, asked for through the library

static void Print(const char* what, const CString& text) {
    std::cout << what << ": " << ToUtf8(text) << '\n';
}

// The warnings of the library are its own business: these lines do not compile with all of them as errors.
static char Narrow(long number) {
    char narrow = number;
    {
        char narrow = 'a';
        static_cast<void>(narrow);
    }
    return narrow;
}

struct HostError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// A copy of its own, as a plug-in may bring it along: apart from the process, or beside the first one as another file.
// It ends with the process, as the first one does.
static bool RunsTwice(bool isApart) {
    Dl_info library{};
    dladdr(reinterpret_cast<const void*>(&IsModuleRegistered), &library);
    const std::string file = std::filesystem::temp_directory_path() / ("copy" + std::to_string(getpid()) + ".so");
    if (!isApart) std::filesystem::copy_file(library.dli_fname, file);
    void* const copy = isApart ? dlmopen(LM_ID_NEWLM, library.dli_fname, RTLD_NOW) : dlopen(file.c_str(), RTLD_NOW);
    std::filesystem::remove(file);
    const auto ticks = copy ? reinterpret_cast<std::int32_t (*)()>(dlsym(copy, "_ZN8veltrane9TickCountEv")) : nullptr;
    return ticks && ticks != &TickCount && ticks() != 0;
}

static const struct Late {
    ~Late() { Print("at the end", g_BooleanStrings[0]); }
} g_Late;

int main() {
    Print("option", FindOptionDefinition(L"--logfile")->szLongName);
    Print("boolean", g_BooleanStrings[1]);
    Print("trillian", g_TrillianStrings[eFlagAuto]);
    Print("duration", XAction::TimeStr(5300, 1, true));
    try {
        XAction running;
        running.Start();
        XAction{} += running;
    } catch (const std::exception& error) {
        const CString location = dynamic_cast<const XException&>(error).GetLocation();
        Print("from the library", location.Left(location.Find(L", line")));
    }
    SetMessageBoxHandler([](const CString&, unsigned, unsigned) -> int { throw HostError("host error"); });
    try {
        ShowHelp();
    } catch (const HostError& error) {
        std::cout << "through the library: " << error.what() << '\n';
    }
    SetMessageBoxHandler({});
    std::cout << "client: " << TextOfTheClient() << '\n';
    std::cout << "second copy: " << RunsTwice(true) << RunsTwice(false) << '\n';
    std::cout << "registered: " << IsModuleRegistered(L"veltrane_base") << Narrow('\n');
}
