#pragma once
// The host has a folder "platform" too.

struct HostText {
    const char* text;
};
