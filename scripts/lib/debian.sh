# Debian's packages, for the set-up scripts: to be sourced.

fail() {
    echo "${0##*/}: $*" >&2
    exit 1
}

as_root() {
    if [ "$(id -u)" -eq 0 ]; then
        "$@"
    elif command -v sudo >/dev/null; then
        sudo "$@"
    else
        fail "installing packages needs root or sudo: $*"
    fi
}

installed() {
    [ "$(dpkg-query -W -f '${db:Status-Status}' "$1" 2>/dev/null)" = installed ]
}

install_packages() {
    command -v apt-get >/dev/null || fail "this set-up knows Debian's apt-get only"
    local missing=() package
    for package in "$@"; do
        installed "$package" || missing+=("$package")
    done
    [ ${#missing[@]} -gt 0 ] || return 0
    echo "${0##*/}: installing ${missing[*]}"
    as_root apt-get -qq update || fail "apt-get update failed"
    as_root env DEBIAN_FRONTEND=noninteractive \
        apt-get -qq install --no-install-recommends -y "${missing[@]}" >/dev/null ||
        fail "apt-get could not install: ${missing[*]}"
}

# True on the releases of Debian that the set-up is made for.
is_known_release() {
    [ -r /etc/os-release ] &&
        [[ $(. /etc/os-release && echo "${ID:-} ${VERSION_ID:-}") =~ ^debian\ 1[23]$ ]]
}

# Known only once apt has its lists.
debian_mirror() {
    apt-get indextargets --format '$(REPO_URI) $(ORIGIN) $(LABEL)' 'Created-By: Packages' |
        awk '$2 == "Debian" && $3 == "Debian" && !found { found = $1 } END { print found }'
}

# private_apt ROOT RELEASE: an apt that knows only that release of Debian, from the
# mirror that this machine uses already, so that the machine's own sources stay as
# they are. apt checks the signatures. Used with APT_CONFIG=ROOT/apt.conf.
private_apt() {
    local root=$1 release=$2 mirror
    mirror=$(debian_mirror)
    if [ -z "$mirror" ]; then
        as_root apt-get -qq update || fail "apt-get update failed"
        mirror=$(debian_mirror)
    fi
    [ -n "$mirror" ] || fail "no Debian mirror among this machine's apt sources"
    mkdir -p "$root"/{lists/partial,cache/archives/partial}
    local signed=/usr/share/keyrings/debian-archive-keyring.gpg kind
    for kind in deb deb-src; do
        echo "$kind [signed-by=$signed] $mirror $release main"
    done >"$root/sources.list"
    cat >"$root/apt.conf" <<CONF
Dir::Etc::sourcelist "$root/sources.list";
Dir::Etc::sourceparts "/dev/null";
Dir::Etc::preferencesparts "/dev/null";
Dir::State::lists "$root/lists";
Dir::Cache "$root/cache";
APT::Sandbox::User "";
APT::Get::List-Cleanup "0";
CONF
}
