// SPDX-License-Identifier: MIT
// The calls over time on a canvas: a lane for each thread. Times are milliseconds since the log's first line.
'use strict';

class Timeline {
  static laneHeight = 30;
  static top = 16;     // room for the marks of findings
  static bottom = 22;  // and for the axis

  // `what` has: calls, cells (or null), lanes (names), marks (findings), colors(), ticksOf(from, to, width), nameOf(call),
  // setView(from, to), resetView(), tipOf(call), cellTip(cell), openMark(mark).
  constructor(canvas, tip, what) {
    this.canvas = canvas;
    this.tip = tip;
    this.what = what;
    this.area = {x: 60, width: 100};
    this.height = Timeline.top + what.lanes.length * Timeline.laneHeight + Timeline.bottom;
    canvas.style.height = this.height + 'px';
    this.drag = null;
    this.listen();
  }

  // The plots' drawing area, so that equal times stand below each other.
  align(left, width) {
    this.area = {x: left, width: Math.max(width, 10)};
    const scale = window.devicePixelRatio || 1;
    const wide = this.canvas.clientWidth;
    this.canvas.width = Math.max(1, Math.round(wide * scale));
    this.canvas.height = Math.round(this.height * scale);
    this.canvas.getContext('2d').setTransform(scale, 0, 0, scale, 0, 0);
  }

  show(from, to) {
    this.from = from;
    this.to = to;
    this.draw();
  }

  x(ms) { return this.area.x + (ms - this.from) / (this.to - this.from) * this.area.width; }
  ms(x) { return this.from + (x - this.area.x) / this.area.width * (this.to - this.from); }
  laneTop(lane) { return Timeline.top + lane * Timeline.laneHeight; }

  draw() {
    const context = this.canvas.getContext('2d');
    const colors = this.what.colors();
    context.clearRect(0, 0, this.canvas.clientWidth, this.height);
    context.font = '12px system-ui, "DejaVu Sans", sans-serif';
    context.textBaseline = 'middle';
    this.drawFrame(context, colors);
    context.save();
    context.beginPath();
    context.rect(this.area.x, 0, this.area.width, this.height);
    context.clip();
    if (this.what.cells) {
      this.drawCells(context, colors);
    }
    this.drawn = this.drawCalls(context, colors);
    this.drawMarks(context, colors);
    if (this.drag && !this.drag.moves) {
      context.fillStyle = colors.select;
      context.fillRect(Math.min(this.drag.begin, this.drag.end), 0, Math.abs(this.drag.end - this.drag.begin), this.height);
    }
    context.restore();
  }

  drawFrame(context, colors) {
    const {x, width} = this.area;
    const bottom = this.height - Timeline.bottom;
    this.what.lanes.forEach((name, lane) => {
      context.fillStyle = lane % 2 ? colors.back : colors.panel;
      context.fillRect(x, this.laneTop(lane), width, Timeline.laneHeight);
      context.fillStyle = colors.soft;
      context.textAlign = 'right';
      context.fillText(name, x - 6, this.laneTop(lane) + Timeline.laneHeight / 2, x - 8);
    });
    context.textAlign = 'center';
    for (const [ms, text] of this.what.ticksOf(this.from, this.to, width)) {
      const at = Math.round(this.x(ms)) + 0.5;
      context.strokeStyle = colors.line;
      context.beginPath();
      context.moveTo(at, Timeline.top);
      context.lineTo(at, bottom + 4);
      context.stroke();
      context.fillStyle = colors.soft;
      if (at > x + 34 && at < x + width - 34) {
        context.fillText(text, at, bottom + 13);
      }
    }
  }

