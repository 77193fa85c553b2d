#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Prepares a machine for the build: installs the Debian packages that are missing, chooses a Python
# 2.7 that can be embedded, and leaves its path in build/python2.path. The first that fits is taken:
#
#   1. what PYTHON2 names; an error when it does not fit
#   2. what an earlier run left in build/python2.path
#   3. what is on the machine: python2.7-config's, pyenv's versions, one that was built here before
#   4. python2.7-dev, from the machine's own package sources if they have it
#   5. Debian 11's python2.7-dev, on Debian 12
#   6. one that pyenv builds, which takes minutes and a network
#
# Usage: setup.sh [--tests] [--bench] [--package] [--checks] [--stubs] [--farm] [--docs[-checks]]
#   Each installs also what the tests, the benchmark, packaging, the checking targets of the Makefile,
#   the check of the stubs, the check with a real Slurm, the documentation's site or its check in a
#   browser need.
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
readonly pyright=pyright@1.1.414
readonly pyright_dir=$source_dir/build/pyright

readonly build_packages=(
    g++ make cmake ninja-build python3 pkg-config
    libembree-dev libimath-dev libopenexr-dev libpng-dev libjpeg62-turbo-dev libstb-dev
    libtinyobjloader-dev libtinygltf-dev nlohmann-json3-dev libcli11-dev
    libegl-dev libgl-dev libegl1 libgl1-mesa-dri glmark2-data
)
readonly test_packages=(libgtest-dev binutils help2man)
readonly package_packages=(help2man dpkg-dev file)
readonly bench_packages=(cython3 valgrind binutils)
readonly docs_packages=(python3-sphinx python3-myst-parser furo)
readonly docs_check_packages=(chromium chromium-driver python3-selenium fonts-dejavu-core)
readonly farm_packages=(slurm-wlm munge)
readonly check_packages=(
    "${test_packages[@]}" clang-format clang-tidy cppcheck flake8 gcovr git shellcheck valgrind
)
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

