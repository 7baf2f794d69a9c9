#!/usr/bin/env bash
# tour.sh VELANTOR-CLI SAMPLE-STUDY: what the program does with a study, step by step, in a scratch folder of its
# own that stays for a look. Ends with an error where a step does not do what it should.
set -euo pipefail

cli=$(realpath "$1")
sample_study=$(realpath "$2")
tour=$(mktemp -d "${TMPDIR:-/tmp}/velantor-tour.XXXXXX")
here=$tour/practice
there=$tour/hospital
shared=$tour/shared
mkdir "$shared"

fail() {
    echo "The tour FAILED: $*" >&2
    echo "Its files are in $tour" >&2
    exit 1
}
trap 'fail "the step above ended with an error (line $LINENO)"' ERR

heading() {
    printf '\n== %s\n' "$*"
}

exec 3>&1
# Runs a command of the tool and shows it as a user would type it, also where its output is kept for a check.
velantor() {
    echo "\$ velantor-cli $*" >&3
    "$cli" "$@"
}

# Long lines are cut for the eye.
shorten() {
    cut -c "1-${1:-160}" | sed 's/$/ .../'
}

heading "A stress test of 60 seconds, 14 leads at 500 Hz, is recorded in $here"
id=$("$sample_study" "$here" 60)
echo "Study $id"
ls -l "$here"

heading "The list of studies"
listed=$(velantor --data "$here" list)
echo "$listed"
[[ $listed == *"\"id\":$id,"* ]] || fail "the new study is not listed"
base=$(sed -n 's/.*"baseFilename":"\([^"]*\)".*/\1/p' <<<"$listed")

heading "The study itself, shortened"
velantor --data "$here" show "$id" >"$tour/shown-here.json"
shorten <"$tour/shown-here.json"
[[ $(<"$tour/shown-here.json") == *'"samples":30000'* ]] || fail "the study does not hold its 30000 samples"

heading "Lead II around the first R, in counts"
velantor --data "$here" samples "$id" 1 140 20

heading "The study goes to a shared folder as one archive"
velantor --data "$here" export "$id" "$shared"
ls -l "$shared"
archives=$(velantor --data "$here" archives "$shared")
echo "$archives"
[[ $archives == *"\"baseFilename\":\"$base\""* ]] || fail "the archive is not listed"

heading "Another data folder takes it in"
imported=$(velantor --data "$there" import "$shared/$base.vtz")
echo "$imported"
listed_there=$(velantor --data "$there" list)
[[ $listed_there == "$listed" ]] || fail "the two lists differ"
velantor --data "$there" show "$id" >"$tour/shown-there.json"
cmp "$tour/shown-here.json" "$tour/shown-there.json" || fail "the study arrived changed"
echo "Both folders show the same study."

heading "The index of the second folder is thrown away and made again from the files"
rm "$there/data/studies.sqlite"
listed_there=$(velantor --data "$there" list)
echo "$listed_there"
[[ $listed_there == "$listed" ]] || fail "the study did not come back"

heading "The end"
echo "Everything went as it should. The files of the tour are in $tour"
