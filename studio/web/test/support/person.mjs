// A person at the page: a hand that is on the mouse or on the keyboard, and a clock. What an action
// takes is that of the keystroke-level model, in seconds.

const costs = { key: 0.28, point: 1.1, button: 0.1, hand: 0.4, thought: 1.35, notch: 0.28 };

export class Person {
  seconds = 0;
  actions = 0;
  #hand = "mouse";

  constructor(page) {
    this.page = page;
  }

  /** Before every new intention: which parameter, which frame, which way to move. */
  think() {
    this.seconds += costs.thought;
  }

  #takes(hand, seconds) {
    if (this.#hand !== hand) this.seconds += costs.hand;
    this.#hand = hand;
    this.seconds += seconds;
    this.actions++;
  }

  /** Turns the wheel over a list until the element stands well inside it. */
  async #reach(element, list) {
    for (let notches = 0; ; notches++) {
      const [box, frame] = [await element.boundingBox(), await list.boundingBox()];
      const below = box.y + box.height - (frame.y + frame.height);
      const above = frame.y - box.y;
      if (below <= 0 && above <= 0) return;
      if (notches === 0) this.#takes("mouse", costs.point);
      this.#takes("mouse", costs.notch);
      await this.page.mouse.move(frame.x + frame.width / 2, frame.y + frame.height / 2);
      await this.page.mouse.wheel(0, below > 0 ? 120 : -120);
      await this.page.waitForTimeout(50);
    }
  }

  async click(element, { list, button = "left" } = {}) {
    await element.waitFor();
    if (list) await this.#reach(element, list);
    const box = await element.boundingBox();
    this.#takes("mouse", costs.point + 2 * costs.button);
    await this.page.mouse.click(box.x + box.width / 2, box.y + box.height / 2, { button });
  }

  async press(...keys) {
    for (const key of keys) {
      this.#takes("keyboard", costs.key * key.split("+").length);
      await this.page.keyboard.press(key);
    }
  }

  async type(text) {
    this.#takes("keyboard", costs.key * text.length);
    await this.page.keyboard.type(text);
  }

  /** Looks on for so many seconds; for the page one of them is enough. */
  async watch(seconds) {
    this.seconds += seconds;
    await this.page.waitForTimeout(1000);
  }
}
