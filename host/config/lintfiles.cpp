// Checks of the files themselves.
#include <filesystem>

#include "lint.h"
#include "veltrane/config/xconfiguration.h"
#include "veltrane/platform/sources/environment.h"

namespace veltrane::config {

namespace {

const wchar_t* FaultOf(SourceReading reading) {
    switch (reading) {
        case SourceReading::Folder:
            return L"this is a folder: nothing of it is read";
        case SourceReading::NotRegular:
            return L"this is no regular file: nothing of it is read";
        case SourceReading::TooLarge:
            return L"the file is larger than 256 MiB: nothing of it is read";
        case SourceReading::Failed:
            return L"the file can not be read: it counts as empty";
        default:
            return nullptr;
    }
}

// The first one in byte order is read, which need not be the one that is meant.
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

void LintFile(LintRun& run, const LintSource& source) {
    const auto warn = [&](const char* code, const CString& text) {
        run.Report(source, SourceLine{}, {code, Severity::Warning, text});
    };
    CString named;
    const bool isNamed =
        source.layer != OptionLayer::Registry || (GetEnvironmentText(named, L"VORNAK_REGISTRY") && !named.IsEmpty());
    if (const wchar_t* const fault = FaultOf(source.view.reading)) {
        if (source.path != L"/dev/null") warn("C19", fault);
    } else if (source.view.reading == SourceReading::Missing && isNamed) {
        warn("C19", L"the file does not exist");
    }
    if (source.view.path.IsEmpty()) return;
    const CString other = OtherSpelling(ToUtf8(source.view.path));
    if (!other.IsEmpty())
        warn("C18", L"'" + other + L"' beside it differs in case only; is this the one that is meant?");
    if (source.layer == OptionLayer::Registry || source.view.sectionListLength <= XConfiguration::MAX_LIST + 1) return;
    warn(
        "C11",
        FormatText(L"the names of its sections take %d characters: families and rules behind the first %d are not seen",
                   source.view.sectionListLength, XConfiguration::MAX_LIST));
}

}  // namespace

void LintFiles(LintRun& run) {
    for (const LintSource& source : run.sources) LintFile(run, source);
}

}  // namespace veltrane::config
