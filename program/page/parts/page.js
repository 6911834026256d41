// SPDX-License-Identifier: MIT
// Fills the page. Whatever comes from the log becomes text, never markup.
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

// ---- Summary

function showSummary() {
  const name = baseName(log.files[log.files.length - 1]);
  document.title = `${name} \u2013 Vextrel report`;
  byId('title').textContent = name;
  const parts = [counted(log.calls, 'call'), `on ${counted(log.lines, 'line')}`, `${(log.bytes / 1e6).toFixed(1)} MB`];
  if (manyFiles) {
    parts.push(`in ${log.files.length} files`);
  }
  if (log.first) {
    parts.push(`${log.first} to ${log.last}`, `resolution ${log.resolutionMs} ms${log.timing ? ', of durations 1 \u00b5s' : ''}`);
  }
  byId('subtitle').textContent = parts.join(' \u00b7 ');
  const tile = (value, label, look) => byId('summary').append(make('div', {className: `tile ${look || ''}`},
    make('b', {className: value.length > 12 ? 'long' : ''}, value), label));
  const [infos, warnings, errors] = data.findings.counts;
  tile(String(errors), errors === 1 ? 'error found' : 'errors found', errors ? 'error' : 'good');
  tile(String(warnings), warnings === 1 ? 'warning' : 'warnings', warnings ? 'warning' : 'good');
  const failed = data.functions.reduce((sum, each) => sum + each.errors, 0);
  tile(failed.toLocaleString('en'), failed === 1 ? 'call failed or timed out' : 'calls failed or timed out');
  if (data.neverReturnedCount) {
    tile(String(data.neverReturnedCount), 'entered and never returned', 'error');
  }
  const first = data.streams.all[0];
  if (first) {
    const mean = first.stream.intervalMs.mean;
    tile(first.stream.frames.toLocaleString('en'), `frames on ${first.stream.name}`);
    if (mean) {
      tile((1000 / mean).toFixed(2), `frames a second on ${first.stream.name}`);
      tile(durationText(first.stream.intervalMs.max), 'longest frame interval');
    }
  }
  if (log.first) {
    tile(durationText(data.endMs), 'from the first line to the last');
  }
  const producers = [...new Set(data.sessions.map((each) => each.producer).filter((each) => each))];
  if (producers.length) {
    const version = data.sessions.find((each) => each.producer === producers[0]).version;
    tile(baseName(producers[0]), `producer${version && version !== '0.0.0.0' ? ', version ' + version : ''}` +
      (producers.length > 1 ? ` and ${producers.length - 1} more` : ''));
  }
  if (data.sessionCount > 1) {
    tile(String(data.sessionCount), 'sessions');
  }
}

// ---- Findings and the lines around them

const rowAt = new Map(data.rows.map((row, index) => [`${row[0]}:${row[1]}`, index]));
const looks = ['', 'failed', 'warned', 'unreadable'];

function rowsOf(finding) {
  const shown = new Map();  // by index: the notes of a row
  const add = (at, around, note) => {
    const index = rowAt.get(`${at[0]}:${at[1]}`);
    if (index === undefined) {
      return;
    }
    let low = index;
    let high = index;
    while (low > 0 && index - low < around && data.rows[low][6]) {
      --low;
    }
    while (high + 1 < data.rows.length && high - index < around && data.rows[high + 1][6]) {
      ++high;
    }
    for (let i = low; i <= high; ++i) {
      shown.set(i, shown.get(i) || []);
    }
    if (note) {
      shown.get(index).push(note);
    }
  };
  add(finding.at, 4);
  finding.related.forEach(([file, line, what]) => add([file, line], 1, what));
  if (finding.count > 1) {
    add(finding.last, 1, 'the last time');
  }
  return [...shown].sort((left, right) => left[0] - right[0]);
}

