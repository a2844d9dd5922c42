#!/usr/bin/env bash
# usage: unshare --mount scripts/hosts/with_root.sh ROOT COMMAND...
# Makes this system's homes, screens and devices visible below ROOT, and runs the command, which enters ROOT by chroot.
set -euo pipefail
root=$1
shift
for folder in /proc /sys /dev /dev/shm /tmp "$PWD"; do
    mkdir -p "$root$folder"
    mount --bind "$folder" "$root$folder"
done
exec "$@"
