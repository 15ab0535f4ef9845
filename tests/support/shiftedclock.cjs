// Loaded into a server of Node.js before its program: its clock is TAVELIN_CLOCK_SHIFT milliseconds ahead.
const RealDate = Date;
const shift = Number(process.env.TAVELIN_CLOCK_SHIFT ?? 0);
globalThis.Date = class extends RealDate {
  constructor(...args) {
    if (args.length === 0) super(RealDate.now() + shift);
    else super(...args);
  }
  static now() {
    return RealDate.now() + shift;
  }
};
