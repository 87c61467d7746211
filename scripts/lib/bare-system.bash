# A bare Debian 12 in a folder, for trying what a machine without anything does. Sourced by the
# scripts that check installations; needs root and debootstrap.

fail() {
    echo "${0##*/}: $*" >&2
    exit 1
}

# The archives this machine installs from, as lines of a sources.list.
host_archives() {
    apt-get indextargets --format 'deb $(REPO_URI) $(RELEASE) $(COMPONENT)' \
        'Identifier: Packages' 'Origin: Debian' | sort -u
}

# make_bare_system FOLDER [BASE]: fills FOLDER, from BASE where that is an earlier bare system.
make_bare_system() {
    local root=$1 base=${2:-} archive
    [ "$(id -u)" -eq 0 ] || fail "a bare system can be made by root only"
    if [ -n "$base" ]; then
        cp -a "$base/." "$root"
    else
        command -v debootstrap >/dev/null || fail "debootstrap is not installed"
        archive=$(host_archives | awk '$3 == "bookworm" && $4 == "main" { print $2; exit }')
        [ -n "$archive" ] || fail "this machine knows no archive of Debian 12"
        debootstrap --variant=minbase bookworm "$root" "$archive" >"$root.log" 2>&1 ||
            { tail -n 20 "$root.log" >&2; fail "debootstrap failed"; }
        rm -f "$root.log"
    fi
    host_archives >"$root/etc/apt/sources.list"
    # Proxies and the like.
    apt-config dump | grep -E '^Acquire::(http|https|Check|Retries)' >"$root/etc/apt/apt.conf.d/90host" || true
    cp /etc/resolv.conf "$root/etc/resolv.conf"
    printf '127.0.0.1 localhost\n::1 localhost\n' >"$root/etc/hosts"
    # Nothing that is installed may start a service of the system.
    printf '#!/bin/sh\nexit 101\n' >"$root/usr/sbin/policy-rc.d"
    chmod 755 "$root/usr/sbin/policy-rc.d"
}

# in_bare_system FOLDER COMMAND...: runs a command there with processes and mounts of its own; both
# are gone when it ends.
in_bare_system() {
    unshare --mount --pid --fork --ipc --uts --kill-child --propagation private bash -c '
        set -e
        root=$1
        shift
        mount -t proc proc "$root/proc"
        mount -t sysfs -o ro sysfs "$root/sys"
        mount -t tmpfs -o mode=755 tmpfs "$root/dev"
        for device in null zero full random urandom tty; do
            touch "$root/dev/$device"
            mount --bind "/dev/$device" "$root/dev/$device"
        done
        mkdir "$root/dev/pts" "$root/dev/shm"
        mount -t devpts -o newinstance,ptmxmode=666,mode=620 devpts "$root/dev/pts"
        ln -s pts/ptmx "$root/dev/ptmx"
        ln -s /proc/self/fd "$root/dev/fd"
        mount -t tmpfs -o mode=1777 tmpfs "$root/dev/shm"
        mount -t tmpfs -o mode=1777 tmpfs "$root/tmp"
        exec chroot "$root" /usr/bin/env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root LANG=C.UTF-8 \
            TERM=dumb DEBIAN_FRONTEND=noninteractive "$@"
    ' in_bare_system "$@"
}

# remove_bare_system FOLDER: only when nothing is mounted there.
remove_bare_system() {
    local root=$1
    if awk '{ print $5 }' /proc/self/mountinfo | grep -qF "$root/"; then
        fail "something is still mounted in $root; it was left as it is"
    fi
    rm -rf --one-file-system "$root"
}
