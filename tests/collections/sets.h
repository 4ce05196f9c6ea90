#pragma once

#include "support/support.h"
#include "veltrane/collections/XSet.h"

using namespace veltrane;
using namespace veltrane::detail;

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
