#!/usr/bin/env bash
# usage: libraries_test.sh PROCESSOR ORVO.VST3 ORVO.LV2
# Holds the shared libraries that each of the built modules asks for against packaging/libraries.txt: those that it is
# linked to, and the names of those that it opens itself, which stand in it as text. Built where the C library is that of the
# release, it asks for none newer than the manual says.
set -euo pipefail
export LC_ALL=C
cd "$(dirname "$0")/../.."

processor=$1
home=$(mktemp -d)
trap 'rm -rf "$home"' EXIT

# listed GROUP: the names in that group of the list, of the modules' processor.
listed()
{
    awk -v group="# $1" -v processor="$processor" '/^#/ { on = $0 == group }
        on && /^[^#]/ && (NF < 4 || $4 == processor) { print $1 }' packaging/libraries.txt | sort
}

fail() { echo "FAILED: $*" >&2; exit 1; }

same() { diff "$home/listed" "$home/found" || fail "the module asks for other libraries than those under \"$1\""; }

# check BUNDLE LIBRARY
check()
{
    local bundle=$1 module=$2 oldest=2.34 newest
    listed linked > "$home/listed"
    readelf -d "$module" | sed -n 's/.*(NEEDED).*\[\(.*\)\]$/\1/p' | sort > "$home/found"
    same linked

    { cat "$home/listed"; listed "opened with the window"; } | sort > "$home/names"
    mv "$home/names" "$home/listed"
    strings "$module" | grep -xE 'lib[A-Za-z0-9_+-]+\.so(\.[0-9]+)*|ld-linux[a-z0-9_.-]+' | sort -u > "$home/found"
    same "opened with the window"

    # A newer system's headers bind other functions to it, too.
    if [ "$(getconf GNU_LIBC_VERSION)" = "glibc 2.36" ]; then
        newest=$(readelf -V "$module" | grep -o 'GLIBC_[0-9.]*' | sort -Vu | tail -n 1)
        [ "$newest" = "GLIBC_$oldest" ] || fail "the module asks for $newest"
    fi
    grep -q "glibc $oldest or newer" docs/manual/manual.adoc || fail "the manual does not name glibc $oldest"
    if readelf -V "$module" | grep -E 'GLIBCXX|CXXABI'; then fail "the module asks for a C++ library"; fi

    if grep -rF "$PWD" "$bundle"; then fail "the bundle names the folder that it was built in"; fi
}

check "$2" "$2/Contents/$processor-linux/Orvo.so"
check "$3" "$3/Orvo.so"
