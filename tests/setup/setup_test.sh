#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Runs a copy of tools/setup.sh against stand-ins for apt, python2.7-config, pyenv and unfit
# interpreters. Usage: setup_test.sh SETUP_SCRIPT PYTHON2 (a python2.7 that fits)
set -euo pipefail

readonly setup=$1 good=$2
work=$(mktemp -d)
readonly work
trap 'rm -rf "$work"' EXIT
readonly recorded=$work/project/build/python2.path
failures=0

mkdir -p "$work"/{project/tools,apt,home,python,config,programs,tmp}
cp "$setup" "$work/project/tools/setup.sh"
# What the script may use of this machine; a python2.7 of its own is no part of that.
for program in bash cat chmod cp dirname env grep head ln mkdir mktemp rm sed sh sort stat tail touch; do
    ln -s "$(command -v "$program")" "$work/programs/$program"
done
readonly path=$work/apt:$work/programs

stand_in() { # stand_in PATH < script
    mkdir -p "$(dirname "$1")"
    cat >"$1"
    chmod +x "$1"
}

# An interpreter that claims something else about itself: the good one with a line run before.
unfit() {
    stand_in "$work/python/$1" <<SCRIPT
#!/bin/sh
exec "$good" -c "import sys, sysconfig
$2
exec(sys.argv[2])" "\$@"
SCRIPT
}

# apt: everything is installed but what $MISSING names; install works after an update only.
# $DEBIAN_PYTHON has the files of the package, $CANDIDATE is the version in the machine's sources, and
# $REFUSED cannot be installed. An installation with sources of its own leaves them in $work/seen.
stand_in "$work/apt/dpkg-query" <<'SCRIPT'
#!/bin/sh
test "$1" != -L || { echo "$DEBIAN_PYTHON"; exit; }
for package in "$@"; do
    case $package in
    -*) ;;
    "${MISSING:-nothing}") printf 'un %s\n' "$package" ;;
    *) printf 'ii %s\n' "$package" ;;
    esac
