import { useEffect, useRef, useState } from "preact/hooks";
import { valueText } from "../document/display";
import { keyId, partsOf, type KeyId } from "../document/edits";
import { valueAt, type Easing, type Scene, type Track } from "../document/scene";
import { readable, timelineHeight, type State } from "../document/state";
import { frameAt, framesPerPixel, scrolled, xOf, zoomed } from "../document/timescale";
import { copy, deleteSelection, paste } from "./commands";
import { ContextMenu, type MenuItem } from "./ContextMenu";
import { Curve } from "./Curve";
import { commonEasing, easingNames } from "./EasingSelect";
import { classes, drag, hold, useSession, useSize } from "./hooks";
import { addKeyAt, dragKeys, goToKey, selectInBox, snapping, walkKeys } from "./keyGestures";
import { Lane, type LaneKey } from "./Lane";
import { Ruler } from "./Ruler";
import { Transport } from "./Transport";

/** Keys over time: a summary and one lane for every parameter that is animated. */
export function Timeline({ state }: { state: State }) {
  const session = useSession();
  const height = timelineHeight(state);
  const resize = (event: PointerEvent): void => {
    drag(event, {
      move: (_dx, dy) => {
        const held = Math.min(window.innerHeight - 320, Math.max(120, height - dy));
        session.setSettings({ timelineHeight: held });
      },
    });
  };
  return (
    <section class="time" aria-label="Timeline" style={{ height: `${height}px` }}>
      <div class="splitter" onPointerDown={resize} />
      <Transport state={state} />
      <Lanes state={state} />
    </section>
  );
}

function animatedTracks(scene: Scene, state: State): Track[] {
  return state.table.rows.flatMap((row) => {
    const track = scene.tracks.get(row.id);
    return track && track.keys.length > 0 ? [track] : [];
  });
}

function Lanes({ state }: { state: State }) {
  const [area, { width, height }] = useSize<HTMLDivElement>();
  const [menu, setMenu] = useState<{ x: number; y: number } | null>(null);
  const scene = readable(state);
  const tracks = scene ? animatedTracks(scene, state) : [];
  useTimeWheel(area, state);
  const playheadX = xOf(state.time, width, state.frame);
  return (
    <div class="lanes">
      <div class="names">
        <div class="corner" />
        <div class="name summary">All keys</div>
        <div class="namescroll" id="lanenames">
          {tracks.map((track) => (
            <LaneName key={track.row.id} track={track} state={state} scene={scene!} />
          ))}
        </div>
      </div>
      <div class="area" ref={area}>
        {width > 0 && (
          <>
            <Ruler state={state} width={width} />
            <Summary state={state} tracks={tracks} width={width} />
            {state.settings.curve ? (
              <Curve state={state} width={width} height={Math.max(40, height - 46)} />
            ) : (
              <LaneStack
                state={state}
                tracks={tracks}
                width={width}
                openMenu={(x, y) => setMenu({ x, y })}
              />
            )}
            <i class="playhead" style={{ transform: `translateX(${playheadX}px)` }} />
          </>
        )}
      </div>
      {tracks.length === 0 && (
        <p class="hint">
          Nothing moves yet. Click <i class="diamond" /> beside a parameter to set its first key, go
          to another frame and change the value.
        </p>
      )}
      {menu && <KeyMenu {...menu} state={state} close={() => setMenu(null)} />}
    </div>
  );
}

function LaneName({ track, state, scene }: { track: Track; state: State; scene: Scene }) {
  const session = useSession();
  const { row } = track;
  const choose = () => {
    const keys = new Set(track.keys.map((key) => keyId(row.id, key.frame)));
    session.update({ activeRow: row.id, selection: keys });
  };
  return (
    <button
      class={classes("name", state.activeRow === row.id && "active")}
      title={`${row.name}: select its keys`}
      onClick={choose}
    >
      <span>{laneTitle(state, track)}</span>
      <span class="v">{valueText(row, valueAt(scene, row, state.frame))}</span>
    </button>
  );
}

/** The label alone where it is the only one of its name. */
function laneTitle(state: State, { row }: Track): string {
  const alike = state.table.rows.filter((other) => other.label === row.label);
  return alike.length > 1 && row.group ? `${row.group} / ${row.label}` : row.label;
}

function useTimeWheel(area: { current: HTMLDivElement | null }, state: State): void {
  const session = useSession();
  const latest = useRef(state);
  latest.current = state;
  useEffect(() => {
    const element = area.current;
    if (!element) return;
    const wheel = (event: WheelEvent): void => {
      const { time } = latest.current;
      const box = element.getBoundingClientRect();
      const onRuler = event.clientY - box.top < 24;
      const perPixel = framesPerPixel(time, element.clientWidth);
      if (event.ctrlKey || onRuler) {
        const at = frameAt(time, element.clientWidth, event.clientX - box.left);
        session.update({ time: zoomed(time, at, Math.exp(event.deltaY * 0.0015)) });
      } else if (event.shiftKey || Math.abs(event.deltaX) > Math.abs(event.deltaY)) {
        session.update({ time: scrolled(time, (event.deltaX || event.deltaY) * perPixel) });
      } else return;
      event.preventDefault();
    };
    element.addEventListener("wheel", wheel, { passive: false });
    return () => element.removeEventListener("wheel", wheel);
  }, []);
}

