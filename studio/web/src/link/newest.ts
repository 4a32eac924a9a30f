// Newest wins: at most one call is under way; what is asked meanwhile replaces what waits.

export class Newest<Q, A> {
  #running = false;
  #waiting: Q | null = null;

  constructor(
    private readonly ask: (question: Q) => Promise<A>,
    private readonly answered: (answer: A, question: Q) => void,
    private readonly failed: (reason: unknown, question: Q) => void,
  ) {}

  request(question: Q): void {
    if (this.#running) {
      this.#waiting = question;
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
      try {
        this.answered(await this.ask(question), question);
      } catch (reason) {
        this.failed(reason, question);
      }
      question = this.#waiting;
      this.#waiting = null;
    }
    this.#running = false;
  }
}
