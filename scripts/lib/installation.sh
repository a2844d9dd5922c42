# Where install.sh puts things and uninstall.sh finds them; source it after common.sh, with $caller naming the folder
# that the script was called from.

[ -n "${HOME:-}" ] || fail "HOME is not set"

# The plug-in looks for its folder in the same places.
base=${XDG_CONFIG_HOME:-$HOME/.config}
case $base in /*) ;; *) base=$caller/$base ;; esac

configuration=$base/Tessarin/Orvo
presets=$configuration/Presets
factory=$presets/Factory
installed_module=$HOME/.vst3/Orvo.vst3

# What is installed, a line each: "module" and its path, "manual" and a file's name in the configuration folder, and
# "preset" and a path below the factory folder.
manifest=$presets/.orvo-installed

# installed KIND: the manifest's paths of that kind.
installed()
{
    if [ -f "$manifest" ]; then sed -n "s/^$1 //p" "$manifest"; fi
}

# remove_preset FILE: and the folders below the factory folder that it leaves empty.
remove_preset()
{
    case /$1/ in */../*) fail "$manifest names a file outside the factory folder: $1" ;; esac
    rm -f -- "$factory/$1"
    local folder
    folder=$(dirname -- "$1")
    while [ "$folder" != . ]; do
        rmdir -- "$factory/$folder" 2> /dev/null || break
        folder=$(dirname -- "$folder")
    done
}

# remove_manual FILE
remove_manual()
{
    case $1 in
        */*) fail "$manifest names a manual outside its folder: $1" ;;
        "Orvo Manual "*.pdf) rm -f -- "$configuration/$1" ;;
        *) fail "$manifest names no manual of ours: $1" ;;
    esac
}
