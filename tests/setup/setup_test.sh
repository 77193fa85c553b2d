#!/usr/bin/env bash
# Runs a copy of tools/setup.sh against stand-ins for apt, python2.7-config, pyenv and unfit
# interpreters. Usage: setup_test.sh SETUP_SCRIPT PYTHON2 (a python2.7 that fits)
set -euo pipefail

readonly setup=$1 good=$2
work=$(mktemp -d)
readonly work
trap 'rm -rf "$work"' EXIT
readonly recorded=$work/project/build/python2.path
failures=0

mkdir -p "$work"/{project/tools,apt,home,python,config}
cp "$setup" "$work/project/tools/setup.sh"

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

# apt: everything is installed but what \$MISSING names; install works after an update only.
stand_in "$work/apt/dpkg-query" <<'SCRIPT'
#!/bin/sh
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
echo "\$1" >>"$work/apt.log"
case \$1 in
update) touch "$work/updated" ;;
install) test -e "$work/updated" ;;
esac
SCRIPT
stand_in "$work/apt/apt-cache" <<'SCRIPT'
#!/bin/sh
echo "  Candidate: (none)"
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
    output=$(env -u PYTHON2 HOME="$work/home" XDG_CACHE_HOME="$work/cache" \
        PYENV_ROOT="$work/no-pyenv" PATH="$work/apt:/usr/bin:/bin" "$@" \
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
begin() {
    case_name=$1
    rm -f "$recorded" "$work/apt.log" "$work/updated"
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
run 0 PYENV_ROOT="$work/pyenv" PATH="$work/config:$work/apt:/usr/bin:/bin"
says "refused $work/config/bin/python2.7: it is a UCS2 build"
chose "$work/pyenv/versions/2.7.18/bin/python2.7"

begin "a recorded interpreter that no longer fits is replaced"
mkdir -p "$(dirname "$recorded")"
echo "$work/python/static" >"$recorded"
run 0 PYENV_ROOT="$work/pyenv"
says "refused $work/python/static"
chose "$work/pyenv/versions/2.7.18/bin/python2.7"

# A distribution's own python2.7 would come first.
if [[ ! -x /usr/bin/python2.7 ]]; then
    begin "the last resort is a shared UCS4 build"
    stand_in "$work/builder/plugins/python-build/bin/python-build" <<SCRIPT
#!/bin/sh
echo "options: \$PYTHON_CONFIGURE_OPTS"
mkdir -p "\$2/bin" && ln -s "$real" "\$2/bin/python2.7"
SCRIPT
    run 0 PYENV_ROOT="$work/builder"
    says "options: --enable-shared --enable-unicode=ucs4"
    chose "$work/cache/openquil-render/python-2.7.18/bin/python2.7"
fi

begin "missing packages are installed, with an update when it does not work without"
run 0 PYTHON2="$good" MISSING=libembree-dev
says "installing libembree-dev"
[[ "$(xargs <"$work/apt.log")" == "install update install" ]] || fail "apt: $(xargs <"$work/apt.log")"

begin "the checking tools are installed when they are asked for, and not before"
touch "$work/updated"
run 0 PYTHON2="$good" MISSING=cppcheck
[[ ! -e $work/apt.log ]] || fail "installed cppcheck for a build"
options=(--checks)
run 0 PYTHON2="$good" MISSING=cppcheck
says "installing cppcheck"
options=(--nonsense)
run 1 PYTHON2="$good"
says "usage"

((failures == 0)) || exit 1
echo "all cases passed"