done
SCRIPT
stand_in "$work/apt/apt-get" <<SCRIPT
#!/bin/sh
for argument in "\$@"; do
    case \$argument in
    update | install | indextargets) command=\$argument; echo "\$argument" >>"$work/apt.log" ;;
    Dir::Etc::*=/*) cp -R "\${argument#*=}" "$work/seen" ;;
    esac
    package=\$argument
done
case \$command in
update) touch "$work/updated" ;;
install)
    test -e "$work/updated" || exit 1
    test "\$package" != "\$REFUSED" || { echo "E: \$package is not for you"; exit 1; } ;;
indextargets) cat "$work/targets" ;;
esac
SCRIPT
stand_in "$work/apt/apt-cache" <<'SCRIPT'
#!/bin/sh
echo "  Candidate: ${CANDIDATE:-(none)}"
SCRIPT
stand_in "$work/apt/sudo" <<'SCRIPT'
#!/bin/sh
exec "$@"
SCRIPT

# run EXPECTED_CODE [VARIABLE=VALUE...]: the script with $options; output in $output.
options=()
run() {
    local expected=$1 code=0
    shift
    output=$(env -u PYTHON2 HOME="$work/home" XDG_CACHE_HOME="$work/cache" TMPDIR="$work/tmp" \
        PYENV_ROOT="$work/no-pyenv" PATH="$path" "$@" \
        bash "$work/project/tools/setup.sh" "${options[@]}" 2>&1) || code=$?
    if ((code != expected)); then
        fail "exit code $code, not $expected"
    fi
}

fail() {
    printf 'FAILED: %s: %s\n%s\n' "$case_name" "$1" "$output"
    failures=$((failures + 1))
}

says() { [[ $output == *"$1"* ]] || fail "does not say '$1'"; }
chose() { [[ "$(cat "$recorded" 2>/dev/null)" == "$1" ]] || fail "did not choose $1"; }
apt_ran() { [[ "$(xargs <"$work/apt.log")" == "$*" ]] || fail "apt: $(xargs <"$work/apt.log")"; }
begin() {
    case_name=$1
    rm -rf "$recorded" "$work/apt.log" "$work/updated" "$work/seen" "$work/cache"
    mkdir "$work/seen"
}

unfit ucs2 'sys.maxunicode = 0xffff'
unfit static 'sysconfig.get_config_vars()[\"Py_ENABLE_SHARED\"] = 0'
unfit old 'sys.version_info = (2, 6, 9)'
unfit no-library 'sysconfig.get_config_vars()[\"LDLIBRARY\"] = \"libabsent.so\"'
real=$("$good" -c 'import sys; print(sys.executable)')

begin "PYTHON2 that fits is used, and kept without PYTHON2"
run 0 PYTHON2="$good"
chose "$real"
run 0
chose "$real"
[[ -z $output ]] || fail "a second run says something"
[[ ! -e $work/apt.log ]] || fail "apt ran though nothing was missing"

while IFS='|' read -r name reason; do
    begin "PYTHON2 that does not fit is an error: $name"
    run 1 PYTHON2="$work/python/$name"
    says "$reason"
    says "PYTHON2=$work/python/$name cannot be used"
    [[ ! -e $recorded ]] || fail "recorded it all the same"
done <<'CASES'
ucs2|it is a UCS2 build
static|it is a static build
old|it is Python 2.6, not 2.7
no-library|its shared library libabsent.so is not in
absent|it does not run
CASES

begin "an unfit python2.7-config gives way to pyenv's version"
stand_in "$work/config/python2.7-config" <<<"#!/bin/sh
echo $work/config"
mkdir -p "$work/config/bin" "$work/pyenv/versions/2.7.18/bin"
cp "$work/python/ucs2" "$work/config/bin/python2.7"
ln -sf "$real" "$work/pyenv/versions/2.7.18/bin/python2.7"
run 0 PYENV_ROOT="$work/pyenv" PATH="$work/config:$path"
says "refused $work/config/bin/python2.7: it is a UCS2 build"
chose "$work/pyenv/versions/2.7.18/bin/python2.7"

begin "a recorded interpreter that no longer fits is replaced"
mkdir -p "$(dirname "$recorded")"
echo "$work/python/static" >"$recorded"
run 0 PYENV_ROOT="$work/pyenv"
says "refused $work/python/static"
chose "$work/pyenv/versions/2.7.18/bin/python2.7"

debian=$work/debian/bin/python2.7
mkdir -p "$(dirname "$debian")"
ln -s "$real" "$debian"

begin "Debian's own is taken when it is installed"
run 0 DEBIAN_PYTHON="$debian"
chose "$debian"
[[ ! -e $work/apt.log ]] || fail "apt ran though nothing was missing"

begin "Debian's own is installed when the machine's sources have it"
run 0 DEBIAN_PYTHON="$debian" MISSING=python2.7-dev CANDIDATE=2.7.18-8
chose "$debian"
apt_ran install update install

begin "Debian 11's is installed from the machine's own mirrors, with sources and pins of its own"
cat >"$work/targets" <<'TARGETS'
bookworm main http://mirror.test/debian/
bookworm contrib http://mirror.test/debian/
bookworm-updates main http://mirror.test/debian/
bookworm-security main mirror+file:/etc/apt/mirrors/security.list
bookworm-pgdg main http://other.test/
TARGETS
run 0 DEBIAN_PYTHON="$debian" MISSING=python2.7-dev
chose "$debian"
apt_ran indextargets update install
[[ $output == "setup: installing python2.7-dev from Debian 11"*$'\n'"setup: using $debian"* ]] ||
    fail "the first lines are others"
signed='[signed-by=/usr/share/keyrings/debian-archive-keyring.gpg]'
[[ "$(cat "$work/seen/sources/debian-11.list")" == "deb $signed http://mirror.test/debian/ bullseye main
deb $signed mirror+file:/etc/apt/mirrors/security.list bullseye-security main" ]] ||
    fail "other sources: $(cat "$work/seen/sources/debian-11.list")"
[[ "$(tail -n 3 "$work/seen/preferences" | xargs)" == \
    "Package: * Pin: release n=bullseye* Pin-Priority: 100" ]] || fail "other pins"
[[ -z $(ls "$work/tmp") ]] || fail "leaves files behind"

begin "the last resort is a shared UCS4 build, which a later run finds again"
stand_in "$work/builder/plugins/python-build/bin/python-build" <<SCRIPT
#!/bin/sh
echo "options: \$PYTHON_CONFIGURE_OPTS"
mkdir -p "\$2/bin" && ln -s "$real" "\$2/bin/python2.7"
SCRIPT
run 0 PYENV_ROOT="$work/builder" MISSING=python2.7-dev REFUSED=python2.7-dev
says "it could not be installed: E: python2.7-dev is not for you"
says "options: --enable-shared --enable-unicode=ucs4"
built=$work/cache/openquil-render/python-2.7.18/bin/python2.7
chose "$built"
rm "$recorded"
run 0 DEBIAN_PYTHON="$debian"
chose "$built"

begin "an interpreter that other users cannot start is told"
mkdir -p "$work/closed/bin"
chmod -R 755 "$work"
chmod 750 "$work/closed"
unfit closed "sys.executable = '$work/closed/bin/python2.7'"
run 0 PYTHON2="$work/python/closed"
says "other users cannot enter $work/closed,"
chmod 755 "$work/closed"
rm "$recorded"
run 0 PYTHON2="$work/python/closed"
[[ $output == "setup: using $work/closed/bin/python2.7" ]] || fail "says more"

begin "missing packages are installed, with an update when it does not work without"
run 0 PYTHON2="$good" MISSING=libembree-dev
says "installing libembree-dev"
apt_ran install update install

while read -r option package; do
    begin "$option installs $package, and nothing else does"
    touch "$work/updated"
    options=()
    run 0 PYTHON2="$good" MISSING="$package"
    [[ ! -e $work/apt.log ]] || fail "installed it for a build"
    options=("$option")
    run 0 PYTHON2="$good" MISSING="$package"
    says "installing $package"
done <<'CASES'
--tests libgtest-dev
--bench cython3
--checks cppcheck
--docs furo
--docs-checks chromium
CASES
options=(--nonsense)
run 1 PYTHON2="$good"
says "usage"

((failures == 0)) || exit 1
echo "all cases passed"
