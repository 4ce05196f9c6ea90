// The pages of the sample host.
#include "describe.h"

namespace {

constexpr char ABOUT[] = R"(It works on the naming rules of one database and writes a log.
.PP
It is the sample host of its base library. It acts on
\fB\-\-summary\fR,
\fB\-\-load\-dictionary\fR,
\fB\-\-diff\-dictionary\fR,
\fB\-\-create\-changefile\fR and the options for folders and files; the options of the
schema work itself are accepted, shown in the summary and left to tools that
are built on the library.
.PP
A name list of
.B \-\-load\-dictionary
has one
.BI table\~ name
or
.BI column\~ name
a line, and
.BI version\~ number
first. Each name is printed with the name that the naming rules of the
database make of it.
.B \-\-diff\-dictionary
prints what only the first list holds with a minus and what only the second
holds with a plus;
.B \-\-create\-changefile
writes the same lines to a file below the folder
.BR changefile\-root .
)";

constexpr char ENVIRONMENT[] = R"(.TP
.B VELTRANE_SUMMARY
With the value
.BR json ,
.B \-\-summary
prints one JSON object a line, with the origin of each value, and nothing else
is printed.
)";

constexpr char EXAMPLES[] = R"(.SH EXAMPLES
.TP
.B veltrane base \-\-summary
Show every option of the database \(lqbase\(rq and where it comes from.
.TP
.B veltrane base \-l v4.txt \-l v5.txt \-d \-c change.txt
Rename the names of two lists, compare the lists, write the difference.
)";

}  // namespace

int main(int argc, char** argv) {
    return veltrane::RunDescribe(
        argc, argv,
        {"veltrane", "Veltrane", VELTRANE_VERSION, "show options, rename and compare the names of database schemas",
         ABOUT, ENVIRONMENT, EXAMPLES});
}
