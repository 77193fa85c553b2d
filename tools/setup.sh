#!/usr/bin/env bash
# Prepares a machine for the build: installs the Debian packages that are missing, finds (or, last,
# builds) a Python 2.7 that can be embedded, and leaves its path in build/python2.path.
#
# Usage: setup.sh [--checks]
#   --checks     installs also what the checking targets of the Makefile need
#
# Environment:
#   PYTHON2      the python2.7 program to use; an error when it does not fit
#   PYENV_ROOT   where pyenv keeps its versions (default ~/.pyenv)
set -euo pipefail

source_dir=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
readonly source_dir
readonly python_path_file=$source_dir/build/python2.path
readonly cache_dir=${XDG_CACHE_HOME:-${HOME:-/root}/.cache}/openquil-render
readonly python_version=2.7.18

readonly build_packages=(
    g++ make cmake ninja-build python3 pkg-config
    libembree-dev libimath-dev libopenexr-dev libpng-dev libjpeg62-turbo-dev libstb-dev
    libtinyobjloader-dev libtinygltf-dev nlohmann-json3-dev libcli11-dev
    libegl-dev libgl-dev libegl1 libgl1-mesa-dri
    libgtest-dev libgmock-dev glmark2-data cython3 clang-format
)
readonly check_packages=(clang-tidy cppcheck flake8 gcovr shellcheck valgrind)
readonly python_build_packages=(
    gcc make patch git curl ca-certificates xz-utils
    libssl-dev zlib1g-dev libffi-dev libbz2-dev libreadline-dev libsqlite3-dev libncurses-dev
)

say() { printf 'setup: %s\n' "$*" >&2; }
die() { say "$*"; exit 1; }
have() { command -v "$1" >/dev/null 2>&1; }

# ---- packages -------------------------------------------------------------------------------

missing_packages() {
    local installed package
    installed=$(dpkg-query -W -f='${db:Status-Abbrev}${Package}\n' "$@" 2>/dev/null |
        sed -n 's/^[hi]i *//p' || true)
    for package in "$@"; do
        grep -qxF -e "$package" <<<"$installed" || printf '%s\n' "$package"
    done
}

may_install() { ((EUID == 0)) || have sudo; }

as_root() {
    if ((EUID == 0)); then
        env DEBIAN_FRONTEND=noninteractive "$@"
    else
        sudo env DEBIAN_FRONTEND=noninteractive "$@"
    fi
}