function rowTable(finding) {
  const rows = rowsOf(finding);
  if (!rows.length) {
    return make('p', {className: 'soft'}, `There was no room for its lines in this page: they are at ${placeText(finding.at)} of the log.`);
  }
  const table = make('table', {className: 'rows'});
  let last = rows[0][0];
  for (const [index, notes] of rows) {
    const [file, line, time, thread, look, text, follows] = data.rows[index];
    if (index > last + 1 || (index === last + 1 && !follows)) {
      table.append(make('tr', {className: 'gap'}, make('td', {colSpan: 4}, '\u22ef')));
    }
    last = index;
    const own = file === finding.at[0] && line === finding.at[1];
    table.append(make('tr', {className: own ? 'own' : (notes.length ? 'related' : '')},
      make('td', {}, manyFiles ? `${baseName(log.files[file])}:${line}` : String(line)),
      make('td', {}, time), make('td', {}, thread ? `T${thread}` : ''),
      make('td', {className: `text ${looks[look]}`}, text, ...notes.map((note) => make('span', {className: 'note'}, `\u2191 ${note}`)))));
  }
  return make('div', {className: 'scroll'}, table);
}

function fillFinding(finding, box) {
  if (box.childElementCount) {
    return;
  }
  const rule = data.findings.rules[finding.rule];
  box.append(make('p', {}, rule.explanation), make('p', {}, make('b', {}, 'Fix: '), rule.remedy));
  if (rule.harmless) {
    box.append(make('p', {className: 'soft'}, `Harmless: ${rule.harmless}`));
  }
  const facts = [`at ${placeText(finding.at)}`];
  if (finding.ms !== null) {
    facts.push(momentText(finding.ms, 1));
  }
  if (finding.thread) {
    facts.push(`by T${finding.thread}`);
  }
  if (finding.count > 1) {
    facts.push(`${finding.count.toLocaleString('en')} times, the last time at ${placeText(finding.last)}`);
  }
  box.append(make('p', {className: 'soft'}, facts.join(', ')));
  if (finding.ms !== null && time) {
    box.append(make('button', {type: 'button', onclick: () => {
      const around = Math.max(Math.min(data.endMs / 10, 200), 20);
      time.setView(finding.ms - around, finding.ms + around);
      byId('timeline-frame').scrollIntoView({block: 'center'});
    }}, 'Show it in the timeline'));
  }
  box.append(rowTable(finding));
}

function showFindings() {
  const section = byId('findings');
  const {all, more, notJudged, rules} = data.findings;
  if (!all.length) {
    section.append(make('p', {}, data.leftOut.length ? 'There was no room for them in this page.' : 'No rule found anything.'));
  }
  finds = all.map((finding) => {
    const box = make('div');
    const summary = make('summary', {}, make('span', {className: 'rule'}, `${finding.severity} ${finding.rule}`), finding.message,
      make('span', {className: 'where'}, placeText(finding.at) + (finding.count > 1 ? `, ${finding.count.toLocaleString('en')} times` : '')));
    const details = make('details', {className: `finding ${finding.severity}`}, summary, box);
    details.addEventListener('toggle', () => { if (details.open) { fillFinding(finding, box); } });
    section.append(details);
    return {details, fill: () => fillFinding(finding, box)};
  });
  if (more) {
    section.append(make('p', {className: 'soft'}, `${counted(more, 'finding')} more had no room here: 'vextrel check' has them all.`));
  }
  for (const [rule, about] of Object.entries(rules)) {
    if (about.beyond) {
      section.append(make('p', {className: 'soft'}, `${rule}: ${counted(about.beyond, 'more')} like these.`.replace('mores', 'more')));
    }
  }
  for (const [which, why] of notJudged) {
    section.append(make('p', {className: 'soft'}, `Not judged: ${which}: ${why}`));
  }
}

let finds = [];
function openFinding(index) {
  finds[index].details.open = true;
  finds[index].fill();
  finds[index].details.scrollIntoView({block: 'start'});
  finds[index].details.querySelector('summary').focus({preventScroll: true});
}

// ---- Time: the plots and the timeline share what they show

function callsOfData() {
  const {lane, begin, duration, function: functions, look, handle, file, line} = data.calls;
  const bit = (value) => look.map((each) => (each & value) !== 0);
  let at = 0;
  let lastLine = 0;
  return {
    lane, handle, functions, file,
    begin: Float64Array.from(begin, (each) => (at += each) / 1e4),
    duration: Float64Array.from(duration, (each) => each / 1e4),
    line: Float64Array.from(line, (each) => (lastLine += each)),
    group: functions.map((each) => data.functionNames[each][1]),
    timed: bit(1), failed: bit(2), neverReturned: bit(4), timedOut: bit(8),
  };
}