  drawCells(context, colors) {
    const {width, all, most} = this.what.cells;
    all.forEach((cells, lane) => {
      const top = this.laneTop(lane);
      const room = Timeline.laneHeight - 4;
      for (const cell of cells) {
        const left = this.x(cell.begin);
        const right = this.x(cell.begin + width);
        if (right < this.area.x || left > this.area.x + this.area.width) {
          continue;
        }
        const high = 4 + (room - 4) * Math.log1p(cell.calls) / Math.log1p(most);
        context.fillStyle = colors.pale[cell.group];
        context.fillRect(left, top + 2 + room - high, Math.max(right - left, 1), high);
        if (cell.failed) {
          context.fillStyle = colors.error;
          context.fillRect(left, top + room - 1, Math.max(right - left, 1), 3);
        }
      }
    });
  }

  // Returns how many were drawn.
  drawCalls(context, colors) {
    const {calls} = this.what;
    const right = this.area.x + this.area.width;
    // As long as the bars are narrow, they tell more than ticks on them.
    const {cells} = this.what;
    const least = cells && this.x(cells.width) - this.x(0) < 8 ? 2 : 0;
    const ends = [];  // of what was drawn last, by lane and color, in pixels
    let drawn = 0;
    for (let i = 0; i < calls.begin.length; ++i) {
      if (calls.begin[i] > this.to) {
        break;
      }
      const to = this.x(calls.begin[i] + calls.duration[i]);
      if (to < this.area.x) {
        continue;
      }
      const from = this.x(calls.begin[i]);
      if (to - from < least && !calls.neverReturned[i]) {
        continue;
      }
      const bad = calls.failed[i];
      const group = calls.group[i];
      const key = calls.lane[i] * 16 + (bad ? 15 : group);
      const end = Math.max(to, from + (bad ? 2 : 1));
      ++drawn;
      if (ends[key] !== undefined && end <= ends[key] + 0.3) {
        continue;
      }
      ends[key] = end;
      const top = this.laneTop(calls.lane[i]) + (bad ? 1 : 4);
      const high = Timeline.laneHeight - (bad ? 2 : 8);
      const shownFrom = Math.max(from, this.area.x - 2);
      const shownEnd = Math.min(end, right + 2);
      context.fillStyle = bad ? colors.error : (calls.timed[i] && !calls.timedOut[i] ? colors.groups[group] : colors.pale[group]);
      if (!calls.duration[i] && !bad) {
        context.fillStyle = colors.groups[group];
      }
      context.fillRect(shownFrom, top, Math.max(shownEnd - shownFrom, 1), high);
      if (shownEnd - shownFrom > 46) {
        const dark = calls.timed[i] && !calls.timedOut[i] || bad;
        if (shownEnd - shownFrom < 4000) {
          context.strokeStyle = colors.back;
          context.strokeRect(shownFrom + 0.5, top + 0.5, shownEnd - shownFrom - 1, high - 1);
        }
        context.fillStyle = dark ? colors.back : colors.text;
        context.textAlign = 'left';
        context.save();
        context.beginPath();
        context.rect(shownFrom, top, shownEnd - shownFrom - 3, high);
        context.clip();
        context.fillText(this.what.nameOf(i), shownFrom + 4, top + high / 2 + 0.5);
        context.restore();
      }
    }
    return drawn;
  }

  drawMarks(context, colors) {
    for (const mark of this.what.marks) {
      const at = this.x(mark.ms);
      context.fillStyle = colors[mark.severity];
      context.beginPath();
      context.moveTo(at - 5, 2);
      context.lineTo(at + 5, 2);
      context.lineTo(at, 13);
      context.fill();
    }
  }

  // What is below the pointer: {mark}, {call}, {cell}, or null.
  find(x, y) {
    if (x < this.area.x || x > this.area.x + this.area.width) {
      return null;
    }
    if (y < Timeline.top) {
      const near = this.what.marks.filter((mark) => Math.abs(this.x(mark.ms) - x) <= 6);
      return near.length ? {mark: near[0]} : null;
    }
    const lane = Math.floor((y - Timeline.top) / Timeline.laneHeight);
    const {calls} = this.what;
    let best = null;
    let nearest = 4;
    for (let i = 0; i < calls.begin.length && calls.begin[i] <= this.ms(x + 4); ++i) {
      if (calls.lane[i] !== lane) {
        continue;
      }
      const from = this.x(calls.begin[i]);
      const to = this.x(calls.begin[i] + calls.duration[i]);
      const away = x < from ? from - x : Math.max(0, x - to);
      if (away < nearest || (away === nearest && best !== null && calls.duration[i] <= calls.duration[best])) {
        nearest = away;
        best = i;
      }
    }
    if (best !== null) {
      return {call: best};
    }
    const cells = this.what.cells && this.what.cells.all[lane];
    const cell = cells && cells.find((each) => each.begin <= this.ms(x) && this.ms(x) < each.begin + this.what.cells.width);
    return cell ? {cell} : null;
  }

