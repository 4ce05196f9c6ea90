#pragma once

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <iterator>
#include <optional>
#include <span>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "veltrane/options/optionname.h"
#include "veltrane/options/xoption.h"
#include "veltrane/platform/text/encoding.h"

// Options by a name that the compiler looks up: it knows the type of the value and refuses a name that no option has.

namespace veltrane {

/// One of several values of an option.
template <class T>
struct OptionValue {
    int index;
    T value;
};

namespace detail {

// --- The kind of an option's value: its getter, and how an item is read ---

struct BooleanKind {
    static constexpr auto GETTER = &XOption::GetOptionBoolean;
    static bool Read(const XOptionItem& item) { return item.GetOptionBoolean(); }
};
struct TrillianKind {
    static constexpr auto GETTER = &XOption::GetOptionTrillian;
    static std::optional<bool> Read(const XOptionItem& item) {
        const enumFlags flag = item.GetOptionTrillian();
        return flag == eFlagAuto ? std::nullopt : std::optional{flag == eFlagTrue};
    }
};
struct ListKind {
    static constexpr auto GETTER = &XOption::GetOptionIList;
    static std::vector<int> Read(const XOptionItem& item) {
        const XSetInt& numbers = *item.GetOptionIList();
        return {numbers.begin(), numbers.end()};
    }
};
struct TextKind {
    static constexpr auto GETTER = &XOption::GetOptionString;
    static std::string Read(const XOptionItem& item) { return ToUtf8(item.GetOptionString()); }
};
struct CommandKind {
    static constexpr auto GETTER = &XOption::GetOptionItem;
    static std::string Read(const XOptionItem& item) { return ToUtf8(item.GetOptionCommand()); }
};

template <int Id>
consteval auto KindOf() {
    if constexpr ((Id & eBoolean) != 0) {
        return BooleanKind{};
    } else if constexpr ((Id & eTrillian) != 0) {
        return TrillianKind{};
    } else if constexpr ((Id & eIList) != 0) {
        return ListKind{};
    } else if constexpr ((Id & eString) != 0) {
        return TextKind{};
    } else {
        return CommandKind{};
    }
}

/// The row in the process for one that the compiler knows; a registered table is a copy.
/// @param place  of the row when it was found last; updated when it has moved
/// @return null while the table is not registered
VELTRANE_API const XOptionDefinition* FindKnownRow(const XOptionDefinition& known, std::atomic<int>& place);

/// An option that the compiler has looked up; does not compile for a name that none has or another number of values.
template <OptionName Name, const OwnTable& Table, Values Wanted>
class NamedOption {
    static constexpr int PLACE = std::max(0, PlaceOf<Table>(Name.View()));  // the title for a refused name
    // The class of a refusal tells the reason when the compiler instantiates it.
    // NOLINTNEXTLINE(bugprone-sizeof-expression)
    static_assert(sizeof(typename decltype(RefusalOf<Name, Table, Wanted>())::type) > 0);

public:
    static constexpr const XOptionDefinition& ROW = RowAt(Table, PLACE);
    using Kind = decltype(KindOf<ROW.eOption>());
    using Value = decltype(Kind::Read(std::declval<const XOptionItem&>()));

    static const XOptionDefinition* Row() { return FindKnownRow(ROW, s_Place); }

    /// The item with an index; null without one. What the getter refuses is refused here, with the getter's error.
    static const XOptionItem* Find(XOption& store, int index) {
        if (const XOptionDefinition* const row = Row(); row && (ROW.IsSingle() || index >= 0)) {
            const XOptionItem* const item = store.FindOptionItem(*row, index);
            if (item || !ROW.IsMandatory()) return item;
        }
        (store.*Kind::GETTER)(ROW.szLongName, index);  // throws
        return nullptr;
    }

    static auto Get(XOption& store, int index) {
        const XOptionItem* const item = Find(store, index);
        if constexpr (ROW.IsValueOptional()) {
            return item ? std::optional{Kind::Read(*item)} : std::nullopt;
        } else {
            return item ? Kind::Read(*item) : Value{};
        }
    }

    static const CString& GetText(XOption& store, int index) {
        constexpr bool isRefused = !ROW.IsString() && !IsTitle(ROW);
        // NOLINTNEXTLINE(bugprone-sizeof-expression)
        static_assert(sizeof(std::conditional_t<isRefused, HasNoText<Spell<Name>>, NotRefused>) > 0);
        const XOptionItem* const item = Find(store, index);
        if (!ROW.IsValueOptional()) return item ? item->GetOptionString() : ROW.GetDefaultValue();  // which is empty
        if (!item) return g_BooleanStrings[0];
        return item->GetOptionString().IsEmpty() ? g_BooleanStrings[1] : item->GetOptionString();
    }

private:
    static constinit inline std::atomic<int> s_Place = PLACE;
};

/// The values of an option in the order of its items. Allocates nothing and leaves the marks of the store's walks
/// alone, so nested loops and walks do not disturb each other. Keeps its position when items are inserted or deleted in
/// between.
template <class Option>
class OptionValues {
public:
    using Value = OptionValue<typename Option::Value>;

    class Iterator {
    public:
        using value_type = Value;
        using difference_type = std::ptrdiff_t;

        Iterator(const XOption& store, const XOptionDefinition& row) : m_pStore(&store), m_pRow(&row) { Look(); }

