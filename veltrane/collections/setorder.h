#pragma once

#include <algorithm>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <type_traits>
#include <utility>
#include <vector>

#include "veltrane/platform/text/cstring.h"
#include "veltrane/platform/text/orderkey.h"

namespace veltrane::detail {

/// Types whose own order is known: total, the same from call to call, and without exceptions.
template <class T>
concept XKnownOrder = std::integral<T> || std::same_as<T, CString>;

/// Negative, 0 or positive in that order.
template <XKnownOrder T>
int CompareKnown(const T& a, const T& b) noexcept {
    if constexpr (std::integral<T>) {
        return (b < a) - (a < b);
    } else {
        return a.Compare(b);
    }
}

/// A number for a value: of two values with different numbers, the one with the smaller number is less.
template <class T>
std::uint64_t OrderNumber(const T& value) noexcept {
    if constexpr (std::integral<T>) {
        return static_cast<std::uint64_t>(value) + (std::is_signed_v<T> ? std::uint64_t{1} << 63 : 0);
    } else if constexpr (XKnownOrder<T>) {
        return OrderKey(value.View());
    } else {
        return 0;
    }
}

/// Stands for an element while a set is sorted. The numbers, which are next to each other in memory, decide most
/// comparisons without reading the elements.
template <class Element>
struct XEntry {
    using Value = std::remove_cvref_t<decltype(std::declval<Element&>().GetValue())>;

    std::uint64_t number = 0;
    Element* element = nullptr;

    bool operator<(const XEntry& other) const noexcept {
        if (number != other.number) return number < other.number;
        if constexpr (std::integral<Value>) {
            return false;
        } else if constexpr (XKnownOrder<Value>) {
            return CompareKnown(element->GetValue(), other.element->GetValue()) < 0;
        } else {
            return *element < *other.element;
        }
    }
};

/// Sorts by a relation that may contradict itself: then only the order is wrong, whereas std::sort and the heaps may
/// read outside the array. Only the borders of the runs decide what is read, and each pass puts every item of the one
/// before in exactly one place. Keeps equal items in order.
/// @throws what the relation throws; the caller's items stay as they are: the result is a new array
template <class Item, class Less>
std::vector<Item> MergeSorted(std::vector<Item> items, Less less) {
    const std::size_t size = items.size();
    std::vector<Item> merged(size);
    for (std::size_t width = 1; width < size; width *= 2) {
        for (std::size_t begin = 0; begin < size; begin += 2 * width) {
            const std::size_t middle = std::min(begin + width, size);
            const std::size_t end = std::min(middle + width, size);
            std::size_t left = begin;
            std::size_t right = middle;
            for (std::size_t out = begin; out < end; ++out) {
                const bool takeRight = left == middle || (right < end && less(items[right], items[left]));
                merged[out] = items[takeRight ? right++ : left++];
            }
        }
        items.swap(merged);
    }
    return items;
}

/// The elements in ascending order: by a comparison, or without one by the `<` of their values.
/// @throws what the comparison throws
template <class Element, class Comparison = std::nullptr_t>
std::vector<XEntry<Element>> InOrder(std::span<Element> elements, Comparison comparison = nullptr) {
    using Entry = XEntry<Element>;
    std::vector<Entry> entries;
    entries.reserve(elements.size());
    for (Element& element : elements) entries.push_back({OrderNumber(element.GetValue()), &element});
    if constexpr (!std::is_null_pointer_v<Comparison>) {
        const auto less = [&](const Entry& a, const Entry& b) { return comparison(*a.element, *b.element) < 0; };
        if (comparison) return MergeSorted(std::move(entries), less);
    }
    if constexpr (!XKnownOrder<typename Entry::Value>) return MergeSorted(std::move(entries), std::less<Entry>{});
    std::sort(entries.begin(), entries.end());
    return entries;
}

/// Puts elements in the order of the entries that stand for them. Addresses stay valid: each place keeps its storage.
/// @throws what copying throws, for elements that cannot be moved without exceptions; all of them are then in new
/// storage
template <class Element>
void Arrange(std::vector<Element>& elements, const std::vector<XEntry<Element>>& order) {
    std::vector<Element> arranged;
    arranged.reserve(order.size());
    for (const XEntry<Element>& entry : order) arranged.push_back(std::move_if_noexcept(*entry.element));
    if constexpr (std::is_nothrow_move_constructible_v<Element>) {
        for (std::size_t i = 0; i < arranged.size(); ++i) elements[i].Renew(std::move(arranged[i]));
    } else {
        try {
            for (std::size_t i = 0; i < arranged.size(); ++i) elements[i].Assign(arranged[i]);
        } catch (...) {
            elements.swap(arranged);
            throw;
        }
    }
}

/// Binary search among `size` ascending elements for one for which compare gives 0; it gives a negative number for
/// elements after the one that is looked for. @return its position, -1 if there is none
template <class ElementAt, class Compare>
int FindInHalves(int size, ElementAt elementAt, Compare compare) {
    for (int low = 0, high = size - 1; low <= high;) {
        const int middle = (high - low) / 2 + low;
        const int order = compare(elementAt(middle));
        if (order == 0) return middle;
        if (order < 0) {
            high = middle - 1;
        } else {
            low = middle + 1;
        }
    }
    return -1;
}

}  // namespace veltrane::detail
