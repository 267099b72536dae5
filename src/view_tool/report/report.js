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
  // A read: [name, padded start, padded length, padded bases, flowgram file,
  // alignment clip start, alignment clip end, 1 when complemented].
  var NAME = 0, POS = 1, LEN = 2, SEQ = 3, FILE = 4, CLIP_START = 5, CLIP_END = 6, COMPLEMENTED = 7;
  var COMPLEMENT = { A: 'T', C: 'G', G: 'C', T: 'A' };
  var data = null, L = 0, reads = [], byStart = [], endMax = [], lowest = 1, highest = 1;
  var nameIndex = new Map(), flowFiles = new Map(), pending = new Map(), failedFiles = new Set();
  var parsedEntries = new Map(), placesOf = new Map();
  var colourClass = new Map(), colourText = new Map();
  var state = { start: 1, width: 120, openRead: -1, column: -1, dots: false };
  // What the window draws now: its reads, packed, and the flow of its first column.
  var current = { shown: [], rows: [], flowOrigin: 0, flowLast: -1, consensusCounts: new Map() };
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
  function consensusAt(q) { return q >= 1 && q <= L ? data.consensus[q - 1] : null; }

  // ---- the reads of a window, packed into rows ----
  // Every read whose bases (aligned part and clipped ends) overlap first..last.
  function windowReads(first, last) {
    // The first read, by start, from which on some read reaches `first`.
    var a = 0, b = byStart.length, shown = [];
    while (a < b) { var m = (a + b) >> 1; if (endMax[m] < first) a = m + 1; else b = m; }
    for (var k = a; k < byStart.length; k++) {
      var index = byStart[k], r = reads[index], p = r[POS];
      if (p > last) break;
      var end = p + r[LEN] - 1;
      if (r[LEN] <= 0 || end < first) continue;
      shown.push({ index: index, read: r, p: p, a: Math.max(p, first), b: Math.min(end, last) });
    }
    return shown;
  }
  // As a genome viewer packs them: each read, in the order of its first
  // drawn position, goes into the first row where it keeps a gap of at least
  // one position from the read before it.
  function pack(shown) {
    var rows = [], ends = [];
    shown.forEach(function (s) {
      var r = 0;
      while (r < ends.length && ends[r] + 1 >= s.a) r++;
      if (r === ends.length) { rows.push([]); ends.push(0); }
      rows[r].push(s);
      ends[r] = s.b;
    });
    return rows;
  }

  // The aligned part of a read as padded indexes, or null when it has none.
  // A read without a QA line (0 and 0: Newbler's example writes none) is
  // aligned whole; a range that is empty or below 1 (phrap's -1 -1) marks a
  // read with no aligned part, drawn grey.
  function alignedPart(r) {
    if (r[CLIP_START] === 0 && r[CLIP_END] === 0) return [0, Math.max(0, r[LEN] - 1)];
    return r[CLIP_START] >= 1 && r[CLIP_END] >= r[CLIP_START] ? [r[CLIP_START] - 1, r[CLIP_END] - 1] : null;
  }

  // ---- qualities and flows of a read, from its entry in the reads file ----
  function numbers(text) { return text === '' ? [] : text.split(',').map(Number); }
  function entryOf(index) {
    if (parsedEntries.has(index)) return parsedEntries.get(index);
    var r = reads[index], file = flowFiles.get(r[FILE]), raw = file ? file.get(r[NAME]) : null;
    if (!raw) return null;
    var e = { quals: numbers(raw[1]), flowOf: numbers(raw[2]), values: numbers(raw[3]) };
    parsedEntries.set(index, e);
    return e;
  }
  function reverseComplement(text) {
    var out = '';
    for (var i = text.length - 1; i >= 0; i--) out += COMPLEMENT[text[i]] || text[i];
    return out;
  }
  // For each padded index of the read, the number (on the read's own strand)
  // of the called base that stands there, or -1. The called bases are the
  // letters of their flows; they are found among the read's bases in the
  // assembly (pads left out, case ignored, on the contig's strand), or those
  // among them. Null when they are not found: such a read is not shaded.
  function calledPlaces(index) {
    if (placesOf.has(index)) return placesOf.get(index);
    var e = entryOf(index);
    if (!e) return null;
    var r = reads[index], seq = r[SEQ], unpadded = '', padded = [];
    for (var i = 0; i < seq.length; i++) {
      if (seq[i] !== '*') { unpadded += seq[i].toUpperCase(); padded.push(i); }
    }
    var called = e.flowOf.map(function (f) { return FLOW_ORDER[((f % 4) + 4) % 4]; }).join('');
    var oriented = r[COMPLEMENTED] ? reverseComplement(called) : called, n = called.length, result = null;
    // The unpadded index of called base 0 (on the contig's strand).
    var shift = 0, found = false, at = oriented.length > 0 ? unpadded.indexOf(oriented) : -1;
    if (at >= 0) { shift = at; found = true; }
    else if (unpadded.length > 0 && (at = oriented.indexOf(unpadded)) >= 0) { shift = -at; found = true; }
    if (found) {
      result = new Int32Array(seq.length).fill(-1);
      for (var u = 0; u < padded.length; u++) {
        var k = u - shift;
        if (k >= 0 && k < n) result[padded[u]] = r[COMPLEMENTED] ? n - 1 - k : k;
      }
    }
    placesOf.set(index, result);
    return result;
  }
  function qualityBucket(index, j) {
    var places = calledPlaces(index);
    if (!places || places[j] < 0) return '';
    var q = parsedEntries.get(index).quals[places[j]];
    return q === undefined ? '' : q < 10 ? '0' : q < 20 ? '1' : q < 30 ? '2' : '3';
  }

  // Loads the flowgram files of the window's reads that are not at hand,
  // then paints again: qualities shade the bases, and an open column plot
  // gets its signals.
  function loadWindowFlowgrams() {
    var wanted = new Set();
    current.shown.forEach(function (s) {
      var f = s.read[FILE];
      if (f >= 0 && !flowFiles.has(f) && !failedFiles.has(f)) wanted.add(f);
    });
    wanted.forEach(function (f) {
      withFlowgramFile(f, function () { repaintSoon(); });
    });
  }
  var repaintQueued = false;
  function repaintSoon() {
    if (repaintQueued) return;
    repaintQueued = true;
    setTimeout(function () {
      repaintQueued = false;
      ['base-view', 'flow-view'].forEach(function (id) { if (views[id]) paintView(id, views[id].from); });
      if (state.column >= 0) drawColumn();
    }, 0);
  }

  // ---- drawing ----
  // A window is drawn as lines of pieces: runs of spaces (numbers) and drawn
  // parts of reads or headers. A read's piece draws the padded indexes
  // j0..j1 of its bases (base space) or its flow counts (flow space). Only
  // the lines near the visible part of a view are coloured, so that a window
  // of hundreds of rows costs a few thousand elements; the others are plain
  // text, coloured as the view is scrolled to them.
  function baseKind(s, j, q) {
    var c = charAt(s.read[SEQ], j);
    if (c === null) return ' ';
    var part = s.aligned;
    if (!part || j < part[0] || j > part[1]) return 'x';
    var k = consensusAt(q);
    return k !== null && c.toUpperCase() === k.toUpperCase() ? '=' : c === '*' ? '*' : 'd';
  }
  // A piece's text is made when the piece is painted: most rows of a deep
  // window are out of sight.
  function basePiece(s) {
    s.aligned = alignedPart(s.read);
    return { index: s.index, base: s, text: null };
  }
  function baseText(s) {
    var seq = s.read[SEQ], text = '';
    for (var q = s.a; q <= s.b; q++) {
      var j = q - s.p, c = charAt(seq, j);
      if (c === null) { text += ' '; continue; }
      text += state.dots && baseKind(s, j, q) === '=' ? '.' : c;
    }
    return text;
  }
  function pieceText(piece) {
    if (piece.text === null) {
      if (piece.base) piece.text = baseText(piece.base);
      else {
        var text = '', letters = '', same = [];
        flowCells(piece.flow).forEach(function (cell) {
          text += countDigit(cell.count);
          letters += cell.letter;
          same.push(current.consensusCounts.get(cell.f) === cell.count);
        });
        piece.text = text;
        piece.letters = letters;
        piece.same = same;
      }
    }
    return piece.text;
  }
  // The class of each character of a piece: the kind of base (= same as the
  // consensus, d differs, * a pad, x clipped end) with its letter and its
  // quality bucket; flow counts take their flow's letter.
  function pieceClasses(piece) {
    var out = [];
    pieceText(piece);
    if (!piece.base) {
      // A flow count equal to the consensus' is muted, as a base is.
      var keys = piece.letters || piece.text;
      for (var i = 0; i < piece.text.length; i++) {
        out.push(piece.same && piece.same[i] ? 'same' : (piece.same ? 'diff ' : '') + (colourClass.get(keys[i]) || ''));
      }
      return out;
    }
    var s = piece.base, seq = s.read[SEQ];
    for (var q = s.a; q <= s.b; q++) {
      var j = q - s.p, kind = baseKind(s, j, q), c = charAt(seq, j), cls;
      if (kind === ' ') { out.push(''); continue; }
      if (kind === '=') cls = 'same';
      else if (kind === 'x') cls = 'clip';
      else cls = 'diff ' + (colourClass.get(c.toUpperCase()) || colourClass.get(c) || '');
      var bucket = c === '*' ? '' : qualityBucket(s.index, j);
      out.push(bucket === '' ? cls : cls + ' q' + bucket);
    }
    return out;
  }
  function paintPiece(piece) {
    var text = pieceText(piece), classes = pieceClasses(piece), out = '', i = 0;
    while (i < text.length) {
      var j = i + 1;
      while (j < text.length && classes[j] === classes[i]) j++;
      var part = esc(text.substring(i, j));
      out += classes[i] ? '<span class="' + classes[i] + '">' + part + '</span>' : part;
      i = j;
    }
    return out;
  }
  // A line out of sight keeps its reads as empty elements that name them,
  // and no text: a window of hundreds of rows then costs the browser little.
  // The ruler and the consensus are always drawn, so the width stays.
  function lineHtml(line, inSight) {
    var out = '';
    line.forEach(function (piece) {
      if (typeof piece === 'number') { if (inSight) out += spaces(piece); return; }
      if (piece.index < 0) {
        var body = inSight && piece.index === -1 ? paintPiece(piece) : esc(piece.text);
        out += '<span class="' + (piece.index === -1 ? 'head' : 'ruler') + '">' + body + '</span>';
        return;
      }
      var name = esc(reads[piece.index][NAME]), open = piece.index === state.openRead ? ' open' : '';
      out += inSight ? '<span class="read' + open + '" data-read="' + name + '" title="' + name + '">' +
                       paintPiece(piece) + '</span>'
                     : '<span class="read' + open + '" data-read="' + name + '"></span>';
    });
    return out;
  }

  var views = {};
  // Lines [from, from + 48) of the view are drawn; the view shows some 27.
  function paintView(id, from) {
    var v = views[id], html = [], to = from + 48;
    v.from = from;
    v.lines.forEach(function (line, i) { html.push(lineHtml(line, i >= from && i < to)); });
    v.pre.innerHTML = html.join('\n') + '\n';
  }
  // The first line in sight, from the last scroll event: reading the scroll
  // position here would make the browser lay out the old window first. The
  // column of names beside the view scrolls with it.
  function drawView(id, lines, names) {
    var v = views[id];
    if (!v) {
      v = views[id] = { pre: el(id), names: el(id.replace('view', 'names')), lines: [], from: 0, top: 0, queued: false };
      v.pre.addEventListener('scroll', function () {
        if (v.names) v.names.scrollTop = v.pre.scrollTop;
        var lineHeight = v.pre.scrollHeight / Math.max(1, v.lines.length + 1);
        v.top = Math.floor(v.pre.scrollTop / Math.max(1, lineHeight));
        if (v.queued || (v.top >= v.from && v.top + 32 <= v.from + 48)) return;
        v.queued = true;
        requestAnimationFrame(function () { v.queued = false; paintView(id, Math.max(0, v.top - 8)); });
      });
    }
    v.lines = lines;
    if (v.names) v.names.textContent = names.join('\n') + '\n';
    paintView(id, Math.max(0, Math.min(v.top, lines.length - 32) - 8));
  }

  // A ruler: each position that is a multiple of ten is numbered, the
  // number ending over its column; `column(q)` gives a position's column.
  function ruler(first, last, column, width) {
    var line = new Array(width).fill(' '), free = 0;
    for (var q = Math.ceil(first / 10) * 10; q <= last; q += 10) {
      var text = String(q), end = column(q), begin = end - text.length + 1;
      if (begin < free || begin < 0 || end >= width) continue;
      for (var i = 0; i < text.length; i++) line[begin + i] = text[i];
      free = end + 2;
    }
    return line.join('').replace(/ +$/, '');
  }
  function rowNames(row) { return row.map(function (s) { return s.read[NAME]; }).join(' '); }

  function baseLines(first, width) {
    var last = first + width - 1, header = '';
    for (var q = first; q <= last && (q <= L || q <= highest); q++) header += consensusAt(q) || ' ';
    header = header.replace(/ +$/, '');
    var lines = [[{ index: -2, text: ruler(first, last, function (q) { return q - first; }, width) }],
                 [{ index: -1, text: header }]];
    var names = ['position', 'consensus'];
    current.rows.forEach(function (row) {
      var x = first - 1, line = [];
      row.forEach(function (s) {
        if (s.a > x + 1) line.push(s.a - x - 1);
        line.push(basePiece(s));
        x = s.b;
      });
      lines.push(line);
      names.push(rowNames(row));
    });
    return { lines: lines, names: names };
  }

  // Read indexes ia..ib widened over the runs at both ends.
  // Bases are compared without regard to case, as the flow consensus is made.
  function baseAt(seq, i) { var c = charAt(seq, i); return c === null ? null : c.toUpperCase(); }
  // Read indexes ia..ib widened over the runs at both ends. A window that
  // starts on a pad starts with the run of the base before the pads, whose
  // flow the pad position shares.
  function widen(seq, ia, ib, len) {
    var j0 = ia, j1 = ib, first = baseAt(seq, ia), last = baseAt(seq, ib);
    if (ia >= 1 && first !== null) {
      if (first === '*') {
        while (j0 >= 1 && baseAt(seq, j0 - 1) === '*') j0--;
        var before = baseAt(seq, j0 - 1);
        if (j0 >= 1 && before !== null) {
          j0--;
          while (j0 >= 1 && baseAt(seq, j0 - 1) === before) j0--;
        }
      } else {
        while (j0 >= 1 && baseAt(seq, j0 - 1) === first) j0--;
      }
    }
    if (last !== null) {
      while (j1 + 1 < len) {
        var next = baseAt(seq, j1 + 1);
        if (next === null || (next !== last && last !== '*')) break;
        j1++;
      }
    }
    return { j0: j0, j1: j1 };
  }
  function countFlow(seq, at, j1, letter) {
    var count = 0, j = at.j;
    while (j <= j1 && baseAt(seq, j) === 'N') j++;
    while (j <= j1) {
      var c = baseAt(seq, j);
      if (c === null || (c !== letter && c !== '*')) break;
      if (c === letter) count++;
      j++;
    }
    at.j = j;
    return count;
  }
  // The consensus flows that a drawn read spans, each with the number of the
  // read's bases of its letter there and the padded indexes from..to (not
  // included) that the count walked over.
  // Only the positions 1 to L have consensus flows: a read's bases left of
  // position 1 or past the end have none to be counted against.
  function flowSpan(s) { return { a: Math.max(s.a, 1), b: Math.min(s.b, L) }; }
  function flowCells(s) {
    var span = flowSpan(s), cells = [];
    if (span.a > span.b) return cells;
    var seq = s.read[SEQ], runs = widen(seq, span.a - s.p, span.b - s.p, s.read[LEN]);
    var at = { j: runs.j0 };
    for (var f = flowStart(span.a - 1), fer = flowEnd(span.b - 1); f <= fer; f++) {
      var letter = data.flows[f];
      if (letter === undefined) continue;
      var from = at.j, count = countFlow(seq, at, runs.j1, letter);
      cells.push({ f: f, count: count, from: from, to: at.j, letter: letter });
    }
    return cells;
  }
  // A read's piece of the flow view: one column for each consensus flow that
  // its drawn positions span.
  function flowPiece(s) {
    var span = flowSpan(s);
    if (span.a > span.b) return { index: s.index, flow: s, text: '', letters: '', same: [], start: -1, length: 0 };
    var start = flowStart(span.a - 1), end = Math.min(flowEnd(span.b - 1), data.flows.length - 1);
    return { index: s.index, flow: s, text: null, start: start, length: Math.max(0, end - start + 1) };
  }
  // The flow view packs its own rows, by flow columns: two reads a position
  // apart in base space may share a flow (inside a homopolymer, over a pad).
  // A read with no consensus flow stands, empty, in the first row.
  function flowRows(shown) {
    var rows = [], ends = [];
    shown.forEach(function (s) {
      var piece = flowPiece(s), r = 0;
      if (piece.start >= 0) {
        while (r < ends.length && ends[r] + 1 >= piece.start) r++;
        if (r === ends.length) { rows.push([]); ends.push(-2); }
        ends[r] = piece.start + Math.max(1, piece.length) - 1;
      } else if (rows.length === 0) { rows.push([]); ends.push(-2); }
      rows[r].push(piece);
    });
    return rows;
  }

  function flowLines(first, width) {
    var last = first + width - 1, s = Math.min(first, L), e = Math.min(last, L), header = '';
    var origin = flowStart(s - 1), fe = flowEnd(e - 1);
    for (var f = origin; f <= fe; f++) if (data.flows[f] !== undefined) header += data.flows[f];
    current.flowOrigin = origin;
    current.flowLast = origin + header.length - 1;
    // The consensus' own count at each flow, as a read's is counted.
    var counts = '';
    current.consensusCounts = new Map();
    if (L > 0 && e >= 1) {
      var whole = { read: ['', 1, L, data.consensus], p: 1, a: Math.max(first, 1), b: e };
      flowCells(whole).forEach(function (cell) {
        current.consensusCounts.set(cell.f, cell.count);
        counts += spaces(cell.f - origin - counts.length) + countDigit(cell.count);
      });
    }
    var lines = [[{ index: -2, text: ruler(Math.max(first, 1), e, function (q) { return flowStart(q - 1) - origin; },
                                           header.length) }],
                 [{ index: -1, text: header }],
                 [{ index: -2, text: counts }]];
    var names = ['position', 'consensus', 'its counts'];
    flowRows(current.shown).forEach(function (row) {
      var column = 0, line = [];
      row.forEach(function (piece) {
        var gap = piece.start - origin - column;
        if (piece.start >= 0 && gap > 0) { line.push(gap); column += gap; }
        line.push(piece);
        column += piece.length;
      });
      lines.push(line);
      names.push(row.map(function (piece) { return reads[piece.index][NAME]; }).join(' '));
    });
    return { lines: lines, names: names };
  }

  function firstStart() { return lowest; }
  function lastStart() { return Math.max(lowest, highest - state.width + 1); }

  // The address names the window and the open read, so that a place can be
  // kept or sent. It is written a moment after the window stops moving.
  var addressTimer = null;
  function addressText() {
    return '#pos=' + state.start + '&width=' + state.width +
      (state.openRead >= 0 ? '&read=' + encodeURIComponent(reads[state.openRead][NAME]) : '') +
      (state.column >= 0 ? '&column=' + (state.column + 1) : '');
  }
  function writeAddressSoon() {
    if (addressTimer !== null) clearTimeout(addressTimer);
    addressTimer = setTimeout(function () {
      addressTimer = null;
      if (location.hash !== addressText()) history.replaceState(null, '', addressText());
    }, 120);
  }

  // Draws the window of `width` positions from `start`, at once.
  function show(start, width) {
    if (width !== undefined) state.width = Math.max(10, Math.min(1000, Math.floor(width) || state.width));
    // Positions may be 0 or below: reads that start left of position 1 are shown there.
    var asked = Math.floor(start);
    state.start = Math.max(firstStart(), Math.min(lastStart(), isFinite(asked) ? asked : 1));
    var last = state.start + state.width - 1;
    current.shown = windowReads(state.start, last);
    current.rows = pack(current.shown);
    var base = baseLines(state.start, state.width), flow = flowLines(state.start, state.width);
    drawView('base-view', base.lines, base.names);
    drawView('flow-view', flow.lines, flow.names);
    var list = el('read-list'), frag = document.createDocumentFragment();
    current.shown.forEach(function (s) {
      var li = document.createElement('li');
      li.textContent = s.read[NAME];
      li.setAttribute('data-read', s.read[NAME]);
      frag.appendChild(li);
    });
    list.textContent = '';
    list.appendChild(frag);
    var slider = el('slider');
    slider.min = firstStart();
    slider.max = lastStart();
    slider.value = state.start;
    el('start').value = state.start;
    el('width').value = state.width;
    el('span-text').textContent = 'positions ' + state.start + ' to ' + last + ' of ' + L;
    var n = current.shown.length;
    el('cover-text').textContent = n === 1 ? '1 read covers this window.' : n + ' reads cover this window.';
    var box = el('depth-window');
    if (box && L > 0) {
      var left = +box.getAttribute('data-left'), full = +box.getAttribute('data-width');
      var a = Math.max(1, Math.min(L, state.start)), b = Math.max(a, Math.min(L, last));
      box.setAttribute('x', left + full * (a - 1) / L);
      box.setAttribute('width', Math.max(1, full * (b - a + 1) / L));
    }
    if (state.column >= 0) {
      if (state.column < current.flowOrigin || state.column > current.flowLast) closeColumn();
      else drawColumn();
    }
    loadWindowFlowgrams();
    writeAddressSoon();
  }

  var queued = null;
  function showSoon(start) {
    if (queued === null) requestAnimationFrame(function () { var s = queued; queued = null; show(s); });
    queued = start;
  }

  // ---- flowgrams ----
  function flowgramFileName(n) { return window.pelkrinDataStem + '-flowgrams-' + n + '.js'; }
  // Everyone waiting for a file hears of it, whether it loads or not.
  function withFlowgramFile(n, then, failed) {
    if (flowFiles.has(n)) { then(); return; }
    if (failedFiles.has(n)) { if (failed) failed(flowgramFileName(n)); return; }
    var waiter = { then: then, failed: failed };
    if (pending.has(n)) { pending.get(n).push(waiter); return; }
    pending.set(n, [waiter]);
    var script = document.createElement('script');
    script.src = flowgramFileName(n);
    script.onerror = function () {
      var waiting = pending.get(n) || [];
      pending.delete(n);
      failedFiles.add(n);
      waiting.forEach(function (w) { if (w.failed) w.failed(script.src); });
    };
    document.body.appendChild(script);
  }

  window.pelkrinFlowgrams = function (n, list) {
    var byName = new Map();
    list.forEach(function (entry) { byName.set(entry[0], entry); });
    flowFiles.set(n, byName);
    var waiting = pending.get(n) || [];
    pending.delete(n);
    waiting.forEach(function (w) { w.then(); });
  };

  // The 454 key, TCAG, is called in the first eight flows of the flow order TACG.
  var KEY_FLOWS = 8;

  function drawFlowgram(index, e) {
    var r = reads[index], quals = e.quals, flowOf = e.flowOf, values = e.values;
    var called = values.map(function () { return []; });
    flowOf.forEach(function (f, k) { if (f >= 0 && f < called.length) called[f].push(k); });
    var most = 4, stack = 1;
    // A flowgram value is 16 bits: no signal is above 656 bases. A reads file
    // that says otherwise draws its bars cut at that height, never an axis
    // of millions of lines.
    values.forEach(function (v) { most = Math.max(most, Math.min(656, Math.ceil(v / 100))); });
    called.forEach(function (c) { stack = Math.max(stack, c.length); });
    var col = 14, unit = 28, left = 34, top = 18, plotH = most * unit, axis = top + plotH;
    var numberTop = axis + 24, baseTop = numberTop + 16, qualTop = baseTop + stack * 13 + 2;
    var width = left + values.length * col + 10, height = qualTop + stack * 10 + 6;
    var svg = '<svg xmlns="http://www.w3.org/2000/svg" width="' + width + '" height="' + height + '" id="flowgram-svg">';
    // The key flows and the flows outside the read's clipped part, shaded behind the bars.
    var keptFirst = flowOf.length ? flowOf[0] : values.length, keptLast = flowOf.length ? flowOf[flowOf.length - 1] : -1;
    var band = function (cls, from, to, label) {
      if (to < from) return;
      var x = left + from * col, w = (to - from + 1) * col;
      svg += '<rect class="' + cls + '" data-from="' + from + '" data-to="' + to + '" x="' + x + '" y="' + top +
             '" width="' + w + '" height="' + plotH + '"/>';
      if (label) svg += '<text class="label" x="' + (x + 2) + '" y="' + (top - 5) + '">' + label + '</text>';
    };
    band('outside', 0, Math.min(keptFirst, values.length) - 1, '');
    band('outside', keptLast + 1, values.length - 1, keptLast + 1 < values.length ? 'trimmed' : '');
    band('key', 0, Math.min(KEY_FLOWS, values.length) - 1, 'key');
    if (keptLast >= keptFirst) {
      svg += '<text class="label" x="' + (left + Math.max(keptFirst, KEY_FLOWS) * col + 4) + '" y="' + (top - 5) +
             '">clipped range: flows ' + (keptFirst + 1) + ' to ' + (keptLast + 1) + '</text>';
    }
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
      if ((f + 1) % 10 === 0 || f === 0) {
        svg += '<text class="label flow-number" x="' + (x + col / 2) + '" y="' + numberTop + '" text-anchor="middle">' +
               (f + 1) + '</text>';
      }
      called[f].forEach(function (base, i) {
        svg += '<text class="called ' + k + '" x="' + (x + col / 2) + '" y="' + (baseTop + i * 13) +
               '" text-anchor="middle">' + letter + '</text>';
        svg += '<text class="quality" x="' + (x + col / 2) + '" y="' + (qualTop + i * 10) +
               '" text-anchor="middle">' + (quals[base] === undefined ? '' : quals[base]) + '</text>';
      });
    });
    svg += '<text class="label" x="2" y="' + numberTop + '">flow</text>';
    svg += '<text class="label" x="2" y="' + (baseTop) + '">base</text>';
    svg += '<text class="label" x="2" y="' + (qualTop) + '">qual</text></svg>';
    el('flowgram-plot').innerHTML = svg;
    el('flowgram-facts').textContent = values.length + ' flows (flow order ' + FLOW_ORDER + ' repeated), ' +
      flowOf.length + ' called bases in the clipped range; a bar of height n is a signal of n bases.';
    el('flowgram-bases').textContent = flowOf.map(function (f) { return FLOW_ORDER[((f % 4) + 4) % 4]; }).join('');
    el('flowgram-qualities').textContent = quals.join(' ');
    if (!calledPlaces(index)) {
      el('flowgram-facts').textContent += ' Its called bases are not found among its bases in the assembly: the ' +
        'window draws it without qualities and flow signals.';
    }
  }

  function placeText(r) {
    var end = r[POS] + r[LEN] - 1, part = alignedPart(r);
    var text = (r[COMPLEMENTED] ? 'Complemented' : 'Forward') + ' in contig ' + data.name + ': padded positions ' +
      r[POS] + ' to ' + end;
    if (part) text += ', aligned from ' + (r[POS] + part[0]) + ' to ' + (r[POS] + part[1]);
    else text += ', no aligned part';
    return text + '; its bases outside the aligned part are drawn grey in the window.';
  }

  // Opens the flowgram of read `index`; `done` is called once it is drawn.
  function openRead(index, done) {
    if (typeof index === 'string') index = nameIndex.has(index) ? nameIndex.get(index) : -1;
    var r = reads[index];
    if (!r) return;
    state.openRead = index;
    el('flowgram').hidden = false;
    el('flowgram-name').textContent = r[NAME];
    el('flowgram-place').textContent = placeText(r);
    el('flowgram-plot').textContent = '';
    el('flowgram-bases').textContent = '';
    el('flowgram-qualities').textContent = '';
    Array.prototype.forEach.call(document.querySelectorAll('pre.view .read'), function (s) {
      s.classList.toggle('open', s.getAttribute('data-read') === r[NAME]);
    });
    writeAddressSoon();
    // -2: the reads file's entry for it is not its own (see read_bases_check.h).
    if (r[FILE] === -2) {
      el('flowgram-facts').textContent = 'This read is not in the SFF file: there is no flowgram of it.';
      if (done) done();
      return;
    }
    if (r[FILE] < 0) {
      el('flowgram-facts').textContent = data.flowgramNote || 'The reads file holds no flowgram of this read.';
      if (done) done();
      return;
    }
    el('flowgram-facts').textContent = 'Loading…';
    withFlowgramFile(r[FILE], function () {
      var e = entryOf(index);
      if (e && state.openRead === index) drawFlowgram(index, e);
      if (done) done();
    }, function (src) {
      el('flowgram-facts').textContent = 'The flowgram file ' + src + ' could not be loaded.';
      if (done) done();
    });
  }
  // Opening a read brings it into the window when it is not in sight.
  function bringIntoView(index) {
    var r = reads[index], end = r[POS] + r[LEN] - 1;
    if (r[POS] <= state.start + state.width - 1 && end >= state.start) return;
    show(Math.max(firstStart(), r[POS] - 5));
  }

  // ---- the flow signals of every read at one consensus flow ----
  // The flow of a read that stands for consensus flow `cell.f`: the flow of
  // its bases there, or, where it has none, the flow of that letter (its
  // complement on a complemented read) between the flows of its bases on
  // either side, on the read's own strand.
  function signalAt(s, cell) {
    var r = s.read, places = calledPlaces(s.index), e = parsedEntries.get(s.index), seq = r[SEQ];
    if (!places || !e) return null;
    var flow = -1, j;
    if (cell.count > 0) {
      for (j = cell.from; j < cell.to && flow < 0; j++) {
        if (baseAt(seq, j) === cell.letter && places[j] >= 0) flow = e.flowOf[places[j]];
      }
    } else {
      var before = -1, after = -1;
      for (j = cell.from - 1; j >= 0; j--) if (places[j] >= 0) { before = e.flowOf[places[j]]; break; }
      for (j = cell.to; j < places.length; j++) if (places[j] >= 0) { after = e.flowOf[places[j]]; break; }
      var want = r[COMPLEMENTED] ? COMPLEMENT[cell.letter] : cell.letter;
      var lo = r[COMPLEMENTED] ? after : before, hi = r[COMPLEMENTED] ? before : after;
      if (lo >= 0) {
        for (j = lo + 1; j < (hi >= 0 ? hi : e.values.length); j++) if (FLOW_ORDER[j % 4] === want) { flow = j; break; }
      } else if (hi >= 0) {
        for (j = hi - 1; j >= 0; j--) if (FLOW_ORDER[j % 4] === want) { flow = j; break; }
      }
    }
    if (flow < 0 || flow >= e.values.length) return null;
    var calledHere = 0;
    e.flowOf.forEach(function (f) { if (f === flow) calledHere++; });
    return { flow: flow, value: e.values[flow], called: calledHere };
  }

  function columnFacts(f) {
    var q0 = -1, q1 = -1;
    for (var q = Math.max(1, state.start); q <= Math.min(L, state.start + state.width - 1); q++) {
      if (flowStart(q - 1) <= f && f <= flowEnd(q - 1)) { if (q0 < 0) q0 = q; q1 = q; }
    }
    return 'flow ' + (f + 1) + ' of the consensus (' + data.flows[f] + ')' +
      (q0 > 0 ? ', positions ' + q0 + (q1 > q0 ? ' to ' + q1 : '') : '');
  }

  function openColumn(f) {
    if (f < current.flowOrigin || f > current.flowLast || data.flows[f] === undefined) return;
    state.column = f;
    el('column').hidden = false;
    drawColumn();
    writeAddressSoon();
  }
  function closeColumn() {
    state.column = -1;
    el('column').hidden = true;
    writeAddressSoon();
  }

  function drawColumn() {
    var f = state.column, marks = [], without = 0, covering = 0;
    current.shown.forEach(function (s) {
      var cell = null;
      flowCells(s).forEach(function (c) { if (c.f === f) cell = c; });
      if (!cell) return;
      covering++;
      var sig = signalAt(s, cell);
      if (sig) marks.push({ s: s, sig: sig, count: cell.count });
      else without++;
    });
    el('column-name').textContent = columnFacts(f);
    var most = 4;
    marks.forEach(function (m) { most = Math.max(most, Math.min(656, Math.ceil(m.sig.value / 100 + 0.5))); });
    var left = 30, unit = Math.max(24, Math.floor(560 / most)), lanes = 14, laneH = 9, top = 10;
    var plotH = lanes * laneH + 10, axis = top + plotH, width = left + most * unit + 20, height = axis + 34;
    var svg = '<svg xmlns="http://www.w3.org/2000/svg" width="' + width + '" height="' + height + '" id="column-svg">';
    for (var g = 0; g <= most; g++) {
      var gx = left + g * unit;
      svg += '<line class="' + (g > 0 ? 'length' : 'grid') + '" x1="' + gx + '" x2="' + gx + '" y1="' + top +
             '" y2="' + axis + '"/>';
      svg += '<text class="label" x="' + gx + '" y="' + (axis + 13) + '" text-anchor="middle">' + g + '</text>';
    }
    svg += '<text class="label" x="' + left + '" y="' + (axis + 28) + '">flow signal, in bases (homopolymer lengths marked)</text>';
    marks.sort(function (a, b) { return a.sig.value - b.sig.value; });
    var letter = data.flows[f], k = colourClass.get(letter) || '';
    marks.forEach(function (m, i) {
      var x = left + Math.min(m.sig.value / 100, most) * unit, y = top + 5 + (i % lanes) * laneH;
      var name = esc(m.s.read[NAME]);
      svg += '<circle class="mark ' + k + '" data-read="' + name + '" data-flow="' + m.sig.flow + '" data-value="' +
             m.sig.value + '" data-called="' + m.sig.called + '" cx="' + x.toFixed(1) + '" cy="' + y + '" r="3.5"><title>' +
             name + ': ' + (m.sig.value / 100).toFixed(2) + ' at its flow ' + (m.sig.flow + 1) + ', ' + m.sig.called +
             ' bases called</title></circle>';
    });
    svg += '</svg>';
    el('column-plot').innerHTML = svg;
    var byLength = new Map();
    marks.forEach(function (m) { byLength.set(m.sig.called, (byLength.get(m.sig.called) || 0) + 1); });
    var lengths = Array.from(byLength.keys()).sort(function (a, b) { return a - b; });
    var rows = '<tr><th>Bases called at the flow</th>' + lengths.map(function (n) { return '<th>' + n + '</th>'; }).join('') +
      '</tr><tr><th>Reads</th>' + lengths.map(function (n) { return '<td data-length="' + n + '">' + byLength.get(n) + '</td>'; }).join('') + '</tr>';
    el('column-counts').innerHTML = rows;
    var text = covering + (covering === 1 ? ' read covers' : ' reads cover') + ' this flow; ' + marks.length + ' drawn';
    if (without > 0) text += ', ' + without + ' without a flowgram in the reads file (or not loaded yet)';
    el('column-facts').textContent = text + '.';
  }

  // The column of the flow-space view under a click, from the width of a character.
  var charWidthCache = 0;
  function charWidth(pre) {
    if (charWidthCache > 0) return charWidthCache;
    var probe = document.createElement('span');
    probe.textContent = '0123456789';
    pre.appendChild(probe);
    charWidthCache = probe.getBoundingClientRect().width / 10;
    pre.removeChild(probe);
    return charWidthCache;
  }
  function columnAt(pre, e) {
    var rect = pre.getBoundingClientRect(), style = getComputedStyle(pre);
    var x = e.clientX - rect.left - pre.clientLeft - parseFloat(style.paddingLeft) + pre.scrollLeft;
    return Math.floor(x / Math.max(1, charWidth(pre)));
  }

  // The width that fits the page; on a wide screen at least 400 positions, so
  // that most 454 reads are seen whole (the view then scrolls sideways).
  function fittingWidth() {
    var view = el('base-view'), cw = charWidth(view);
    var room = view.clientWidth - 16, fit = cw > 0 ? Math.floor(room / cw) : 120;
    if (window.innerWidth >= 1200) fit = Math.max(400, fit);
    return Math.max(10, Math.min(1000, fit));
  }

  function setupControls() {
    var move = function (by) { return function () { show(state.start + by()); }; };
    el('go-first').onclick = function () { show(firstStart()); };
    el('go-last').onclick = function () { show(lastStart()); };
    el('go-back').onclick = move(function () { return -10; });
    el('go-on').onclick = move(function () { return 10; });
    el('go-page-back').onclick = move(function () { return -state.width; });
    el('go-page-on').onclick = move(function () { return state.width; });
    el('slider').addEventListener('input', function () { showSoon(+el('slider').value); });
    el('start').addEventListener('change', function () { show(+el('start').value); });
    el('width').addEventListener('change', function () { show(state.start, +el('width').value); });
    el('dots').addEventListener('change', function () { state.dots = el('dots').checked; show(state.start); });
    document.addEventListener('keydown', function (e) {
      if (e.target && (e.target.tagName === 'INPUT' || e.altKey || e.ctrlKey || e.metaKey)) return;
      var to = { ArrowLeft: state.start - 10, ArrowRight: state.start + 10, PageUp: state.start - state.width,
                 PageDown: state.start + state.width, Home: firstStart(), End: lastStart() }[e.key];
      if (to === undefined) return;
      e.preventDefault();
      show(to);
    });
    var pick = function (e) {
      var t = e.target.closest('[data-read]');
      if (t) openRead(t.getAttribute('data-read'));
    };
    el('base-view').addEventListener('click', pick);
    el('read-list').addEventListener('click', pick);
    el('column-plot').addEventListener('click', pick);
    el('flow-view').addEventListener('click', function (e) {
      openColumn(current.flowOrigin + columnAt(el('flow-view'), e));
      pick(e);
    });
    el('column-close').onclick = closeColumn;
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

  // A place named in the address: #pos=START&width=WIDTH&read=NAME&column=FLOW
  // (the consensus flow, from 1, whose signals are shown), each optional.
  function goToAddress(done) {
    var wanted = new URLSearchParams(location.hash.slice(1));
    var width = +wanted.get('width') || (wanted.has('pos') ? state.width : fittingWidth());
    var index = wanted.has('read') && nameIndex.has(wanted.get('read')) ? nameIndex.get(wanted.get('read')) : -1;
    if (wanted.has('pos')) show(+wanted.get('pos'), width);
    else if (index >= 0) { state.width = Math.max(10, Math.min(1000, Math.floor(width) || 120)); show(reads[index][POS] - 5); }
    else show(1, width);
    if (wanted.has('column')) {
      openColumn(+wanted.get('column') - 1);
      if (state.column >= 0 && index < 0) el('column').scrollIntoView();
    }
    if (index >= 0) {
      bringIntoView(index);
      openRead(index, done);
    } else if (done) done();
  }

  window.pelkrinContig = function (d) {
    data = d;
    d.flowStart = flowList(d.flowStart);
    d.flowEnd = flowList(d.flowEnd);
    L = d.consensus.length;
    reads = d.reads;
    lowest = 1;
    highest = Math.max(1, L);
    reads.forEach(function (r, i) {
      nameIndex.set(r[NAME], i);
      byStart.push(i);
      if (r[LEN] > 0) {
        lowest = Math.min(lowest, r[POS]);
        highest = Math.max(highest, r[POS] + r[LEN] - 1);
      }
    });
    byStart.sort(function (a, b) { return reads[a][POS] - reads[b][POS] || a - b; });
    // The furthest end of the reads up to each one by start: one long read
    // does not make every window look at all reads before it.
    var furthest = -Infinity;
    endMax = byStart.map(function (i) { furthest = Math.max(furthest, reads[i][POS] + reads[i][LEN] - 1); return furthest; });
    setupColours(d.colours);
    setupControls();
    if (d.flowgramFiles === 0) el('flowgram-note').textContent = d.flowgramNote;
    state.width = fittingWidth();
    goToAddress(function () { if (state.openRead >= 0) el('flowgram').scrollIntoView(); });
    window.addEventListener('hashchange', function () { if (location.hash !== addressText()) goToAddress(); });
  };

  // For a person at the console, and for tests that drive the page.
  window.pelkrinReport = {
    show: function (start, width) { show(start, width); },
    openRead: openRead,
    openColumn: openColumn,
    state: function () {
      return { start: state.start, width: state.width, length: L, openRead: state.openRead, column: state.column,
               first: firstStart(), flowOrigin: current.flowOrigin, flowLast: current.flowLast };
    },
    readIndex: function (name) { return nameIndex.has(name) ? nameIndex.get(name) : -1; },
    windowReads: function () { return current.shown.map(function (s) { return s.read[NAME]; }); },
    rows: function () { return current.rows.map(function (row) { return row.map(function (s) { return s.read[NAME]; }); }); },
    flowgramsLoaded: function () { return pending.size === 0; },
    lastStart: lastStart
  };

  setupIndex();
})();
