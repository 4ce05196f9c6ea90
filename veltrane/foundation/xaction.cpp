#include "veltrane/foundation/xaction.h"

#include <algorithm>
#include <charconv>
#include <climits>
#include <string>

#include "veltrane/foundation/xraise.h"
#include "veltrane/platform/process/process.h"
#include "veltrane/platform/text/format.h"
#include "veltrane/platform/text/numbers.h"

using namespace veltrane;
using namespace veltrane::detail;

namespace {

// The clock wraps, so all arithmetic on it is unsigned.
std::int32_t Sum(std::int32_t a, std::int32_t b) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) + static_cast<std::uint32_t>(b));
}

std::int32_t Since(std::int32_t start) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(TickCount()) - static_cast<std::uint32_t>(start));
}

struct Duration {
    std::int64_t days;
    int hours;
    int minutes;
    double seconds;

    explicit Duration(long milliseconds) {
        const double total = static_cast<double>(milliseconds) / 1000.0;
        const auto totalMinutes = static_cast<std::int64_t>(total / 60.0);
        const std::int64_t totalHours = totalMinutes / 60;
        days = totalHours / 24;
        hours = static_cast<int>(totalHours % 24);
        minutes = static_cast<int>(totalMinutes % 60);
        seconds = total - static_cast<double>(totalMinutes) * 60;
    }

    bool HasLargerUnit() const { return minutes > 0 || hours > 0 || days > 0; }
};

// The seconds, rounded from the exact binary value. A one-digit number gets a zero in front after a larger unit, and a
// blank when there are only seconds.
std::string SecondsText(const Duration& duration, int precision) {
    const int decimals = std::clamp(precision, 0, CString::MAX_LENGTH);
    const std::size_t width = decimals > 0 ? static_cast<std::size_t>(decimals) + 3 : 2;
    const bool isZeroFilled = duration.seconds < 10.0 && duration.HasLargerUnit();

    std::string text(width + 20, '\0');  // the seconds of the largest duration have less than 20 digits
    char* const begin = text.data();
    const auto end =
        std::to_chars(begin, begin + text.size(), duration.seconds, std::chars_format::fixed, decimals).ptr;
    text.resize(static_cast<std::size_t>(end - begin));
    if (text.size() >= width) return text;
    const bool isNegative = isZeroFilled && text.front() == '-';
    text.insert(isNegative ? 1 : 0, width - text.size(), isZeroFilled ? '0' : ' ');
    return text;
}

void AppendField(std::wstring& text, int number) {
    AppendTwoDigits(text, number);
    text += L':';
}

// The long words for hours, minutes and seconds are equally wide.
const wchar_t* UnitOf(const Duration& duration, bool isShort) {
    if (duration.days > 0) return isShort ? L" h" : L" hours";
    if (duration.hours > 0) return isShort ? L" h" : L" hours  ";
    if (duration.minutes > 0) return isShort ? L" m" : L" minutes";
    return isShort ? L" s" : L" seconds";
}

}  // namespace

XAction::~XAction() = default;

void XAction::Start() {
    m_nAccumulated = 0;
    Continue();
}

void XAction::Continue() {
    m_nStart = TickCount();
    m_bRunning = true;
}

void XAction::Stop() {
    m_nAccumulated = static_cast<std::int32_t>(Elapsed());
    m_nStart = 0;
    m_bRunning = false;
}

long XAction::Elapsed() const {
    return m_bRunning ? Sum(m_nAccumulated, Since(m_nStart)) : m_nAccumulated;
}

CString XAction::ElapsedStr() const {
    return TimeStr(Elapsed(), 1, /*shortUnits*/ false);
}

CString XAction::TimeStr(const long& value, const int& precision, bool shortUnits) {
    const Duration duration{value};
    const std::string seconds = SecondsText(duration, precision);
    std::wstring text;
    text.reserve(48);
    if (duration.days > 0) text += duration.days == 1 ? L"1 day and " : FormatText(L"%d days and ", duration.days);
    if (duration.days > 0 || duration.hours > 0) AppendField(text, duration.hours);
    if (duration.HasLargerUnit()) AppendField(text, duration.minutes);
    text.append(seconds.begin(), seconds.end()).append(UnitOf(duration, shortUnits));
    return CString{std::move(text)};
}

void XAction::TimeDHMS(int& days, int& hours, int& minutes, CString& seconds, const long& value, const int& precision) {
    const Duration duration{value};
    const std::string text = SecondsText(duration, precision);
    days = static_cast<int>(std::clamp<std::int64_t>(duration.days, INT_MIN, INT_MAX));
    hours = duration.hours;
    minutes = duration.minutes;
    seconds = CString{std::wstring(text.begin(), text.end())};
}

XAction& XAction::operator+=(const XAction& other) {
    if (m_bRunning || other.m_bRunning) {
        throw MakeError(XSource{L".\\xaction"}(L"XAction::operator +="),
                        L"Error adding two times: Cannot add times of still running actions!");
    }
    m_nAccumulated = Sum(m_nAccumulated, other.m_nAccumulated);
    return *this;
}
