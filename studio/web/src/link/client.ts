// One call to the studio's server: JSON there, JSON or bytes back, errors as a sentence.

export interface Failure {
  error: string;
  remedy: string;
}

export class LinkError extends Error {
  constructor(
    readonly status: number,
    readonly failure: Failure,
    readonly body: Readonly<Record<string, unknown>>,
  ) {
    super(failure.error);
  }

  /** The server did not answer at all. */
  get lost(): boolean {
    return this.status === 0;
  }
}

const tokenPlace = "orbel-token";

export class Client {
  #token = sessionStorage.getItem(tokenPlace) ?? "";
  readonly #tab = String(Math.random()).slice(2);

  /** Turns the key of an address into this tab's token. */
  async open(key: string): Promise<void> {
    const { token } = await this.post<{ token: string }>("/api/open", { key });
    this.#token = token;
    sessionStorage.setItem(tokenPlace, token);
  }

  /** What the server tells on its own. A socket has no headers: the token goes as a protocol. */
  socket(path: string): WebSocket {
    return new WebSocket(`ws://${location.host}${path}`, ["orbel.events", this.#token]);
  }

  async get<T>(path: string): Promise<T> {
    return (await (await this.send(path)).json()) as T;
  }

  async post<T>(path: string, body: object): Promise<T> {
    return (await (await this.send(path, body)).json()) as T;
  }

  /** The bare answer, for bytes and streams. Throws `LinkError` for anything but success. */
  async send(path: string, body?: object, signal?: AbortSignal): Promise<Response> {
    const headers: Record<string, string> = {
      "X-Orbel-Token": this.#token,
      "X-Orbel-Tab": this.#tab,
    };
    if (body) headers["Content-Type"] = "application/json";
    const request: RequestInit = { method: body ? "POST" : "GET", headers, cache: "no-store" };
    if (body) request.body = JSON.stringify(body);
    if (signal) request.signal = signal;
    const answer = await fetch(path, request).catch((reason: unknown) => {
      if (signal?.aborted) throw reason;
      throw new LinkError(0, lostWords, {});
    });
    if (!answer.ok) throw await refusal(answer);
    return answer;
  }
}

const lostWords: Failure = {
  error: "The studio's server does not answer.",
  remedy:
    "Your work is kept in this page; start orbel studio again and open the address it prints.",
};

async function refusal(answer: Response): Promise<LinkError> {
  const body = (await answer.json().catch(() => ({}))) as Record<string, unknown>;
  const failure: Failure = {
    error: asSentence(
      typeof body.error === "string" ? body.error : `the server answered ${answer.status}`,
    ),
    remedy: asSentence(typeof body.remedy === "string" ? body.remedy : ""),
  };
  return new LinkError(answer.status, failure, body);
}

/** Words as a sentence: a capital in front, unless it is a name or a path, and a stop behind. */
export function asSentence(words: string): string {
  if (words === "") return "";
  const capital = /^[a-z]+(?=[ ,])/.test(words) ? words[0]!.toUpperCase() + words.slice(1) : words;
  return /[.!?]$/.test(capital) ? capital : `${capital}.`;
}

/** What went wrong, as a sentence and a remedy. */
export function failureOf(reason: unknown): Failure {
  if (reason instanceof LinkError) return reason.failure;
  return { error: reason instanceof Error ? reason.message : String(reason), remedy: "" };
}
