// Input: the arguments after the program, one a line. The walk must end, give rows and values that fit them, and give
// the same again from the start.
#include <utility>
#include <vector>

#include "fuzz_input.h"
#include "veltrane/foundation/xexception.h"
#include "veltrane/options/xcommandline.h"
#include "veltrane/platform/process/process.h"

using namespace veltrane;
using namespace veltrane::detail;

namespace {

using Pairs = std::vector<std::pair<const XOptionDefinition*, CString>>;

// The pairs up to the end or to the first error, whose text then is the last value.
Pairs Walk(XCommandLine& line, std::size_t limit) {
    Pairs pairs;
    CString value;
    try {
        for (auto* option = line.GetFirst(value); option; option = line.GetNext(value)) {
            REQUIRE(pairs.size() < limit);
            REQUIRE(value[0] != L'-');
            REQUIRE(!option->IsBoolean() || IsValidBooleanString(value));
            REQUIRE(!option->IsTrillian() || IsValidTrillianString(value));
            REQUIRE(!option->IsString() || option->IsValueOptional() || option->eOption == eOptionName ||
                    !value.IsEmpty());
            pairs.emplace_back(option, value);
        }
        REQUIRE(value.IsEmpty());
    } catch (const XException& error) {
        REQUIRE(error.GetNumber() == -1 && error.GetMessage().Find(L"<---- Try <-") > 0);
        pairs.emplace_back(nullptr, error.GetMessage());
    }
    return pairs;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::vector<CString> arguments = {L"program"};
    for (std::string_view input = InputText(data, size); !input.empty();) {
        arguments.push_back(FromUtf8(NextLine(input)));
    }
    const std::size_t count = arguments.size();
    SetArguments(std::move(arguments));
    XCommandLine line;
    const Pairs pairs = Walk(line, count);
    REQUIRE(Walk(line, count) == pairs);
    return 0;
}
