// SPDX-License-Identifier: MIT
// Fills the page.
'use strict';

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