function cellsOfData() {
  if (data.keepsAll) {
    return null;
  }
  const width = data.lanes.widthMs;
  let most = 1;
  const all = data.lanes.all.map((lane) => {
    let slot = 0;
    return lane.slot.map((each, i) => {
      slot += each;
      most = Math.max(most, lane.calls[i]);
      return {begin: slot * width, calls: lane.calls[i], group: lane.group[i], failed: lane.failed[i], spent: lane.spentMs[i]};
    });
  });
  return {width, all, most};
}

function colorsOfPage() {
  const style = getComputedStyle(document.documentElement);
  const get = (name) => style.getPropertyValue(`--${name}`).trim();
  const groups = data.groups.map((_, i) => get(`group-${i}`));
  return {
    back: get('back'), panel: get('panel'), line: get('line'), text: get('text'), soft: get('soft'),
    error: get('error'), warning: get('warning'), info: get('info'), select: `${get('link')}33`,
    plot: get('plot'), plotSoft: get('plot-soft'), plotDepth: get('plot-depth'),
    groups, pale: groups.map((each) => `${each}66`),
  };
}

class TimeView {
  constructor() {
    this.calls = callsOfData();
    this.colors = colorsOfPage();
    const pad = Math.max(data.endMs / 200, 0.05);
    this.all = [-pad, data.endMs + pad];
    this.least = log.timing ? 0.005 : Math.max(log.resolutionMs, 1) * 4;
    this.graphs = [];
    this.makeTimeline();
    this.makeStreams();
    this.showStream(0);
    this.makeControls();
    this.resetView();
  }

  makeTimeline() {
    const threads = data.threads.length;
    const most = 24;
    const count = Math.max(1, Math.min(most, threads));
    const lanes = Array.from({length: count}, (_, i) => (threads === 0 ? 'calls' : (i === most - 1 && threads > most ? 'others' : `T${i + 1}`)));
    const marks = data.findings.all.map((each, index) => ({ms: each.ms, severity: each.severity, index, text: `${each.rule}: ${each.message}`}))
      .filter((each) => each.ms !== null);
    this.timeline = new Timeline(byId('timeline'), byId('tip'), {
      calls: this.calls, cells: cellsOfData(), lanes, marks,
      colors: () => this.colors,
      ticksOf: (from, to, width) => ticksOf(from, to, width, 110),
      nameOf: (i) => data.functionNames[this.calls.functions[i]][0],
      tipOf: (i) => this.tipOf(i),
      cellTip: (cell) => `${counted(cell.calls, 'call')} in ${durationText(data.lanes.widthMs)}, most for ${data.groups[cell.group]}` +
        (cell.failed ? `\n${cell.failed} failed` : '') + (log.timing ? `\n${durationText(cell.spent)} in the producer` : ''),
      setView: (from, to) => this.setView(from, to),
      resetView: () => this.resetView(),
      openMark: (mark) => openFinding(mark.index),
    });
    const swatch = (color, text) => byId('legend').append(make('li', {}, make('i', {style: `background: var(--${color})`}), text));
    data.groups.forEach((name, i) => swatch(`group-${i}`, name));
    swatch('error', 'failed or never returned');
    const kept = this.calls.begin.length;
    let note = data.keepsAll ? `All ${kept.toLocaleString('en')} calls, one by one. `
      : `A bar stands for the calls of ${durationText(data.lanes.widthMs)}. In front of them, ${kept.toLocaleString('en')} of the ` +
        `${log.calls.toLocaleString('en')} calls are there one by one: those near findings and before the most late frames, the slowest, and up to 6,000 that failed. `;
    note += log.timing ? 'A call is as long as it was in the producer; it begins as exactly as the log\'s times say. '
      : 'Without timing lines a call is a tick at the time of its line, when it had returned; a pale wait took no longer than it is drawn. ';
    byId('timeline-readout').textContent = note + 'The triangles are findings.';
    if (threads > 1) {
      byId('legend').append(make('li', {}, data.threads.slice(0, count).map((each, i) => `T${i + 1} = ${each}`).join(', ')));
    }
  }

