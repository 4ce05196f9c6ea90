#pragma once

#include <stdexcept>

#include "support/support.h"
#include "veltrane/collections/XSet.h"

using Ints = std::vector<int>;
using Texts = std::vector<CString>;

/// A set that holds these values in this order.
template <class T, class Set = XSet<T>>
Set SetOf(const std::vector<T>& values) {
    Set set;
    for (const T& value : values) set.Insert(value, /*unique*/ false);
    return set;
}

template <class T>
std::vector<T> ValuesOf(const XSet<T>& set) {
    std::vector<T> values;
    for (int i = 0; i < set.Size(); ++i) values.push_back(set.GetConstRefAt(i));
    return values;
}

/// A number that counts its copies, and whose actions of one kind fail once when its mood says so.
struct Moody {
    enum Action { NONE, COPY, ASSIGN, LESS, DEFAULT, FLAG, DESTROY };
    static inline std::pair<Action, int> mood;  // the action that throws, and at which call from now on
    static inline int copies = 0;

    static int Try(Action action, int result) {
        copies += action == COPY;
        if (action == mood.first && --mood.second == 0) throw std::runtime_error("moody");
        return result;
    }

    Moody() : value(Try(DEFAULT, 0)) {}
    Moody(int number) : value(number) {}
    Moody(const Moody& other) : value(Try(COPY, other.value)) {}
    Moody(Moody&& other) noexcept : value(std::exchange(other.value, -1)) {}
    Moody& operator=(const Moody& other) { return *this = Moody{other}; }
    Moody& operator=(Moody&& other) noexcept(false) {
        Try(ASSIGN, 0);
        value = std::exchange(other.value, -1);
        return *this;
    }
    bool operator<(const Moody& other) const { return Try(LESS, value) < other.value; }
    bool operator==(const Moody& other) const { return value == other.value; }

    int value;
};
