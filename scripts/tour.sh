#!/usr/bin/env bash
# tour.sh BUILD LANGUAGE SIZE: takes resting ECGs with the desktop program of a build folder, as a technician would,
# on a virtual display of SIZE (1280x800, say) and in LANGUAGE (english or spanish), and holds the studies against
# the console tool. Leaves pictures and studies below BUILD/tour/. The device plays a real twelve-lead recording where
# there is one.
set -euo pipefail

build=$(realpath "$1")
language=$2
size=$3
sources=$(realpath "$(dirname "${BASH_SOURCE[0]}")/..")
folder=$build/tour/$language-$size
cli=$build/src/cli/velantor-cli
recordings=${VELANTOR_RECORDINGS:-$sources/../shared/ecg}

fail() {
    echo "The tour FAILED: $*" >&2
    exit 1
}
trap 'fail "the step above ended with an error (line $LINENO)"' ERR

source=$build/ecg500.dat
real=$recordings/ptb/s0010_re
[[ ! -e $real.hea ]] || source=$(realpath "$real.hea")
source=${source%.hea}

# A home of its own: settings, data and the mark of the running program do not meet those of the user.
rm -rf "$folder"
mkdir -p "$folder"/{settings,home,tmp}
export HOME=$folder/home XDG_CONFIG_HOME=$folder/settings XDG_DATA_HOME=$folder/home TMPDIR=$folder/tmp
export XDG_RUNTIME_DIR=$folder/tmp
chmod 700 "$folder/tmp"

tour=$build/bin/velantor-tour
[[ $language == spanish ]] || tour=$build/bin/$language/velantor-tour
cd "$build" # where the demonstration recording is
"$sources/scripts/virtual-display.sh" "$size" \
    "$tour" "$language" "$folder/pictures" "$build/simulators/sim-ecg-device" "$source"

data=$folder/home/VelantorStress
mapfile -t studies < <("$cli" --data "$data" list | sed -n 's/.*"id":\([0-9]*\).*/\1/p')
((${#studies[@]} == 4)) || fail "there are ${#studies[@]} studies instead of 4"
mkdir "$folder/shared"
for id in "${studies[@]}"; do
    "$cli" --data "$data" show "$id" >"$folder/tmp/study.json"
    grep -q '"studyType":"ECG"' "$folder/tmp/study.json" || fail "study $id is no resting ECG"
    "$cli" --data "$data" export "$id" "$folder/shared"
done
for archive in "$folder/shared/"*.vtz; do
    "$cli" --data "$folder/elsewhere" import "$archive" >/dev/null
done
imported=$("$cli" --data "$folder/elsewhere" list | wc -l)
((imported == 4)) || fail "$imported of 4 studies were imported elsewhere"
rm -rf "$folder/tmp"
echo "pictures $folder/pictures"
echo "studies $data"
