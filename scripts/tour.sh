#!/usr/bin/env bash
# tour.sh VELANTOR-CLI ECG500: what the program does with a study, step by step, in a scratch folder of its
# own that stays for a look. Ends with an error where a step does not do what it should.
set -euo pipefail

cli=$(realpath "$1")
demo=$(realpath "$2")
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

heading "A stress test of two minutes, 14 leads at 500 Hz, is recorded in $here"
echo "(The demonstration stands in for a patient, and its time does not have to pass.)"
velantor --data "$here" record --source "demo:$demo" --unpaced --protocol Bruce --stage-scale 10 \
    --patient lastName=Diaz --patient firstName=Eva --patient sex=F --patient age=54 \
    --bp 25:125/80 --bp 80:165/85 --event "75:dizzy" --recovery 100 --stop-after 120 | tee "$tour/recorded.jsonl"
id=$(sed -n 's/.*"event":"started","id":\([0-9]*\).*/\1/p' "$tour/recorded.jsonl")
[[ -n $id ]] || fail "no study was recorded"
ls -l "$here"

heading "The list of studies"
listed=$(velantor --data "$here" list)
echo "$listed"
[[ $listed == *"\"id\":$id,"* ]] || fail "the new study is not listed"
base=$(sed -n 's/.*"baseFilename":"\([^"]*\)".*/\1/p' <<<"$listed")

heading "The study itself, shortened"
velantor --data "$here" show "$id" >"$tour/shown-here.json"
shorten <"$tour/shown-here.json"
[[ $(<"$tour/shown-here.json") == *'"samples":60027'* ]] || fail "the study does not hold its two minutes"

heading "What was measured at the end of each stage, and the greatest of it"
for result in METSPerStage BPMPerStage sysBPPerStage diaBPPerStage DPPerStage maxMETS maxBPM maxSysBP maxDP; do
    grep -o "\"$result\":{[^}]*}" "$tour/shown-here.json" || fail "there is no $result"
done

greatest=$(grep -o '"maxSysBP":{[^}]*}' "$tour/shown-here.json")
[[ $greatest =~ \"value\":165[,}] ]] || fail "the greatest pressure is not 165 but $greatest"
[[ $(<"$tour/shown-here.json") == *'"description":"dizzy"'* ]] || fail "the event was lost"

heading "Lead II, the first samples of its second minute, in counts"
velantor --data "$here" samples "$id" 1 30000 20

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
