#!/usr/bin/env bash
# Films on a small Slurm cluster of this machine, with everything going wrong that can:
#   cluster.sh PROGRAM SOURCES
# Each film must be the one that a single run makes. Exit code 77: no Slurm here.
set -euo pipefail
program="$1"
cluster="$2/scripts/farm-cluster"
work="$(mktemp -d)"
export PATH="$PATH:/usr/sbin:/sbin"

cleanup() {
    "$cluster" stop "$work/cluster" >/dev/null 2>&1 || true
    if mountpoint -q "$work/small" 2>/dev/null; then umount "$work/small"; fi
    rm -rf "$work"
}
trap cleanup EXIT

fail() {
    echo "FAILED: $*" >&2
    [ -z "${job:-}" ] || tail -n 5 "$job"/logs/* >&2 || true
    exit 1
}

code=0
"$cluster" start "$work/cluster" || code=$?
[ "$code" != 77 ] || { echo "skipped: Slurm is not installed (scripts/setup test)"; exit 77; }
[ "$code" = 0 ] || exit 1
source "$work/cluster/env"

cd "$work"
"$program" render --size 64x64 --frames 0-59 --shape "Basic Circle" -q -o clip.mkv
cat >scene.json <<'EOF'
{"orbel": 1, "size": [480, 270], "input": {"file": "clip.mkv"}, "parameters": {
 "Presets": "Basic Star", "Transfer Mode": "Normal", "Thickness": 60, "Feather": 100,
 "Motion Blur": "On", "Levels": 24, "End": {"keys": [[0, 0], [59, 100]]}}}
EOF
for ending in mp4 mov; do "$program" render scene.json -q -o "one.$ending"; done

status() { "$program" farm status "$job" --json; }
field() { status | sed -n "s/.*\"$1\":\([^,}]*\).*/\1/p"; }

begin() { # NAME ENDING [PROGRAM]: a film in twelve chunks
    name="$1"
    film="$work/$1.$2"
    one="$work/one.$2"
    job="$film.orbel"
    "$program" farm submit scene.json -o "$film" --chunk 5 --program "${3:-$program}" >/dev/null
}

# The program as a machine has it on which something is wrong: NAME, and what happens to commands.
make_program() {
    printf '#!/bin/sh\n%s\nexec "%s" "$@"\n' "$2" "$program" >"$work/$1"
    chmod +x "$work/$1"
}

# What somebody who looks after a cluster does: a requeued task would wait for two minutes before it
# may start, and a node is drained on which a dying controller had just started one; that task is held.
nudge() {
    if [ "$(field held)" -gt 0 ]; then "$program" farm resume "$job" >/dev/null; fi
    for node in $(sinfo -h -N -t drain -o %N); do
        scontrol update "nodename=$node" state=resume 2>/dev/null || true
    done
    for id in $(squeue -h -r -t PENDING -o '%i %r' | awk '$2 == "BeginTime" { print $1 }'); do
        scontrol update "jobid=$id" starttime=now 2>/dev/null || true
    done
}

wait_for() { # FIELD AT_LEAST
    for _ in $(seq 600); do
        if [ "$(field "$1")" -ge "$2" ]; then return; fi
        nudge
        sleep 0.2
    done
    status
    fail "$name: $1 never came to $2"
}

wait_for_end() {
    for _ in $(seq 900); do
        # One look for both: between two a task may begin.
        now="$(status)"
        if [[ "$now" == *'"running":0'* && "$now" == *'"waiting":0'* ]]; then return; fi
        nudge
        sleep 0.2
    done
    status
    fail "$name: it does not end"
}

same() {
    cmp "$film" "$one" || fail "$name: another film"
    echo "ok: $name"
}

begin plain mp4
if "$program" farm submit scene.json -o "$film" --chunk 5 2>log; then fail "submitted twice"; fi
grep -q "still wait or run" log || fail "submitted twice: $(cat log)"
wait_for_end
same
"$program" farm verify "$job" --sample 3 >/dev/null || fail "verify"

make_program unfit '[ "$SLURMD_NODENAME" != n2 ] || exit 127'
begin unfit-node mov "$work/unfit"
wait_for_end
same
status | grep -q '"n2":"[^"]*unfit does not run"' || fail "unfit node: $(status)"
if grep -q "on n2" "$job"/logs/task-*; then fail "unfit node: it was given a task"; fi

make_program other 'exit 3'
begin unfit-all mov "$work/other"
wait_for_end
"$program" farm status "$job" >log
grep -q "n1 cannot make this film: .*other does not run" log || fail "no node: $(cat log)"
grep -q "no machine can, so that no task has begun" log || fail "no node: $(cat log)"
if ls "$job"/logs/task-* 2>/dev/null; then fail "no node: a task has begun"; fi

make_program bad '[ "$SLURMD_NODENAME $2" != "n2 task" ] || exit 137'
begin bad-node mov "$work/bad"
wait_for_end
same
ls "$job/failures" | grep -q '@n2$' || fail "bad node: it has not failed"
if ls "$job/failures" | grep -v '@n2$'; then fail "bad node: others have failed"; fi
grep -l "on n2" "$job"/logs/*-attempt-* 2>/dev/null && fail "bad node: it was given a task again"

begin held mp4
scontrol hold "$(squeue -h -o %F -n "orbel-held.mp4" | sort -n | sed -n 2p)" 2>/dev/null || true
"$program" farm status "$job" >log
grep -q "held (JobHeld.*): type \"orbel farm resume $job\"" log || fail "held: $(cat log)"
"$program" farm resume "$job" | grep -q "were held and may go on" || fail "held: not let go"
wait_for_end
same

begin damaged mov
wait_for done 3
chunk="$(ls "$job"/chunks/000/*.mov | head -1)"
printf 'x' | dd of="$chunk" bs=1 seek=3000 conv=notrunc status=none
wait_for_end
same
rm "$job/chunks/000/000004.mov"
printf 'x' | dd of="$job/chunks/000/000007.mov" bs=1 seek=3000 conv=notrunc status=none
if "$program" farm verify "$job" >log 2>&1; then fail "damage unnoticed"; fi
grep -q "chunk 4 is missing" log && grep -q "chunk 7 is damaged" log || fail "verify: $(cat log)"

begin killed-task mov
wait_for running 1
sleep 0.3
pkill -9 -f "farm task $job" || true
wait_for_end
same

begin cancelled mp4
wait_for done 2
"$program" farm cancel "$job" >/dev/null
wait_for_end
if [ -f "$film" ]; then fail "cancelled: there is a film"; fi
before="$(field done)"
cp scene.json kept.json
sed -i 's/"Thickness": 60/"Thickness": 61/' scene.json # the job keeps what was handed in
if "$program" farm submit scene.json -o "$film" --chunk 5 2>log; then fail "edited scene"; fi
grep -q "begun with something else: the scene" log || fail "edited scene: $(cat log)"
mv clip.mkv away.mkv
if "$program" farm resume "$job" 2>log; then fail "clip removed"; fi
grep -q "clip.mkv, which is gone" log || fail "clip removed: $(cat log)"
mv away.mkv clip.mkv
handed="$("$program" farm resume "$job")"
[ "${handed%% *}" = "$((12 - before))" ] || fail "resume hands in '$handed' beside $before"
wait_for_end
same
mv kept.json scene.json

begin controller mov
wait_for done 2
kill -9 "$(cat "$work/cluster/slurmctld.pid")"
sleep 1
"$cluster" controller "$work/cluster"
sleep 2
wait_for_end
[ -f "$film" ] || { "$program" farm resume "$job" >/dev/null; wait_for_end; }
same

begin node mp4
wait_for done 2
kill -9 "$(cat "$work/cluster/slurmd-n2.pid")"
wait_for_end
[ -f "$film" ] || { "$program" farm resume "$job" >/dev/null; wait_for_end; }
same
"$cluster" node "$work/cluster" 2

mkdir small
if mount -t tmpfs -o size=1m tmpfs small 2>/dev/null; then
    name=full
    film="$work/small/film.mov"
    one="$work/one.mov"
    job="$film.orbel"
    code=0
    "$program" render scene.json --resume --chunk 5 -q -o "$film" 2>log || code=$?
    [ "$code" = 75 ] || fail "full disk: code $code, $(cat log)"
    mount -o remount,size=64m small
    "$program" render scene.json --resume -q -o "$film"
    same
fi
