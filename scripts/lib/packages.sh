# Shared by the scripts that install Debian packages on this machine; source it after common.sh.

# install_packages PACKAGE...: those that are missing, with sudo, after saying so.
install_packages()
{
    local missing=() package
    for package in "$@"; do
        dpkg-query -W -f='${db:Status-Status}' "$package" 2> /dev/null | grep -qx installed || missing+=("$package")
    done
    if [ ${#missing[@]} -eq 0 ]; then return; fi

    say "installing with apt: ${missing[*]}"
    as_root apt-get update -qq || fail "apt could not refresh its package lists: is there a network connection?"
    as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}" \
        || fail "apt could not install: ${missing[*]}"
}