# Debian has no package of it. It is kept with the build, away from the user's own.
install_pyright() {
    [[ "$(cat "$pyright_dir/version" 2>/dev/null)" == "$pyright" ]] && return
    say "installing $pyright into $pyright_dir"
    npm install --silent --no-fund --no-audit --prefix "$pyright_dir" "$pyright" >&2 ||
        die "npm could not install $pyright, which checks the stubs"
    printf '%s\n' "$pyright" >"$pyright_dir/version"
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
elif not os.path.exists(os.path.join(get("INCLUDEPY"), "Python.h")):
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

# Installed or to be installed, by way of the package and not of the PATH, where a version manager's
# stand-in may come first.
try_debian() {
    local program
    have dpkg-query && have apt-get || return 1
    [[ -z $(missing_packages python2.7-dev) ]] || install_debian_python || return 1
    program=$(dpkg-query -L python2.7-minimal 2>/dev/null | grep -m 1 '/bin/python2\.7$') &&
        try_python "$program"
}

install_debian_python() {
    may_install || return 1
    if apt-cache policy python2.7-dev 2>/dev/null | grep -q 'Candidate: [0-9]'; then
        (install_packages python2.7-dev) # what ends there need not end here
    else
        install_from_debian_11
    fi
}

# Debian 12 no longer has Python 2.7; Debian 11's installs beside it. It comes from the machine's own
# mirrors, signed by Debian, with sources, preferences and lists that only this installation sees:
# those of the machine, which apt needs for what the two releases share, and Debian 11's, which
# nothing is taken from that Debian 12 has.
install_from_debian_11() (
    readonly keyring=/usr/share/keyrings/debian-archive-keyring.gpg
    # shellcheck disable=SC2016 # the variables are apt's
    sources=$(apt-get indextargets --format '$(RELEASE) $(COMPONENT) $(REPO_URI)' \
        'Created-By: Packages' 2>/dev/null | sort -u |
        sed -nE "s,^bookworm(|-security) main (.*),deb [signed-by=$keyring] \2 bullseye\1 main,p")
    [[ -n $sources ]] || return 1
    say "installing python2.7-dev from Debian 11, beside Debian 12's packages; apt's sources stay as they are"

    folder=$(mktemp -d)
    trap 'as_root rm -rf "$folder"' EXIT
    chmod 755 "$folder" # apt fetches as a user of its own
    mkdir -p "$folder"/{sources,lists/partial,cache/archives/partial}
    printf '%s\n' "$sources" >"$folder/sources/debian-11.list"
    for file in /etc/apt/sources.list /etc/apt/sources.list.d/*; do
        [[ ! -e $file ]] || ln -s "$file" "$folder/sources/"
    done
    {
        cat /etc/apt/preferences 2>/dev/null || true
        printf '\nPackage: *\nPin: release n=bullseye*\nPin-Priority: 100\n'
    } >"$folder/preferences"

    apt=(apt-get -qq -o Dir::Etc::SourceList=/dev/null -o "Dir::Etc::SourceParts=$folder/sources"
        -o "Dir::Etc::Preferences=$folder/preferences" -o "Dir::State::Lists=$folder/lists"
        -o "Dir::Cache=$folder/cache")
    # A source that fails is none of our business if the installation works.
    as_root "${apt[@]}" update >"$folder/log" 2>&1 || true
    if ! as_root "${apt[@]}" install -y --no-install-recommends --no-remove python2.7-dev \
        >>"$folder/log" 2>&1; then
        say "it could not be installed: $(grep '^E:' "$folder/log" | tail -n 1)"
        return 1
    fi
)

# In the project's own cache, so that a clean checkout finds it again and the user's pyenv versions
# stay as they are.
readonly built_python=$cache_dir/python-$python_version

try_built_python() {
    [[ -x $built_python/bin/python2.7 ]] && try_python "$built_python/bin/python2.7"
}

build_python() {
    local builder
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
    say "building Python $python_version into $built_python (takes a few minutes)"
    PYTHON_CONFIGURE_OPTS="--enable-shared --enable-unicode=ucs4" \
        "$builder" "$python_version" "$built_python" >&2 ||
        die "no Python 2.7 fits, and building one failed; set PYTHON2"
    try_built_python
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
    try_python_config || try_pyenv_versions || try_built_python || try_debian || build_python ||
        die "no Python 2.7 fits; set PYTHON2 to a shared UCS4 python2.7"
}

# The outermost folder on the way to FILE that not everybody may enter; fails when there is none.
closed_folder() {
    local folder=$1 closed=
    while folder=$(dirname "$folder") && [[ $folder != / ]]; do
        (($(stat -c '0%a' "$folder") & 1)) || closed=$folder
    done
    [[ -n $closed ]] && printf '%s\n' "$closed"
}

# ---- main -----------------------------------------------------------------------------------

packages=("${build_packages[@]}")
for option in "$@"; do
    case $option in
    --tests) packages+=("${test_packages[@]}") ;;
    --bench) packages+=("${bench_packages[@]}") ;;
    --package) packages+=("${package_packages[@]}") ;;
    --checks) packages+=("${check_packages[@]}") ;;
    --stubs)
        packages+=(mypy)
        have npm || packages+=(npm) # one that is not Debian's serves too
        ;;
    --farm) packages+=("${farm_packages[@]}") ;;
    --docs) packages+=("${docs_packages[@]}") ;;
    --docs-checks) packages+=("${docs_packages[@]}" "${docs_check_packages[@]}") ;;
    *) die "usage: $(sed -n 's/^# Usage: //p' "$0")" ;;
    esac
done
if have dpkg-query && have apt-get; then
    install_packages "${packages[@]}"
else
    say "not a Debian system: install the equivalents of ${packages[*]} yourself"
fi

[[ " $* " != *" --stubs "* ]] || install_pyright
find_python
mkdir -p "$(dirname "$python_path_file")"
if [[ "$(cat "$python_path_file" 2>/dev/null)" != "$python" ]]; then
    printf '%s\n' "$python" >"$python_path_file"
    say "using $python"
    if closed=$(closed_folder "$python"); then
        say "other users cannot enter $closed, and so cannot start what is built with it; see README.md"
    fi
fi
