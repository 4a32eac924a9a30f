// What a person may type into a number field: "12", "3*12", "+5", "1x12" for turns.

/**
 * The number that a text stands for; nothing when it is none. A text that starts with "+", "*" or
 * "/" changes `current`. A unit at the end is skipped; "2x30" are two turns and 30 degrees.
 */
export function evaluate(text: string, current: number): number | null {
  const cleaned = text
    .trim()
    .replace(/[%°]|px$/g, "")
    .replace(/,/g, ".")
    .trim();
  if (cleaned === "") return null;
  const relative = /^[+*/]/.test(cleaned);
  const reader = new Reader(relative ? `(${current})${cleaned}` : cleaned);
  const value = reader.sum();
  return reader.atEnd() && Number.isFinite(value) ? value : null;
}

/** Reads sums of products by descent; anything unexpected becomes NaN. */
class Reader {
  #at = 0;
  readonly #text: string;

  constructor(text: string) {
    this.#text = text.replace(/\s+/g, "");
  }

  atEnd(): boolean {
    return this.#at >= this.#text.length;
  }

  sum(): number {
    let value = this.product();
    for (let sign = this.take("+-"); sign; sign = this.take("+-")) {
      const next = this.product();
      value = sign === "+" ? value + next : value - next;
    }
    return value;
  }

  private product(): number {
    let value = this.factor(0);
    for (let sign = this.take("*/"); sign; sign = this.take("*/")) {
      const next = this.factor(0);
      value = sign === "*" ? value * next : value / next;
    }
    return value;
  }

  private factor(depth: number): number {
    if (depth > 50) return NaN;
    if (this.take("-")) return -this.factor(depth + 1);
    if (this.take("+")) return this.factor(depth + 1);
    if (this.take("(")) {
      const value = this.sum();
      return this.take(")") ? value : NaN;
    }
    return this.number();
  }

  private number(): number {
    const found = /^(\d+\.?\d*|\.\d+)(e[+-]?\d+)?/i.exec(this.#text.slice(this.#at));
    if (!found) return NaN;
    this.#at += found[0].length;
    const value = Number(found[0]);
    return this.take("x×") ? value * 360 + (this.atEnd() ? 0 : this.factor(0)) : value;
  }

  private take(signs: string): string | null {
    const sign = this.#text[this.#at];
    if (sign === undefined || !signs.includes(sign)) return null;
    this.#at++;
    return sign;
  }
}
