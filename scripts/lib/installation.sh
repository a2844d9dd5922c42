# Where install.sh puts things and uninstall.sh finds them; source it after common.sh, with $caller naming the folder
# that the script was called from.

[ -n "${HOME:-}" ] || fail "HOME is not set"

# installed_as BUNDLE: its place, by its format.
installed_as()
{
    case $1 in
        *.vst3) echo "$HOME/.vst3/Orvo.vst3" ;;
        *.lv2) echo "$HOME/.lv2/Orvo.lv2" ;;
        *) fail "neither a VST3 nor an LV2 bundle: $1" ;;
    esac
}

# library_of BUNDLE: its shared library; empty if there is none.
library_of() { compgen -G "$1/Contents/*/Orvo.so" || compgen -G "$1/Orvo.so" || true; }

# The plug-in looks for its folder in the same places.
base=${XDG_CONFIG_HOME:-$HOME/.config}
case $base in /*) ;; *) base=$caller/$base ;; esac

configuration=$base/Tessarin/Orvo
factory=$configuration/Presets/Factory