# The package lists are fetched only when apt cannot do without.
install_packages() {
    local missing
    mapfile -t missing < <(missing_packages "$@")
    ((${#missing[@]})) || return 0
    may_install || die "cannot install packages without root or sudo; missing: ${missing[*]}"
    say "installing ${missing[*]}"
    local install=(apt-get install -y -qq --no-install-recommends "${missing[@]}")
    as_root "${install[@]}" >/dev/null 2>&1 && return
    as_root apt-get update -qq >&2 || die "apt-get update failed; missing: ${missing[*]}"
    as_root "${install[@]}" >&2 || die "apt-get could not install: ${missing[*]}"
}

# ---- the interpreter ------------------------------------------------------------------------

# Prints "ok PATH" when the program can be embedded, otherwise why it cannot.
readonly python_probe='
import os, sys, sysconfig
get = sysconfig.get_config_var
def library():
    folders = [get("LIBDIR"), os.path.join(get("LIBDIR"), get("MULTIARCH") or "")]
    return any(os.path.exists(os.path.join(folder, get("LDLIBRARY"))) for folder in folders)
if sys.version_info[:2] != (2, 7):
    answer = "it is Python %d.%d, not 2.7" % sys.version_info[:2]
elif sys.maxunicode != 0x10ffff:
    answer = "it is a UCS2 build (2-byte Unicode); the host interpreter is UCS4"
elif not get("Py_ENABLE_SHARED"):
    answer = "it is a static build; quilhost needs the shared library (--enable-shared)"
elif not library():
    answer = "its shared library %s is not in %s" % (get("LDLIBRARY"), get("LIBDIR"))
elif not os.path.exists(os.path.join(sysconfig.get_paths()["include"], "Python.h")):
    answer = "its header Python.h is not installed"
else:
    answer = "ok " + sys.executable
print(answer)
'

# Sets `python` and succeeds when PROGRAM fits; otherwise says why it was refused.
python=
try_python() {
    local program=$1 answer
    [[ -n $program ]] || return 1
    if ! answer=$("$program" -c "$python_probe" 2>/dev/null); then
        answer="it does not run"
    fi
    if [[ $answer == "ok "* ]]; then
        python=${answer#ok }
        return 0
    fi
    say "refused $program: $answer"
    return 1
}

try_python_config() {
    local prefix
    have python2.7-config || return 1
    # A version manager's stand-in exists on PATH but fails when no version provides it.
    prefix=$(python2.7-config --exec-prefix 2>/dev/null) || return 1
    [[ -n $prefix ]] && try_python "$prefix/bin/python2.7"
}

pyenv_root() {
    if [[ -n ${PYENV_ROOT:-} ]]; then
        printf '%s\n' "$PYENV_ROOT"
    else
        printf '%s\n' "${HOME:-/root}/.pyenv"
    fi
}

try_pyenv_versions() {
    local program
    for program in "$(pyenv_root)"/versions/2.7*/bin/python2.7; do
        [[ -x $program ]] && try_python "$program" && return
    done
    return 1
}

try_distribution() {
    if ! [[ -x /usr/bin/python2.7 && -e /usr/include/python2.7/Python.h ]]; then
        have apt-get && may_install || return 1
        apt-cache policy python2.7-dev 2>/dev/null | grep -q 'Candidate: [0-9]' || return 1
        say "installing python2.7-dev"
        as_root apt-get install -y -qq --no-install-recommends python2.7-dev >&2 || return 1
    fi
    try_python /usr/bin/python2.7
}

# Builds into the project's own cache, so that a clean checkout finds it again and the user's
# pyenv versions stay as they are.
build_python() {
    local builder prefix=$cache_dir/python-$python_version
    if ! [[ -x $prefix/bin/python2.7 ]]; then
        if have dpkg-query && have apt-get; then
            install_packages "${python_build_packages[@]}"
        fi
        builder=$(pyenv_root)/plugins/python-build/bin/python-build
        if ! [[ -x $builder ]]; then
            builder=$cache_dir/pyenv/plugins/python-build/bin/python-build
        fi
        if ! [[ -x $builder ]]; then
            say "fetching pyenv"
            mkdir -p "$cache_dir"
            git clone --quiet --depth 1 https://github.com/pyenv/pyenv "$cache_dir/pyenv" ||
                die "no Python 2.7 fits, and pyenv could not be fetched to build one; set PYTHON2"
        fi
        say "building Python $python_version into $prefix (takes a few minutes)"
        PYTHON_CONFIGURE_OPTS="--enable-shared --enable-unicode=ucs4" \
            "$builder" "$python_version" "$prefix" >&2 ||
            die "no Python 2.7 fits, and building one failed; set PYTHON2"
    fi
    try_python "$prefix/bin/python2.7"
}

find_python() {
    if [[ -n ${PYTHON2:-} ]]; then
        try_python "$PYTHON2" || die "PYTHON2=$PYTHON2 cannot be used"
        return
    fi
    # An earlier choice stands, so that a build folder never mixes two interpreters by accident.
    if [[ -s $python_path_file ]]; then
        try_python "$(head -n 1 "$python_path_file")" && return
    fi
    try_python_config || try_pyenv_versions || try_distribution || build_python ||
        die "no Python 2.7 fits; set PYTHON2 to a shared UCS4 python2.7"
}

# ---- main -----------------------------------------------------------------------------------

packages=("${build_packages[@]}")
case "$*" in
'') ;;
--checks) packages+=("${check_packages[@]}") ;;
*) die "usage: setup.sh [--checks]" ;;
esac
if have dpkg-query && have apt-get; then
    install_packages "${packages[@]}"
else
    say "not a Debian system: install the equivalents of ${packages[*]} yourself"
fi

find_python
mkdir -p "$(dirname "$python_path_file")"
if [[ "$(cat "$python_path_file" 2>/dev/null)" != "$python" ]]; then
    printf '%s\n' "$python" >"$python_path_file"
    say "using $python"
fi
