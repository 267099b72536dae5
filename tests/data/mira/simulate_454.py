#!/usr/bin/env python3
"""Simulated 454 reads of a small random genome, for an assembly by MIRA.

Writes, in the folder given (default: the current one):
  sim454.sff             the reads as a GS FLX machine would: flow order TACG,
                         key TCAG, 400 flows, big-endian, no index block; each
                         read's bases begin with the key, which clip_qual_left
                         cuts off
  sim454_in.454.fastq    the same reads without the key, for MIRA
Error-free reads, so that the assembly's bases are the records' bases.
A fixed seed: the same files every time.
"""
import random
import struct
import sys
from pathlib import Path

FLOWS = 400
FLOW_CHARS = ("TACG" * (FLOWS // 4)).encode()
KEY = b"TCAG"
COMPLEMENT = bytes.maketrans(b"ACGT", b"TGCA")


def flowgram(bases):
    """Flowgram values (signal x 100) and flow index per base of `bases`."""
    values = []
    index = []
    i = 0
    last_flow = 0
    for flow in range(FLOWS):
        c = FLOW_CHARS[flow]
        n = 0
        while i < len(bases) and bases[i] == c:
            n += 1
            i += 1
            index.append(flow + 1 - last_flow)
            last_flow = flow + 1
        values.append(n * 100 + (flow * 37 % 9) if n else (flow * 53 % 13))
    return values, index, i


def record(name, bases, quals):
    values, index, used = flowgram(KEY + bases)
    seq = (KEY + bases)[:used]
    q = ([40] * len(KEY) + quals)[:used]
    name_b = name.encode()
    head_len = (16 + len(name_b) + 7) // 8 * 8
    head = struct.pack(">HHIHHHH", head_len, len(name_b), len(seq), len(KEY) + 1, 0, 0, 0) + name_b
    head += b"\0" * (head_len - len(head))
    data = struct.pack(">%dH" % FLOWS, *values) + bytes(index) + seq + bytes(q)
    data += b"\0" * (-len(data) % 8)
    return head + data, seq[len(KEY):], q[len(KEY):]


def main():
    out = Path(sys.argv[1] if len(sys.argv) > 1 else ".")
    rnd = random.Random(454)
    genome = bytes(rnd.choice(b"ACGT") for _ in range(2500))
    records = []
    fastq = []
    for i in range(120):
        length = rnd.randint(150, 260)
        start = rnd.randint(0, len(genome) - length)
        piece = genome[start:start + length]
        if rnd.random() < 0.5:
            piece = piece.translate(COMPLEMENT)[::-1]
        quals = [rnd.randint(25, 40) for _ in piece]
        name = "SIM454R%02dX%04d" % (i % 4, i)
        rec, seq, q = record(name, piece, quals)
        records.append(rec)
        fastq.append("@%s\n%s\n+\n%s\n" % (name, seq.decode(), "".join(chr(33 + v) for v in q)))
    header_len = (31 + FLOWS + len(KEY) + 7) // 8 * 8
    header = b".sff" + b"\0\0\0\1" + struct.pack(">QIIHHHB", 0, 0, len(records), header_len, len(KEY), FLOWS, 1)
    header += FLOW_CHARS + KEY
    header += b"\0" * (header_len - len(header))
    (out / "sim454.sff").write_bytes(header + b"".join(records))
    (out / "sim454_in.454.fastq").write_text("".join(fastq))


if __name__ == "__main__":
    main()
