#pragma once

#include <cstddef>
#include <iterator>
#include <string_view>

// What lint can find. Its report, --code, --explain and the man page use these rows, and the tests compare the manual
// with them.

namespace veltrane::config {

enum class Severity { Error, Warning, Note };

inline constexpr const char* SEVERITIES[] = {"error", "warning", "note"};

/// The part of a line that a finding is about.
enum class LinePart { Line, Section, Key, Value };

inline constexpr const char* LINE_PARTS[] = {"line", "section", "key", "value"};

/// One for each row of LINTS.
// clang-format off
enum class LintCode { C01, C02, C03, C04, C05, C06, C07, C08, C09, C10, C11, C12, C13, C14, C15, C16, C17, C18, C19, C20, C21, C22, C23 };
// clang-format on

struct LintRow {
    const char* name;
    Severity severity;        ///< of its findings, unless one is less certain or less serious
    LinePart part;            ///< the part of an entry that its findings are about, unless one sets another
    const char* title;        ///< in lower case, without a full stop
    const char* explanation;  ///< what it means, an example, why, and what to write instead; sentences of one paragraph
};

inline constexpr LintRow LINTS[] = {
    {"C01", Severity::Warning, LinePart::Section, "section that nothing reads",
     "No option belongs in a section of this name, as in [USR] for [USER], so nothing in it is "
     "read. The sections are those of the table of options and those of the database; any "
     "other section with a key of a database is taken as that of another database. Correct "
     "the name, or the name of the database on the command line, or remove the section."},
    {"C02", Severity::Warning, LinePart::Key, "unknown key",
     "The key is no option and no %reference% names it, as in lodfile=run.log. The tool asks "
     "only for the keys it knows, so a misspelt one has no effect. Correct it, or put a ';' "
     "in front of the line."},
    {"C03", Severity::Warning, LinePart::Key, "key in the wrong section or form",
     "The option is looked for in one section only, as quiet in [USER], and several values "
     "carry their index either in the key (load-dictionary-1) or in the section's name "
     "([base\\FILES\\1]). Move the key to the section that is suggested, or write it so."},
    {"C04", Severity::Warning, LinePart::Key, "section or key given twice",
     "The first section of a name answers alone, and in it the first key of a name, even if "
     "it is empty. What follows under the same name is ignored. Join the two."},
    {"C05", Severity::Warning, LinePart::Value, "word that a flag does not know",
     "A flag is 'true' or 'false', one with three states also 'auto'. Any other text, as in "
     "quiet=yes or quiet=true ; for now, counts as false (auto). Write one of the words, and "
     "comments on lines of their own."},
    {"C06", Severity::Warning, LinePart::Value, "list entry that is not a number",
     "A list consists of positive numbers with commas between, as in 12, 14. An entry that "
     "begins with no number is skipped, '12y' is read as 12, and a number above 2147483647 as "
     "2147483647. Write the number."},
    {"C07", Severity::Error, LinePart::Key, "mandatory option without a value",
     "The tool stops without it. It is reported where the value was probably meant: at a misspelt "
     "key or section, at an empty value of the registry, else at the section that should have "
     "it. Give the option a value there."},
    {"C08", Severity::Error, LinePart::Key, "index given twice",
     "Each index of an option with several values may be given once in both files together; "
     "map-file 1 and map-file 01 are the same. The tool stops at the second one. Change one of "
     "the indexes."},
    {"C09", Severity::Error, LinePart::Value, "reference that leads nowhere",
     "%name% is replaced by the key of that name in the same section, then in [ROOT], then by an "
     "environment variable or an option of the tool. One that finds none, leads back to itself "
     "or names an option with several values stops the tool; in a value that is not used it "
     "waits until the value is, which is a note. Correct the name."},
    {"C10", Severity::Warning, LinePart::Value, "reference to an option without a value",
     "In place of %name% the tool puts the list of all sections when the option is known and has "
     "no value. Refer to an option that has one, or give it a value."},
    {"C11", Severity::Warning, LinePart::Value, "text longer than the readers take",
     "The readers take 2047 characters of a value and 2046 of a list of the names of keys or "
     "sections. What follows is cut off; families and rules after the end of a list are not "
     "seen. Shorten the names, or split the section."},
    {"C12", Severity::Note, LinePart::Key, "value that comes too late",
     "Start-up needs folders and user file before it opens the files, so what a file says of "
     "them has no effect there. Give them on the command line, in the registry or, for options "
     "of [ROOT], in the environment."},
    {"C13", Severity::Note, LinePart::Line, "value from the environment",
     "An option of [ROOT] that no other source has is taken from the environment variable of "
     "its name, which may have been set for something else. Give the option a value, or remove "
     "the variable."},
    {"C14", Severity::Warning, LinePart::Key, "naming rules or family values without effect",
     "A version in the user file replaces that of the basic file as a whole, a negative version "
     "or the index -1 ends the reading, quotes belong to the text that is replaced, and a "
     "version is read from [base\\TABLENAME RULES\\3] in this spelling alone. Write the rules or "
     "values that are wanted in one place."},
    {"C15", Severity::Warning, LinePart::Key, "registry value or key that is not read",
     "The tool reads texts from the keys of its own sections below HKEY_LOCAL_MACHINE, single "
     "values only, and of several lines for one value the last. What other programs keep in the "
     "file is counted, not checked. Correct the name, or remove the line."},
    {"C16", Severity::Warning, LinePart::Line, "line that is not read",
     "Only sections, lines KEY=VALUE after a section, and comments that begin with ';' mean "
     "something; '#' and '//' begin no comment, and a header ends with ']'. Put a ';' in front "
     "of what is meant as a comment."},
    {"C17", Severity::Note, LinePart::Key, "index other than it looks",
     "A key without an index takes the next free one, so load-dictionary joins the family "
     "load-dictionary-1, and so does each beginning of the name, as 'load'. In name--3 the "
     "second hyphen is a sign, and an index above 2147483647 is read as that. Write an index."},
    {"C18", Severity::Warning, LinePart::Line, "files that differ in case only",
     "Names of files count in any case. Of files whose names differ in case only, the one spelled "
     "as asked for is read, else the first in the order of their bytes. Rename one of them."},
    {"C19", Severity::Warning, LinePart::Value, "file or folder that cannot be used",
     "A file that is missing, not a regular file, unreadable or not in UTF-8, Windows-1252 or UTF-16 "
     "with a mark counts as empty. It is an error where the tool stops, as without its basic "
     "file or with a word of the command line that it does not know."},
    {"C20", Severity::Warning, LinePart::Key, "empty value that hides others",
     "An empty value of the registry counts as an answer and hides those of both files; in a file "
     "an empty value counts as none. Remove the value from the registry, or give it a text."},
    {"C21", Severity::Note, LinePart::Value, "signs that are ordinary text",
     "A value runs to the end of its line: ' ; text' or ' # text' after it is no comment, a quote "
     "without its partner and a single '%' are part of it. Put comments on lines of their own, and quotes "
     "around a text that is meant so."},
    {"C22", Severity::Warning, LinePart::Value, "log file in a folder that does not exist",
     "The tool creates its log file but not the folder for it, unless that is the default one. "
     "Create the folder, or correct logfile or logging."},
    {"C23", Severity::Warning, LinePart::Line, "lint comment without effect",
     "A comment '; lint: C05' silences the findings of these codes on the line after it, '; lint: file "
     "C05,C21' those of its file. One of an unknown code silences nothing; one that finds nothing to "
     "silence is a note. Correct the code, move the comment to the line above the finding, or remove it."},
};

/// Whether each row is at the position of its code.
consteval bool AreLintsInOrder() {
    for (std::size_t i = 0; i < std::size(LINTS); ++i) {
        const std::string_view name = LINTS[i].name;
        const char tens = static_cast<char>('0' + (i + 1) / 10);
        const char ones = static_cast<char>('0' + (i + 1) % 10);
        if (name.size() != 3 || name[0] != 'C' || name[1] != tens || name[2] != ones) return false;
    }
    return std::size(LINTS) == static_cast<std::size_t>(LintCode::C23) + 1;
}
static_assert(AreLintsInOrder());

constexpr const LintRow& RowOf(LintCode code) {
    return LINTS[static_cast<std::size_t>(code)];
}

}  // namespace veltrane::config