  tipOf(i) {
    const {calls} = this;
    const handle = data.handles.all[calls.handle[i] - 1];
    const name = data.functionNames[calls.functions[i]][0];
    const lines = [`${name}${handle ? ` on ${handle.name}` : ''}`, `${momentText(calls.begin[i], log.timing ? 0.01 : 1)}, ` +
      `${placeText([calls.file.length ? calls.file[i] : 0, calls.line[i]])}`];
    if (calls.neverReturned[i]) {
      lines.push('never returned');
    } else if (calls.timed[i] || calls.duration[i]) {
      lines.push(`${calls.timed[i] ? '' : 'at most '}${durationText(calls.duration[i])}`);
    }
    if (calls.failed[i] && !calls.neverReturned[i]) {
      lines.push('failed');
    }
    if (calls.timedOut[i]) {
      lines.push('timed out');
    }
    return lines.join('\n');
  }

  makeStreams() {
    const {all, count} = data.streams;
    byId('stream-choice').hidden = all.length < 2;
    all.forEach((each, i) => byId('stream').append(make('option', {value: String(i)},
      `${each.stream.name}${each.stream.device ? ' of ' + each.stream.device : ''}, ${counted(each.stream.frames, 'frame')}`)));
    if (count > all.length) {
      byId('stream-choice').append(` and ${count - all.length} more with fewer frames, which 'vextrel report' has`);
    }
    byId('stream').addEventListener('change', () => {
      this.showStream(Number(byId('stream').value));
      this.setView(this.from, this.to);
    });
    const none = !all.some((each) => each.intervals.rows.length || each.depths.rows.length);
    byId('stream-plots').hidden = none;
    byId('histogram-content').hidden = none;
  }

  showStream(index) {
    this.graphs.forEach((each) => each.destroy());
    this.graphs = [];
    const course = data.streams.all[index];
    if (!course || byId('stream-plots').hidden) {
      return;
    }
    const {stream} = course;
    const facts = [`${stream.name}${stream.id ? ` "${stream.id}"` : ''}: ${counted(stream.frames, 'frame')}`, `${counted(stream.timeouts, 'time-out')}`,
      stream.missingFrameIds === null ? 'frame ids not asked for' : `${counted(stream.missingFrameIds, 'frame id')} missing`,
      stream.incomplete === null ? 'completeness not asked for' : `${stream.incomplete} incomplete`];
    if (stream.intervalMs.mean !== null) {
      facts.push(`interval ${['mean', 'p50', 'p99', 'max'].map((each) => `${each} ${durationText(stream.intervalMs[each])}`).join(', ')}`);
    }
    byId('stream-figures').textContent = facts.join(' \u00b7 ');
    this.showIntervals(course);
    this.showDepths(course);
    this.showHistogram(course.histogram);
  }

  options(readout, text) {
    return {
      dateWindow: this.from === undefined ? this.all : [this.from, this.to],
      interactionModel: Dygraph.defaultInteractionModel,
      legend: 'never', includeZero: true, connectSeparatedPoints: false, animatedZooms: false, labelsKMB: true,
      gridLineColor: this.colors.line, axisLineColor: this.colors.line,
      axes: {
        x: {ticker: (from, to, width) => ticksOf(from, to, width, 110).map(([v, label]) => ({v, label})), axisLabelWidth: 100},
        y: {axisLabelWidth: 48},
      },
      highlightCallback: (event, x, points, row) => { byId(readout).textContent = text(row); },
      unhighlightCallback: () => { byId(readout).textContent = byId(readout).dataset.rest || ''; },
      zoomCallback: (from, to) => this.setView(from, to),
      drawCallback: (graph, initial) => {
        const [from, to] = graph.xAxisRange();
        if (!initial && !this.isSetting && (from !== this.from || to !== this.to)) {
          this.setView(from, to);
        }
      },
    };
  }

  rest(id, text) {
    byId(id).dataset.rest = text;
    byId(id).textContent = text;
  }

