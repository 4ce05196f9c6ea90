#!/usr/bin/env bash
# Runs the example of examples/origin over a small configuration. Usage: origin_example.sh PROGRAM
set -euo pipefail
program=$1
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cd "$folder"
mkdir .metadata
printf '[ROOT]\nname=db\nlogfile=basic.log\n[db]\ndictionary-name=d\nrole=r\nregistry=g\n' >.metadata/tool.ini
printf '\n[ROOT]\nlogfile=%%name%%.log\n' >team.ini
diff <(VORNAK_REGISTRY= logfile=env.log "$program" logfile --logfile typed.log --ini team.ini) - <<END
command line :0: typed.log
user file $PWD/team.ini:3: %name%.log
basic file .\.metadata\tool.ini:3: basic.log
environment :0: env.log
END
