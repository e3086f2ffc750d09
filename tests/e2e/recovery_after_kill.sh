#!/bin/sh
# An animator keys a light, saves, changes the key again and the editor is killed before the next
# save. The saved file must be untouched, a headless start without an answer must keep the recovery
# copy and say so, and a start with --restore-recovery must bring back every edit of that copy,
# which a save then writes to the file byte for byte.
#
#   recovery_after_kill.sh KUVO_EDITOR SCENE WORK_DIR
set -u

editor=$1
scene=$2
work=$3
rm -rf "$work"
mkdir -p "$work/recovery"
export KUVO_RECOVERY_DIR="$work/recovery"
track="$work/walk.anim"

fail() {
  echo "FAILED: $*"
  [ -f "$work/run.log" ] && cat "$work/run.log"
  exit 1
}

# The key of 3 at 0 s is saved; a 7 typed after it makes it 37, unsaved.
cat >"$work/edit.script" <<EOF
frames 2
answer choose Light.intensity
answer choose Sun
press new_track
frames 2
click @rows 60 11
frames 1
key ctrl+k
click 650 40
type 3
key enter
answer file $track
press save
frames 1
click 650 40
type 7
key enter
frames 1
idle 150
EOF
"$editor" --headless --scene "$scene" --recovery-interval 0.2 --script "$work/edit.script" >"$work/run.log" 2>&1 &
pid=$!

# Polls, with a generous limit, for a copy that holds the last edit.
copy=""
tries=0
while [ -z "$copy" ] && [ $tries -lt 1200 ]; do
  copy=$(grep -l '\[0\.0, 37\.0, ' "$work/recovery/"*.anim 2>/dev/null | head -n 1)
  [ -z "$copy" ] && sleep 0.1
  tries=$((tries + 1))
done
kill -9 $pid
wait $pid 2>/dev/null
[ -n "$copy" ] || fail "no recovery copy holds the last edit"
cp "$copy" "$work/copy.anim"
cp "$track" "$work/saved.anim"
grep -q '\[0\.0, 3\.0, ' "$work/saved.anim" || fail "the saved file lacks the saved key"
grep -q '\[0\.0, 37\.0, ' "$work/saved.anim" && fail "the saved file holds the unsaved edit"
[ "$(cat "$copy.document")" = "$track" ] || fail "the copy's note does not name $track"

# Headless without an answer: nothing restored, the copy kept, and the log says how to restore it.
cat >"$work/look.script" <<EOF
frames 1
expect-log start with --restore-recovery
EOF
"$editor" --headless --scene "$scene" --track "$track" --script "$work/look.script" >"$work/run.log" 2>&1 ||
  fail "the start without an answer failed"
cmp -s "$track" "$work/saved.anim" || fail "the start without an answer changed $track"
[ -f "$copy" ] || fail "the start without an answer deleted the copy"

# Restored: the document is the file's, holds the last edit and is marked; a save writes the copy.
cat >"$work/restore.script" <<EOF
frames 1
expect-log restored unsaved edits of $track
expect-title $track - Anim*
press save
frames 1
expect-title $track - Anim
expect-no-errors
EOF
"$editor" --headless --scene "$scene" --restore-recovery --script "$work/restore.script" >"$work/run.log" 2>&1 ||
  fail "the restoring start failed"
cmp -s "$track" "$work/copy.anim" || fail "the saved file differs from the recovery copy"
[ -z "$(ls "$work/recovery")" ] || fail "recovery copies are left after a clean save: $(ls "$work/recovery")"
echo "restored every edit of the recovery copy"
