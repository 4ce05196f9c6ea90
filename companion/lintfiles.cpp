// Checks of the files themselves.
#include <algorithm>
#include <filesystem>

#include "libraryoption.h"
#include "lint.h"
#include "startupfiles.h"
#include "veltrane/platform/sources/environment.h"

namespace veltrane::config {

namespace {

using enum LintCode;

const wchar_t* FaultOf(SourceReading reading) {
    if (reading == SourceReading::Folder) return L"this is a folder; it counts as an empty file";
    if (reading == SourceReading::NotRegular) return L"this is not a regular file; it counts as an empty file";
    if (reading == SourceReading::TooLarge) return L"this is larger than 256 MiB; it counts as an empty file";
    return L"this cannot be read; it counts as an empty file";
}

// The first one in byte order is read, which may not be the intended one.
CString OtherSpelling(const std::filesystem::path& file) {
    const std::filesystem::path path = std::filesystem::absolute(file);
    const CString name = FromUtf8(path.filename().native());
    std::error_code failure;
    for (const auto& entry : std::filesystem::directory_iterator{path.parent_path(), failure}) {
        CString other = FromUtf8(entry.path().filename().native());
        if (other != name && other.CompareNoCase(name) == 0) return other;
    }
    return {};
}

// The default registry may be missing; a missing user file is an error of start-up, which names its place.
void LintMissing(LintRun& run, const StartupSource& source) {
    CString named;
    const bool isNamed = GetEnvironmentText(named, L"VORNAK_REGISTRY") && !named.IsEmpty();
    const auto isOfMetadata = [](const XException& error) {
        const ErrorSubject* const subject = error.GetSubject();
        return subject && subject->option == LIBRARY_OPTION<"metadata">.szLongName && subject->places.empty();
    };
    if (source.layer == OptionLayer::Registry && isNamed) {
        run.Report(source, SourceLine{}, {C19, L"the file does not exist"});
    } else if (source.layer == OptionLayer::BasicFile && std::ranges::none_of(run.startup.errors, isOfMetadata)) {
        run.Report(source, SourceLine{}, {C19, L"the basic file does not exist; the tool stops", {}, Severity::Error});
    }
}

void LintFile(LintRun& run, const StartupSource& source) {
    const auto report = [&](LintCode code, const CString& text) { run.Report(source, SourceLine{}, {code, text}); };
    if (IsUnreadable(source.path, source.view)) report(C19, FaultOf(source.view.reading));
    if (source.view.reading == SourceReading::Missing) LintMissing(run, source);
    if (source.isUnmarkedUtf16) {
        report(C19, L"this looks like UTF-16 without a byte order mark, which cannot be read; save it as UTF-8");
    }
    if (source.view.path.IsEmpty()) return;
    const CString other = OtherSpelling(ToUtf8(source.view.path));
    if (other.IsEmpty()) return;
    report(C18, FormatText(L"'%s' in the same folder differs only in case; rename one of them", other));
}

}  // namespace

void LintFiles(LintRun& run) {
    for (const StartupSource& source : run.sources) LintFile(run, source);
}

}  // namespace veltrane::config
