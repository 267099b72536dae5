#!/usr/bin/env python3
"""Writes a copy of a big-endian SFF file without an index block in little-endian
byte order (the magic reversed, every integer and flowgram value byte-reversed),
for timing Pelkrin-prep sff on records it must convert.

    bench/sff_to_little_endian.py IN.sff OUT.sff
"""
import struct, sys, array
src, dst = sys.argv[1], sys.argv[2]
with open(src, 'rb') as f, open(dst, 'wb') as o:
    h = f.read(31)
    magic, ver, ioff, ilen, nreads, hl, kl, flows, fmt = struct.unpack('>4s4sQIIHHHB', h)
    rest = f.read(hl - 31)
    o.write(b'ffs.' + ver + struct.pack('<QIIHHHB', 0, 0, nreads, hl, kl, flows, fmt) + rest)
    for _ in range(nreads):
        rh = f.read(16)
        rhl, nl, nb, a, b, c, d = struct.unpack('>HHIHHHH', rh)
        name = f.read(rhl - 16)
        o.write(struct.pack('<HHIHHHH', rhl, nl, nb, a, b, c, d) + name)
        fg = array.array('H'); fg.frombytes(f.read(flows * 2)); fg.byteswap()
        dl = flows * 2 + 3 * nb
        pad = (8 - dl % 8) % 8
        o.write(fg.tobytes() + f.read(3 * nb + pad))
