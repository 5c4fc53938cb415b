// The live view of vela serve: the feed of /events drawn as charts, the DIAG
// flags and the analyzer's identity, and the settings panel whose actions go
// to /action. Records land in fixed-size ring buffers as they come; drawing
// happens at most once an animation frame, over at most kPoints averaged
// points per series, so that the page keeps up at any record rate.
'use strict';

const kLongestWindow = 3600;  // seconds
const kCapacity = kLongestWindow * 40 + 400;  // an hour at the highest rate
const kPoints = 1500;  // points drawn per series, each the mean of its slice of the window
const kFields = ['CH4', 'CH4D', 'TEMP', 'PRESSURE', 'RSSI'];
const kReadings = [['ch4', 'CH4', 3], ['ch4d', 'CH4D', 4], ['temp', 'TEMP', 2],
                   ['pressure', 'PRESSURE', 2], ['rssi', 'RSSI', 0]];

const $ = (id) => document.getElementById(id);

// The records of the last hour: their times and the charted fields.
class History {
  constructor(capacity) {
    this.capacity = capacity;
    this.times = new Float64Array(capacity);
    this.values = kFields.map(() => new Float64Array(capacity));
    this.start = 0;
    this.size = 0;
  }
  push(time, record) {
    const slot = (this.start + this.size) % this.capacity;
    if (this.size === this.capacity) this.start = (this.start + 1) % this.capacity;
    else this.size++;
    this.times[slot] = time;
    kFields.forEach((field, i) => {
      const value = record[field];
      this.values[i][slot] = typeof value === 'number' ? value : NaN;
    });
  }
  latest() { return this.size ? this.times[(this.start + this.size - 1) % this.capacity] : NaN; }
  // One series per field over [end - span, end]: the mean of each of
  // kPoints slices that holds records.
  series(span, end) {
    const from = end - span, slice = span / kPoints;
    const sums = kFields.map(() => new Float64Array(kPoints));
    const counts = kFields.map(() => new Uint32Array(kPoints));
    for (let k = this.size - 1; k >= 0; k--) {
      const slot = (this.start + k) % this.capacity;
      const time = this.times[slot];
      if (time < from) break;
      const bucket = Math.min(kPoints - 1, Math.floor((time - from) / slice));
      for (let i = 0; i < kFields.length; i++) {
        const value = this.values[i][slot];
        if (!Number.isNaN(value)) { sums[i][bucket] += value; counts[i][bucket]++; }
      }
    }
    return kFields.map((_, i) => {
      const points = [];
      for (let b = 0; b < kPoints; b++)
        if (counts[i][b]) points.push({x: from + (b + 0.5) * slice, y: sums[i][b] / counts[i][b]});
      return points;
    });
  }
  clear() { this.start = 0; this.size = 0; }
}

const recent = new History(kCapacity);
let latest = null;        // the last record
let dirty = false;        // records came since the last drawing
let lastDrawn = 0;
let counting = {second: -1, count: 0, rate: null};

function clockText(seconds) {
  return new Date(seconds * 1000).toISOString().substring(11, 19);
}

function makeChart(canvas, datasets, scales) {
  return new Chart(canvas, {
    type: 'line',
    data: {datasets},
    options: {
      animation: false, parsing: false, normalized: true, responsive: true,
      maintainAspectRatio: false, spanGaps: false,
      elements: {point: {radius: 0}, line: {borderWidth: 1.5}},
      plugins: {legend: {display: datasets.length > 1}, tooltip: {enabled: false}},
      scales: Object.assign({x: {type: 'linear', ticks: {maxTicksLimit: 7, callback: clockText}}},
                            scales),
    },
  });
}

function line(label, color, axis) {
  return {label, data: [], borderColor: color, backgroundColor: color, yAxisID: axis};
}

const charts = [
  makeChart($('chart-ch4'),
            [line('CH4 (ppm)', '#2b6cb0', 'y'), line('density (mmol/m³)', '#dd6b20', 'y1')],
            {y: {position: 'left'}, y1: {position: 'right', grid: {drawOnChartArea: false}}}),
  makeChart($('chart-temp'), [line('°C', '#c53030', 'y')], {}),
  makeChart($('chart-pressure'), [line('kPa', '#2f855a', 'y')], {}),
  makeChart($('chart-rssi'), [line('RSSI', '#6b46c1', 'y')], {}),
];
// Which chart dataset shows each of kFields.
const kPlaces = [[0, 0], [0, 1], [1, 0], [2, 0], [3, 0]];

function windowSeconds() { return Number($('window').value); }

function draw() {
  const span = windowSeconds(), end = recent.latest();
  recent.series(span, end).forEach((points, i) => {
    const [chart, dataset] = kPlaces[i];
    charts[chart].data.datasets[dataset].data = points;
  });
  for (const chart of charts) {
    chart.options.scales.x.min = end - span;
    chart.options.scales.x.max = end;
    chart.update('none');
  }
}