  showTip(event) {
    const box = this.canvas.getBoundingClientRect();
    const x = event.clientX - box.left;
    const y = event.clientY - box.top;
    const found = this.drag ? null : this.find(x, y);
    this.tip.hidden = !found;
    if (found) {
      this.tip.textContent = found.mark ? found.mark.text
        : (found.cell ? this.what.cellTip(found.cell) : this.what.tipOf(found.call));
      this.tip.style.left = Math.min(x + 14, Math.max(0, box.width - 430)) + 'px';
      this.tip.style.top = (y + 16) + 'px';
    }
  }

  zoom(factor, around) {
    const center = around === undefined ? (this.from + this.to) / 2 : around;
    this.what.setView(center - (center - this.from) * factor, center + (this.to - center) * factor);
  }

  // Returns true iff the key means something here.
  key(name) {
    const step = (this.to - this.from) / 5;
    const actions = {
      '+': () => this.zoom(0.5), '=': () => this.zoom(0.5), '-': () => this.zoom(2),
      'ArrowLeft': () => this.what.setView(this.from - step, this.to - step),
      'ArrowRight': () => this.what.setView(this.from + step, this.to + step),
      '0': () => this.what.resetView(), 'Home': () => this.what.resetView(),
    };
    if (!actions[name]) {
      return false;
    }
    actions[name]();
    return true;
  }

  listen() {
    const {canvas} = this;
    const at = (event) => event.clientX - canvas.getBoundingClientRect().left;
    canvas.addEventListener('pointerdown', (event) => {
      canvas.focus({preventScroll: true});
      canvas.setPointerCapture(event.pointerId);
      this.drag = {begin: at(event), end: at(event), moves: event.shiftKey, from: this.from, to: this.to};
      this.tip.hidden = true;
    });
    canvas.addEventListener('pointermove', (event) => {
      if (!this.drag) {
        this.showTip(event);
        return;
      }
      this.drag.end = at(event);
      if (this.drag.moves) {
        const by = (this.drag.begin - this.drag.end) / this.area.width * (this.drag.to - this.drag.from);
        this.what.setView(this.drag.from + by, this.drag.to + by);
      } else {
        this.draw();
      }
    });
    canvas.addEventListener('pointerup', (event) => {
      const {drag} = this;
      this.drag = null;
      if (!drag) {
        return;
      }
      const [low, high] = [Math.min(drag.begin, drag.end), Math.max(drag.begin, drag.end)];
      if (!drag.moves && high - low > 4) {
        this.what.setView(this.ms(low), this.ms(high));
        return;
      }
      this.draw();
      const found = this.find(at(event), event.clientY - canvas.getBoundingClientRect().top);
      if (found && found.mark && high - low <= 4) {
        this.what.openMark(found.mark);
      }
    });
    canvas.addEventListener('pointercancel', () => { this.drag = null; this.draw(); });
    canvas.addEventListener('pointerleave', () => { this.tip.hidden = true; });
    canvas.addEventListener('dblclick', () => this.what.resetView());
    canvas.addEventListener('wheel', (event) => {
      // Without the focus, the wheel scrolls the page.
      if (document.activeElement === canvas || event.ctrlKey) {
        event.preventDefault();
        this.zoom(event.deltaY > 0 ? 1.3 : 1 / 1.3, this.ms(at(event)));
      }
    }, {passive: false});
  }
}
