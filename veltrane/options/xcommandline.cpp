#include "veltrane/options/xcommandline.h"

#include "veltrane/foundation/xraise.h"
#include "veltrane/options/detail/optionlookup.h"
#include "veltrane/platform/process/process.h"

using namespace veltrane;

namespace {

constexpr XSource Here{L".\\xcommandline"};

bool LooksLikeOption(const CString& argument) {
    return argument[0] == L'-';
}

// The two kinds of flags differ only in their words.
struct FlagKind {
    bool (*isValid)(const CString& value);
    XFormat<CString, CString> wrongWord;
};

constexpr FlagKind BOOLEAN_FLAG{IsValidBooleanString,
                                L"The option string <%s> for the boolean parameter <%s> is invalid!\r\n"
                                L"    <---- Try <-h> to view the help window! ---->"};
constexpr FlagKind TRILLIAN_FLAG{IsValidTrillianString,
                                 L"The option string <%s> for the tri-state parameter <%s> is invalid!\r\n"
                                 L"    <---- Try <-h> to view the help window! ---->"};

}  // namespace

XCommandLine::XCommandLine()
    : m_Arguments(std::make_shared<const std::vector<CString>>(GetArguments())),
      m_nArguments(static_cast<int>(m_Arguments->size())) {}

XCommandLine::~XCommandLine() = default;

XOptionDefinition* XCommandLine::GetFirst(CString& value) {
    m_nCurrent = 0;
    return GetNext(value);
}

XOptionDefinition* XCommandLine::GetNext(CString& value) {
    value.Empty();
    if (!Advance()) return nullptr;

    m_nNamed = m_nCurrent;
    const CString& argument = (*m_Arguments)[static_cast<std::size_t>(m_nCurrent)];
    if (!LooksLikeOption(argument)) {
        value = argument;
        return &detail::LibraryRow(eOptionName);
    }
    XOptionDefinition* const definition = FindOptionDefinition(argument);
    if (!definition) {
        throw About({.argument = argument}, MakeError(Here(L"XCommandLine::GetNext"),
                                                      L"command line option <%s> not recognized!\r\n"
                                                      L"    <---- Try <--help> to view the help window! ---->",
                                                      argument));
    }
    const bool isGiven = ReadValue(value);
    if (definition->IsBoolean() || definition->IsTrillian()) {
        if (!isGiven) value = definition->GetDefaultValue();
        const FlagKind& kind = definition->IsBoolean() ? BOOLEAN_FLAG : TRILLIAN_FLAG;
        if (!kind.isValid(value)) {
            throw About({.option = definition->szLongName, .argument = value},
                        MakeError(Here(L"XCommandLine::GetNext"), kind.wrongWord, value, argument));
        }
    } else if (!isGiven && definition->IsString() && !definition->IsValueOptional()) {
        Advance();  // the argument in place of the value counts as used
        throw About({.option = definition->szLongName}, MakeError(Here(L"XCommandLine::GetNext"),
                                                                  L"The option value for parameter <%s> is empty!\r\n"
                                                                  L"    <---- Try <-h> to view the help window! ---->",
                                                                  argument));
    }
    return definition;
}

bool XCommandLine::Advance() {
    if (m_nCurrent >= m_nArguments) return false;  // stays at the end
    return ++m_nCurrent < m_nArguments;
}

// Uses the next argument as value unless it is empty or looks like an option; such an argument is read again.
bool XCommandLine::ReadValue(CString& value) {
    if (m_nCurrent + 1 >= m_nArguments) return false;
    const CString& next = (*m_Arguments)[static_cast<std::size_t>(m_nCurrent) + 1];
    if (next.IsEmpty() || LooksLikeOption(next)) return false;
    value = next;
    ++m_nCurrent;
    return true;
}
