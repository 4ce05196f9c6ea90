# A folder with a command "veltrane" that prints its arguments, a basic file and some files beside it. Sourced.
# Sets: world (the folder, and the current one)
export LC_ALL=C.UTF-8
world=$(mktemp -d)
trap 'rm -rf "$world"' EXIT
mkdir -p "$world"/{bin,real/.metadata,real/other,home/'my folder'/inner}
cat >"$world/real/veltrane" <<'COMMAND'
#!/bin/bash
printf 'got'; printf '<%s>' "$@"; printf '\n'
COMMAND
chmod +x "$world/real/veltrane"
ln -s ../real/veltrane "$world/bin/veltrane"  # the folder of the program is the one behind links
printf '%s\r\n' '[ROOT]' 'name=base' '[User]' ' [ base ] ; x' '[archive]' '[base\FILES\1]' '[my db]' "[it's \$(touch evil)]" \
    ';[hidden]' '[ autodoc]' '[open' >"$world/real/.metadata/veltrane.ini"
printf '\xEF\xBB\xBF[elsewhere]\n' >"$world/real/other/veltrane.ini"
touch "$world/home/run.log"
cd "$world/home"
PATH=$world/bin:$PATH

failed=0
# expect LINE EXPECTED GOT
expect() {
    [ "$3" = "$2" ] || { printf '%s\n  expected %s\n  got      %s\n' "$@"; failed=1; }
}
# end: fails if a completed text was run or an expectation was not met.
end() {
    [ ! -e evil ] || { echo "a name was run as a command"; failed=1; }
    exit "$failed"
}
