#!/usr/bin/python3
"""python3-jieba's jieba.cut(line, HMM=False) over every line of INPUT.

usage: jieba_segment.py INPUT OUTPUT
Prints the same figure line as the C++ drivers.
"""
import sys
import time

import jieba


def main():
    if len(sys.argv) != 3:
        sys.exit("usage: jieba_segment.py INPUT OUTPUT")
    with open(sys.argv[1], encoding="utf-8") as f:
        lines = f.read().split("\n")
    if lines and lines[-1] == "":
        lines.pop()
    jieba.setLogLevel(60)
    start = time.monotonic()
    jieba.initialize()
    load = time.monotonic() - start
    start, cpu_start = time.monotonic(), time.process_time()
    out = []
    for line in lines:
        out.append(" ".join(w for w in jieba.cut(line, HMM=False) if not w.isspace()))
    run, cpu = time.monotonic() - start, time.process_time() - cpu_start
    with open(sys.argv[2], "w", encoding="utf-8") as f:
        f.write("\n".join(out) + "\n")
    size = sum(len(line.encode("utf-8")) + 1 for line in lines)
    print("load_s=%.6f run_s=%.6f cpu_s=%.6f lines=%d bytes=%d" % (load, run, cpu, len(lines), size))


if __name__ == "__main__":
    main()
