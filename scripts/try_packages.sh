#!/usr/bin/env bash
# usage: scripts/try_packages.sh [SUITE...]
# Tries the Debian packages in out/ in fresh systems, bookworm and trixie if none is named: installs them, lets a user
# without rights render a recording through both modules and open the window, and removes and purges them. The sound must
# be that of the module in out/, and nothing may be left. Run by hand before a release, after scripts/package.sh.
# The systems come from Debian's mirror and stay in .deps/SUITE.tar; only root can enter them.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/lib/common.sh
source scripts/lib/packages.sh

suites=("$@")
if [ ${#suites[@]} -eq 0 ]; then suites=(bookworm trixie); fi

# Mounts go with the script, and windows open on its own screen.
if [ "${ORVO_ON_VIRTUAL_SCREEN:-}" != yes ]; then
    install_packages mmdebstrap xvfb xauth openbox x11-utils chuck-data
    as_root unshare --mount "$PWD/scripts/lib/with_screen.sh" "$PWD/scripts/try_packages.sh" "${suites[@]}"
    exit
fi

architecture=$(dpkg --print-architecture)
packages=()
for name in orvo-vst3 orvo-lv2 orvo-tools; do
    package=$(compgen -G "out/${name}_*_$architecture.deb" | sort -V | tail -n 1 || true)
    [ -n "$package" ] || fail "there is no $name in out/: make it first, with scripts/package.sh"
    packages+=("$package")
done
[ -x out/bin/orvo-host ] || fail "there is no out/bin/orvo-host: build it first, with scripts/build.sh"

work=$(mktemp -d)
# Never through a mount into this system's own folders.
clean_up()
{
    for folder in "$work"/*/{proc,dev,tmp/.X11-unix}; do umount -l "$folder" 2> /dev/null || true; done
    rm -rf --one-file-system -- "$work"
}
trap clean_up EXIT

recording=$(dpkg -L chuck-data | grep '\.wav$' | sort | head -n 1)
settings=(--preset "Factory/Mastering/Gentle Master" --set in_gain=9 --set oversampling=4x)
HOME=$work out/bin/orvo-host render "$recording" "$work/expected.wav" "${settings[@]}" > /dev/null

# files_of ROOT: what stands there and would be missed or left; not what apt and the loader keep of their own work.
files_of()
{
    (cd "$1" && find . -xdev \( -path ./var/lib/apt -o -path ./var/lib/dpkg -o -path ./var/cache -o -path ./var/log \
        -o -path ./root -o -path ./home -o -path ./proc -o -path ./dev -o -path ./tmp -o -path ./run \) -prune \
        -o ! -path './etc/ld.so.cache*' -print | sort)
}

# try SUITE
try()
{
    local suite=$1 root=$work/$1 base=$PWD/.deps/$1.tar package
    if [ ! -f "$base" ]; then
        say "fetching $suite"
        mmdebstrap --quiet --variant=minbase --format=tar "$suite" "$base.new" && mv -- "$base.new" "$base"
    fi
    mkdir "$root" && tar -xf "$base" -C "$root"
    inside() { chroot "$root" /usr/bin/env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin DEBIAN_FRONTEND=noninteractive "$@"; }
    as_user() { inside HOME=/home/user DISPLAY="$DISPLAY" XAUTHORITY=/home/user/cookie setpriv --reuid user --regid user --clear-groups "$@"; }

    inside useradd --create-home user
    cp /etc/resolv.conf "$root/etc/resolv.conf"
    cp "${XAUTHORITY:-$HOME/.Xauthority}" "$root/home/user/cookie"
    cp "$recording" "$root/home/user/in.wav"
    chown -R --reference "$root/home/user" "$root/home/user"
    mkdir -p "$root/tmp/.X11-unix"
    for folder in /proc /dev /tmp/.X11-unix; do mount --bind "$folder" "$root$folder"; done
    files_of "$root" > "$work/before"

    say "$suite: installing"
    cp "${packages[@]}" "$root/var/cache/apt/archives"
    {
        inside apt-get update -qq
        inside apt-get install -y --no-install-recommends "${packages[@]/#out\///var/cache/apt/archives/}"
    } > "$work/log" 2>&1 || { cat "$work/log" >&2; fail "$suite: cannot install"; }

    say "$suite: rendering and opening the window"
    as_user orvo-host info > /dev/null || fail "$suite: the module does not load"
    for module in vst3/Orvo.vst3 lv2/Orvo.lv2; do
        as_user orvo-host render /home/user/in.wav /home/user/out.wav --force "${settings[@]}" --plugin /usr/lib/$module > /dev/null \
            || fail "$suite: $module does not render"
        cmp "$root/home/user/out.wav" "$work/expected.wav" || fail "$suite: $module sounds otherwise"
        as_user orvo-host open --screenshot "/home/user/${module%/*}.png" --plugin /usr/lib/$module > /dev/null \
            || fail "$suite: $module shows no window"
    done
    mkdir -p out/packages
    for format in vst3 lv2; do cp "$root/home/user/$format.png" "out/packages/$suite-$format.png"; done

    say "$suite: removing"
    for package in orvo-tools orvo-lv2 orvo-vst3; do inside dpkg --remove $package; done > /dev/null
    if find "$root/usr" "$root/etc" -iname '*orvo*' | grep .; then fail "$suite: removing left these"; fi
    {
        inside dpkg --purge orvo-tools orvo-lv2 orvo-vst3
        inside apt-get autoremove --purge -y
    } > "$work/log" 2>&1 || { cat "$work/log" >&2; fail "$suite: cannot purge"; }
    files_of "$root" > "$work/after"
    diff "$work/before" "$work/after" || fail "$suite: purging left or took these"
    say "$suite: passed"
}

for suite in "${suites[@]}"; do try "$suite"; done
