#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>
#include <type_traits>

namespace veltrane {

/// The key that a type was declared with, as error locations show it. The compiler does not give it, so a struct needs
/// a specialisation.
template <class T>
inline constexpr std::string_view XClassKey = std::is_class_v<T> ? "class " : "";

namespace detail {

template <class T>
consteval std::string_view FunctionName() {
    return __PRETTY_FUNCTION__;
}

/// Name of a type as the compiler spells it: the text in place of the name of a known type.
template <class T>
consteval std::string_view TypeName() {
    constexpr std::string_view known = FunctionName<void>();
    constexpr std::size_t front = known.rfind("void");
    constexpr std::size_t back = known.size() - front - std::string_view{"void"}.size();
    constexpr std::string_view name = FunctionName<T>();
    return name.substr(front, name.size() - front - back);
}

/// A literal as a template argument.
template <std::size_t Size>
struct Literal {
    consteval Literal(const char (&text)[Size]) { std::copy_n(text, Size, m_Text); }
    constexpr std::string_view View() const { return {m_Text, Size - 1}; }

    char m_Text[Size];
};

template <class T, Literal Template, Literal Operation>
consteval auto ComposeMethodName() {
    constexpr std::string_view parts[] = {Template.View(), "<", XClassKey<T>, TypeName<T>(), ">::", Operation.View()};
    constexpr std::size_t length = [&] {
        std::size_t sum = 0;
        for (const std::string_view part : parts) sum += part.size();
        return sum;
    }();
    std::array<wchar_t, length + 1> name{};
    auto out = name.begin();
    for (const std::string_view part : parts) out = std::copy(part.begin(), part.end(), out);
    return name;
}

/// "XSetP<class XStringPair>::Insert" of XStringPair, "XSetP", "Insert"; made by the compiler.
template <class T, Literal Template, Literal Operation>
inline constexpr auto MethodName = ComposeMethodName<T, Template, Operation>();

}  // namespace detail

}  // namespace veltrane
