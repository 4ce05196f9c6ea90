#include "unifieddiff.h"

#include <algorithm>
#include <vector>

namespace veltrane::config {

namespace {

constexpr std::size_t CONTEXT = 3;  // lines shown around a change

using Lines = std::vector<std::string_view>;

Lines SplitLines(std::string_view text) {
    Lines lines;
    while (!text.empty()) {
        const std::size_t length = std::min(text.find('\n'), text.size() - 1) + 1;
        lines.push_back(text.substr(0, length));
        text.remove_prefix(length);
    }
    return lines;
}

struct DiffLine {
    char sign;  // ' ', '-' or '+'
    std::string_view text;

    bool IsChange() const { return sign != ' '; }
};

class Merged {
public:
    Merged(const Lines& before, const Lines& after) : m_Before(before), m_After(after) {
        while (m_nBefore < before.size() || m_nAfter < after.size()) {
            if (IsSame(0, 0)) {
                m_Lines.push_back({' ', before[m_nBefore++]});
                ++m_nAfter;
            } else {
                AddChange();
            }
        }
    }
    const std::vector<DiffLine>& Result() const { return m_Lines; }

private:
    bool IsSame(std::size_t skipped, std::size_t added) const {
        return m_nBefore + skipped < m_Before.size() && m_nAfter + added < m_After.size() &&
               m_Before[m_nBefore + skipped] == m_After[m_nAfter + added];
    }

    // Adds the lines before the next common one that skips the fewest lines.
    void AddChange() {
        const std::size_t left = m_Before.size() - m_nBefore;
        const std::size_t right = m_After.size() - m_nAfter;
        for (std::size_t count = 1; count < left + right; ++count) {
            for (std::size_t removed = count - std::min(count, right); removed <= std::min(count, left); ++removed) {
                if (IsSame(removed, count - removed)) return AddChange(removed, count - removed);
            }
        }
        AddChange(left, right);
    }

    void AddChange(std::size_t removed, std::size_t added) {
        while (removed-- > 0) m_Lines.push_back({'-', m_Before[m_nBefore++]});
        while (added-- > 0) m_Lines.push_back({'+', m_After[m_nAfter++]});
    }

    const Lines& m_Before;
    const Lines& m_After;
    std::size_t m_nBefore = 0;
    std::size_t m_nAfter = 0;
    std::vector<DiffLine> m_Lines;
};

std::string RangeText(std::size_t linesInFront, std::size_t count) {
    const std::string start = std::to_string(linesInFront + (count > 0 ? 1 : 0));
    return count == 1 ? start : start + ',' + std::to_string(count);
}

std::size_t CountWithout(const DiffLine* first, const DiffLine* last, char sign) {
    return static_cast<std::size_t>(std::count_if(first, last, [&](const auto& line) { return line.sign != sign; }));
}

void AddHunk(std::string& text, const std::vector<DiffLine>& lines, const DiffLine* first, const DiffLine* last) {
    text += "@@ -" + RangeText(CountWithout(lines.data(), first, '+'), CountWithout(first, last, '+')) + " +" +
            RangeText(CountWithout(lines.data(), first, '-'), CountWithout(first, last, '-')) + " @@\n";
    for (const DiffLine* line = first; line != last; ++line) {
        text += line->sign;
        text += line->text;
        if (!line->text.ends_with('\n')) text += "\n\\ No newline at end of file\n";
    }
}

}  // namespace

std::string UnifiedDiff(const std::string& name, std::string_view before, std::string_view after) {
    const Lines removed = SplitLines(before);
    const Lines added = SplitLines(after);
    const std::vector<DiffLine> lines = Merged{removed, added}.Result();
    const DiffLine* const end = lines.data() + lines.size();
    const auto nextChange = [&](const DiffLine* from) { return std::ranges::find_if(from, end, &DiffLine::IsChange); };
    std::string text;
    for (const DiffLine* change = nextChange(lines.data()); change != end;) {
        const DiffLine* const first = change - std::min<std::ptrdiff_t>(CONTEXT, change - lines.data());
        const DiffLine* last = change;
        while (change != end && change - last <= std::ptrdiff_t{2 * CONTEXT}) change = nextChange(last = change + 1);
        AddHunk(text, lines, first, last + std::min<std::ptrdiff_t>(CONTEXT, end - last));
    }
    return text.empty() ? text : "--- " + name + "\n+++ " + name + '\n' + text;
}

}  // namespace veltrane::config
