#!/usr/bin/python3
"""Segments Chinese text with zeg-segment and with python3-jieba (cut with
HMM=False, the same maximum-probability model over the same word list) and
reports how many lines agree, the differing lines by cause, and, with
--bench, the throughput and per-query latency of both on the same input.

Input: a text file (one line a query or sentence), or, without one, the
Chinese translations of the installed zh_CN message catalogues.

usage: compare_jieba.py --zeg build/bin/zeg-segment --config build/data/segmenter.conf
                        [--text FILE] [--show N] [--bench MEGABYTES]
"""
import argparse
import gettext
import glob
import math
import re
import subprocess
import sys
import time

import jieba

HAN = re.compile(r'[\u4e00-\u9fff]')
DIGIT = re.compile(r'[0-9０-９]')
CHINESE_NUMERALS = set('一二三四五六七八九十百千万零两')


def catalogue_lines():
    """Chinese lines from the zh_CN message catalogues of installed packages."""
    seen = set()
    for path in sorted(glob.glob('/usr/share/locale/zh_CN/LC_MESSAGES/*.mo')):
        try:
            with open(path, 'rb') as f:
                catalog = gettext.GNUTranslations(f)._catalog
        except Exception:
            continue
        for value in catalog.values():
            for line in str(value).splitlines():
                line = line.strip()
                if HAN.search(line) and line not in seen:
                    seen.add(line)
                    yield line


def zeg_cut(zeg, config, lines):
    text = '\n'.join(lines) + '\n'
    out = subprocess.run([zeg, '--config', config], input=text.encode('utf-8'),
                         stdout=subprocess.PIPE, check=True).stdout.decode('utf-8')
    # Words end with a blank; white-space words are left out, as for jieba.
    return [[w for w in row.split(' ') if w.strip()] for row in out.split('\n')[:len(lines)]]


def jieba_cut(line):
    return [w for w in jieba.cut(line, HMM=False) if w.strip()]


def spans(words):
    out, p = set(), 0
    for w in words:
        out.add((p, p + len(w)))
        p += len(w)
    return out


def jieba_score(words, freq, log_total):
    """The path score under jieba's own model (unknown words count once)."""
    return sum(math.log(freq.get(w) or 1) - log_total for w in words)


def classify(line, ours, theirs, freq, log_total):
    """The cause of a difference, checked from the most specific down."""
    a, b = spans(ours), spans(theirs)
    line_nows = ''.join(ours)
    differing = [line_nows[s:e] for s, e in (a ^ b)]
    if any(DIGIT.search(w) for w in differing):
        return 'numbers'
    if any(re.search(r'[^\u4e00-\u9fff]', w) for w in differing):
        return 'non-Chinese runs'
    if any(len(w) > 1 and set(w) <= CHINESE_NUMERALS and w not in freq for w in differing):
        return 'numbers'
    if any(len(w) == 1 and not freq.get(w) for w in differing):
        return 'unknown characters'
    if abs(jieba_score(ours, freq, log_total) - jieba_score(theirs, freq, log_total)) < 1e-9:
        return 'ties'
    return 'other'


def compare(args, lines):
    jieba.initialize()
    freq, total = jieba.dt.FREQ, jieba.dt.total
    log_total = math.log(total)
    ours = zeg_cut(args.zeg, args.config, lines)
    by_cause, same = {}, 0
    for line, o in zip(lines, ours):
        t = jieba_cut(line)
        if ''.join(o) != ''.join(t):
            by_cause.setdefault('text differs (spaces or encoding)', []).append((line, o, t))
        elif o == t:
            same += 1
        else:
            by_cause.setdefault(classify(line, o, t, freq, log_total), []).append((line, o, t))
    print('lines: %d, identical: %d (%.2f%%)' % (len(lines), same, 100.0 * same / len(lines)))
    for cause, rows in sorted(by_cause.items(), key=lambda kv: -len(kv[1])):
        print('\n== %s: %d lines' % (cause, len(rows)))
        for line, o, t in rows[:args.show]:
            print('  zeg:   ' + ' '.join(o))
            print('  jieba: ' + ' '.join(t))


def bench(args, lines):
    # Long text: the lines repeated up to the size asked for.
    big, size = [], 0
    while size < args.bench * 1e6:
        for line in lines:
            big.append(line)
            size += len(line.encode('utf-8')) + 1
    data = ('\n'.join(big) + '\n').encode('utf-8')
    start = time.perf_counter()
    subprocess.run([args.zeg, '--config', args.config], input=data, stdout=subprocess.DEVNULL,
                   check=True)
    zeg_seconds = time.perf_counter() - start
    start = time.perf_counter()
    for line in big:
        for _ in jieba.cut(line, HMM=False):
            pass
    jieba_seconds = time.perf_counter() - start
    mb = len(data) / 1e6
    print('\nthroughput on %.1f MB (%d lines): zeg-segment %.2f MB/s (%.2f s, start-up included),'
          ' jieba %.2f MB/s (%.2f s)' % (mb, len(big), mb / zeg_seconds, zeg_seconds,
                                          mb / jieba_seconds, jieba_seconds))
    # Short queries: the lines of at most 12 characters, many times over.
    short = [l for l in lines if len(l) <= 12] * 20
    data = ('\n'.join(short) + '\n').encode('utf-8')
    empty = time.perf_counter()
    subprocess.run([args.zeg, '--config', args.config], input=b'', stdout=subprocess.DEVNULL,
                   check=True)
    startup = time.perf_counter() - empty
    start = time.perf_counter()
    subprocess.run([args.zeg, '--config', args.config], input=data, stdout=subprocess.DEVNULL,
                   check=True)
    zeg_seconds = time.perf_counter() - start - startup
    start = time.perf_counter()
    for line in short:
        for _ in jieba.cut(line, HMM=False):
            pass
    jieba_seconds = time.perf_counter() - start
    print('latency over %d short queries (<= 12 characters, mean %.1f): zeg-segment %.2f us'
          ' a query (start-up of %.3f s subtracted), jieba %.2f us a query'
          % (len(short), sum(map(len, short)) / len(short), 1e6 * zeg_seconds / len(short),
             startup, 1e6 * jieba_seconds / len(short)))


def main():
    parser = argparse.ArgumentParser(description=__doc__.split('\n\n')[0])
    parser.add_argument('--zeg', required=True)
    parser.add_argument('--config', required=True)
    parser.add_argument('--text')
    parser.add_argument('--show', type=int, default=5)
    parser.add_argument('--bench', type=float, default=0)
    args = parser.parse_args()
    if args.text:
        with open(args.text, encoding='utf-8') as f:
            lines = [l.strip() for l in f if HAN.search(l)]
    else:
        lines = list(catalogue_lines())
    # Texts and queries, not page-long paragraphs; no lines zeg would chunk.
    lines = [l for l in lines if len(l) < 4000]
    compare(args, lines)
    if args.bench:
        bench(args, lines)


if __name__ == '__main__':
    jieba.setLogLevel(60)
    sys.exit(main())
