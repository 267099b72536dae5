'use strict';
(function () {
  var FLOW_ORDER = 'TACG';

  // ---- index page: sortable columns ----
  function setupIndex() {
    var table = document.getElementById('contigs');
    if (!table) return;
    var heads = table.tHead.rows[0].cells, body = table.tBodies[0];
    var rows = Array.prototype.slice.call(body.rows);
    Array.prototype.forEach.call(heads, function (th, col) {
      th.tabIndex = 0;
      function sort() {
        var ascending = th.getAttribute('aria-sort') !== 'ascending';
        Array.prototype.forEach.call(heads, function (h) { h.removeAttribute('aria-sort'); });
        th.setAttribute('aria-sort', ascending ? 'ascending' : 'descending');
        var numeric = th.getAttribute('data-sort') === 'number';
        var keyed = rows.map(function (r) {
          var t = r.cells[col].textContent;
          return { row: r, key: numeric ? parseFloat(t) : t, order: +r.getAttribute('data-order') };
        });
        keyed.sort(function (a, b) {
          var c = a.key < b.key ? -1 : a.key > b.key ? 1 : 0;
          return (ascending ? c : -c) || a.order - b.order;
        });
        var frag = document.createDocumentFragment();
        keyed.forEach(function (k) { frag.appendChild(k.row); });
        body.appendChild(frag);
      }
      th.addEventListener('click', sort);
      th.addEventListener('keydown', function (e) { if (e.key === 'Enter' || e.key === ' ') { e.preventDefault(); sort(); } });
    });
  }

  // ---- contig page ----
  var data = null, L = 0, reads = [], rows = [], flowFiles = new Map(), pending = new Map();
  var colourClass = new Map(), colourText = new Map();
  var state = { start: 1, width: 120, openRead: -1 };
  var el = function (id) { return document.getElementById(id); };

  function esc(text) {
    return text.replace(/[&<>"]/g, function (c) {
      return c === '&' ? '&amp;' : c === '<' ? '&lt;' : c === '>' ? '&gt;' : '&quot;';
    });
  }
  function spaces(n) { return n > 0 ? ' '.repeat(n) : ''; }

  // Colour texts go through the style objects only, never into markup.
  function setupColours(pairs) {
    var style = document.createElement('style');
    document.head.appendChild(style);
    pairs.forEach(function (pair, i) {
      var text = pair[1].replace(/^(["'])(.*)\1$/, '$2');
      style.sheet.insertRule('.k' + i + ' {}', style.sheet.cssRules.length);
      var rule = style.sheet.cssRules[style.sheet.cssRules.length - 1];
      rule.style.color = text;
      rule.style.fill = text;
      colourClass.set(pair[0], 'k' + i);
      colourText.set(pair[0], text);
    });
  }
  function countDigit(n) { return n <= 9 ? String(n) : String.fromCharCode(n + 55); }

  // Flow index maps: the flow of a consensus index, looking back when it has none.
  function flowAt(list, i) { return i < 0 || list.length === 0 ? 0 : list[Math.min(i, list.length - 1)]; }
  // Written as steps (see append_flows) or as a list.
  function flowList(written) {
    if (typeof written !== 'string') return written;
    var list = new Array(written.length), at = 0;
    for (var i = 0; i < written.length; i++) { at += written.charCodeAt(i) - 48; list[i] = at; }
    return list;
  }
  function flowStart(i) { return flowAt(data.flowStart, i); }
  function flowEnd(i) { return flowAt(data.flowEnd, i); }
  function charAt(seq, i) { return i >= 0 && i < seq.length ? seq[i] : null; }

  // The reads of one row that the span first..last shows.
  function selectReads(row, first, last) {
    var shown = [];
    var lo = Math.max(first - data.maxReadLen + 1, 1);
    var hi = data.minReadLen === 0 ? last : last - data.minReadLen + 1;
    if (hi < lo) return shown;
    var a = 0, b = row.length / 2;
    while (a < b) { var m = (a + b) >> 1; if (row[2 * m] < lo) a = m + 1; else b = m; }
    for (var k = a; k < row.length / 2 && row[2 * k] <= hi; k++) {
      var p = row[2 * k], r = reads[row[2 * k + 1]];
      if (p > last) continue;
      var end = p + r[2] - 1;
      if (end < first) continue;
      shown.push({ p: p, read: r, index: row[2 * k + 1], a: Math.max(p, first), b: Math.min(end, last) });
    }
    return shown;
  }

  // Read indexes ia..ib widened over the runs at both ends.
  function widen(seq, ia, ib, len) {
    var j0 = ia, j1 = ib, first = charAt(seq, ia), last = charAt(seq, ib);
    if (ia >= 1 && first !== null) {
      if (first === '*') j0 = 0;
      else while (j0 >= 1 && charAt(seq, j0 - 1) === first) j0--;
    }
    if (last !== null) {
      while (j1 + 1 < len) {
        var next = charAt(seq, j1 + 1);
        if (next === null || (next !== last && last !== '*')) break;
        j1++;
      }
    }
    return { j0: j0, j1: j1 };
  }
  function countFlow(seq, at, j1, letter) {
    var count = 0, j = at.j;
    while (j <= j1 && charAt(seq, j) === 'N') j++;
    while (j <= j1) {
      var c = charAt(seq, j);
      if (c === null || (c !== letter && c !== '*')) break;
      if (c === letter) count++;
      j++;
    }
    at.j = j;
    return count;
  }

  // A window is drawn as lines of pieces: runs of spaces (numbers) and drawn
  // parts of reads { index, text, letters }, where `letters` gives the colour
  // key of each character of a flow count (its flow's letter); base letters
  // are their own key. The header is a piece of index -1. Only the lines near
  // the visible part of a view are coloured, so that a window of hundreds of
  // rows costs a few thousand elements; the others are plain text, which the
  // view colours as it is scrolled to them.
  function paintPiece(piece) {
    var text = piece.text, keys = piece.letters || text, out = '', i = 0;
    while (i < text.length) {
      var j = i + 1;
      while (j < text.length && keys[j] === keys[i]) j++;
      var k = colourClass.get(keys[i]), part = esc(text.substring(i, j));
      out += k ? '<span class="' + k + '">' + part + '</span>' : part;
      i = j;
    }
    return out;
  }
  function lineHtml(line, coloured) {
    var out = '';
    line.forEach(function (piece) {
      if (typeof piece === 'number') { out += spaces(piece); return; }
      var body = coloured ? paintPiece(piece) : esc(piece.text);
      if (piece.index < 0) { out += '<span class="head">' + body + '</span>'; return; }
      out += '<span class="read' + (piece.index === state.openRead ? ' open' : '') + '" data-read="' + piece.index +
             '">' + body + '</span>';
    });
    return out;
  }

  var views = {};
  // Lines [from, to) of the view are coloured.
  function paintView(id, from) {
    var v = views[id], html = [], to = from + 48;
    v.from = from;
    v.lines.forEach(function (line, i) { html.push(lineHtml(line, i >= from && i < to)); });
    v.pre.innerHTML = html.join('\n') + '\n';
  }
  // The first line in sight, from the last scroll event: reading the scroll
  // position here would make the browser lay out the old window first.
  function drawView(id, lines) {
    var v = views[id];
    if (!v) {
      v = views[id] = { pre: el(id), lines: [], from: 0, top: 0, queued: false };
      v.pre.addEventListener('scroll', function () {
        var lineHeight = v.pre.scrollHeight / Math.max(1, v.lines.length + 1);
        v.top = Math.floor(v.pre.scrollTop / Math.max(1, lineHeight));
        if (v.queued || (v.top >= v.from && v.top + 32 <= v.from + 48)) return;
        v.queued = true;
        requestAnimationFrame(function () { v.queued = false; paintView(id, Math.max(0, v.top - 8)); });
      });
    }
    v.lines = lines;
    paintView(id, Math.max(0, Math.min(v.top, lines.length - 32) - 8));
  }

  function baseLines(first, width, listed) {
    var last = first + width - 1, header = '';
    for (var q = first; q <= L && q < first + width; q++) header += q >= 1 ? data.consensus[q - 1] : '*';
    var lines = [[{ index: -1, text: header }]];
    rows.forEach(function (row) {
      var shown = selectReads(row, first, last);
      if (shown.length === 0) return;
      var x = first - 1, line = [];
      shown.forEach(function (s) {
        if (s.p > x + 1) line.push(s.p - x - 1);
        listed.push(s.index);
        line.push({ index: s.index, text: s.read[3].substring(s.a - s.p, s.b - s.p + 1) });
        x = s.b;
      });
      lines.push(line);
    });
    return lines;
  }

  function flowPiece(s) {
    var seq = s.read[3], runs = widen(seq, s.a - s.p, s.b - s.p, s.read[2]);
    var at = { j: runs.j0 }, text = '', letters = '';
    for (var f = flowStart(s.a - 1), fer = flowEnd(s.b - 1); f <= fer; f++) {
      var letter = data.flows[f];
      if (letter === undefined) continue;
      text += countDigit(countFlow(seq, at, runs.j1, letter));
      letters += letter;
    }
    return { index: s.index, text: text, letters: letters };
  }

  function flowLines(first, width) {
    var last = first + width - 1, s = Math.min(first, L), e = Math.min(last, L), header = '';
    for (var f = flowStart(s - 1), fe = flowEnd(e - 1); f <= fe; f++) {
      if (data.flows[f] !== undefined) header += data.flows[f];
    }
    var lines = [[{ index: -1, text: header }]];
    rows.forEach(function (row) {
      var shown = selectReads(row, first, last);
      if (shown.length === 0) return;
      var x = first - 1, line = [];
      shown.forEach(function (sr) {
        var gap = flowStart(sr.p - 1) - flowStart(x);
        if (gap > 0) line.push(gap);
        line.push(flowPiece(sr));
        x = sr.b;
      });
      lines.push(line);
    });
    return lines;
  }

  function lastStart() { return Math.max(1, L - state.width + 1); }

  // Draws the window of `width` positions from `start`, at once.
  function show(start, width) {
    if (width !== undefined) state.width = Math.max(1, Math.min(1000, Math.floor(width) || 120));
    state.start = Math.max(1, Math.min(lastStart(), Math.floor(start) || 1));
    var listed = [];
    drawView('base-view', baseLines(state.start, state.width, listed));
    drawView('flow-view', flowLines(state.start, state.width));
    var list = el('read-list'), frag = document.createDocumentFragment();
    listed.forEach(function (index) {
      var li = document.createElement('li');
      li.textContent = reads[index][0];
      li.setAttribute('data-read', index);
      frag.appendChild(li);
    });
    list.textContent = '';
    list.appendChild(frag);
    var slider = el('slider');
    slider.max = lastStart();
    slider.value = state.start;
    el('start').value = state.start;
    el('width').value = state.width;
    var end = Math.min(state.start + state.width - 1, L);
    el('span-text').textContent = 'positions ' + state.start + ' to ' + end + ' of ' + L;
    var box = el('depth-window');
    if (box && L > 0) {
      var left = +box.getAttribute('data-left'), full = +box.getAttribute('data-width');
      box.setAttribute('x', left + full * (state.start - 1) / L);
      box.setAttribute('width', Math.max(1, full * (end - state.start + 1) / L));
    }
  }

  var queued = null;
  function showSoon(start) {
    if (queued === null) requestAnimationFrame(function () { var s = queued; queued = null; show(s); });
    queued = start;
  }

  // ---- flowgrams ----
  function numbers(text) { return text === '' ? [] : text.split(',').map(Number); }

  function withFlowgramFile(n, then) {
    if (flowFiles.has(n)) { then(); return; }
    if (pending.has(n)) { pending.get(n).push(then); return; }
    pending.set(n, [then]);
    var script = document.createElement('script');
    script.src = window.pelkrinDataStem + '-flowgrams-' + n + '.js';
    script.onerror = function () {
      pending.delete(n);
      el('flowgram-facts').textContent = 'The flowgram file ' + script.src + ' could not be loaded.';
    };
    document.body.appendChild(script);
  }

  window.pelkrinFlowgrams = function (n, list) {
    var byName = new Map();
    list.forEach(function (entry) { byName.set(entry[0], entry); });
    flowFiles.set(n, byName);
    var waiting = pending.get(n) || [];
    pending.delete(n);
    waiting.forEach(function (then) { then(); });
  };

  function drawFlowgram(entry) {
    var quals = numbers(entry[1]), flowOf = numbers(entry[2]), values = numbers(entry[3]);
    var called = values.map(function () { return []; });
    flowOf.forEach(function (f, k) { if (f >= 0 && f < called.length) called[f].push(k); });
    var most = 4, stack = 1;
    // A flowgram value is 16 bits: no signal is above 656 bases. A reads file
    // that says otherwise draws its bars cut at that height, never an axis
    // of millions of lines.
    values.forEach(function (v) { most = Math.max(most, Math.min(656, Math.ceil(v / 100))); });
    called.forEach(function (c) { stack = Math.max(stack, c.length); });
    var col = 14, unit = 28, left = 34, top = 8, plotH = most * unit, axis = top + plotH;
    var baseTop = axis + 28, qualTop = baseTop + stack * 13 + 2;
    var width = left + values.length * col + 10, height = qualTop + stack * 10 + 6;
    var svg = '<svg xmlns="http://www.w3.org/2000/svg" width="' + width + '" height="' + height + '" id="flowgram-svg">';
    for (var g = 0; g <= most; g++) {
      var gy = axis - g * unit;
      svg += '<line class="grid" x1="' + left + '" x2="' + (width - 10) + '" y1="' + gy + '" y2="' + gy + '"/>';
      svg += '<text class="label" x="' + (left - 4) + '" y="' + (gy + 3) + '" text-anchor="end">' + g + '</text>';
    }
    values.forEach(function (v, f) {
      var letter = FLOW_ORDER[f % 4], k = colourClass.get(letter) || '', x = left + f * col;
      var h = Math.min(v / 100, most) * unit;
      svg += '<rect class="bar ' + k + '" data-flow="' + f + '" data-value="' + v + '" x="' + (x + 2) + '" y="' +
             (axis - h) + '" width="' + (col - 3) + '" height="' + h + '"><title>flow ' + (f + 1) + ' ' + letter +
             ': ' + (v / 100).toFixed(2) + '</title></rect>';
      svg += '<text class="label ' + k + '" x="' + (x + col / 2) + '" y="' + (axis + 12) + '" text-anchor="middle">' +
             letter + '</text>';
      called[f].forEach(function (base, i) {
        svg += '<text class="called ' + k + '" x="' + (x + col / 2) + '" y="' + (baseTop + i * 13) +
               '" text-anchor="middle">' + letter + '</text>';
        svg += '<text class="quality" x="' + (x + col / 2) + '" y="' + (qualTop + i * 10) +
               '" text-anchor="middle">' + (quals[base] === undefined ? '' : quals[base]) + '</text>';
      });
    });
    svg += '<text class="label" x="2" y="' + (baseTop) + '">base</text>';
    svg += '<text class="label" x="2" y="' + (qualTop) + '">qual</text></svg>';
    el('flowgram-plot').innerHTML = svg;
    el('flowgram-facts').textContent = values.length + ' flows (flow order ' + FLOW_ORDER + ' repeated), ' +
      flowOf.length + ' called bases in the clipped range; a bar of height n is a signal of n bases.';
    el('flowgram-bases').textContent = flowOf.map(function (f) { return FLOW_ORDER[((f % 4) + 4) % 4]; }).join('');
    el('flowgram-qualities').textContent = quals.join(' ');
  }

  // Opens the flowgram of read `index`; `done` is called once it is drawn.
  function openRead(index, done) {
    var r = reads[index];
    if (!r) return;
    state.openRead = index;
    el('flowgram').hidden = false;
    el('flowgram-name').textContent = r[0];
    el('flowgram-plot').textContent = '';
    el('flowgram-bases').textContent = '';
    el('flowgram-qualities').textContent = '';
    Array.prototype.forEach.call(document.querySelectorAll('pre.view .read'), function (s) {
      s.classList.toggle('open', +s.getAttribute('data-read') === index);
    });
    // -2: the reads file's entry for it is not its own (see read_bases_check.h).
    if (r[4] === -2) {
      el('flowgram-facts').textContent = 'This read is not in the SFF file: there is no flowgram of it.';
      if (done) done();
      return;
    }
    if (r[4] < 0) {
      el('flowgram-facts').textContent = data.flowgramNote || 'The reads file holds no flowgram of this read.';
      if (done) done();
      return;
    }
    el('flowgram-facts').textContent = 'Loading…';
    withFlowgramFile(r[4], function () {
      var entry = flowFiles.get(r[4]).get(r[0]);
      if (entry && state.openRead === index) drawFlowgram(entry);
      if (done) done();
    });
  }

  function setupControls() {
    var move = function (by) { return function () { show(state.start + by()); }; };
    el('go-first').onclick = function () { show(1); };
    el('go-last').onclick = function () { show(lastStart()); };
    el('go-back').onclick = move(function () { return -10; });
    el('go-on').onclick = move(function () { return 10; });
    el('go-page-back').onclick = move(function () { return -state.width; });
    el('go-page-on').onclick = move(function () { return state.width; });
    el('slider').addEventListener('input', function () { showSoon(+el('slider').value); });
    el('start').addEventListener('change', function () { show(+el('start').value); });
    el('width').addEventListener('change', function () { show(state.start, +el('width').value); });
    document.addEventListener('keydown', function (e) {
      if (e.target && (e.target.tagName === 'INPUT' || e.altKey || e.ctrlKey || e.metaKey)) return;
      var to = { ArrowLeft: state.start - 10, ArrowRight: state.start + 10, PageUp: state.start - state.width,
                 PageDown: state.start + state.width, Home: 1, End: lastStart() }[e.key];
      if (to === undefined) return;
      e.preventDefault();
      show(to);
    });
    var pick = function (e) {
      var t = e.target.closest('[data-read]');
      if (t) openRead(+t.getAttribute('data-read'));
    };
    el('base-view').addEventListener('click', pick);
    el('flow-view').addEventListener('click', pick);
    el('read-list').addEventListener('click', pick);
    var plot = el('depth-plot'), box = el('depth-window');
    if (plot && box) {
      plot.addEventListener('click', function (e) {
        var point = plot.createSVGPoint();
        point.x = e.clientX;
        point.y = e.clientY;
        var at = point.matrixTransform(plot.getScreenCTM().inverse());
        var share = (at.x - +box.getAttribute('data-left')) / +box.getAttribute('data-width');
        show(Math.round(share * L - state.width / 2) + 1);
      });
    }
  }

  window.pelkrinContig = function (d) {
    data = d;
    d.flowStart = flowList(d.flowStart);
    d.flowEnd = flowList(d.flowEnd);
    L = d.consensus.length;
    reads = d.reads;
    rows = d.rows;
    setupColours(d.colours);
    setupControls();
    if (d.flowgramFiles === 0) el('flowgram-note').textContent = d.flowgramNote;
    // A link may name the window's first position and a read to open:
    // contig-1.html#pos=101&read=NAME.
    var wanted = new URLSearchParams(location.hash.slice(1));
    show(+wanted.get('pos') || 1);
    if (wanted.has('read')) {
      var index = window.pelkrinReport.readIndex(wanted.get('read'));
      if (index >= 0) openRead(index, function () { el('flowgram').scrollIntoView(); });
    }
  };

  // For a person at the console, and for tests that drive the page.
  window.pelkrinReport = {
    show: function (start, width) { show(start, width); },
    openRead: openRead,
    state: function () { return { start: state.start, width: state.width, length: L, openRead: state.openRead }; },
    readIndex: function (name) { for (var i = 0; i < reads.length; i++) if (reads[i][0] === name) return i; return -1; },
    lastStart: lastStart
  };

  setupIndex();
})();
