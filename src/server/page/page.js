'use strict';
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
