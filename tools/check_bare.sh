#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Does what README.md tells a newcomer to do, where nothing is prepared: in a new Debian 12 with
# nothing but make and git, in a temporary folder, a clean clone of HEAD is set up, built, run and
# tested, and its Debian package is installed in a second such Debian and used there. It needs root,
# debootstrap and the machine's Debian mirror.
#
# Usage: check_bare.sh
set -euo pipefail

readonly release=bookworm
readonly keyring=/usr/share/keyrings/debian-archive-keyring.gpg
source_dir=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
readonly source_dir
readonly clone=/srv/openquil # in the new root

say() { printf 'check-bare: %s\n' "$*"; }
die() {
    say "$*" >&2
    exit 1
}

((EUID == 0)) || die "needs root, to make a Debian root and to enter it"
command -v debootstrap >/dev/null || die "needs debootstrap (apt-get install debootstrap)"

# The sources of this machine that are Debian 12's: "RELEASE URI" a line.
# shellcheck disable=SC2016 # the variables are apt's
sources=$(apt-get indextargets --format '$(RELEASE) $(COMPONENT) $(REPO_URI)' \
    'Created-By: Packages' | sed -nE "s/^($release(-security|-updates|)) main /\1 /p" | sort -u)
mirror=$(sed -n "s/^$release //p" <<<"$sources" | head -n 1)
[[ -n $mirror ]] || die "needs Debian 12's package sources in apt's configuration"

work=$(mktemp -d --tmpdir openquil-bare.XXXXXX)
readonly work root=$work/root second=$work/second
apart= # the process that runs apart

clean_up() {
    if [[ -n $apart ]]; then
        pkill -KILL -P "$apart" || true
        wait "$apart" || true
    fi
    rm -rf --one-file-system "$work"
}
trap clean_up EXIT
trap 'exit 130' INT
trap 'exit 143' TERM HUP

# Runs a program in namespaces of its own, where what it mounts and starts ends with it, whatever
# ends it. In the background, so that a signal is seen at once.
run_apart() {
    local status=0
    unshare --mount --pid --mount-proc --fork --kill-child -- "$@" &
    apart=$!
    wait "$apart" || status=$?
    apart=
    return "$status"
}

# Runs a command line as a user: with /proc, /sys and terminals, and no variable of this shell but
# proxies.
run_in() { # run_in ROOT USER COMMAND
    local proxies
    mapfile -t proxies < <(env | grep -iE '^(https?|ftp|no)_proxy=' || true)
    # shellcheck disable=SC2016 # the variables are the inner shell's
    run_apart sh -e -c '
        root=$1 user=$2 command=$3
        shift 3
        mount -t proc proc "$root/proc"
        mount -t sysfs -o ro sysfs "$root/sys"
        mount -t tmpfs tmpfs "$root/dev/shm"
        mount -t devpts -o newinstance,ptmxmode=0666 devpts "$root/dev/pts"
        exec chroot --userspec="$user" "$root" env -i HOME=/root LANG=C.UTF-8 \
            PATH=/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin "$@" \
            sh -e -c "$command"
    ' sh "$1" "$2" "$3" "${proxies[@]}"
}
in_root() { run_in "$root" "$1" "cd $clone && $2"; } # in_root USER COMMAND: in the clone

apt_files() { find "$root/etc/apt" -type f -exec sha256sum {} + | sort; }

say "making a Debian root in $root"
run_apart debootstrap --variant=minbase --include=make,git --keyring="$keyring" "$release" "$root" "$mirror" \
    >"$work/log" 2>&1 || { tail -n 5 "$work/log" >&2; die "debootstrap failed"; }
# The way to the mirror is this machine's.
cp -L /etc/resolv.conf /etc/hosts "$root/etc/"
apt-config dump | grep -E '^Acquire::(http|https|ftp|Check)' >"$root/etc/apt/apt.conf.d/90machine" || true
for path in auth.conf auth.conf.d mirrors; do
    [[ ! -e /etc/apt/$path ]] || cp -rL "/etc/apt/$path" "$root/etc/apt/"
done
sed -E 's/^(\S+) (.*)/deb \2 \1 main/' <<<"$sources" >"$root/etc/apt/sources.list"
# The one where the package goes, whose users have Python 2.7 from Debian 11.
cp -a "$root" "$second"
printf 'deb %s bullseye main\n' "$mirror" >>"$second/etc/apt/sources.list"
printf 'Package: *\nPin: release n=bullseye\nPin-Priority: 100\n' \
    >"$second/etc/apt/preferences.d/bullseye"

head=$(git -C "$source_dir" rev-parse HEAD)
[[ -z $(git -C "$source_dir" status --porcelain) ]] || say "what is not committed is not looked at"
git clone --quiet --no-local --no-checkout "$source_dir" "$root$clone"
git -C "$root$clone" -c advice.detachedHead=false checkout --quiet "$head"
before=$(apt_files)

for target in demo test; do
    say "make $target"
    in_root root "make $target" || die "make $target failed"
done
[[ $(apt_files) == "$before" ]] || die "the set-up changed apt's configuration"
for picture in raytrace depth_fog; do
    [[ -s $root$clone/build/demo/$picture.png ]] || die "make demo left no $picture.png"
done
in_root nobody 'build/bin/quilhost --quiet --python-expr "import OpenQuilRender"' ||
    die "another user cannot start what was built"

say "make package"
in_root root "make package" >"$work/log" 2>&1 || { tail -n 5 "$work/log" >&2; die "make package failed"; }
cp "$root$clone"/build/package/*.deb "$second/srv/openquil.deb"
run_in "$second" root "apt-get update -qq && apt-get install -y -qq --no-install-recommends \
    /srv/openquil.deb libgl1-mesa-dri" >"$work/log" 2>&1 ||
    { tail -n 5 "$work/log" >&2; die "the package could not be installed"; }
# shellcheck disable=SC2016 # the variables are the inner shell's
run_in "$second" nobody 'cd /tmp && share=/usr/share/openquil/examples &&
    quilhost --version && quilfarm --version &&
    quilhost "$share/scenes/materials.obj" --quiet --resolution 64 48 \
        --python "$share/depth_fog.py" --output software.png &&
    quilhost "$share/scenes/materials.obj" --quiet --resolution 64 48 \
        --renderer hardware --output hardware.png' || die "what the package has does not run"
for picture in software hardware; do
    [[ -s $second/tmp/$picture.png ]] || die "the installed quilhost left no $picture.png"
done
say "make demo, make test and the package work on a bare Debian 12"
