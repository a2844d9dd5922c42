#!/usr/bin/env bash
# Whether every source file is formatted. clang-format 14 and 19 agree about all of them, so either one decides; other
# versions may differ in details, so with them alone the check is skipped (exit code 77).
set -euo pipefail
cd "$(dirname "$0")/.."

formatter=
for candidate in clang-format-14 clang-format-19 clang-format; do
    case "$("$candidate" --version 2>/dev/null)" in *"version 14."* | *"version 19."*) formatter=$candidate; break ;; esac
done
if [ -z "$formatter" ]; then
    echo "skipped: no clang-format 14 or 19"
    exit 77
fi

find source tests tools benchmarks reference \( -name '*.cpp' -o -name '*.h' \) -print0 \
    | xargs -0 "$formatter" --dry-run --Werror