interface StackProps {
  state: State;
  tracks: Track[];
  width: number;
  openMenu: (x: number, y: number) => void;
}

/** Every key at a frame as one; a bar over the selection stretches it. */
function Summary({ state, tracks, width }: Omit<StackProps, "openMenu">) {
  const session = useSession();
  const byFrame = new Map<number, KeyId[]>();
  for (const track of tracks) {
    for (const key of track.keys) {
      byFrame.set(key.frame, [...(byFrame.get(key.frame) ?? []), keyId(track.row.id, key.frame)]);
    }
  }
  const keys: LaneKey[] = [...byFrame].map(([frame, ids]) => ({
    frame,
    ids,
    selected: ids.every((id) => state.selection.has(id)),
    label: `All keys at frame ${frame}`,
    easing: null,
  }));
  return (
    <div class="lane summary" onDblClick={(event) => goToKey(session, event)}>
      <Lane
        time={state.time}
        width={width}
        keys={keys}
        summary
        press={(event, key) => dragKeys(session, event, key.ids, width)}
        walk={(event, key) => walkKeys(session, event, key.ids)}
      />
      <StretchBar state={state} width={width} />
    </div>
  );
}

/** Grips at the ends of the selection; dragging one stretches it about the other. */
function StretchBar({ state, width }: { state: State; width: number }) {
  const session = useSession();
  const frames = [...state.selection].map((id) => partsOf(id).frame);
  const first = Math.min(...frames);
  const last = Math.max(...frames);
  if (frames.length < 2 || first === last) return null;
  const press = (pivot: number, moving: number) => (event: PointerEvent) => {
    event.stopPropagation();
    event.preventDefault();
    const base = session.edit();
    const chosen = session.state.selection;
    const stop = snapping(session, chosen, width);
    hold(event, session.gesture, {
      move: (dx) => {
        const factor = Math.max(0.01, (stop(moving, dx) - pivot) / (moving - pivot));
        session.changeKeys("stretch keys", base.stretchKeys(chosen, pivot, factor));
      },
    });
  };
  const from = xOf(state.time, width, first);
  const to = xOf(state.time, width, last);
  return (
    <div class="stretch" style={{ left: `${from}px`, width: `${to - from}px` }}>
      <i class="grip" title="Stretch the selection" onPointerDown={press(last, first)} />
      <i class="grip" title="Stretch the selection" onPointerDown={press(first, last)} />
    </div>
  );
}

function LaneStack({ state, tracks, width, openMenu }: StackProps) {
  const session = useSession();
  const [box, setBox] = useState<{ x: number; y: number; w: number; h: number } | null>(null);
  const press = (event: PointerEvent & { currentTarget: HTMLElement }): void => {
    if (event.button !== 0) return;
    event.preventDefault();
    selectInBox(session, event, event.currentTarget, tracks, width, setBox);
  };
  const scroll = (event: Event & { currentTarget: HTMLElement }): void => {
    const names = document.getElementById("lanenames");
    if (names) names.scrollTop = event.currentTarget.scrollTop;
  };
  return (
    <div class="stack" onPointerDown={press} onScroll={scroll} tabIndex={-1}>
      {tracks.map((track) => (
        <div
          key={track.row.id}
          class="lane"
          data-lane={track.row.name}
          onDblClick={(event) => addKeyAt(session, event, track.row, width)}
          onContextMenu={(event) => event.preventDefault()}
        >
          <Lane
            time={state.time}
            width={width}
            keys={laneKeys(track, state)}
            press={(event, key) => dragKeys(session, event, key.ids, width)}
            walk={(event, key) => walkKeys(session, event, key.ids)}
            open={(x, y, key) => {
              if (!key.selected) session.select(new Set(key.ids));
              openMenu(x, y);
            }}
          />
        </div>
      ))}
      {box && (
        <i
          class="band"
          style={{
            left: `${box.x}px`,
            top: `${box.y}px`,
            width: `${box.w}px`,
            height: `${box.h}px`,
          }}
        />
      )}
    </div>
  );
}

function laneKeys({ row, keys }: Track, state: State): LaneKey[] {
  return keys.map((key) => ({
    frame: key.frame,
    ids: [keyId(row.id, key.frame)],
    selected: state.selection.has(keyId(row.id, key.frame)),
    label: `${row.name}, frame ${key.frame}: ${valueText(row, key.value)}`,
    easing: key.easing,
  }));
}

function KeyMenu({
  x,
  y,
  state,
  close,
}: {
  x: number;
  y: number;
  state: State;
  close: () => void;
}) {
  const session = useSession();
  const common = commonEasing(state, state.selection);
  const easings: MenuItem[] = (Object.keys(easingNames) as Easing[]).map((easing) => ({
    label: easingNames[easing],
    checked: common === easing,
    run: () =>
      session.change("change easing", session.edit().setEasing(session.state.selection, easing)),
  }));
  const items: MenuItem[] = [
    ...easings,
    { label: "Copy", hint: "Ctrl C", run: () => copy(session) },
    {
      label: "Paste at playhead",
      hint: "Ctrl V",
      disabled: state.copiedKeys.length === 0,
      run: () => paste(session),
    },
    { label: "Delete", hint: "Del", run: () => deleteSelection(session) },
  ];
  return <ContextMenu x={x} y={y} items={items} close={close} label="Selected keys" />;
}
