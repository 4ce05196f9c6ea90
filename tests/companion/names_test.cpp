#include "companion.h"

using Names = Companion;

TEST_F(Names, ShowsEachVersionWithRulesAndCollisions) {
    WriteBasic(
        "[db\\TABLENAME RULES\\3]\nOLD_=NEW_\nGONE=\n[db\\TABLENAME RULES\\5]\nX=Y\n[db\\COLUMNNAME RULES\\5]\nA=B\n");
    Write("list", "\xEF\xBB\xBFversion 4\n; comment\ntable old_x\ntable new_x\r\ntable  GONE\ntable abcd\ncolumn ab\n");
    ExpectOutput(Ask({"names", "--version=3,5", "--limit", "4", "list"}), 1,
                 R"(table   old_x  3: NEW_X  5: NEW_Y
          rule 3 OLD_ -> NEW_ (meta/veltrane.ini:6)
          rule 5 X -> Y (meta/veltrane.ini:9)
          5 bytes in version 3
          5 bytes in version 5
table   new_x  3: NEW_X  5: NEW_Y
          rule 5 X -> Y (meta/veltrane.ini:9)
          5 bytes in version 3
          5 bytes in version 5
          collision with 'old_x' in version 3
          collision with 'old_x' in version 5
table   GONE   3:        5:
          rule 3 GONE -> (nothing) (meta/veltrane.ini:7)
          empty in version 3
          empty in version 5
table   abcd   3: ABCD   5: ABCD
column  ab     3: AB     5: BB
          rule 5 A -> B (meta/veltrane.ini:11)
)");
    Write("list", "column a\n");
    ExpectOutput(Ask({"names", "--version", "3", "list"}), 0,
                 "column  a  3: A\nnever fired: table rule 3 OLD_ -> NEW_ (meta/veltrane.ini:6)\n"
                 "never fired: table rule 3 GONE -> (nothing) (meta/veltrane.ini:7)\n");
}

TEST_F(Names, ListsTheRulesThatAreHiddenLast) {
    WriteBasic("[db\\TABLENAME RULES\\3]\nA=B\nC=D\n");
    Write("team.ini", "[db\\TABLENAME RULES\\3]\nA=X\n");
    ExpectOutput(Ask({"names", "--rules"}, {"-i", "team.ini"}), 0,
                 "table  3  A  -> X  team.ini:2 [db\\TABLENAME RULES\\3]\n"
                 "table  3  C  -> D  meta/veltrane.ini:7 [db\\TABLENAME RULES\\3]\n         hidden by the user file\n");
}
