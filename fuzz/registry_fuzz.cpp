// Input: a line with the path of the key, one with the name of the value, then the export. Every answer is compared
// with that of a reader that goes over the whole file, character by character. A line is marked as answering exactly
// when a question finds it.
#include <algorithm>
#include <vector>

#include "fuzz_input.h"
#include "fuzz_registry.h"
#include "veltrane/platform/sources/internal/linenumbers.h"
#include "veltrane/platform/sources/sourcelines.h"
#include "veltrane/platform/sources/winreg.h"

using namespace veltrane;
using namespace veltrane::detail;

namespace {

void RequireValue(HKEY key, const Text& name, const RegistryModel::Key& expected) {
    std::uint32_t size = 77;
    std::uint32_t type = 0;
    const auto found = expected.find(Folded(name.c_str()));
    const long result = RegQueryValueExW(key, name.c_str(), nullptr, &type, nullptr, &size);
    if (found == expected.end()) {
        REQUIRE(result == ERROR_FILE_NOT_FOUND && size == 77);
        return;
    }
    REQUIRE(result == ERROR_SUCCESS && type == found->second.type && size == found->second.bytes.size());
    Bytes bytes(size);
    REQUIRE(RegQueryValueExW(key, name.c_str(), nullptr, nullptr, bytes.data(), &size) == ERROR_SUCCESS);
    REQUIRE(bytes == found->second.bytes);
}

/// Asks for the first keys and values of the export, each name also of the keys that do not have it.
void RequireAllAnswers(const RegistryModel::Keys& keys) {
    constexpr int most = 12;
    int asked = 0;
    for (const auto& [path, values] : keys) {
        if (path.find(L'\0') != path.npos) continue;
        if (++asked > most) break;
        HKEY key = nullptr;
        REQUIRE(RegOpenKeyExW(HKEY_LOCAL_MACHINE, path.c_str(), 0, KEY_READ, &key) == ERROR_SUCCESS);
        int others = 0;
        for (const auto& [otherPath, otherValues] : keys) {
            if (++others > most) break;
            for (const auto& [name, value] : otherValues) RequireValue(key, name.substr(0, name.find(L'\0')), values);
        }
        RegCloseKey(key);
    }
}

void RequireBuffer(HKEY key, const wchar_t* name) {
    std::uint32_t size = 77;
    std::uint32_t type = 0;
    const long result = RegQueryValueExW(key, name, nullptr, &type, nullptr, &size);
    if (result != ERROR_SUCCESS) {
        REQUIRE(result == ERROR_FILE_NOT_FOUND && size == 77);
        return;
    }
    const std::uint32_t needed = size;
    Bytes bytes(needed + 2, 0xAA);
    if (needed > 0) {
        size = needed - 1;
        REQUIRE(RegQueryValueExW(key, name, nullptr, nullptr, bytes.data(), &size) == ERROR_MORE_DATA);
        REQUIRE(size == needed);
        REQUIRE(std::ranges::all_of(bytes, [](unsigned char byte) { return byte == 0xAA; }));
    }
    std::uint32_t typeOfData = ~type;
    REQUIRE(RegQueryValueExW(key, name, nullptr, &typeOfData, bytes.data(), &size) == ERROR_SUCCESS);
    REQUIRE(size == needed && typeOfData == type);
    REQUIRE(bytes[needed] == 0xAA && bytes[needed + 1] == 0xAA);

    const CString text = RegistryText(bytes.data(), needed);
    REQUIRE(text.GetLength() <= static_cast<int>(needed / 2 + 1));
    REQUIRE(text.Find(L'\0') < 0);
}

/// The line that answers a question, 0 without an answer.
int LineOfAnswer(const SourceLine& line, CString& value) {
    HKEY key = nullptr;
    if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, line.section.GetString(), 0, KEY_READ, &key) != ERROR_SUCCESS) return 0;
    Bytes bytes(8192);
    auto size = static_cast<std::uint32_t>(bytes.size());
    if (RegQueryValueExW(key, line.key.GetString(), nullptr, nullptr, bytes.data(), &size) != ERROR_SUCCESS) size = 0;
    value = RegistryText(bytes.data(), size);
    CString file;
    const int number = FindRegistryLine(key, line.key.GetString(), file);
    RegCloseKey(key);
    return number;
}

void RequireLines(const CString& file) {
    using Kind = SourceLine::Kind;
    const auto view = ReadRegistryLines(file);
    const auto most = static_cast<std::ptrdiff_t>(std::min<std::size_t>(50, view.lines.size()));
    for (const SourceLine& line : std::vector<SourceLine>{view.lines.begin(), view.lines.begin() + most}) {
        HKEY key = nullptr;
        if (line.kind == Kind::Section && line.answers) {
            REQUIRE(RegOpenKeyExW(HKEY_LOCAL_MACHINE, line.section.GetString(), 0, KEY_READ, &key) == ERROR_SUCCESS);
            RegCloseKey(key);
        }
        if (line.kind != Kind::Entry) continue;
        CString value;
        REQUIRE((LineOfAnswer(line, value) == line.number) == line.answers);
        REQUIRE(!line.answers || value == line.value);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const MemoryFile file;
    std::string_view input = InputText(data, size);
    const CString path = FromUtf8(NextLine(input));
    const CString name = FromUtf8(NextLine(input));
    file.Write(input);
    SetRegistryFile(file.Name());
    RequireLines(file.Name());
    const RegistryModel model{Decoded(input)};
    RequireAllAnswers(model.keys);

    Text asked = Folded(Text{path.GetString()});
    if (asked.size() > 1 && asked.ends_with(L'\\')) asked.pop_back();
    const auto expected = model.keys.find(asked);
    HKEY key = nullptr;
    const long result = RegOpenKeyExW(HKEY_LOCAL_MACHINE, path.GetString(), 0, KEY_READ, &key);
    if (result != ERROR_SUCCESS) {
        REQUIRE(result == ERROR_FILE_NOT_FOUND && !key && expected == model.keys.end());
        return 0;
    }
    REQUIRE(expected != model.keys.end());
    file.Write("");  // an open key keeps its values
    RequireBuffer(key, name.GetString());
    RequireBuffer(key, nullptr);
    RequireValue(key, name.GetString(), expected->second);
    REQUIRE(RegCloseKey(key) == ERROR_SUCCESS);
    REQUIRE(RegCloseKey(key) == ERROR_INVALID_HANDLE);
    return 0;
}
