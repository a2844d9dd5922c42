#!/usr/bin/env bash
# usage: docs/manual/make_manual.sh PICTURES PDF VERSION
# Sets the manual with asciidoctor-pdf. The same sources and pictures give the same file: its dates are the commit's.
set -euo pipefail
pictures=$(realpath -- "$1")
pdf=$(realpath -m -- "$2")
version=$3

cd "$(dirname "$0")/../.."
source scripts/lib/common.sh

command -v asciidoctor-pdf > /dev/null || fail "no asciidoctor-pdf: run scripts/setup.sh --release first"

libraries=$(mktemp)
trap 'rm -f -- "$libraries"' EXIT
awk '/^[^#]/ {
    if (! ($3 in libraries)) purposes[++n] = $3
    libraries[$3] = libraries[$3] (libraries[$3] ? ", " : "") "`" $1 "`" (NF < 4 ? "" : " (" $4 ")")
    if (! seen[$2]++) packages[$3] = packages[$3] (packages[$3] ? ", " : "") $2
} END {
    for (i = 1; i <= n; ++i) print "|" purposes[i] " |" libraries[purposes[i]] " |" packages[purposes[i]]
}' packaging/libraries.txt > "$libraries"

mkdir -p -- "$(dirname -- "$pdf")"
SOURCE_DATE_EPOCH=$(source_date) TZ=UTC asciidoctor-pdf --failure-level WARN \
    --theme docs/manual/manual-theme.yml -a pdf-fontsdir=resources/fonts,GEM_FONTS_DIR \
    -a orvo-version="$version" -a pictures="$pictures" -a libraries="$libraries" \
    -a allow-uri-read! --safe-mode unsafe -o "$pdf" docs/manual/manual.adoc
