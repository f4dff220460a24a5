// blocker.mjs prepare DOMAINS URLS ENGINE: makes the engine of the two lists and saves it as it is loaded in practice.
// blocker.mjs run ENGINE REQUESTS: loads it, judges the URLs once and prints hits, tab, URLs a second.
import fs from 'node:fs';
import { createRequire } from 'node:module';

const [command, ...files] = process.argv.slice(2);
const { FiltersEngine, Request } = createRequire(`${process.cwd()}/`)('@ghostery/adblocker');
const lines = (file) => fs.readFileSync(file, 'latin1').trimEnd().split('\n');

if (command === 'prepare') {
  const filters = lines(files[0]).map((host) => `||${host}^$document`);
  for (const url of lines(files[1])) filters.push(`||${url}$document`);
  fs.writeFileSync(files[2], FiltersEngine.parse(filters.join('\n'), { loadCosmeticFilters: false }).serialize());
} else {
  const engine = FiltersEngine.deserialize(new Uint8Array(fs.readFileSync(files[0])));
  const urls = lines(files[1]);
  let hits = 0;
  const start = process.hrtime.bigint();
  for (const url of urls) {
    if (engine.match(Request.fromRawDetails({ url, type: 'main_frame' })).match) ++hits;
  }
  const seconds = Number(process.hrtime.bigint() - start) / 1e9;
  console.log(`${hits}\t${urls.length / seconds}`);
}
