import { useCallback, useState } from "preact/hooks";
import type { Job } from "../link/api";
import { filmRange, filmSize, type State } from "../document/state";
import { classes, useLeaving, useSession } from "./hooks";
import { NumberField } from "./NumberField";

/** A film or stills of the scene as it stands, and the queue. */
export function ExportPanel({ state }: { state: State }) {
  const session = useSession();
  const close = useCallback(() => session.update({ panel: null }), []);
  const place = useLeaving<HTMLDivElement>(close);
  return (
    <div class="panel export" role="dialog" aria-label="Export" ref={place}>
      <ExportForm state={state} />
      {state.jobs.length > 0 && (
        <div class="queue" aria-label="Queue" role="group">
          {[...state.jobs].reverse().map((job) => (
            <JobLine key={job.job} job={job} />
          ))}
        </div>
      )}
    </div>
  );
}

function ExportForm({ state }: { state: State }) {
  const session = useSession();
  const { endings } = state.table.data;
  const film = filmRange(state);
  const whole = filmSize(state);
  const stem = state.file.name.replace(/\.json$/, "") || "film";
  const [ending, setEnding] = useState(endings[0]?.ending ?? ".mp4");
  const [name, setName] = useState(stem);
  const [range, setRange] = useState<readonly [number, number]>(state.loopRange ?? film);
  const [share, setShare] = useState(1);
  const kind = endings.find((each) => each.ending === ending);
  const single = range[0] === range[1];
  const number = kind && !kind.film && !single && !name.includes("%") ? "-%04d" : "";
  const full = `${name}${number}${ending}`;
  const even = (value: number) => Math.max(2, Math.round((value * share) / 2) * 2);
  const size = share === 1 ? null : ([even(whole[0]), even(whole[1])] as const);
  const send = (event: Event) => {
    event.preventDefault();
    void session.film.export({
      name: full,
      from: range[0],
      to: range[1],
      width: size?.[0],
      height: size?.[1],
      overwrite: false,
    });
  };
  const hold = (frame: number) => Math.round(Math.min(film[1], Math.max(film[0], frame)));
  return (
    <form class="fields" onSubmit={send}>
      <label for="export-name">Name</label>
      <input
        id="export-name"
        class="wide"
        value={name}
        spellcheck={false}
        onInput={(event) => setName(event.currentTarget.value)}
      />
      <label for="export-kind">Kind</label>
      <select
        id="export-kind"
        class="select wide"
        value={ending}
        onChange={(event) => setEnding(event.currentTarget.value)}
      >
        {endings.map((each) => (
          <option key={each.ending} value={each.ending}>
            {each.ending} · {each.label}
          </option>
        ))}
      </select>
      <span>Frames</span>
      <NumberField
        label="Export from frame"
        value={range[0]}
        commit={(from) => setRange([hold(from), Math.max(hold(from), range[1])])}
      />
      <NumberField
        label="Export to frame"
        value={range[1]}
        commit={(to) => setRange([Math.min(range[0], hold(to)), hold(to)])}
      />
      <span />
      <button type="button" class="half" onClick={() => setRange(film)}>
        All
      </button>
      <button type="button" class="half" onClick={() => setRange([state.frame, state.frame])}>
        This frame
      </button>
      <label for="export-size">Size</label>
      <select
        id="export-size"
        class="select wide"
        value={String(share)}
        onChange={(event) => setShare(Number(event.currentTarget.value))}
      >
        {[1, 0.5, 0.25].map((each) => (
          <option key={each} value={String(each)}>
            {sizeText(whole, each)}
          </option>
        ))}
      </select>
      <span />
      <button class="go wide" type="submit" disabled={!name.trim()}>
        Export {full}
      </button>
    </form>
  );
}

function sizeText([width, height]: readonly [number, number], share: number): string {
  const even = (value: number) =>
    share === 1 ? value : Math.max(2, Math.round((value * share) / 2) * 2);
  const words = share === 1 ? "whole" : share === 0.5 ? "half" : "quarter";
  return `${even(width)} × ${even(height)} · ${words}`;
}

const states: Record<Job["state"], string> = {
  waiting: "waits",
  running: "",
  done: "done",
  failed: "failed",
  cancelled: "cancelled",
};

function JobLine({ job }: { job: Job }) {
  const session = useSession();
  const [shown, setShown] = useState<string | null>(null);
  const open = job.state === "running" || job.state === "waiting";
  const percent = job.total > 0 ? (job.done / job.total) * 100 : 0;
  const see = async () => setShown(shown ? null : await session.film.result(job.job));
  return (
    <div class={classes("job", job.state)}>
      <div class="jobline">
        <b>{job.name}</b>
        <span class="quiet">{states[job.state] || progress(job)}</span>
        {open && <button onClick={() => void session.film.cancel(job.job)}>Cancel</button>}
        {job.state === "done" && (
          <button onClick={() => void see()}>{shown ? "Close" : "Show"}</button>
        )}
      </div>
      {open && <progress max={100} value={percent} aria-label={`Progress of ${job.name}`} />}
      {job.error && (
        <p class="bad">
          {job.error} <span>{job.remedy}</span>
        </p>
      )}
      {shown && <Result job={job} address={shown} />}
    </div>
  );
}

function progress(job: Job): string {
  const left =
    job.secondsLeft === null || job.secondsLeft === undefined
      ? ""
      : ` · ${timeLeft(job.secondsLeft)} left`;
  return `${job.done} / ${job.total}${left}`;
}

function timeLeft(seconds: number): string {
  const whole = Math.ceil(seconds);
  return whole < 90 ? `${whole} s` : `${Math.round(whole / 60)} min`;
}

/** What the browser can show is shown; everything can be fetched. Of a sequence it is the first. */
function Result({ job, address }: { job: Job; address: string }) {
  const sequence = job.name.includes("%");
  return (
    <div class="result">
      {/\.mp4$/i.test(job.name) && <video src={address} controls autoPlay loop muted />}
      {/\.(a?png|gif|webp)$/i.test(job.name) && <img src={address} alt={job.name} />}
      {sequence && (
        <p class="quiet">The first of {job.total} pictures; all lie in the scene's folder.</p>
      )}
      {!sequence && (
        <a href={address} download={job.name}>
          Download {job.name}
        </a>
      )}
    </div>
  );
}
