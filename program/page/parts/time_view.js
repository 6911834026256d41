// SPDX-License-Identifier: MIT
// The part of the page about time: the plots and the timeline share what they show.
'use strict';

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
        `${log.calls.toLocaleString('en')} calls are there one by one: those near findings and before the frames that took longest, the slowest, and up to 6,000 that failed. `;
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
