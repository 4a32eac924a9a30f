#include "farm/SlurmScripts.h"

#include "farm/Command.h"

namespace orbel {

namespace {

/// Each attempt of a task has a log of its own: an engine that starts one anew adds to the first's.
constexpr const char* beginning = R"sh(attempt=$((${SLURM_RESTART_COUNT:-0} + 1))
if [ $attempt -gt 1 ]; then
    exec >>"$job/logs/$log-$SLURMD_NODENAME-attempt-$attempt.log" 2>&1
fi
echo "attempt $attempt on $SLURMD_NODENAME"
)sh";

/// 75 and more may go well elsewhere: "try again", no such program (127), killed (128 and more).
constexpr const char* ending = R"sh(code=$?
case $code in 0|130|143) exit $code ;; esac # done, or somebody wants it to end
mkdir -p "$job/failures"
echo "attempt $attempt ended with code $code" >>"$job/failures/$name@$SLURMD_NODENAME"
if [ $code -lt 75 ] || [ $attempt -ge $most ]; then exit $code; fi

# Machines to leave out, as long as another one is there: for the tasks that have not begun, those
# where two have failed; for this one, those where it has failed itself, too.
others_than() {
    sinfo -h -N -p "$SLURM_JOB_PARTITION" -t idle,mix,alloc,comp -o %N | grep -vxF "$1" | head -n 1
}
twice=$(ls "$job/failures" | sed 's/.*@//' | sort | uniq -d)
if [ -n "$twice" ] && [ -n "$SLURM_ARRAY_JOB_ID" ] && [ -n "$(others_than "$twice")" ]; then
    scontrol update "jobid=$SLURM_ARRAY_JOB_ID" "excnodelist=$(echo $twice | tr ' ' ,)" 2>/dev/null
fi
trap '' TERM # putting it back into the queue ends this script, and that has more to do
scontrol requeue "$task" || exit $code
own=$(ls "$job/failures" | sed -n "s/^$name@//p")
all=$(printf '%s\n' $twice $own | sort -u)
[ -n "$(others_than "$all")" ] || all=$own
if [ -n "$(others_than "$all")" ]; then
    for again in 1 2 3 4 5; do
        scontrol update "jobid=$task" "excnodelist=$(echo $all | tr ' ' ,)" && break
        sleep 1
    done
fi
exit $code
)sh";

constexpr const char* check = R"sh(
if ! cd "$job/checks"; then # this machine does not see the job
    [ "${SLURM_RESTART_COUNT:-0}" -lt $((most - 1)) ] || exit 1
    trap '' TERM
    scontrol requeue "$SLURM_JOB_ID"
    scontrol update "jobid=$SLURM_JOB_ID" "excnodelist=$SLURMD_NODENAME"
    exit 1
fi
exec >>"$job/logs/check-$SLURM_JOB_ID.log" 2>&1
srun --nodes="$SLURM_JOB_NUM_NODES" --ntasks-per-node=1 sh -c '
    "$0" farm check "$1" && exit
    [ -e "$1/checks/$SLURMD_NODENAME" ] || echo "$0 does not run" >"$1/checks/$SLURMD_NODENAME"
    ' "$program" "$job"
good=
for node in $(scontrol show hostnames "$SLURM_JOB_NODELIST"); do
    # What another machine has written may take a moment to be seen.
    for again in 1 2 3; do [ -s "$node" ] && break; sleep 1; done
    [ -s "$node" ] || echo "it does not see $job" >"$node"
    if [ "$(head -n 1 "$node")" = ok ]; then good=yes; else bad="$bad $node"; fi
done
[ -n "$good" ] || exit 1
[ -n "$bad" ] || exit 0
for id in $(squeue -h -o '%F %E ' |
    sed -n "s/^\([0-9]*\) .*afterok:$SLURM_JOB_ID[^0-9].*/\1/p" | sort -u); do
    scontrol update "jobid=$id" "excnodelist=$(echo $bad | tr ' ' ,)"
done
exit 0
)sh";

std::string heading(const Job& job) {
    return "#!/bin/sh\njob=" + shellQuoted(job.folder) + "\nmost=" + std::to_string(mostAttempts) +
           "\n";
}

} // namespace

std::string checkScript(const Job& job, const Submission& submission) {
    std::string bad;
    for (const std::string& machine : submission.without) {
        bad += " " + machine;
    }
    return heading(job) + "program=" + shellQuoted(submission.program) +
           "\nbad=" + shellQuoted(bad) + check;
}

std::string taskScript(const Job& job, const Submission& submission, long offset) {
    const std::string threads = submission.threads > 0 ? std::to_string(submission.threads)
                                                       : R"("${SLURM_CPUS_ON_NODE:-1}")";
    return heading(job) + "list=" + shellQuoted(submission.list) +
           "\nindex=$((SLURM_ARRAY_TASK_ID + " + std::to_string(offset) + "))\n" +
           "task=${SLURM_ARRAY_JOB_ID}_$SLURM_ARRAY_TASK_ID\n"
           "log=task-$SLURM_ARRAY_JOB_ID-$SLURM_ARRAY_TASK_ID\n" +
           beginning +
           // A machine that dies under a task again and again may die of it.
           "if [ $attempt -gt $most ]; then exit 75; fi\n"
           "name=$(sed -n \"$((index + 1))p\" \"$list\")\n" +
           shellQuoted(submission.program) +
           R"( farm task "$job" --list "$list" --index $index --threads )" + threads +
           " --scratch \"${TMPDIR:-/tmp}\"\n" + ending;
}

std::string joinScript(const Job& job, const Submission& submission) {
    return heading(job) + "task=$SLURM_JOB_ID\nlog=join-$SLURM_JOB_ID\nname=join\n" + beginning +
           shellQuoted(submission.program) + " farm join \"$job\"\n" + ending;
}

} // namespace orbel
