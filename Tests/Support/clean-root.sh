# A clean Debian of some release, to try things in. Sourced after machine.sh, not run. Needs the network, and root or
# sudo. What debootstrap has made once is kept as an archive in build/roots.

releases=(bookworm trixie)
own_release=$(. /etc/os-release && echo "$VERSION_CODENAME")
roots=$PWD/build/roots

as_root() {
    if ((EUID == 0)); then "$@"; else sudo "$@"; fi
}

# The mirror that this machine uses for Debian itself.
mirror() {
    local uri
    uri=$(sed -nE 's/^URIs: *([^ ]+).*/\1/p' /etc/apt/sources.list.d/debian.sources 2>/dev/null | head -n 1)
    [[ -n $uri ]] || uri=$(sed -nE 's/^deb (\[[^]]*\] )?([^ ]+) '"$own_release"' .*/\2/p' /etc/apt/sources.list \
        2>/dev/null | head -n 1)
    echo "${uri:-http://deb.debian.org/debian}"
}

# in_root COMMAND…: as root in $root, in an environment that has nothing of this one.
in_root() {
    as_root chroot "$root" env -i HOME=/root PATH=/usr/sbin:/usr/bin:/sbin:/bin LC_ALL=C.UTF-8 \
        DEBIAN_FRONTEND=noninteractive "$@"
}

release_root() {
    local place
    for place in /proc /dev/pts /ccache; do
        if mountpoint -q "$root$place"; then as_root umount --lazy "$root$place"; fi
    done
}

remove_root() {
    release_root
    as_root rm -rf --one-file-system "$root"
}

# use_root RELEASE PURPOSE: says which root the others are about.
use_root() {
    if [[ " ${releases[*]} " != *" $1 "* ]]; then
        echo "There is no release $1 among those that are supported: ${releases[*]}" >&2
        return 2
    fi
    release=$1
    root=$roots/$release-$2
    mkdir -p "$roots"
    trap release_root EXIT
}

# The lists of this machine, for the release.
write_package_lists() {
    local list
    [[ " ${releases[*]} " == *" $own_release "* ]] || return 0
    for list in /etc/apt/sources.list /etc/apt/sources.list.d/debian.sources; do
        as_root rm -f "$root$list"
        if [[ -f $list ]]; then sed "s/\b$own_release\b/$release/g" "$list" | as_root tee "$root$list" >/dev/null; fi
    done
}

make_root() {
    local bare=$roots/$release.tar
    remove_root
    if [[ ! -f $bare ]]; then
        as_root debootstrap --variant=minbase --include=ca-certificates "$release" "$root" "$(mirror)" \
            >"$roots/$release-debootstrap.log"
        write_package_lists
        as_root tar -C "$root" -cf "$bare.part" .
        as_root mv "$bare.part" "$bare"
    else
        as_root mkdir -p "$root"
        as_root tar -C "$root" -xf "$bare"
    fi
    as_root cp /etc/resolv.conf /etc/hosts "$root/etc"
    as_root mount -t proc proc "$root/proc"
    in_root apt-get update -qq
}

# install_in_root PACKAGE…: with nothing that is only recommended, so that what is needed is a dependency.
install_in_root() {
    in_root apt-get install -y -qq --no-install-recommends "$@" >>"$root.log" 2>&1 ||
        { tail -n 30 "$root.log" >&2; return 1; }
}

# copy_commit FOLDER: the sources as they are committed, into a folder of the root.
copy_commit() {
    as_root mkdir -p "$root$1"
    git archive HEAD | as_root tar -C "$root$1" -x
}
