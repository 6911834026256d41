// SPDX-License-Identifier: MIT
// What the page's scripts share. Whatever comes from the log becomes text, never markup.
'use strict';

const data = JSON.parse(document.getElementById('data').textContent);
const log = data.log;
const manyFiles = log.files.length > 1;
const byId = (id) => document.getElementById(id);

// make('td', {className: 'number'}, 'text', child...): an element.
function make(name, properties, ...children) {
  const element = document.createElement(name);
  Object.assign(element, properties || {});
  element.append(...children.filter((each) => each !== null && each !== undefined));
  return element;
}

const counted = (count, what) => `${count.toLocaleString('en')} ${what}${count === 1 ? '' : 's'}`;
const baseName = (path) => path.split(/[\\/]/).pop();
const placeText = (at) => (manyFiles ? `${baseName(log.files[at[0]])}:${at[1]}` : `line ${at[1]}`);

function durationText(ms) {
  const digits = (value) => value.toFixed(value >= 100 ? 0 : (value >= 10 ? 1 : 2));
  if (ms >= 1000) {
    return `${digits(ms / 1000)} s`;
  }
  return ms >= 1 || ms === 0 ? `${digits(ms)} ms` : `${digits(ms * 1000)} \u00b5s`;
}

// A moment, as finely as `step` milliseconds need it.
function momentText(ms, step) {
  const decimals = step >= 1000 ? 0 : Math.min(6, 3 + Math.max(0, Math.ceil(-Math.log10(step))));
  if (data.timeKind === 'date' || data.timeKind === 'time of day') {
    const all = data.firstMs + ms;
    const whole = Math.floor(all / 1000) * 1000;
    const rest = ((all - whole) / 1000).toFixed(decimals).slice(1);
    return new Date(whole).toISOString().slice(11, 19) + (decimals ? rest : '');
  }
  return `${((data.firstMs + ms) / 1000).toFixed(decimals)} s`;
}

// Moments between `from` and `to` that are whole on the clock, at least `room` pixels apart: [ms, text] for each.
function ticksOf(from, to, width, room) {
  const second = 1000;
  const about = (to - from) * room / Math.max(width, room);
  const power = 10 ** Math.floor(Math.log10(Math.min(about, second / 2)));
  const steps = [...[1, 2, 5, 10].map((each) => each * power), ...[1, 2, 5, 10, 15, 30, 60, 120, 300, 600, 900, 1800, 3600, 7200,
    10800, 21600, 43200, 86400, 172800, 604800].map((each) => each * second)];
  const step = steps.find((each) => each >= about) || Math.ceil(about / steps[steps.length - 1]) * steps[steps.length - 1];
  const origin = data.firstMs;
  const ticks = [];
  for (let i = Math.ceil((origin + from) / step); i * step - origin <= to; ++i) {
    ticks.push([i * step - origin, momentText(i * step - origin, step)]);
  }
  return ticks;
}