        Value operator*() const { return {m_pItem->GetOptionIndex(), Option::Kind::Read(*m_pItem)}; }
        Iterator& operator++() {
            ++m_nItem;
            Look();
            return *this;
        }
        void operator++(int) { ++*this; }
        bool operator==(std::default_sentinel_t) const { return !m_pItem; }

    private:
        void Look() {
            const auto items = m_pStore->GetOptionItems(*m_pRow);
            m_pItem = m_nItem < items.size() ? items[m_nItem] : nullptr;
        }

        const XOption* m_pStore;
        const XOptionDefinition* m_pRow;
        std::size_t m_nItem = 0;
        const XOptionItem* m_pItem = nullptr;
    };

    /// @throws XException  the table is not registered
    explicit OptionValues(XOption& store) : m_pStore(&store), m_pRow(Option::Row()) {
        if (!m_pRow) m_pRow = store.GetOptionDefinition(Option::ROW.szLongName);  // throws
    }
    Iterator begin() const { return {*m_pStore, *m_pRow}; }
    std::default_sentinel_t end() const { return {}; }

private:
    const XOption* m_pStore;
    const XOptionDefinition* m_pRow;
};

}  // namespace detail

/// The options of a store by names that the compiler looks up in the library's table and in that of a tool, which must
/// be registered (OwnOptions). The type follows the row:
///
///   text                              std::string, UTF-8
///   text whose value may be left out  std::optional<std::string>: none when not given, "" when given bare
///   boolean                           bool
///   tri-state                         std::optional<bool>: none for auto
///   integer list                      std::vector<int>, in the order of the list
///   command without another type      std::string: its value
///
/// A value without an item is "", none, false or an empty list. Errors are those of the getters of XOption: a mandatory
/// option without an item, an index below 0, an option that is not registered. Not accepted by the compiler: a name
/// that no option has, one of several values without an index, an index or All for a single option.
/// @code
/// using Options = veltrane::TypedOptions<OWN_TABLE>;
/// const Options options{store};
/// if (options.Get<"dry-run">()) Show(options.Get<"unit">());
/// for (const auto& [index, file] : options.All<"source">()) Read(file);
/// @endcode
template <const OwnTable& Table = LIBRARY_ALONE>
class TypedOptions {
public:
    /// The store must live longer.
    explicit TypedOptions(XOption& store) : m_pStore(&store) {}

    template <OptionName Name>
    auto Get() const {
        return One<Name>::Get(*m_pStore, -1);
    }
    /// @param index  number of the value, from 0
    template <OptionName Name>
    auto Get(int index) const {
        return OneOfSeveral<Name>::Get(*m_pStore, index);
    }

    /// The text itself, as XOption::GetOptionString gives it: if the value may be left out, "true" given bare and
    /// "false" not given. Belongs to the store, valid until the item is deleted or gets another value.
    template <OptionName Name>
    const CString& GetText() const {
        return One<Name>::GetText(*m_pStore, -1);
    }
    template <OptionName Name>
    const CString& GetText(int index) const {
        return OneOfSeveral<Name>::GetText(*m_pStore, index);
    }

    /// All values of an option with several: `index` and `value` of each; a text that was left out is "".
    template <OptionName Name>
    auto All() const {
        return detail::OptionValues<OneOfSeveral<Name>>{*m_pStore};
    }

    /// Whether the option has an item, mandatory or not.
    template <OptionName Name>
    bool Has() const {
        const detail::OptionValues<Option<Name, detail::Values::Any>> values{*m_pStore};
        return values.begin() != values.end();
    }

    /// Where the value comes from, as XOption::GetOptionOrigin tells it; the host without an item.
    template <OptionName Name>
    OptionOrigin Origin() const {
        return m_pStore->GetOptionOrigin(One<Name>::Find(*m_pStore, -1));
    }
    template <OptionName Name>
    OptionOrigin Origin(int index) const {
        return m_pStore->GetOptionOrigin(OneOfSeveral<Name>::Find(*m_pStore, index));
    }

private:
    template <OptionName Name, detail::Values Wanted>
    using Option = detail::NamedOption<Name, Table, Wanted>;
    template <OptionName Name>
    using One = Option<Name, detail::Values::One>;
    template <OptionName Name>
    using OneOfSeveral = Option<Name, detail::Values::Several>;

    XOption* m_pStore;
};

// The same for a store at hand: veltrane::Get<"logfile">(options), veltrane::Get<"source", OWN_TABLE>(options, 2).

template <OptionName Name, const OwnTable& Table = LIBRARY_ALONE, class... Index>
auto Get(XOption& store, Index... index) {
    return TypedOptions<Table>{store}.template Get<Name>(index...);
}
template <OptionName Name, const OwnTable& Table = LIBRARY_ALONE, class... Index>
const CString& GetText(XOption& store, Index... index) {
    return TypedOptions<Table>{store}.template GetText<Name>(index...);
}
template <OptionName Name, const OwnTable& Table = LIBRARY_ALONE>
auto All(XOption& store) {
    return TypedOptions<Table>{store}.template All<Name>();
}
template <OptionName Name, const OwnTable& Table = LIBRARY_ALONE>
bool Has(XOption& store) {
    return TypedOptions<Table>{store}.template Has<Name>();
}
template <OptionName Name, const OwnTable& Table = LIBRARY_ALONE, class... Index>
OptionOrigin Origin(XOption& store, Index... index) {
    return TypedOptions<Table>{store}.template Origin<Name>(index...);
}

}  // namespace veltrane
