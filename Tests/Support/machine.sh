# What ./run and ./test share: Debian's packages, configuring and building. Sourced, not run.

packages=(
    g++ cmake ninja-build pkg-config
    qtbase5-dev qtbase5-private-dev qtdeclarative5-dev qtdeclarative5-private-dev qtdeclarative5-dev-tools
    qttools5-dev qttools5-dev-tools
    libqt5svg5 libqt5xmlpatterns5-dev zlib1g-dev
    libqt5quickwidgets5 qml-module-qtquick2 qml-module-qtquick-localstorage libqt5sql5-sqlite
    libavformat-dev libavcodec-dev libavutil-dev libswscale-dev
    libxcb-res0-dev
    ffmpeg xvfb openbox picom weston qtwayland5 xdotool x11-utils fonts-dejavu-core libxml2-utils python3 strace
    dbus-daemon at-spi2-core python3-pyatspi
)

# Programs that others wrote, in which ./test tries tips.
programs=(librecad)

say() { printf '\033[1m%s\033[0m\n' "$*"; }

# missing_packages PACKAGE…
missing_packages() {
    local package
    for package; do
        dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null | grep -qx installed || echo "$package"
    done
}

# install_packages [PACKAGE…]: what the build needs, and these packages besides.
install_packages() {
    local missing sudo=()
    mapfile -t missing < <(missing_packages "${packages[@]}" "$@")
    ((${#missing[@]})) || return 0
    say "Installing: ${missing[*]}"
    if ((EUID != 0)); then
        if ! command -v sudo >/dev/null; then
            echo "These packages are missing, and installing them needs root or sudo." >&2
            return 1
        fi
        sudo=(sudo)
    fi
    "${sudo[@]}" apt-get update -qq
    "${sudo[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get install -y -qq --no-install-recommends "${missing[@]}"
}

# build PRESET [TARGET…]
build() {
    local preset=$1
    shift
    # A configured folder knows its settings; configuring again would only cost time.
    [[ -f build/$preset/build.ninja ]] || cmake --preset "$preset"
    cmake --build --preset "$preset" ${1:+--target "$@"}
}
