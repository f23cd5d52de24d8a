#include "server/Page.hpp"

namespace quillan::server {

std::string_view pageHtml() {
  return R"html(<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<title>quillan-widgets serve</title>
<link rel="stylesheet" href="/page.css">
<script src="/page.js" defer></script>
</head>
<body>
<header>
  <h1>Quillan widgets</h1>
  <div>Host clock: <time id="now">&hellip;</time> <span id="connection" class="muted"></span></div>
</header>
<main>
  <section class="screens">
    <div class="phone" id="home-screen"><h2>Home screen</h2><div class="grid" id="home"></div></div>
    <div class="phone lock" id="lock-screen"><h2>Lock screen</h2><div class="grid" id="lock"></div></div>
  </section>
  <section class="controls">
    <h2>Clock</h2>
    <form id="clock-form">
      <label><input type="radio" name="mode" value="live" checked> live</label>
      <label><input type="radio" name="mode" value="pin"> pinned at
        <input id="pin-at" type="text" size="26" placeholder="2026-11-22T08:30:00+01:00"></label>
      <label><input type="radio" name="mode" value="rate"> running
        <input id="rate" type="number" min="1" max="1000000" step="any" value="60"> times faster</label>
      <button type="submit">Set clock</button>
    </form>
    <h2>Environment</h2>
    <form id="environment-form">
      <label>Time zone <input name="timeZone" type="text" placeholder="(process default)"></label>
      <label>Locale <input name="locale" type="text" placeholder="(process default)"></label>
      <label>Colour scheme <select name="colorScheme"><option value="">default</option>
        <option>light</option><option>dark</option></select></label>
      <label>Rendering mode <select name="renderingMode"><option value="">default</option>
        <option>fullColor</option><option>accented</option><option>vibrant</option></select></label>
      <label>Platform version <input name="platformVersion" type="text" size="6"></label>
      <label>Direction <select name="layoutDirection"><option value="">from the locale</option>
        <option value="ltr">left to right</option><option value="rtl">right to left</option></select></label>
      <label>Text size <select name="dynamicType">
        <option>xSmall</option><option>small</option><option>medium</option><option>large</option>
        <option>xLarge</option><option>xxLarge</option><option>xxxLarge</option><option>accessibility1</option>
        <option>accessibility2</option><option>accessibility3</option><option>accessibility4</option>
        <option>accessibility5</option></select></label>
      <label>Device <select name="device"></select></label>
      <label><input name="redacted" type="checkbox"> redacted</label>
      <button type="submit">Apply</button>
    </form>
    <p id="error" class="error" role="alert"></p>
    <p>Last tap: <output id="tap-url">none yet</output></p>
  </section>
  <section>
    <h2>Widgets</h2>
    <table id="panels">
      <thead><tr><th>Widget</th><th>State</th><th>Entry</th><th>Reload policy</th><th>Next reload</th>
        <th>Reloads (24 h)</th><th>Last tap</th></tr></thead>
      <tbody></tbody>
    </table>
  </section>
</main>
</body>
</html>
)html";
}

