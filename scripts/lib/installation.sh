# Where install.sh puts things and uninstall.sh finds them; source it after common.sh, with $caller naming the folder
# that the script was called from.

[ -n "${HOME:-}" ] || fail "HOME is not set"

installed_module=$HOME/.vst3/Orvo.vst3

# The plug-in looks for its folder in the same places.
base=${XDG_CONFIG_HOME:-$HOME/.config}
case $base in /*) ;; *) base=$caller/$base ;; esac

configuration=$base/Tessarin/Orvo
factory=$configuration/Presets/Factory
