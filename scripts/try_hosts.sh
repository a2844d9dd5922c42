#!/usr/bin/env bash
# usage: scripts/try_hosts.sh [--rounds N] [--module PATH] [--keep] [HOST...]
# Drives real hosts with the built module, one after another: scan, insert, window opened and closed N times (100),
# eight instances, export, save, load, quit. Run by hand before a release; the results belong into docs/hosts.md.
# Hosts are those in the table below; without a name: all. Every host gets a home and a screen of its own, and leaves
# logs, pictures and sounds in out/hosts/HOST, and its row of the table in out/hosts/results.md.
# --keep leaves the homes, for a look at what failed.
# The module is out/Orvo.vst3 or, if that was not built, the one in build/ci; with it goes the orvo-host built beside it.
# Packages are installed with apt (with sudo, after saying so), and hosts of Debian 13 into .deps/debian-13.
set -euo pipefail
caller=$PWD
cd "$(dirname "$0")/.."
source scripts/lib/common.sh
source scripts/lib/packages.sh
source scripts/lib/built.sh

# name, driver and its arguments, the system that the host comes from, and its packages
hosts='ardour-7|ardour.py 7|here|ardour
ardour-8|ardour.py 8|debian-13|ardour
qtractor|qtractor.py|debian-13|qtractor jackd2
bespoke|bespoke.py|debian-13|bespokesynth libgl1-mesa-dri jackd2 jack-example-tools sndfile-tools'

usage() { fail "usage: scripts/try_hosts.sh [--rounds N] [--module PATH] [--keep] [HOST...], hosts: $(cut -d'|' -f1 <<< "$hosts" | xargs)"; }

rounds=100
module=""
wanted=()
keep=""
while [ $# -gt 0 ]; do
    case $1 in
        --rounds) [ $# -ge 2 ] || usage; rounds=$2; shift 2 ;;
        --module) [ $# -ge 2 ] || usage; module=$(cd "$caller" && realpath -m -- "$2"); shift 2 ;;
        --keep) keep=yes; shift ;;
        -*) usage ;;
        *) grep -q "^$1|" <<< "$hosts" || usage; wanted+=("$1"); shift ;;
    esac
done
[[ $rounds =~ ^[1-9][0-9]*$ ]] || usage
if [ ${#wanted[@]} -eq 0 ]; then mapfile -t wanted < <(cut -d'|' -f1 <<< "$hosts"); fi

# The hosts of Debian 13, in a root of their own; only root can enter it.
root=$PWD/.deps/debian-13

# make_root PACKAGE...
make_root()
{
    if [ "$(cat "$root.packages" 2> /dev/null)" = "$*" ]; then return; fi
    install_packages mmdebstrap
    say "installing Debian 13 with $* into $root"
    as_root rm -rf "$root"
    mkdir -p .deps
    as_root mmdebstrap --quiet --variant=minbase --aptopt='APT::Install-Recommends "false"' \
        --include="$(tr ' ' ',' <<< "$* dbus fonts-dejavu-core")" trixie "$root" > "$root.log" 2>&1 \
        || { tail "$root.log" >&2; fail "Debian 13 could not be installed"; }
    echo "$*" > "$root.packages"
}

# field NAME NUMBER: of the table
field() { grep "^$1|" <<< "$hosts" | cut -d'|' -f"$2"; }

install_all()
{
    local host here=() there=()
    for host in "${wanted[@]}"; do
        # shellcheck disable=SC2207 # packages have no spaces
        if [ "$(field "$host" 3)" = here ]; then here+=($(field "$host" 4)); fi
    done
    # shellcheck disable=SC2207
    there=($(grep '|debian-13|' <<< "$hosts" | cut -d'|' -f4 | xargs -n 1 | sort -u))
    install_packages xvfb xauth openbox xdotool imagemagick x11-utils wmctrl gcc binutils python3 python3-liblo python3-numpy \
        python3-soundfile "${here[@]}"
    for host in "${wanted[@]}"; do
        if [ "$(field "$host" 3)" = debian-13 ]; then make_root "${there[@]}"; break; fi
    done
}

# try HOST: its row in out/hosts/HOST/row.md; false if it failed
try()
{
    local out=$PWD/out/hosts/$1 status=0
    home=$(mktemp -d)
    rm -rf "$out" 2> /dev/null || as_root rm -rf "$out"  # root's, if the host ran in Debian 13's root
    mkdir -p "$out"
    say "$1, logs in $out"
    HOME=$home XDG_CONFIG_HOME='' scripts/install.sh --module "$module" > "$out/install.log"

    local settings=(HOME="$home" ORVO_HOST_OUT="$out" ORVO_HOST_ROUNDS="$rounds" ORVO_HOST_RENDER="$program"
                    ORVO_HOST_MODULE="$module" XDG_RUNTIME_DIR="$home" PYTHONDONTWRITEBYTECODE=1)
    local run=(scripts/lib/with_screen.sh)
    if [ "$(field "$1" 3)" != here ]; then
        settings+=(ORVO_HOST_PREFIX="chroot $root")
        run=(as_root unshare --mount "$PWD/scripts/hosts/with_root.sh" "$root" "${run[@]}")
    fi
    # shellcheck disable=SC2046 # the driver's arguments
    "${run[@]}" env -u XDG_CONFIG_HOME -u XDG_CACHE_HOME "${settings[@]}" /usr/bin/python3 \
        $(printf 'scripts/hosts/%s' "$(field "$1" 2)") || status=$?
    if [ -n "$keep" ]; then say "kept: $home"; else as_root rm -rf -- "$home"; fi
    home=""
    return "$status"
}
home=""
trap 'if [ -n "$home" ]; then as_root rm -rf -- "$home"; fi' EXIT

find_build
install_all
failed=()
mkdir -p out/hosts
for host in "${wanted[@]}"; do
    if ! try "$host"; then failed+=("$host"); fi
done

{
    printf '| Host | Version | Done | Seen |\n|---|---|---|---|\n'
    for host in "${wanted[@]}"; do cat "out/hosts/$host/row.md"; done
} > out/hosts/results.md
cat out/hosts/results.md
if [ ${#failed[@]} -gt 0 ]; then fail "failed: ${failed[*]}"; fi
