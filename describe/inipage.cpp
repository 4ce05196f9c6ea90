#include "documents.h"
#include "optiontext.h"
#include "troff.h"

namespace veltrane::detail {

namespace {

constexpr char INI_PAGE[] = R"(.TH "@TITLE@.INI" 5 "" "@NAME@ @VERSION@" "@NAME@"
.ad l
.nh
.SH NAME
@TOOL@.ini \- configuration of @TOOL@
.SH SYNOPSIS
.IB metadata /@TOOL@.ini
.br
the file named by
.B \-\-ini
.SH DESCRIPTION
The basic file stands in the metadata folder and carries the name of the
program; it must exist. The user file is read besides it when the option
.B ini
names one: below the current folder, else below the folder
.BR config .
Both have the same form:
.PP
.nf
.RS
[ROOT]
; a comment
name = base
@EXAMPLE@.RE
.fi
.PP
Names of sections and keys are found in any case. Blanks around names and
values go; one pair of quotes around a value goes, too, and keeps the blanks
inside. A semicolon begins a comment at the front of a line only. A line
without an equals sign says nothing, nor does one before the first section. Of
equal keys the first answers; of equal sections the first answers alone. A
value ends after 2047 characters, the names of all sections, or of all keys of
a section, after 2046.
.PP
A file is UTF\-8, or UTF\-16 with a mark; a byte that is no UTF\-8 is read as
Windows\-1252.
.SH SECTIONS AND KEYS
A key is the long name of an option. A boolean is true when its value is true,
and false otherwise; a tri\-state is true, false, or else auto. An integer list
has commas between its numbers. A mandatory option without a value is an error. The keys of
.I database
stand in the section that has the name of the database.
@SECTIONS@@FAMILIES@.SH REFERENCES
A name between percent signs is replaced by the first of these that is not
empty:
.IP 1. 4
the key of that name in the section of the value;
.IP 2. 4
the key of that name in [ROOT], the environment variable of that name, the
option of that name as the program knows it by now;
.IP 3. 4
the unnamed section, which a file answers with the names of its sections.
.PP
So refer to what has a value. A name without one is an error when it is no
option, a mandatory one, one of several values, or no text. On the command line,
before a file is open, any other reference without a value is taken out. What is
put in may hold references itself. A percent sign without a second one is an
ordinary character.
.SH PRECEDENCE
From the strongest to the weakest:
.IP 1. 4
the command line, and what the program itself knows;
.IP 2. 4
the registry, below SOFTWARE\eVORNAK\e@TOOL@\e\fIsection\fR;
.IP 3. 4
the user file;
.IP 4. 4
the basic file;
.IP 5. 4
for the options of [ROOT], the environment variable of that name.
.PP
Some options are needed before the files are open:
.BR metadata ,
.BR config
and
.BR ini ,
and
@FOLDERS@while start\-up resolves its folders. For these purposes only the command line, the
registry and, in [ROOT], the environment count.
.SH SEE ALSO
.BR @TOOL@ (1)
)";

constexpr char LOG_EXAMPLE[] = "logfile = \"%data%/%name%.log\"\n";

constexpr char FAMILIES[] = R"(.SH FAMILIES
An option with several values is a family, and each of its values has an
index. Where the section of the option ends in
.IR n ,
that number is the index. Otherwise it follows the key:
.BR @KEY@\-1 .
A key without a number takes the next free index. An index given twice,
also once in each file, is an error. The command line numbers its values from
0, and then no configured value of that option counts.
)";

constexpr char RULES[] = R"(The naming rules are sections without fixed keys: from version
.I n
on, each key is replaced by its value wherever it stands in a name.)";

constexpr char LISTS[] = R"(The lists
of
.B obsolete\-classes
add up: each holds those of the lower indexes, too.
)";

std::string KeyEntry(const OptionText& option) {
    const std::string head = Bold(option.key) + " (" + Troff(KindOf(*option.row)) + ')';
    if (!option.row->HasOptionNumber()) return Entry(head, "No key of this name: each key of the section is a rule.");
    return option.description.empty() ? ".TP\n" + head + '\n' : Entry(head, Troff(option.description));
}

std::string Sections(const std::string& tool) {
    std::string text;
    for (const enumCfgSection section : GetOptionSections()) {
        text += ".SS \"[" + Troff(SectionTitle(section)) + "]\"\n";
        for (const OptionText& option : GetOptionTexts(tool)) {
            if (option.row->eSection == section) text += KeyEntry(option);
        }
    }
    return text;
}

/// A key of several values with an index after it; empty if no option has several.
std::string FamilyKey() {
    std::string key;
    for (const OptionText& option : GetOptionTexts()) {
        if (option.row->IsSingle()) continue;
        if (!SectionTitle(option.row->eSection).ends_with('>')) return option.key;
        key = "key";
    }
    return key;
}

std::string Families() {
    const std::string key = FamilyKey();
    if (key.empty()) return {};
    const bool hasRules = HasOption(eOptionTableNameRules) || HasOption(eOptionColumnNameRules);
    const bool hasLists = HasOption(eOptionObsoleteClasses);
    std::string text = Replaced(FAMILIES, "@KEY@", Troff(key));
    if (hasRules || hasLists) text += ".PP\n";
    if (hasRules) text.append(RULES).append(hasLists ? " " : "\n");
    return hasLists ? text + LISTS : text;
}

/// The options for folders, except that of the metadata: ".BR data ,", "and", ".B logging".
std::string FolderKeys() {
    std::vector<std::string> keys;
    for (const enumOption option : {eOptionData, eOptionChangefileRoot, eOptionLogging}) {
        for (const OptionText& text : GetOptionTexts()) {
            if (text.row->eOption == option) keys.push_back(Troff(text.key));
        }
    }
    std::string text;
    for (std::size_t left = keys.size(); const std::string& key : keys) {
        --left;
        text += left > 1 ? ".BR " + key + " ,\n" : ".B " + key + (left == 1 ? "\nand\n" : "\n");
    }
    return text;
}

}  // namespace

std::string IniPage(const std::string& tool) {
    return Filled(INI_PAGE, {{"@SECTIONS@", Sections(tool)},
                             {"@EXAMPLE@", HasOption(eOptionLogFile) ? LOG_EXAMPLE : ""},
                             {"@FAMILIES@", Families()},
                             {"@FOLDERS@", FolderKeys()}});
}

}  // namespace veltrane::detail
