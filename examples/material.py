#!/usr/bin/env python3
"""A program for zmfi's commandpipe filter.

zmfi starts it once, on first use, and keeps it running: every request is
one line on standard input, here a position in FEN, and every answer must be
one line on standard output, flushed at once. This one answers with the
material balance of the position in pawns, White's minus Black's. When zmfi
is done it closes the pipe, and the loop below ends.
"""
import sys

VALUES = {"p": 1, "n": 3, "b": 3, "r": 5, "q": 9}

for request in sys.stdin:
    placement = request.split(" ", 1)[0]
    balance = 0
    for piece in placement:
        value = VALUES.get(piece.lower(), 0)
        balance += value if piece.isupper() else -value
    print(balance, flush=True)
