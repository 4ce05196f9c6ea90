#pragma once

namespace veltrane::detail {

/// A value that is never destroyed: objects of a host may still read it while the process ends.
template <class T>
union XLasting {
    ~XLasting() {}

    T value{};
};

/// What a set gives for positions outside: a default value to read, and one that keeps what is written into it.
template <class T>
struct XSharedEmpty {
    const T constant{};
    T writable{};
};

}  // namespace veltrane::detail
