# Installs the Debian packages that are missing, without asking. Sourced by run.sh, test.sh and fuzz/run.sh.
# Usage: need_packages PACKAGE...
need_packages() {
    local missing=()
    local package
    for package in "$@"; do
        dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'ok installed' || missing+=("$package")
    done
    [ "${#missing[@]}" -eq 0 ] && return 0
    local as_root=()
    [ "$(id -u)" -eq 0 ] || as_root=(sudo)
    echo "installing ${missing[*]}"
    "${as_root[@]}" apt-get update -qq
    DEBIAN_FRONTEND=noninteractive "${as_root[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
}