std::string_view pageStyle() {
  return R"css(body { font-family: system-ui, sans-serif; margin: 1.5em; color: #222; background: #fafafa; }
h1 { font-size: 1.4em; margin: 0 0 .3em; }
h2 { font-size: 1.05em; margin: .8em 0 .4em; }
.screens { display: flex; gap: 2em; flex-wrap: wrap; }
.phone { background: #dfe6ee; border-radius: 28px; padding: 1em 1.4em 1.4em; }
.phone.lock { background: #1d2330; color: #eee; }
.grid { display: flex; gap: 20px; flex-wrap: wrap; align-items: flex-start; }
figure { margin: 0; position: relative; }
figure img { display: block; cursor: pointer; }
figure.failed img { opacity: .35; }
figcaption { font-size: .75em; margin-top: .3em; max-width: 340px; overflow-wrap: anywhere; }
.controls form { display: flex; gap: .8em; flex-wrap: wrap; align-items: center; margin-bottom: .6em; }
table { border-collapse: collapse; font-size: .85em; }
th, td { border-bottom: 1px solid #ccc; padding: .3em .6em; text-align: left; vertical-align: top; }
td { overflow-wrap: anywhere; max-width: 22em; }
.failed-state { color: #b00020; }
.stale { color: #9a6700; }
.error { color: #b00020; min-height: 1.2em; }
.muted { color: #888; }
)css";
}

std::string_view pageScript() {
  return R"js('use strict';
// Uses only the HTTP API. Texts go into the page with textContent, never as markup.
const state = { widgets: new Map(), scale: 2, lastTaps: new Map() };

function byId(id) { return document.getElementById(id); }
function showError(message) { byId('error').textContent = message || ''; }

async function api(path, options) {
  const response = await fetch(path, options);
  const body = await response.json();
  if (!response.ok) throw new Error(body.error || ('HTTP ' + response.status));
  return body;
}

function post(path, body) {
  return api(path, { method: 'POST', headers: { 'Content-Type': 'application/json' }, body: JSON.stringify(body) });
}

function figureFor(widget) {
  let figure = document.querySelector('figure[data-kind="' + CSS.escape(widget.kind) + '"]');
  if (figure) return figure;
  figure = document.createElement('figure');
  figure.dataset.kind = widget.kind;
  const image = document.createElement('img');
  image.className = 'widget';
  image.alt = widget.kind;
  image.addEventListener('load', () => {
    image.style.width = (image.naturalWidth / state.scale) + 'px';
    image.dataset.shownVersion = image.dataset.version;
  });
  image.addEventListener('error', () => { image.dataset.shownVersion = image.dataset.version; });
  image.addEventListener('click', (event) => tap(widget.kind, image, event));
  const caption = document.createElement('figcaption');
  figure.append(image, caption);
  byId(widget.family === 'accessoryCircular' ? 'lock' : 'home').append(figure);
  return figure;
}

async function tap(kind, image, event) {
  const rect = image.getBoundingClientRect();
  const points = image.naturalWidth / state.scale;
  const x = (event.clientX - rect.left) * points / rect.width;
  const y = (event.clientY - rect.top) * points / rect.width;
  try {
    const answer = await api('/api/tap?' + new URLSearchParams({ kind, x: x.toFixed(2), y: y.toFixed(2) }));
    const url = answer.url === null ? 'nothing (no link here)' : answer.url;
    state.lastTaps.set(kind, url);
    byId('tap-url').textContent = url;
    showError('');
    renderPanels();
  } catch (error) { showError(error.message); }
}

function formatPolicy(policy) {
  if (!policy) return '\u2014';
  return policy.type === 'after' ? 'after ' + policy.date : policy.type;
}

function cell(row, text, className) {
  const td = document.createElement('td');
  td.textContent = text;
  if (className) td.className = className;
  row.append(td);
}

function renderPanels() {
  const body = document.querySelector('#panels tbody');
  const rows = [];
  for (const widget of state.widgets.values()) {
    const row = document.createElement('tr');
    row.dataset.kind = widget.kind;
    cell(row, widget.kind + ' (' + widget.family + ')');
    cell(row, widget.state === 'failed' ? 'failed: ' + (widget.reason || '') : widget.state,
         widget.state === 'failed' ? 'failed-state' : '');
    cell(row, (widget.entry && widget.entry.date) || 'placeholder');
    cell(row, formatPolicy(widget.policy));
    cell(row, (widget.nextReload || 'only when the app asks') + (widget.stale ? ' (stale: over budget)' : ''),
         widget.stale ? 'stale' : '');
    cell(row, widget.reloads.policy + ' of ' + widget.reloads.budget + ' (app: ' + widget.reloads.app + ')');
    cell(row, state.lastTaps.get(widget.kind) || '\u2014', 'tap');
    rows.push(row);
  }
  body.replaceChildren(...rows);
}

function showWidget(widget) {
  const figure = figureFor(widget);
  const image = figure.querySelector('img');
  figure.classList.toggle('failed', widget.state === 'failed');
  figure.querySelector('figcaption').textContent =
      widget.kind + (widget.state === 'failed' ? ' \u2014 failed: ' + (widget.reason || '') : '');
  // A failed picture that heals keeps its version: its state changes.
  const version = widget.version + ':' + widget.state;
  if (image.dataset.version !== version) {
    image.dataset.version = version;
    image.src = '/api/render?' + new URLSearchParams({ kind: widget.kind, format: 'png', v: version });
  }
}

async function refresh() {
  try {
    const answer = await api('/api/widgets');
    byId('now').textContent = answer.now;
    for (const widget of answer.widgets) {
      state.widgets.set(widget.kind, widget);
      showWidget(widget);
    }
    renderPanels();
  } catch (error) { showError(error.message); }
}

async function loadEnvironment() {
  const answer = await api('/api/environment');
  state.scale = answer.scale;
  const form = byId('environment-form');
  const devices = form.elements.device;
  devices.replaceChildren(...answer.devices.map((name) => new Option(name, name)));
  for (const key of ['timeZone', 'locale', 'colorScheme', 'renderingMode', 'platformVersion', 'layoutDirection',
                     'dynamicType', 'device']) {
    form.elements[key].value = answer[key] || '';
  }
  form.elements.redacted.checked = answer.redacted;
}

function environmentChanges() {
  const form = byId('environment-form');
  const body = { redacted: form.elements.redacted.checked };
  for (const key of ['timeZone', 'locale', 'colorScheme', 'renderingMode', 'platformVersion', 'layoutDirection',
                     'dynamicType', 'device']) {
    const value = form.elements[key].value.trim();
    const resettable = ['timeZone', 'locale', 'colorScheme', 'renderingMode', 'layoutDirection'].includes(key);
    if (value !== '') body[key] = value;
    else if (resettable) body[key] = null;
  }
  return body;
}

function clockChange() {
  const mode = new FormData(byId('clock-form')).get('mode');
  if (mode === 'pin') return { now: byId('pin-at').value.trim() };
  if (mode === 'rate') return { rate: Number(byId('rate').value) };
  return { live: true };
}

function connectEvents() {
  const events = new EventSource('/api/events');
  events.addEventListener('open', () => { byId('connection').textContent = ''; refresh(); });
  events.addEventListener('widget', () => refresh());
  events.addEventListener('error', () => { byId('connection').textContent = '(reconnecting\u2026)'; });
}

window.addEventListener('DOMContentLoaded', async () => {
  byId('clock-form').addEventListener('submit', async (event) => {
    event.preventDefault();
    try { await post('/api/clock', clockChange()); showError(''); refresh(); } catch (error) { showError(error.message); }
  });
  byId('environment-form').addEventListener('submit', async (event) => {
    event.preventDefault();
    try {
      const answer = await post('/api/environment', environmentChanges());
      state.scale = answer.scale;
      showError('');
      refresh();
    } catch (error) { showError(error.message); }
  });
  try { await loadEnvironment(); } catch (error) { showError(error.message); }
  connectEvents();
  await refresh();
  // The panel's clock and next reloads move on their own between pictures.
  setInterval(refresh, 5000);
});
)js";
}

}  // namespace quillan::server
