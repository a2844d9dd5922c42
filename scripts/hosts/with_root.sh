#!/usr/bin/env bash
# usage: unshare --mount scripts/hosts/with_root.sh ROOT COMMAND...
# Makes this system's homes, screens and devices visible below ROOT, and runs the command, which enters ROOT by chroot.
set -euo pipefail
root=$1
shift
for folder in /proc /sys /dev /tmp "$PWD"; do
    mkdir -p "$root$folder"
    mount --bind "$folder" "$root$folder"
done
# JACK's shared memory has another form there.
mount -t tmpfs none "$root/dev/shm"
exec "$@"
