#pragma once

#include <stdexcept>

/// A value that counts its copies, and whose copy, assignment, comparison or default value throws when told to.
struct Moody {
    static inline int copies = 0;
    static inline int failCopyAt = 0;  // the how-manieth copy from now on throws; 0 none
    static inline bool failAssign = false;
    static inline bool failLess = false;
    static inline int failDefaults = 0;

    static void Reset() {
        copies = failCopyAt = failDefaults = 0;
        failAssign = failLess = false;
    }

    Moody() {
        if (failDefaults > 0 && failDefaults-- > 0) throw std::runtime_error("default");
    }
    Moody(int number) : value(number) {}
    Moody(const Moody& other) : value(other.value) { Count(); }
    Moody(Moody&& other) noexcept : value(other.value) { other.value = -1; }
    Moody& operator=(const Moody& other) {
        if (failAssign) throw 1;
        value = other.value;
        Count();
        return *this;
    }
    Moody& operator=(Moody&& other) {
        if (failAssign) throw 1;
        value = other.value;
        other.value = -1;
        return *this;
    }
    bool operator<(const Moody& other) const {
        if (failLess) throw std::runtime_error("less");
        return value < other.value;
    }

    int value = 0;

private:
    static void Count() {
        ++copies;
        if (failCopyAt > 0 && --failCopyAt == 0) throw std::runtime_error("copy");
    }
};
