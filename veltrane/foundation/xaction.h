#pragma once

#include <cstdint>

#include "veltrane/foundation/xexception.h"
#include "veltrane/platform/text/cstring.h"

/// A stopwatch that adds up its intervals, and the text of durations. Durations are milliseconds of real time. A
/// measured one is kept in 32 bits: after 24.8 days it continues from the smallest negative number.
/// @code
/// XAction action;
/// action.Start();
/// LoadDictionary();
/// action.Stop();
/// log.WriteLog(action.ElapsedStr(), true, true);  // " 5.3 seconds"
/// @endcode
class VELTRANE_API XAction {
public:
    XAction() = default;
    XAction(const XAction&) = default;
    XAction& operator=(const XAction&) = default;
    virtual ~XAction();

    void Start();     ///< begins a new measurement
    void Continue();  ///< begins another interval of the measurement
    void Stop();      ///< ends the interval; no effect when none is running

    [[nodiscard]] long Elapsed() const;  ///< all intervals, the running one included
    [[nodiscard]] CString ElapsedStr() const;

    /// Text of a duration: "01:02:03.5 hours  ", " 5.3 seconds", "2 days and 02:00:00.0 h". Seconds that round up to 60
    /// stay 60.
    /// @param precision  decimals of the seconds; none for 0 and below
    /// @throws std::length_error  more decimals than a text can hold
    static CString TimeStr(const long& value, const int& precision, bool shortUnits);
    /// The parts of a duration; days outside int are the nearest int.
    static void TimeDHMS(int& days, int& hours, int& minutes, CString& seconds, const long& value,
                         const int& precision);

    /// Adds the time of another action. @throws XException  one of the two is still running; nothing changes then
    XAction& operator+=(const XAction& other);

private:
    std::int32_t m_nStart = 0;
    std::int32_t m_nAccumulated = 0;
    bool m_bRunning = false;
};
