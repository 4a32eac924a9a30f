// Newest wins: at most one call is under way; what is asked meanwhile replaces what waits.

export class Newest<Q, A> {
  #running = false;
  #waiting: Q | null = null;

  #asked: Q | null = null;
  #stop = new AbortController();

  /** `overtakes` says whether a question is worth giving up the one under way. */
  constructor(
    private readonly ask: (question: Q, stop: AbortSignal) => Promise<A>,
    private readonly answered: (answer: A, question: Q) => void,
    private readonly failed: (reason: unknown, question: Q) => void,
    private readonly overtakes: (next: Q, asked: Q) => boolean = () => false,
  ) {}

  request(question: Q): void {
    if (this.#running) {
      this.#waiting = question;
      if (this.#asked && this.overtakes(question, this.#asked)) this.#stop.abort();
      return;
    }
    this.#running = true;
    void this.run(question);
  }

  /** Nothing waits and nothing is under way. */
  get idle(): boolean {
    return !this.#running;
  }

  /** Nothing waits behind what is under way. */
  get last(): boolean {
    return this.#waiting === null;
  }

  private async run(first: Q): Promise<void> {
    for (let question: Q | null = first; question !== null; ) {
      this.#asked = question;
      const { signal } = (this.#stop = new AbortController());
      try {
        this.answered(await this.ask(question, signal), question);
      } catch (reason) {
        if (!signal.aborted) this.failed(reason, question);
      }
      question = this.#waiting;
      this.#waiting = null;
    }
    this.#running = false;
  }
}
