#include "documents.h"
#include "optiontext.h"
#include "troff.h"
#include "veltrane/platform/text/characters.h"

namespace veltrane::detail {

namespace {

constexpr char COMMAND_PAGE[] = R"(.TH "@TITLE@" 1 "" "@NAME@ @VERSION@" "@NAME@"
.ad l
.nh
.SH NAME
@TOOL@ \- @SUMMARY@
.SH SYNOPSIS
.B @TOOL@
.RI [ option " ...] [" database\-name ]
.SH DESCRIPTION
.B @TOOL@
gathers its options from the command line, the registry, two INI files and the
environment.
.BR @TOOL@.ini (5)
tells where a value comes from when the command line does not give it.
@ABOUT@.SS Grammar
A short name has one hyphen, a long name two; upper and lower case differ. The
value is the argument after it. There is no form with an equals sign, and a
value cannot begin with a hyphen.
.PP
A flag without a value is true, or auto where that is allowed. It takes the
next word unless that begins with a hyphen, so the name of the database comes
before it@BEFORE@
A word that belongs to no option is the name of the database.
.PP
An option given twice keeps its last value; one that takes several values
collects them. The value may hold references such as
.BR %data% .
.SH OPTIONS
@OPTIONS@.SS "All other options"
Each key of
.BR @TOOL@.ini (5)
is a long name, too. The program itself gives
@FACTS@;
given on the command line they replace what the program says.
.SH EXIT STATUS
.TP
.B 0
The work is done, or
.BR \-\-help ,
.B \-\-version
or
.B \-\-setup
was met: these end the program at once, whatever follows them.
.TP
.B 1
An error. It is shown on standard error, and in the log when that is open.
.SH ENVIRONMENT
.TP
.B VORNAK_REGISTRY
The registry file, instead of
.IR /etc/vornak/registry.reg .
.TP
.B VORNAK_DRIVES
The folders that stand for drives, such as
.BR C=/srv/c;D=/data .
A drive without a folder does not exist.
@ENVIRONMENT@.TP
@VARIABLES@
The options of the section [ROOT], in exactly this spelling; they count when
nothing else gives a value. A shell cannot set those with a hyphen,
.BR env (1)
can.
.SH FILES
.TP
.IB metadata /@TOOL@.ini
The basic file, which must exist. The folder is
.I .metadata
beside the program unless
.B \-\-metadata
names another; one that is not absolute is taken from the folder of the program.
.TP
.I /etc/vornak/registry.reg
The registry, an export file.
.TP
@FOLDERS@
Folders for user files and output. They are created when missing, unless an
option names them.
@EXAMPLES@.SH SEE ALSO
.BR @TOOL@.ini (5)
)";

constexpr char QUIET_EXAMPLE[] = R"(:
.RB \(lq "@TOOL@ base \-q" \(rq.)";

std::string OptionEntry(const OptionText& option) {
    std::string head = option.shortOption.empty() ? "" : Bold(option.shortOption) + ", ";
    head += Bold(option.longOption);
    if (!option.value.empty()) head += ' ' + Italic(option.value);
    const bool isPlain = option.description.empty();
    std::string body = isPlain ? "See " + Bold("EXIT STATUS") + '.' : Troff(option.description);
    if (isPlain && option.row->eSection != eSectionNone) body = "Sets the key of that name; see " + Bold("FILES") + '.';
    if (!option.row->IsSingle()) body += "\n.br\nMay be given several times.";
    return Entry(head, body);
}

std::string OptionEntries(const std::string& tool) {
    std::string text;
    for (const OptionGroup& group : GetOptionGroups(tool)) {
        if (group.title.empty()) continue;
        std::string title = group.title;
        title[0] = UpperAscii(title[0]);
        text += ".SS \"" + Troff(title) + "\"\n";
        for (const OptionText& option : group.options) {
            if (option.HasSyntax()) text += OptionEntry(option);
        }
    }
    return text;
}

std::string Facts() {
    std::string text;
    for (const OptionText& option : GetOptionTexts()) {
        const bool isFact = option.row->eSection == eSectionNone && !option.HasSyntax();
        if (isFact) text.append(text.empty() ? "" : ",\n").append(Bold(option.longOption));
    }
    return text;
}

std::string Variables() {
    std::string text;
    for (const OptionText& option : GetOptionTexts()) {
        if (option.row->eSection == eSectionRoot) text.append(text.empty() ? "" : ", ").append(Bold(option.key));
    }
    return text;
}

std::string Folders() {
    struct {
        enumOption option;
        std::string_view folder;
    } const folders[] = {
        {eOptionConfig, "configuration"}, {eOptionChangefileRoot, "changefile"}, {eOptionLogging, "log"}};
    std::string text = ".IR";
    for (const auto& [option, folder] : folders) {
        if (HasOption(option)) text.append(text.size() > 3 ? " \", \"" : "").append(" data /").append(folder);
    }
    return text;
}

}  // namespace

std::string CommandPage(const std::string& tool) {
    return Filled(COMMAND_PAGE, {{"@OPTIONS@", OptionEntries(tool)},
                                 {"@BEFORE@", HasOption(eOptionQuiet) ? QUIET_EXAMPLE : "."},
                                 {"@FOLDERS@", Folders()},
                                 {"@FACTS@", Facts()},
                                 {"@VARIABLES@", Variables()}});
}

}  // namespace veltrane::detail
