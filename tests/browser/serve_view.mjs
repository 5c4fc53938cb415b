// Drives vela serve's page in headless Chromium against a running simulator:
//   node serve_view.mjs URL SIM_CONTROL_SOCKET SCREENSHOT
// Checks that the CH4 shown follows the gas, that a DIAG flag set by the
// processor lights its indicator, and that a rate chosen on the page is
// answered and comes back through the configuration; then saves a
// screenshot. Exits 0 when every check passed; the failed one is printed.
import {mkdtempSync, rmSync} from 'node:fs';
import {createConnection} from 'node:net';
import {tmpdir} from 'node:os';
import {join} from 'node:path';
import {chromium} from 'playwright-core';

const [url, control, screenshot] = process.argv.slice(2);
const kWait = 20000;

// One command to the simulator; resolves with its one-line answer.
function sim(command) {
  return new Promise((resolve, reject) => {
    const socket = createConnection(control, () => socket.write(command + '\n'));
    let answer = '';
    socket.on('data', (data) => {
      answer += data;
      if (answer.includes('\n')) { socket.end(); resolve(answer.trim()); }
    });
    socket.on('error', reject);
  });
}

async function step(name, action) {
  try {
    await action();
  } catch (error) {
    throw new Error(name + ': ' + error.message.split('\n')[0]);
  }
}

const text = (page, selector, expected) => page.waitForFunction(
    ([s, e]) => document.querySelector(s)?.textContent === e, [selector, expected],
    {timeout: kWait});

const profile = mkdtempSync(join(tmpdir(), 'vela-serve-chromium-'));
const browser = await chromium.launchPersistentContext(profile, {
  executablePath: '/usr/bin/chromium',
  headless: true,
  viewport: {width: 1280, height: 820},
  args: ['--headless', '--no-sandbox', '--disable-gpu', '--disable-quic', '--no-first-run',
         '--disable-background-networking', '--disable-component-update', '--disable-sync'],
});
let failed = false;
try {
  const page = browser.pages()[0] ?? await browser.newPage();
  page.on('pageerror', (error) => { console.log('page error: ' + error.message); failed = true; });
  await step('the page connects', async () => {
    await page.goto(url);
    await page.waitForFunction(() => document.getElementById('connection').textContent
                                         .endsWith(': connected'), null, {timeout: kWait});
  });
  await step('CH4 follows the gas', async () => {
    for (const command of ['set TEMP 25', 'set PRESSURE 101', 'set CH4D 0.4'])
      if (await sim(command) !== 'ok') throw new Error(command + ' refused');
    await text(page, '#ch4', '9.803');
    await text(page, '#ch4d', '0.4000');
  });
  await step('a DIAG flag lights', async () => {
    await sim('set FLAGS 0x82');
    await page.waitForSelector('#diag-NOTREADY.set', {timeout: kWait});
    await page.waitForSelector('#diag-BADTEMP.set', {timeout: kWait});
    if (await page.locator('.flag.set').count() !== 2) throw new Error('other flags lit');
  });
  await step('the rate is changed', async () => {
    await page.selectOption('#rate', '10');
    await page.click('#rate-apply');
    await text(page, '#answer', 'output rate 10');
    await page.click('#config-panel summary');
    await page.click('#config details[data-path="output"] > summary');
    await text(page, '#config [data-path="output/rate"]', 'rate 10');
  });
  await step('the screenshot', async () => {
    await sim('noise 1');
    await sim('gas ramp 0.3 4');
    await page.waitForFunction(() => Number(document.getElementById('ch4d').textContent) < 0.31,
                               null, {timeout: kWait});
    await page.screenshot({path: screenshot});
  });
} catch (error) {
  console.log(error.message);
  failed = true;
} finally {
  await browser.close();
  rmSync(profile, {recursive: true, force: true});
}
process.exit(failed ? 1 : 0);
