# Wine, to try what was built for Windows: to be sourced, after debian.sh.

readonly wine_packages=(wine wine64 xvfb libgl1-mesa-dri)

# start_wine FOLDER: installs what is missing, makes a prefix and a home of its own in
# the folder, which has to be an absolute path, and points the environment at them.
start_wine() {
    install_packages "${wine_packages[@]}"
    mkdir -p "$1/home"
    export WINEPREFIX=$1/prefix HOME=$1/home WINEARCH=win64 WINEDEBUG=-all
    # No entries in the desktop's menus, and no offers to fetch what we do not use.
    export WINEDLLOVERRIDES="winemenubuilder.exe=d;mscoree=d;mshtml=d"
    # The tests' tools are looked for by the PATH alone.
    unset WINEPATH
    [ -e "$WINEPREFIX/system.reg" ] || wine wineboot -i >"$1/wineboot.log" 2>&1 ||
        fail "Wine could not be set up: $(tail -n 3 "$1/wineboot.log")"
    # Written out only when the server ends.
    wineserver -w
}

stop_wine() {
    wineserver -k 2>/dev/null || true
    wineserver -w
}