  showIntervals({intervals}) {
    const {rows, widthMs} = intervals;
    const merged = rows.some((each) => each[3] > 1);
    // The range selector reaches as far as the data, so empty points stand at both ends of the log.
    const ends = this.all.map((each) => [each, null, null].slice(0, merged ? 3 : 2));
    const table = [ends[0], ...rows.map((each) => (merged ? [each[0], each[2], each[1]] : [each[0], each[2]])), ends[1]];
    if (!rows.length) {
      this.rest('intervals-readout', 'There are fewer than two frames.');
      return;
    }
    this.rest('intervals-readout', merged ? `A point stands for the frames of up to ${durationText(widthMs)}: the longest interval, where it ended, in front of their mean, which is pale.`
      : 'A point stands for a frame: the time since the frame before it. Click one to see its calls.');
    this.graphs.push(new Dygraph(byId('intervals'), table, Object.assign(this.options('intervals-readout', (row) => {
      const [ms, mean, longest, count, line] = rows[row - 1];
      return `${momentText(ms, 1)}: ${count === 1 ? durationText(longest) : `${counted(count, 'frame')}, mean ${durationText(mean)}, longest ${durationText(longest)}`}, line ${line}`;
    }), {
      labels: merged ? ['time', 'longest', 'mean'] : ['time', 'interval'], colors: [this.colors.plot, this.colors.plotSoft],
      drawPoints: table.length < 400, pointSize: 2, strokeWidth: 1.3,
      showRangeSelector: true, rangeSelectorHeight: 34, rangeSelectorPlotStrokeColor: this.colors.plotSoft, rangeSelectorPlotFillColor: this.colors.plotSoft,
      rangeSelectorForegroundStrokeColor: this.colors.soft, rangeSelectorBackgroundStrokeColor: this.colors.line,
      pointClickCallback: (event, point) => {
        const around = Math.max(point.yval, this.least) * 1.5;
        this.setView(point.xval - around, point.xval + around);
      },
    })));
  }

  showDepths({depths, announced}) {
    const {rows, widthMs} = depths;
    const known = rows.filter((each) => each[1] !== null);
    if (!known.length) {
      this.rest('depths-readout', 'How many buffers were queued can\'t be told from this log.');
      return;
    }
    const merged = widthMs > 1;
    // It stays as it was up to the end of the log.
    const table = [...rows.map((each) => [each[0], merged ? each[1] : each[2]]), [data.endMs, rows[rows.length - 1][2]]];
    this.rest('depths-readout', `${counted(announced, 'buffer')} announced. ` + (merged ? `A point is the least depth in up to ${durationText(widthMs)}.` : ''));
    this.graphs.push(new Dygraph(byId('depths'), table, Object.assign(this.options('depths-readout', (row) =>
      `${momentText(table[row][0], 1)}: ${table[row][1] === null ? 'not known' : counted(table[row][1], 'buffer')}`), {
      labels: ['time', 'buffers'], colors: [this.colors.plotDepth], stepPlot: true, fillGraph: true, strokeWidth: 1.3,
      valueRange: [0, Math.max(...known.map((each) => Math.max(each[1], each[2] || 0)), 1) * 1.15],
    })));
  }

  showHistogram(histogram) {
    const box = byId('histogram');
    box.replaceChildren();
    if (!histogram) {
      this.rest('histogram-note', 'There are fewer than two frames.');
      return;
    }
    const {firstMs, widthMs, bins, longer} = histogram;
    const most = Math.max(...bins, longer);
    // The rare ones are those that matter, so heights are logarithmic.
    const bar = (count, text, className) => box.append(make('i', {className, title: text,
      style: `height: ${count ? 4 + 96 * Math.log1p(count) / Math.log1p(most) : 0}%`}));
    const rangeOf = (i) => (widthMs <= Math.max(log.resolutionMs, 0.001) ? `${+(firstMs + i * widthMs).toFixed(3)} ms`
      : `${+(firstMs + i * widthMs).toFixed(3)} to ${+(firstMs + (i + 1) * widthMs).toFixed(3)} ms`);
    bins.forEach((count, i) => bar(count, `${rangeOf(i)}: ${counted(count, 'frame')}`, ''));
    const end = +(firstMs + bins.length * widthMs).toFixed(3);
    if (longer) {
      bar(longer, `longer: ${counted(longer, 'frame')}`, 'longer');
    }
    this.rest('histogram-note', `From ${+firstMs.toFixed(3)} to ${end} ms, ${+widthMs.toFixed(3)} ms a bar; heights are logarithmic, the highest is ${counted(most, 'frame')}.` +
      (longer ? ` Behind it, in red: ${counted(longer, 'frame')} that took longer.` : ''));
  }

