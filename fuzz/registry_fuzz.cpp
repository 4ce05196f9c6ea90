// Input: a line with the path of the key, one with the name of the value, then the export.
#include <algorithm>
#include <vector>

#include "fuzz_input.h"
#include "veltrane/platform/sources/winreg.h"

using namespace veltrane;
using namespace veltrane::detail;

namespace {

using Bytes = std::vector<unsigned char>;

void RequireValue(HKEY key, const wchar_t* name) {
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

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const MemoryFile file;
    std::string_view input = InputText(data, size);
    const CString path = FromUtf8(TakeLine(input));
    const CString name = FromUtf8(TakeLine(input));
    file.Write(input);
    SetRegistryFile(file.Name());

    HKEY key = nullptr;
    const long result = RegOpenKeyExW(HKEY_LOCAL_MACHINE, path.GetString(), 0, KEY_READ, &key);
    if (result != ERROR_SUCCESS) {
        REQUIRE(result == ERROR_FILE_NOT_FOUND && !key);
        return 0;
    }
    file.Write("");  // an open key keeps its values
    RequireValue(key, name.GetString());
    RequireValue(key, nullptr);
    REQUIRE(RegCloseKey(key) == ERROR_SUCCESS);
    REQUIRE(RegCloseKey(key) == ERROR_INVALID_HANDLE);
    return 0;
}
