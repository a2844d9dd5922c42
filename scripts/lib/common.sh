# Shared by the scripts, in the project and in the release's archive.

say() { printf '\033[1m==> %s\033[0m\n' "$*"; }

fail() { printf 'error: %s\n' "$*" >&2; exit 1; }

as_root()
{
    if [ "$(id -u)" -eq 0 ]; then
        "$@"
    elif command -v sudo > /dev/null; then
        say "needs root, so with sudo: $*"
        sudo "$@"
    else
        fail "this needs root and there is no sudo: $*"
    fi
}

# configure_and_build PRESET [cmake build arguments]: ccache where there is one, shared by every build folder.
configure_and_build()
{
    local preset=$1
    shift
    if command -v ccache > /dev/null; then
        export CMAKE_C_COMPILER_LAUNCHER=ccache CMAKE_CXX_COMPILER_LAUNCHER=ccache
        export CCACHE_BASEDIR="$PWD" CCACHE_NOHASHDIR=1 CCACHE_SLOPPINESS=pch_defines,time_macros
    fi
    say "configuring ($preset)"
    mkdir -p build
    cmake --preset "$preset" > "build/configure-$preset.log" 2>&1 \
        || { cat "build/configure-$preset.log" >&2; fail "configuring failed"; }
    say "building ($preset)"
    cmake --build --preset "$preset" -j "$(nproc)" "$@"
}

# The moment that everything made for a release is dated to, in seconds since 1970: the commit's.
source_date()
{
    echo "${SOURCE_DATE_EPOCH:-$(git log -1 --format=%ct 2> /dev/null || echo 0)}"
}