  makeControls() {
    byId('zoom-in').onclick = () => this.timeline.zoom(0.5);
    byId('zoom-out').onclick = () => this.timeline.zoom(2);
    byId('zoom-all').onclick = () => this.resetView();
    for (const id of ['timeline', 'intervals', 'depths']) {
      byId(id).addEventListener('keydown', (event) => {
        if (!event.ctrlKey && !event.altKey && !event.metaKey && this.timeline.key(event.key)) {
          event.preventDefault();
        }
      });
    }
    let waiting = 0;
    window.addEventListener('resize', () => {
      cancelAnimationFrame(waiting);
      waiting = requestAnimationFrame(() => this.setView(this.from, this.to));
    });
    window.matchMedia('(prefers-color-scheme: dark)').addEventListener('change', () => {
      this.colors = colorsOfPage();
      this.showStream(Number(byId('stream').value || 0));
      this.setView(this.from, this.to);
    });
  }

  resetView() { this.setView(...this.all); }

  setView(from, to) {
    const span = Math.min(Math.max(to - from, this.least), this.all[1] - this.all[0]);
    const center = (from + to) / 2;
    this.from = Math.min(Math.max(center - span / 2, this.all[0]), this.all[1] - span);
    this.to = this.from + span;
    this.isSetting = true;
    this.graphs.forEach((each) => each.updateOptions({dateWindow: [this.from, this.to], valueRange: each.getOption('valueRange')}));
    this.isSetting = false;
    const area = this.graphs.length ? this.graphs[0].getArea() : {x: 56, w: byId('timeline').clientWidth - 60};
    this.timeline.align(area.x, area.w);
    this.timeline.show(this.from, this.to);
    byId('view').textContent = `${momentText(Math.max(this.from, 0), span / 20)} to ${momentText(Math.min(this.to, data.endMs), span / 20)} (${durationText(span)})`;
    Object.assign(document.body.dataset, {from: this.from, to: this.to, drawn: this.timeline.drawn});
  }
}

// ---- Tables

function table(heads, rows) {
  const cells = (tag, values) => values.map((value, i) => make(tag, {className: heads[i][1] || ''}, value));
  return make('div', {className: 'scroll'}, make('table', {}, make('thead', {}, make('tr', {}, ...cells('th', heads.map((each) => each[0])))),
    make('tbody', {}, ...rows.map((row) => make('tr', {}, ...cells('td', row))))));
}

