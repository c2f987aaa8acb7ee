/* Makes the page easier to use. Without this script, the page still shows everything that it holds. Texts of
 * packages only ever become text: nothing here writes markup. */
(() => {
  "use strict";

  const byId = (id) => document.getElementById(id);
  const dataOf = (id) => {
    const element = byId(id);
    return element ? JSON.parse(element.textContent) : null;
  };
  const counts = new Intl.NumberFormat("en");

  function make(name, properties = {}, ...children) {
    const element = Object.assign(document.createElement(name), properties);
    element.append(...children);
    return element;
  }

  /* Calls `act` once, when the element is about to be seen. */
  function whenNear(element, act) {
    const observer = new IntersectionObserver((changes) => {
      if (changes.some((change) => change.isIntersecting)) {
        observer.disconnect();
        act();
      }
    }, { rootMargin: "600px" });
    observer.observe(element);
  }

  /* Marks the section in view in the contents. */
  function followContents() {
    const links = new Map();
    for (const link of document.querySelectorAll(".contents a")) {
      const section = byId(link.hash.slice(1));
      if (section) {
        links.set(section, link);
      }
    }
    const visible = new Set();
    const observer = new IntersectionObserver((changes) => {
      for (const change of changes) {
        visible[change.isIntersecting ? "add" : "delete"](change.target);
      }
      let found = false;
      for (const [section, link] of links) {
        const current = !found && visible.has(section);
        found = found || current;
        if (current) {
          link.setAttribute("aria-current", "true");
        } else {
          link.removeAttribute("aria-current");
        }
      }
    }, { rootMargin: "-80px 0px -60% 0px" });
    for (const section of links.keys()) {
      observer.observe(section);
    }
  }

  /* Values. */

  function filterValues(section) {
    const form = section.querySelector("form");
    const tables = [...section.querySelectorAll("table")].map((table) => ({
      table,
      part: table.caption.textContent.toLowerCase(),
      rows: [...table.tBodies[0].rows].map((row) => ({
        row,
        name: row.cells[0].textContent.toLowerCase(),
        zero: row.classList.contains("zero"),
        watched: row.classList.contains("watched"),
      })),
    }));
    const update = () => {
      const text = form.elements.text.value.trim().toLowerCase();
      const hideZeros = form.elements.zero.checked;
      const onlyWatched = form.elements.watched ? form.elements.watched.checked : false;
      let shown = 0;
      let all = 0;
      for (const { table, part, rows } of tables) {
        let any = false;
        for (const { row, name, zero, watched } of rows) {
          const fits = (part.includes(text) || name.includes(text)) && !(hideZeros && zero) && (!onlyWatched || watched);
          row.hidden = !fits;
          any = any || fits;
          shown += fits ? 1 : 0;
          all += 1;
        }
        table.hidden = !any;
      }
      form.querySelector("output").textContent = `${counts.format(shown)} of ${counts.format(all)} rows`;
    };
    form.hidden = false;
    form.addEventListener("input", update);
    form.addEventListener("submit", (event) => event.preventDefault());
    update();
  }

  /* Times are whole microseconds since 1970, in UTC. */

  function timeText(time, digits = 26) {
    const milliseconds = Math.floor(time / 1000);
    const date = new Date(milliseconds);
    if (Number.isNaN(date.getTime())) {
      return "";
    }
    const micro = String(time - milliseconds * 1000).padStart(3, "0");
    return (date.toISOString().replace("T", " ").replace("Z", "") + micro).slice(0, digits);
  }

  /* The beginning of a time, such as "2026-11-22 06", as the first time that fits it. */
  function parseTime(text) {
    const fields = /^\s*(\d{4})-(\d\d?)-(\d\d?)(?:[ T]+(\d\d?)(?::(\d\d?)(?::(\d\d?(?:\.\d+)?))?)?)?\s*Z?\s*$/.exec(text);
    if (!fields) {
      return null;
    }
    const [year, month, day, hour, minute, second] = fields.slice(1).map((field) => Number(field || 0));
    const time = Date.UTC(year, month - 1, day, hour, minute, 0);
    return Number.isNaN(time) ? null : time * 1000 + Math.round(second * 1e6);
  }

  /* The timeline. */

  const levels = ["error", "warning", "information", "debug", ""];
  const tones = ["bad", "warn", "", "", ""];

  function readTimeline() {
    const data = dataOf("timeline-data");
    let time = 0;
    const entries = data.entries.map(([sinceLast, level, tag, logs, text]) => {
      if (sinceLast !== null) {
        time += sinceLast;
      }
      return { time: sinceLast === null ? null : time, level, tag: data.tags[tag], logs: [].concat(logs), text };
    });
    return { logs: data.logs, columns: data.columns, entries };
  }

  /* A table of which only the rows in view exist. All rows have the same height. */
  class EntryTable {
    constructor(box, chosen, logs) {
      this.box = box;
      this.chosen = chosen;
      this.logs = logs;
      this.entries = [];
      this.current = -1;
      this.first = -1;
      this.before = make("tr", { className: "filler" }, make("td", { colSpan: 4 }));
      this.after = make("tr", { className: "filler" }, make("td", { colSpan: 4 }));
      this.before.ariaHidden = this.after.ariaHidden = "true";
      this.body = make("tbody");
      const heads = ["Time, UTC", "Level", "Log", "Entry"].map((text) => make("th", { scope: "col", textContent: text }));
      this.table = make("table", { className: "log" }, make("thead", {}, make("tr", {}, ...heads)), this.body);
      box.append(this.table);
      box.addEventListener("scroll", () => this.draw(false), { passive: true });
      box.addEventListener("keydown", (event) => this.press(event));
      box.addEventListener("click", (event) => this.click(event));
      new ResizeObserver(() => this.resize()).observe(box);
    }

    /* Shows other entries, and scrolls to their end: the newest entry says most. */
    show(entries) {
      const kept = this.entries[this.current];
      this.entries = entries;
      this.rowHeight = this.rowHeight || this.measure();
      this.box.style.height = this.box.style.height || `min(32rem, ${(entries.length + 2) * this.rowHeight}px)`;
      this.table.setAttribute("aria-rowcount", entries.length + 1);
      this.current = entries.indexOf(kept);
      this.draw(true);  // first, so that there is something to scroll over
      this.box.scrollTop = (this.current < 0 ? entries.length : this.current) * this.rowHeight;
      this.draw(true);
      this.describe();
    }

    measure() {
      const row = make("tr", {}, ...Array.from({ length: 4 }, () => make("td", { textContent: "x" })));
      this.body.replaceChildren(row);
      return row.getBoundingClientRect().height || 24;
    }

    /* On a narrow screen, rows are higher. */
    resize() {
      if (!this.rowHeight || this.box.clientWidth === this.width) {
        this.draw(true);
        return;
      }
      const row = this.box.scrollTop / this.rowHeight;
      this.width = this.box.clientWidth;
      this.rowHeight = this.measure();
      this.draw(true);  // first, so that there is something to scroll over
      this.box.scrollTop = row * this.rowHeight;
      this.draw(true);
    }

    draw(always) {
      if (!this.rowHeight) {
        return;
      }
      const margin = 20;
      const visible = Math.ceil(this.box.clientHeight / this.rowHeight);
      const top = Math.floor(this.box.scrollTop / this.rowHeight);
      const first = Math.max(0, Math.min(top, this.entries.length - visible) - margin);
      if (!always && Math.abs(first - this.first) < margin / 2) {
        return;
      }
      this.first = first;
      const last = Math.min(this.entries.length, first + visible + 2 * margin);
      this.before.firstChild.style.height = `${first * this.rowHeight}px`;
      this.after.firstChild.style.height = `${(this.entries.length - last) * this.rowHeight}px`;
      const rows = [];
      for (let index = first; index < last; index += 1) {
        rows.push(this.row(index));
      }
      this.body.replaceChildren(this.before, ...rows, this.after);
    }

    row(index) {
      const entry = this.entries[index];
      const more = entry.logs.length > 1 ? ` +${entry.logs.length - 1}` : "";
      const time = entry.time === null ? "" : timeText(entry.time);
      const text = entry.text.replaceAll("\n", " \u21b5 ").slice(0, 400);
      const row = make("tr", { className: tones[entry.level] },
        make("td", { className: "time" }, make("span", { className: "date", textContent: time.slice(0, 11) }), time.slice(11)),
        make("td", { textContent: levels[entry.level] }),
        make("td", { textContent: this.logs[entry.logs[0]] + more }),
        make("td", {}, make("b", { textContent: entry.tag }), ` ${text}`));
      row.setAttribute("aria-rowindex", index + 2);
      row.dataset.index = index;
      if (index === this.current) {
        row.setAttribute("aria-current", "true");
      }
      return row;
    }

    choose(index) {
      if (!this.entries.length) {
        return;
      }
      this.current = Math.max(0, Math.min(index, this.entries.length - 1));
      const top = this.current * this.rowHeight;
      const head = this.table.tHead.offsetHeight;
      if (top < this.box.scrollTop) {
        this.box.scrollTop = top;
      } else if (top + head + this.rowHeight > this.box.scrollTop + this.box.clientHeight) {
        this.box.scrollTop = top + head + this.rowHeight - this.box.clientHeight;
      }
      this.draw(true);
      this.describe();
    }

    describe() {
      const entry = this.entries[this.current];
      if (!entry) {
        this.chosen.replaceChildren(make("p", { className: "note", textContent: "Choose an entry to see all of it here." }));
        return;
      }
      const about = [entry.time === null ? "no time" : `${timeText(entry.time)} UTC`, levels[entry.level] || "without level",
        entry.tag, entry.logs.map((log) => this.logs[log]).join(", ")].filter(Boolean).join(" \u00b7 ");
      this.chosen.replaceChildren(make("p", { className: "note", textContent: about }), make("pre", { textContent: entry.text }));
    }

    press(event) {
      const page = Math.max(1, Math.floor(this.box.clientHeight / this.rowHeight) - 2);
      const steps = { ArrowDown: 1, ArrowUp: -1, PageDown: page, PageUp: -page, Home: -Infinity, End: Infinity };
      const step = steps[event.key];
      if (step === undefined || event.ctrlKey || event.altKey || event.metaKey) {
        return;
      }
      event.preventDefault();
      const inView = Math.floor(this.box.scrollTop / this.rowHeight);
      this.choose(this.current < 0 && Number.isFinite(step) ? inView : this.current + step);
    }

    click(event) {
      const row = event.target.closest("tr[data-index]");
      if (row && String(document.getSelection()) === "") {
        this.choose(Number(row.dataset.index));
      }
    }
  }

  /* The picture: says what is under the pointer, and turns a range that is dragged over into a filter. */
  function usePicture(figure, columns, form, update) {
    const lanes = figure.querySelector(".lanes");
    const pictures = [...lanes.querySelectorAll("svg")];
    const pointer = figure.querySelector(".pointer");
    const range = make("div", { className: "range", hidden: true });
    lanes.append(range);
    pointer.hidden = false;
    const hint = "Drag over the picture to show only the entries of a time.";
    pointer.textContent = hint;

    const places = [];
    let width = 0;
    for (const [begin, end, afterGap, numbers] of columns) {
      width += afterGap ? 4 : 0;
      places.push({ left: width, begin, end, numbers });
      width += 1;
    }
    const columnAt = (event) => {
      const box = pictures[0].getBoundingClientRect();
      const place = ((event.clientX - box.left) / box.width) * width;
      let found = 0;
      for (let index = 0; index < places.length && places[index].left <= place; index += 1) {
        found = index;
      }
      return found;
    };
    const drawRange = () => {
      const from = parseTime(form.elements.from.value);
      const until = parseTime(form.elements.until.value);
      range.hidden = from === null && until === null;
      const inside = places.filter(({ begin, end }) => (from === null || end > from) && (until === null || begin < until));
      if (range.hidden || inside.length === 0) {
        range.hidden = true;
        return;
      }
      const box = pictures[0].getBoundingClientRect();
      const frame = lanes.getBoundingClientRect();
      const last = pictures[pictures.length - 1].getBoundingClientRect();
      const scale = box.width / width;
      range.style.left = `${box.left - frame.left + inside[0].left * scale}px`;
      range.style.width = `${(inside[inside.length - 1].left + 1 - inside[0].left) * scale}px`;
      range.style.top = `${box.top - frame.top}px`;
      range.style.height = `${last.bottom - box.top}px`;
    };
    let start = null;
    const setRange = (a, b) => {
      form.elements.from.value = timeText(places[Math.min(a, b)].begin);
      form.elements.until.value = timeText(places[Math.max(a, b)].end);
      drawRange();
    };
    for (const picture of pictures) {
      picture.addEventListener("pointerdown", (event) => {
        start = columnAt(event);
        picture.setPointerCapture(event.pointerId);
        event.preventDefault();
      });
      picture.addEventListener("pointermove", (event) => {
        const index = columnAt(event);
        const { begin, end, numbers } = places[index];
        const others = numbers[2] + numbers[3] + numbers[4];
        pointer.textContent = `${timeText(begin, 23)} to ${timeText(end, 23)}: ${counts.format(numbers[0])} errors, ` +
          `${counts.format(numbers[1])} warnings, ${counts.format(others)} others`;
        if (start !== null) {
          setRange(start, index);
        }
      });
      picture.addEventListener("pointerleave", () => { pointer.textContent = hint; });
      picture.addEventListener("pointerup", (event) => {
        if (start !== null) {
          setRange(start, columnAt(event));
          start = null;
          update();
        }
      });
      picture.addEventListener("pointercancel", () => { start = null; });
    }
    new ResizeObserver(drawRange).observe(lanes);
    return drawRange;
  }

  function fillTimeline(section) {
    const { logs, columns, entries } = readTimeline();
    const form = section.querySelector("form");
    const output = form.querySelector("output");
    const table = new EntryTable(section.querySelector(".entries"), section.querySelector(".chosen"), logs);
    logs.forEach((log, index) => form.elements.log.append(make("option", { value: index, textContent: log })));
    const lowerCase = new Map();
    const searched = (entry) => {
      if (!lowerCase.has(entry)) {
        lowerCase.set(entry, `${entry.tag} ${entry.text}`.toLowerCase());
      }
      return lowerCase.get(entry);
    };
    let drawRange = () => {};
    const update = () => {
      const shownLevels = new Set([...form.querySelectorAll("[name=level]:checked")].map((box) => Number(box.value)));
      const log = form.elements.log.value === "" ? null : Number(form.elements.log.value);
      const text = form.elements.text.value.toLowerCase();
      const from = parseTime(form.elements.from.value);
      const until = parseTime(form.elements.until.value);
      for (const input of [form.elements.from, form.elements.until]) {
        input.setAttribute("aria-invalid", input.value.trim() !== "" && parseTime(input.value) === null);
      }
      const shown = entries.filter((entry) => shownLevels.has(entry.level) && (log === null || entry.logs.includes(log)) &&
        (from === null || (entry.time !== null && entry.time >= from)) &&
        (until === null || (entry.time !== null && entry.time < until)) &&
        (text === "" || searched(entry).includes(text)));
      table.show(shown);
      output.textContent = `${counts.format(shown.length)} of ${counts.format(entries.length)} entries`;
      drawRange();
    };
    const figure = section.querySelector(".density");
    if (columns.length > 0) {
      drawRange = usePicture(figure, columns, form, update);
    }
    let waiting = 0;
    form.addEventListener("input", () => {
      clearTimeout(waiting);
      waiting = setTimeout(update, 120);
    });
    form.addEventListener("submit", (event) => event.preventDefault());
    form.addEventListener("reset", () => setTimeout(update));
    update();
  }

  function startTimeline(section) {
    const form = section.querySelector("form");
    if (!form) {
      return;
    }
    form.hidden = false;
    section.querySelector(".entries").hidden = false;
    section.querySelector(".chosen").hidden = false;
    section.querySelector(".excerpt").hidden = true;
    whenNear(section, () => fillTimeline(section));
  }

  /* Values over time. */

  function drawPlot(figure, times, plot) {
    const style = getComputedStyle(document.documentElement);
    const colour = (name) => style.getPropertyValue(name).trim();
    const strokes = [{ stroke: colour("--calm-fill"), width: 2 }, { stroke: colour("--warn-fill"), width: 2, dash: [6, 3] }];
    const axis = { stroke: colour("--muted"), grid: { stroke: colour("--line"), width: 1 }, ticks: { stroke: colour("--line"), width: 1 } };
    const readout = figure.querySelector(".readout");
    const numbers = (index) => {
      readout.replaceChildren(...plot.lines.map((line, number) => {
        const value = line.numbers[index];
        const text = `${line.label ? `${line.label}: ` : ""}${value === null ? "\u2013" : counts.format(value)}`;
        return make("span", { className: `line-${number}`, textContent: text });
      }), index === times.length - 1 ? "" : ` \u00b7 ${timeText(times[index] * 1e6, 19)}`);
    };
    const whole = plot.lines.every((line) => line.numbers.every((value) => value === null || Number.isInteger(value)));
    const box = make("div");
    box.setAttribute("role", "img");
    box.setAttribute("aria-label", `${plot.part}, ${plot.name} over time. The table below has the values.`);
    figure.append(box);
    const size = () => ({ width: Math.max(160, figure.clientWidth - 20), height: 165 });
    const chart = new uPlot({
      ...size(),
      legend: { show: false },
      cursor: { y: false, drag: { setScale: false } },
      tzDate: (seconds) => uPlot.tzDate(new Date(seconds * 1000), "Etc/UTC"),
      scales: { y: { range: (_, low, high) => (low === high ? [low - 1, high + 1] : uPlot.rangeNum(low, high, 0.1, true)) } },
      padding: [8, 32, 0, 0],  // the last time is written beyond the end of the axis
      axes: [{ ...axis, size: 48, space: 70, values: timeTicks }, { ...axis, size: 62, ...(whole ? { incrs: wholeSteps } : {}), values: (_, ticks) => ticks.map((tick) => shortNumber(tick)) }],
      series: [{}, ...plot.lines.map((line, number) => ({ ...strokes[number % 2], spanGaps: true, points: { show: true, size: 5, fill: strokes[number % 2].stroke } }))],
      hooks: { setCursor: [(self) => numbers(self.cursor.idx ?? times.length - 1)] },
    }, [times, ...plot.lines.map((line) => line.numbers)], box);
    numbers(times.length - 1);
    new ResizeObserver(() => chart.setSize(size())).observe(figure);
  }

  /* How the plotting library writes times: the step in seconds, the text, and the text on a new day. */
  const timeTicks = [[86400, "{YYYY}-{MM}-{DD}"], [60, "{HH}:{mm}"], [1, "{HH}:{mm}:{ss}"], [0.001, "{HH}:{mm}:{ss}.{fff}"]]
    .map(([step, text]) => [step, text, null, null, step < 86400 ? `${text}\n{YYYY}-{MM}-{DD}` : null, null, null, null, 0]);
  const wholeSteps = Array.from({ length: 48 }, (_, index) => [1, 2, 5][index % 3] * 10 ** Math.floor(index / 3));
  const short = new Intl.NumberFormat("en", { notation: "compact", maximumFractionDigits: 2 });
  const shortNumber = (number) => short.format(number);

  function startTrend({ id, times, plots }) {
    const section = byId(id);
    const box = section.querySelector(".plots");
    const form = section.querySelector("form");
    if (!form) {
      return;
    }
    const figures = plots.map((plot) => {
      const figure = make("figure", { className: "plot" },
        make("figcaption", {}, plot.name, " ", make("span", { className: "meta", textContent: plot.part })),
        make("p", { className: "readout" }));
      whenNear(figure, () => drawPlot(figure, times, plot));
      return { figure, words: `${plot.part} ${plot.name}`.toLowerCase() };
    });
    box.append(...figures.map(({ figure }) => figure));
    box.hidden = form.hidden = false;
    const update = () => {
      const text = form.elements.text.value.trim().toLowerCase();
      let shown = 0;
      for (const { figure, words } of figures) {
        figure.hidden = !words.includes(text);
        shown += figure.hidden ? 0 : 1;
      }
      form.querySelector("output").textContent = `${counts.format(shown)} of ${counts.format(figures.length)} plots`;
    };
    form.addEventListener("input", update);
    form.addEventListener("submit", (event) => event.preventDefault());
    update();
  }

  followContents();
  document.querySelectorAll(".values").forEach(filterValues);
  document.querySelectorAll(".timeline").forEach(startTimeline);
  const trends = dataOf("trend-data");
  if (trends) {
    trends.forEach(startTrend);
  }
})();
