#pragma once

#include <functional>

#include "veltrane/platform/text/cstring.h"

namespace veltrane {

/// One question to a configuration source and its answer.
struct SourceEvent {
    enum class Source { Profile, Registry, Environment };
    Source source = Source::Profile;
    CString file;  ///< file that was asked, as named by the caller; empty for the environment
    int line = 0;  ///< line of the answer from 1; 0 when nothing was found or the answer has no line of its own
    CString section;
    CString key;
    CString value;
    bool found = false;
};

using SourceTrace = std::function<void(const SourceEvent&)>;

/// Installs an observer that is told every question to a profile file, the registry or the environment; an empty one
/// ends the observation. It changes no result: what it throws is dropped, and what it asks itself is not reported.
/// While none is set, no lines are counted. One observer serves all threads and is called in the one that asks; a call
/// that has begun may go on while another observer is installed. @return the observer before
VELTRANE_API SourceTrace SetSourceTrace(SourceTrace trace);

}  // namespace veltrane