function showHandles() {
  const section = byId('handles');
  const {all, count} = data.handles;
  const children = new Map();
  all.forEach((each, i) => {
    const parent = each.parent && each.parent <= all.length && each.parent !== i + 1 ? each.parent : 0;
    children.set(parent, [...(children.get(parent) || []), i + 1]);
  });
  const order = [];
  const seen = new Set();
  const visit = (id, depth) => {
    if (id && !seen.has(id)) {
      seen.add(id);
      order.push([id, depth]);
    }
    for (const each of children.get(id) || []) {
      if (!seen.has(each)) {
        visit(each, depth + 1);
      }
    }
  };
  visit(0, -1);
  const span = Math.max(data.endMs, 0.001);
  const life = (handle) => {
    const end = handle.end === null ? data.endMs : handle.end;
    const text = `from ${momentText(handle.begin, 1)} to ${handle.end === null ? 'the end of the log' : momentText(end, 1)}`;
    return make('div', {className: 'track', title: text}, make('i', {className: handle.left ? 'left' : '',
      style: `left: ${100 * handle.begin / span}%; width: ${100 * Math.max(end - handle.begin, 0) / span}%`}));
  };
  const closed = (handle) => (handle.closed ? placeText(handle.closed)
    : (handle.with ? `with ${handle.with}` : (handle.left ? 'never' : '')));
  const most = 150;
  const rowOf = ([id, depth]) => {
    const handle = all[id - 1];
    const name = make('span', {style: `padding-left: ${Math.max(depth, 0) * 20}px`}, make('b', {}, handle.name), handle.id ? ` "${handle.id}"` : '');
    return [name, data.timeKind === 'none' ? '' : life(handle), handle.opened ? placeText(handle.opened) : 'not in the log', closed(handle), handle.value];
  };
  const heads = [['handle'], ['open', 'life'], ['opened at'], ['closed at'], ['value']];
  section.append(make('p', {className: 'soft'}, `${counted(count, 'handle')}, each below what it was opened from.` +
    (count > all.length ? ` The first ${all.length} are here: 'vextrel report --handles' has them all.` : '') +
    (data.timeKind === 'none' ? '' : ' A bar reaches from the opening to the end; it\'s red if the handle was never closed by its own function.')));
  const first = table(heads, order.slice(0, most).map(rowOf));
  section.append(first);
  if (order.length > most) {
    const button = make('button', {type: 'button'}, `Show all ${order.length}`);
    button.onclick = () => { first.replaceWith(table(heads, order.map(rowOf))); button.remove(); };
    section.append(button);
  }
}

function showFunctions() {
  const durations = new Map((data.durations || []).map((each) => [each.name, each]));
  const heads = [['function'], ['calls', 'number'], ['failed', 'number']];
  if (data.durations) {
    heads.push(['median', 'number'], ['p99', 'number'], ['longest', 'number']);
  }
  const rows = [...data.functions].sort((left, right) => right.calls - left.calls).map((each) => {
    const row = [each.name, each.calls.toLocaleString('en'), each.errors ? each.errors.toLocaleString('en') : ''];
    const known = durations.get(each.name);
    return data.durations ? [...row, ...['p50Us', 'p99Us', 'maxUs'].map((what) => (known ? durationText(known[what] / 1000) : ''))] : row;
  });
  byId('functions').append(table(heads, rows));
}

function showErrors() {
  const section = byId('errors');
  if (data.neverReturned && data.neverReturned.length) {
    section.append(make('h3', {}, `Entered the producer and never returned: ${data.neverReturnedCount}`),
      table([['call'], ['entered at'], ['time'], ['thread']], data.neverReturned.map((each) =>
        [each.call, `line ${each.enteredAt.line}`, each.time || '', each.thread || ''])));
  }
  if (!data.failures.length) {
    section.append(make('p', {}, data.leftOut.length ? 'There was no room for them in this page.' : 'No call failed.'));
    return;
  }
  section.append(make('h3', {}, 'Calls that failed, the first one first'),
    table([['function'], ['result'], ['times', 'number'], ['first at'], ['what GCGetLastError said']], data.failures.map((each) =>
      [data.functionNames[each.function][0], each.result, each.count.toLocaleString('en'), placeText(each.first), each.text])));
}

// ---- All of it

let time = null;
showSummary();
showFindings();
if (data.timeKind === 'none' || data.firstMs === null) {
  byId('time-content').replaceChildren(make('p', {}, 'The log\'s layout has no time, so there\'s nothing to draw over it.'));
} else {
  time = new TimeView();
}
showHandles();
showFunctions();
showErrors();
byId('about').textContent = (data.leftOut.length ? `Left out, because the page would be too big: ${data.leftOut.join(', ')}. ` : '') + `Made by vextrel ${data.version} from ${log.files.join(', ')}; layout: ${data.layout}.`;

// On paper, nothing can be opened.
const mostOnPaper = 40;
let opened = [];
window.addEventListener('beforeprint', () => {
  opened = finds.slice(0, mostOnPaper).filter((each) => !each.details.open);
  opened.forEach((each) => { each.details.open = true; each.fill(); });
});
window.addEventListener('afterprint', () => opened.forEach((each) => { each.details.open = false; }));
document.body.dataset.ready = 'yes';
