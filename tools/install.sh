#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Installs what is built into a prefix, or takes it out again. DESTDIR is put in front of all paths.
#
# Usage: install.sh install|uninstall PREFIX
set -euo pipefail

readonly action=${1:-} prefix=${2:-}
cd "$(dirname "${BASH_SOURCE[0]}")/.."
readonly root=${DESTDIR:-}$prefix
readonly home=$root/lib/openquil
readonly version_file=$home/version files=$home/files

die() { printf '%s: %s\n' "${action:-install.sh}" "$*" >&2; exit 1; }

# The folders of a file as far as they are empty, below the prefix.
remove_folders() {
    local folder
    folder=$(dirname "${1#"$root"/}")
    (cd "$root" && rmdir -p --ignore-fail-on-non-empty -- "$folder" 2>/dev/null) || true
}

remove() {
    local file
    while IFS= read -r file || [[ -n $file ]]; do # the last line has no end
        rm -f -- "${DESTDIR:-}$file"
        remove_folders "${DESTDIR:-}$file"
    done <"$files"
    rm -f -- "$files" "$version_file"
    remove_folders "$version_file"
}

[[ $action == install || $action == uninstall ]] || die "usage: install.sh install|uninstall PREFIX"
[[ $prefix == /* ]] || die "PREFIX is to be an absolute path, not '$prefix'"

# The innermost folder on the way that is there has to let files be made in it.
there=$root
while [[ ! -e $there ]]; do there=$(dirname "$there"); done
[[ -d $there && -w $there ]] || die "no files can be made in $there"

if [[ $action == uninstall ]]; then
    [[ -e $files ]] || die "nothing that make install has put there is in $root"
    remove
    exit
fi

built=$(build/bin/quilhost --version | awk '{ print $NF }')
installed=$(cat "$version_file" 2>/dev/null || true)
[[ -z $installed || $installed == "$built" ]] ||
    die "version $installed is in $root; make uninstall PREFIX=$prefix removes it"
[[ -z $installed ]] || remove
cmake --install build --prefix "$prefix" --strip >build/install.log || die "see build/install.log"
mkdir -p "$home"
printf '%s\n' "$built" >"$version_file"
cp build/install_manifest.txt "$files"
printf 'Installed version %s: %s/bin/quilhost\n' "$built" "$root"
