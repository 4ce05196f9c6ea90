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
    {"C01", Severity::Warning, LinePart::Section, "unknown section",
     "No option belongs in a section of this name, as in [USR] for [USER], so nothing in it is read. The known "
     "sections are those in the table of options and those of the database. An unknown section with a key of a "
     "database is taken as the section of another database. Correct the name of the section, or of the database on the "
     "command line, or remove the section."},
    {"C02", Severity::Warning, LinePart::Key, "unknown key",
     "The key is not an option, as in lodfile=run.log for logfile, and no %reference% names it. The tool looks up only "
     "the keys it knows, so a misspelt one has no effect. Correct the key, or put ';' in front of the line."},
    {"C03", Severity::Warning, LinePart::Key, "key in the wrong section or form",
     "An option is read from one section only, for example quiet from [USER]. An option with several values has its "
     "index either in the key (load-dictionary-1) or in the name of the section ([base\\FILES\\1]). Move the key to "
     "the suggested section, or write it as suggested."},
    {"C04", Severity::Warning, LinePart::Key, "section or key given twice",
     "If several sections have the same name, only the first one is read; within it, only the first of several keys "
     "with the same name is read, even if its value is empty. The others are ignored. Merge the sections, or remove "
     "the key that is not wanted."},
    {"C05", Severity::Warning, LinePart::Value, "invalid value of a flag",
     "A flag is 'true' or 'false'; some flags can also be 'auto'. Any other text counts as false, or as auto for a "
     "flag that can be auto: quiet=yes and quiet=true ; for now both mean false. Write one of these words, and put "
     "comments on lines of their own."},
    {"C06", Severity::Warning, LinePart::Value, "list entry that is not a number",
     "A list consists of positive numbers separated by commas, as in 12, 14. An entry that does not begin with one is "
     "skipped, '12y' is read as 12, and a number above 2147483647 as 2147483647. Write each entry as a plain number."},
    {"C07", Severity::Error, LinePart::Key, "mandatory option without a value",
     "The tool stops without this value. The finding points to where the value was probably meant: to a misspelt key "
     "or section, to an empty value in the registry, or else to the section where the option belongs. Give the option "
     "a value there."},
    {"C08", Severity::Error, LinePart::Key, "index given twice",
     "Each index of an option with several values may be given only once in both files together; load-dictionary-1 and "
     "load-dictionary-01 are the same. The tool stops at the second one. Change one of the two."},
    {"C09", Severity::Error, LinePart::Value, "reference that leads nowhere",
     "%name% is replaced by the value of the key 'name' in the same section, or else in [ROOT], or else by the "
     "environment variable or the option of that name. The tool stops if there is none, if the reference leads back to "
     "itself, or if it names an option with several values. While the value is not used, the finding is only a note. "
     "Correct the name."},
    {"C10", Severity::Warning, LinePart::Value, "reference to an option without a value",
     "If %name% names an option without a value, the list of all sections takes its place; '%%' becomes the list of "
     "the keys of its section. Refer to an option that has a value, or give it one."},
    {"C11", Severity::Warning, LinePart::Value, "text that is too long",
     "At most 2,047 characters of a value are read, and at most 2,046 of the list of the keys in a section or of all "
     "sections. The rest is cut off; indexed values and naming rules beyond the end of a list are not read. Shorten "
     "the value or the names, or split the section."},
    {"C12", Severity::Note, LinePart::Key, "value that comes too late",
     "Start-up needs the folders and the user file before it opens the files, so it does not use what a file says "
     "about them, as in data=D:\\Out. Give them on the command line, in the registry or, for options of [ROOT], in the "
     "environment."},
    {"C13", Severity::Note, LinePart::Line, "value from the environment",
     "An option of [ROOT] that has no other value takes the value of the environment variable of its name, which may "
     "have been set for something else. Give the option a value, or remove the variable."},
    {"C14", Severity::Warning, LinePart::Key, "naming rule or indexed value without effect",
     "The rules of a version in the user file replace all rules of that version in the basic file. A negative version "
     "or the index -1 ends the reading. Quotes are part of the text that a rule replaces. A version is read only from "
     "a section spelled like [base\\TABLENAME RULES\\3], not from [base\\TABLENAME RULES\\03]. Put all rules of a "
     "version in one section, and number versions and values from 0 on."},
    {"C15", Severity::Warning, LinePart::Key, "registry value or key that is not read",
     "The tool reads only texts, only for options with a single value, and only from the keys of its own sections "
     "below HKEY_LOCAL_MACHINE. If several lines set the same value, the last one counts. Keys of other programs are "
     "counted, not checked. Correct the name, or remove the line."},
    {"C16", Severity::Warning, LinePart::Line, "line that is not read",
     "A file consists of sections, lines KEY=VALUE in a section, and comments that begin with ';'. Any other line is "
     "ignored. '#' and '//' do not begin a comment, and a header ends with ']'. Put ';' in front of what is meant as a "
     "comment."},
    {"C17", Severity::Note, LinePart::Key, "unexpected index",
     "A key without an index gets the next free one: load-dictionary=x counts as one more load-dictionary-N, and so "
     "does any beginning of the name, such as load. In load-dictionary--3 the second hyphen is a minus sign, and an "
     "index above 2147483647 is read as that number. Write the index."},
    {"C18", Severity::Warning, LinePart::Line, "files whose names differ only in case",
     "File names are matched without regard to case. Of several files whose names differ only in case, the one spelled "
     "as the tool asks for it is read, or else the first in byte order. Rename the others."},
    {"C19", Severity::Warning, LinePart::Value, "file or folder that cannot be used",
     "A file counts as empty if it is missing, not a regular file, unreadable, or not in UTF-8, Windows-1252 or UTF-16 "
     "with a byte order mark. The finding is an error if the tool stops, as it does without its basic file or at an "
     "unknown word of the command line. Correct the path, or save the file as UTF-8."},
    {"C20", Severity::Warning, LinePart::Key, "empty value that hides others",
     "An empty value in the registry counts as an answer and hides the values in both files; an empty value in a file "
     "counts as no value. Remove the value from the registry, or give it a text."},
    {"C21", Severity::Note, LinePart::Value, "comment or quote that is part of the value",
     "A value extends to the end of its line: ' ; text' or ' # text' after it is not a comment but part of it, and so "
     "are an unmatched quote and an unmatched '%'. Put comments on lines of their own, and put such a text in quotes "
     "if it is meant that way."},
    {"C22", Severity::Warning, LinePart::Value, "log file in a folder that does not exist",
     "The tool creates its log file, but no folder for it except the default one. Create the folder, or correct "
     "logfile or logging."},
    {"C23", Severity::Warning, LinePart::Line, "lint comment without effect",
     "'; lint: C05' silences the findings with this code on the next line, '; lint: file C05,C21' those in the whole "
     "file. An unknown code silences nothing; a comment that finds nothing to silence is a note. Correct the code, "
     "move the comment to the line right above the finding, or remove it."},
};

/// Whether each row is at the position of its code.
consteval bool AreLintsInOrder() {
    for (std::size_t i = 0; i < std::size(LINTS); ++i) {
        const auto digit = [](std::size_t number) { return static_cast<char>('0' + number % 10); };
        const char name[] = {'C', digit((i + 1) / 10), digit(i + 1), '\0'};
        if (std::string_view{LINTS[i].name} != name) return false;
    }
    return std::size(LINTS) == static_cast<std::size_t>(LintCode::C23) + 1;
}
static_assert(AreLintsInOrder());

constexpr const LintRow& RowOf(LintCode code) {
    return LINTS[static_cast<std::size_t>(code)];
}

}  // namespace veltrane::config
