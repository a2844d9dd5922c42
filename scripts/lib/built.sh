# Shared by the scripts that use what was built; source it after common.sh.

# find_build: sets $module, unless it is set already, and $program.
find_build()
{
    program=$PWD/out/bin/orvo-host
    if [ -z "${module:-}" ]; then module=$PWD/out/Orvo.vst3; fi
    if [ ! -d "$module" ]; then module=$PWD/build/ci/source/Orvo_artefacts/Release/VST3/Orvo.vst3; fi
    if [ ! -x "$program" ]; then program=$PWD/build/ci/bin/orvo-host; fi
    [ -d "$module" ] && [ -x "$program" ] || fail "no module or no orvo-host: build them first, with scripts/build.sh"
    say "module: $module"
}
