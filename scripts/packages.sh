# The Debian packages that the project needs, in one place, and the function that installs what is missing.
# Sourced by the scripts at the root.

build_packages=(
    g++ cmake ninja-build pkg-config
    qtbase5-dev libqt5serialport5-dev libqt5sql5-sqlite libminizip-dev libsoxr-dev zlib1g-dev
    qttools5-dev qttools5-dev-tools qttranslations5-l10n libqt5svg5 fonts-liberation)
# A display that only exists in memory, with a window manager.
display_packages=(xvfb openbox)
test_packages=(python3 sqlite3 unzip zip groff-base clang-format-14 "${display_packages[@]}")
# Design of the filters, compiler and runtime of the fuzzers, static checks, benchmarks, cross-compiler for the Win32
# port.
check_packages=(python3-scipy clang-14 libclang-rt-14-dev clang-tidy-14 libbenchmark-dev g++-mingw-w64-x86-64)

as_root() {
    if ((EUID == 0)); then
        "$@"
    elif command -v sudo >/dev/null; then
        sudo "$@"
    else
        echo "Installing packages needs root rights; become root or install sudo, then run this again." >&2
        return 1
    fi
}

# install_missing PACKAGE...: touches the network only if a package is missing.
install_missing() {
    local missing=() package
    if ! command -v dpkg-query >/dev/null; then
        echo "This is no Debian machine; these packages or their like must be there: $*" >&2
        return 0
    fi
    for package; do
        [[ $(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null) == installed ]] || missing+=("$package")
    done
    ((${#missing[@]})) || return 0
    echo "Installing ${missing[*]}"
    as_root apt-get update -q &&
        as_root env DEBIAN_FRONTEND=noninteractive apt-get install -q -y --no-install-recommends "${missing[@]}" ||
        {
            echo "These packages could not be installed: ${missing[*]}" >&2
            return 1
        }
}
