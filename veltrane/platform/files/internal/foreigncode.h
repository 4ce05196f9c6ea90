#pragma once

namespace veltrane::detail {

/// While one lives, code of a host runs on this thread in the middle of the library's own, such as the handler of a
/// box: anything kept to answer the next question may be out of date afterwards.
class ForeignCode {
public:
    ForeignCode() noexcept {
        ++s_nRunning;
        ++s_nRuns;
    }
    ForeignCode(const ForeignCode&) = delete;
    ForeignCode& operator=(const ForeignCode&) = delete;
    ~ForeignCode() { --s_nRunning; }

    static bool IsRunning() noexcept { return s_nRunning > 0; }
    static unsigned Runs() noexcept { return s_nRuns; }  ///< how many have begun on this thread

private:
    static constinit inline thread_local int s_nRunning = 0;
    static constinit inline thread_local unsigned s_nRuns = 0;
};

}  // namespace veltrane::detail
