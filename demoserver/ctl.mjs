// Starts the demo server detached and stops it again:
//   node ctl.mjs start [--info FILE] [--log FILE] [options of main.mjs]
//   node ctl.mjs stop FILE

import { spawn } from "node:child_process";
import { closeSync, existsSync, openSync, readFileSync, rmSync } from "node:fs";
import { tmpdir } from "node:os";
import { dirname, join, resolve } from "node:path";
import { fileURLToPath } from "node:url";

const main = join(dirname(fileURLToPath(import.meta.url)), "main.mjs");
const startLimit = 30_000;
const stopLimit = 5_000;
const pause = () => new Promise((done) => setTimeout(done, 50));

/** Takes `--NAME VALUE` out of the arguments. */
function take(args, name, otherwise) {
  const at = args.indexOf(`--${name}`);
  if (at < 0) return otherwise;
  if (at + 1 >= args.length) throw new Error(`--${name} needs a value`);
  return args.splice(at, 2)[1];
}

/** Waits until `condition` holds; false when the limit has passed. */
async function until(condition, limit) {
  for (const end = Date.now() + limit; Date.now() < end; await pause()) {
    if (condition()) return true;
  }
  return condition();
}

function isOurServer(pid) {
  try {
    return readFileSync(`/proc/${pid}/cmdline`, "utf8").split("\0").includes(main);
  } catch {
    return false;
  }
}

async function start(args) {
  const info = resolve(take(args, "info", join(tmpdir(), `tavelin-demo-${process.pid}.json`)));
  const log = resolve(take(args, "log", `${info}.log`));
  rmSync(info, { force: true });
  const output = openSync(log, "w");
  const child = spawn(process.execPath, [main, "--info", info, ...args], {
    detached: true,
    stdio: ["ignore", output, output],
  });
  closeSync(output);
  let ended = false;
  child.on("exit", () => (ended = true));
  child.on("error", () => (ended = true));

  await until(() => ended || existsSync(info), startLimit);
  if (!ended && existsSync(info)) {
    child.unref();
    console.log(`${info}\n${JSON.parse(readFileSync(info, "utf8")).endpointUrl}`);
    return 0;
  }
  if (!ended) child.kill("SIGKILL");
  console.error(`the demo server did not start; ${log}:\n${readFileSync(log, "utf8")}`);
  return 1;
}

async function stop([file]) {
  if (!file) throw new Error("stop needs the info file");
  const { pid } = JSON.parse(readFileSync(file, "utf8"));
  if (!Number.isInteger(pid) || pid <= 1) throw new Error(`${file} holds no process id`);
  if (isOurServer(pid)) {
    process.kill(pid, "SIGTERM");
    if (!(await until(() => !isOurServer(pid), stopLimit))) process.kill(pid, "SIGKILL");
  }
  rmSync(file, { force: true });
  return 0;
}

const commands = { start, stop };
const [command, ...args] = process.argv.slice(2);
if (!commands[command]) {
  console.error("usage: node ctl.mjs start [--info FILE] [--log FILE] [options of main.mjs] | stop FILE");
  process.exit(2);
}
try {
  process.exit(await commands[command](args));
} catch (error) {
  console.error(error.message);
  process.exit(1);
}