function showLatest() {
  for (const [id, field, digits] of kReadings) {
    const value = latest[field];
    $(id).textContent = typeof value === 'number' ? value.toFixed(digits) : '-';
  }
  $('diag').textContent = '0x' + Number(latest.DIAG).toString(16).toUpperCase().padStart(4, '0');
  const set = new Set(latest.DIAGFLAGS);
  for (const flag of $('diag-flags').children)
    flag.classList.toggle('set', set.has(flag.dataset.name));
  const rate = counting.rate === null ? '' : counting.rate + ' records a second, ';
  $('last-record').textContent =
      rate + 'last ' + new Date(latest.SECONDS * 1000).toISOString().replace('T', ' ')
          .substring(0, 19) + ' UTC';
}

// Draws when records came, at most once a frame, and for long windows at
// most once a slice, when a new point can show.
function frame(now) {
  if (dirty && now - lastDrawn >= windowSeconds() * 1000 / kPoints) {
    dirty = false;
    lastDrawn = now;
    showLatest();
    draw();
  }
  requestAnimationFrame(frame);
}

// The records of each second of the analyzer's own time make the rate.
function countRecord(seconds) {
  if (seconds !== counting.second) {
    if (counting.second >= 0 && seconds === counting.second + 1 && counting.started)
      counting.rate = counting.count;
    counting.started = counting.second >= 0;
    counting.second = seconds;
    counting.count = 0;
  }
  counting.count++;
}

function takeRecord(record) {
  const time = record.SECONDS + record.NANOSECONDS / 1e9;
  if (time < recent.latest()) recent.clear();  // the analyzer's clock stepped back
  recent.push(time, record);
  countRecord(record.SECONDS);
  latest = record;
  dirty = true;
}

function showDiagNames(names) {
  const box = $('diag-flags');
  box.replaceChildren();
  for (const name of names) {
    const flag = document.createElement('span');
    flag.className = 'flag';
    flag.id = 'diag-' + name;
    flag.dataset.name = name;
    flag.textContent = name;
    box.append(flag);
  }
}

function showIdentity(identity) {
  $('model').textContent = identity.model || 'VELA';
  $('name').textContent = identity.name;
  $('serial').textContent = identity.serial;
  $('version').textContent = identity.version;
  $('box').textContent = identity.box;
}

function showConnection(text) {
  const connection = $('connection');
  connection.textContent = text;
  connection.classList.toggle('up', text.endsWith(': connected'));
  connection.classList.toggle('down', text.endsWith('trying again') || text.startsWith('vela serve'));
}

// The configuration as a tree of folding elements, keeping open what was.
function showConfig(xml) {
  const vela = new DOMParser().parseFromString(xml, 'application/xml')
                   .querySelector('norvance > vela');
  if (!vela) return;
  const box = $('config');
  const open = new Set([...box.querySelectorAll('details[open]')].map((d) => d.dataset.path));
  const build = (element, path) => {
    const children = [...element.children];
    if (!children.length) {
      const leaf = document.createElement('div');
      leaf.className = 'leaf';
      leaf.dataset.path = path;
      leaf.append(Object.assign(document.createElement('b'), {textContent: element.tagName}),
                  ' ' + element.textContent);
      return leaf;
    }
    const folder = document.createElement('details');
    folder.dataset.path = path;
    folder.open = open.has(path);
    folder.append(Object.assign(document.createElement('summary'), {textContent: element.tagName}));
    children.forEach((child) => folder.append(build(child, path + '/' + child.tagName)));
    return folder;
  };
  box.replaceChildren(...[...vela.children].map((child) => build(child, child.tagName)));
  const rate = vela.querySelector(':scope > output > rate');
  if (rate && document.activeElement !== $('rate')) $('rate').value = rate.textContent;
}

async function act(action, argument) {
  const answer = $('answer');
  const buttons = document.querySelectorAll('.settings button');
  buttons.forEach((button) => { button.disabled = true; });
  answer.className = 'answer';
  answer.textContent = action + ' ...';
  try {
    const reply = await fetch('/action', {method: 'POST', body: new URLSearchParams({action, argument})});
    const result = await reply.json();
    answer.textContent = result.text;
    answer.classList.toggle('error', !result.ok);
  } catch (error) {
    answer.textContent = 'vela serve is out of reach: ' + error.message;
    answer.classList.add('error');
  } finally {
    buttons.forEach((button) => { button.disabled = false; });
  }
}

$('rate-apply').addEventListener('click', () => act('rate', $('rate').value));
for (const button of document.querySelectorAll('button[data-action]'))
  button.addEventListener('click', () => act(button.dataset.action, $('span-ppm').value));
$('window').addEventListener('change', () => { dirty = recent.size > 0; lastDrawn = 0; });

const feed = new EventSource('/events');
const listen = (event, handler) =>
    feed.addEventListener(event, (message) => handler(JSON.parse(message.data)));
listen('record', takeRecord);
listen('identity', showIdentity);
listen('connection', showConnection);
listen('diagnames', showDiagNames);
listen('config', showConfig);
feed.addEventListener('error', () => showConnection('vela serve is out of reach; trying again'));
requestAnimationFrame(frame);
