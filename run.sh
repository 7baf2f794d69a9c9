#!/usr/bin/env bash
# Installs what is missing, builds the desktop program as users get it and starts it. See usage below.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"
. scripts/packages.sh

usage() {
    cat <<'TEXT'
Usage: ./run.sh [--english | --spanish]
Without a language: Spanish where the locale is Spanish, else English. The very first start is set to the
demonstration recording, so that an ECG can be taken at once. On a machine without a display the program is used by
a script on a virtual one, which leaves pictures and studies.
TEXT
}

language=english
case ${LC_ALL:-${LC_MESSAGES:-${LANG-}}} in es*) language=spanish ;; esac
case "$#:${1-}" in
    0:) ;;
    1:--english | 1:--spanish) language=${1#--} ;;
    1:-h | 1:--help)
        usage
        exit 0
        ;;
    *)
        usage >&2
        exit 2
        ;;
esac

# build ON|OFF TARGET...: in the language of the tools, with the tests (for the tour) or without.
build() {
    local tests=$1
    shift
    LC_ALL=C.UTF-8 cmake --preset release -DVELANTOR_BENCHMARKS=OFF -DVELANTOR_TESTS="$tests"
    LC_ALL=C.UTF-8 cmake --build --preset release --target "$@"
}

if [[ -z ${DISPLAY-} ]]; then
    echo "There is no display here: the program is used by a script on a virtual one."
    install_missing "${build_packages[@]}" "${display_packages[@]}"
    build ON tour velantor-cli sim-ecg-device ecg500
    exec bash scripts/tour.sh build/release "$language" 1280x800
fi

install_missing "${build_packages[@]}"
build OFF velantor-ecg ecg500
settings=${XDG_CONFIG_HOME:-$HOME/.config}/Velantor/ECG.conf
if [[ ! -e $settings ]]; then
    mkdir -p "$(dirname "$settings")"
    printf '[Config]\nAcqMode=demo\n' >"$settings"
fi
program=bin/velantor-ecg
[[ $language == spanish ]] || program=bin/$language/velantor-ecg
cd build/release # where the demonstration recording is
exec "$program"
