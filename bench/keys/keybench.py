#!/usr/bin/python3
"""Key quality: how often queries that mean the same get one key, and how
often queries that differ share one.

From each base query of queries.txt (words separated by one space; the base
is the words run together) it makes variants of five kinds and counts a
variant as merged when its key equals its base's key:
  traditional  opencc's s2t conversion (Debian package opencc)
  width        ASCII in full-width forms; the words separated by U+3000
  case         ASCII letters upper-cased, and with their case swapped
  spacing      one space between the words; two between them and one
               around
  order        the words in another order, one space between them
and, reported apart since the key is not meant to be invariant to it:
  run-split    a space between the letters and digits of a Latin run
               (iphone13 -> iphone 13: two words, as win8 and win 8)
A variant that equals its base is left out. apart.txt holds pairs that must
keep different keys (reversed words, queries sharing only some words); a
pair sharing a key is a false merge.

Keys come from zeg-normalize (mode 252 unless --mode), run once over every
text. The corpora are not needed.

    /usr/bin/python3 bench/keys/keybench.py --tool build/bin/zeg-normalize \\
        --config build/data/normalizer.ini [--show 5]
"""
import argparse
import itertools
import os
import random
import re
import subprocess
import sys

HERE = os.path.dirname(os.path.abspath(__file__))
LETTERS_DIGITS = re.compile(r'([A-Za-z])([0-9])')
ALNUM_END = re.compile(r'[A-Za-z0-9]$')
ALNUM_START = re.compile(r'[A-Za-z0-9]')
KINDS = ('traditional', 'width', 'case', 'spacing', 'order', 'run-split')


def read_queries():
    with open(os.path.join(HERE, 'queries.txt'), encoding='utf-8') as f:
        return [line.split() for line in f if line.strip()]


def read_apart():
    with open(os.path.join(HERE, 'apart.txt'), encoding='utf-8') as f:
        return [line.rstrip('\n').split('\t') for line in f if line.strip()]


def full_width(text):
    return ''.join('\u3000' if c == ' ' else chr(ord(c) + 0xFEE0) if '!' <= c <= '~' else c
                   for c in text)


def to_traditional(texts):
    out = subprocess.run(['opencc', '-c', 's2t'], input='\n'.join(texts) + '\n',
                         capture_output=True, text=True, check=True).stdout
    return out.split('\n')[:len(texts)]


def reorder(words, rng):
    orders = [p for p in itertools.permutations(range(len(words))) if list(p) != sorted(p)]
    order = rng.choice(orders[:720])
    return ' '.join(words[i] for i in order)


def run_together(words):
    """The words as typed without spaces, except between two Latin or digit
    runs, which a space keeps apart (iphone 13 is not iphone13)."""
    text = words[0]
    for w in words[1:]:
        text += (' ' if ALNUM_END.search(text) and ALNUM_START.match(w) else '') + w
    return text


def variants(words, rng):
    """(kind, text) for one base query, the base's own text excluded."""
    base = run_together(words)
    spaced = ' '.join(words)
    out = [('width', full_width(base)), ('width', '\u3000'.join(words)),
           ('case', base.upper()), ('case', base.swapcase()),
           ('spacing', spaced), ('spacing', ' ' + '  '.join(words) + ' '),
           ('run-split', LETTERS_DIGITS.sub(r'\1 \2', base))]
    if len(set(words)) > 1:
        out.append(('order', reorder(words, rng)))
    return [(kind, text) for kind, text in out if text != base]


def keys_of(texts, tool, config, mode):
    out = subprocess.run([tool, '--config', config, '--mode', str(mode)],
                         input='\n'.join(texts) + '\n', capture_output=True, text=True)
    if out.returncode != 0:
        sys.exit('keybench: %s failed: %s' % (tool, out.stderr.strip()))
    keys = out.stdout.split('\n')[:len(texts)]
    return dict(zip(texts, keys))


def main():
    parser = argparse.ArgumentParser(description=__doc__.split('\n')[0])
    parser.add_argument('--tool', required=True, help='zeg-normalize')
    parser.add_argument('--config', required=True, help="the normaliser's configuration")
    parser.add_argument('--mode', type=int, default=252)
    parser.add_argument('--show', type=int, default=0, help='failures to print per kind')
    args = parser.parse_args()

    rng = random.Random(13)
    queries = read_queries()
    bases = [run_together(words) for words in queries]
    tests = [(b, kind, text) for b, words in zip(bases, queries) for kind, text in variants(words, rng)]
    for b, t in zip(bases, to_traditional(bases)):
        if t != b:
            tests.append((b, 'traditional', t))
    apart = read_apart()
    texts = sorted({t for test in tests for t in (test[0], test[2])} |
                   {t for pair in apart for t in pair[1:]})
    keys = keys_of(texts, args.tool, args.config, args.mode)

    print('%-12s %8s %8s %9s' % ('variant', 'count', 'merged', 'rate'))
    for kind in KINDS:
        done = [(b, t) for b, k, t in tests if k == kind]
        missed = [(b, t) for b, t in done if keys[b] != keys[t]]
        rate = 100.0 * (len(done) - len(missed)) / len(done) if done else 0.0
        print('%-12s %8d %8d %8.2f%%' % (kind, len(done), len(done) - len(missed), rate))
        for b, t in missed[:args.show]:
            print('    %s -> %s | %s -> %s' % (b, keys[b], t, keys[t]))
    empty = sum(1 for b in set(bases) if keys[b] == '')
    print('%-12s %8d' % ('empty keys', empty))
    print('\n%-12s %8s %8s %9s' % ('apart', 'pairs', 'merged', 'rate'))
    for kind in sorted({p[0] for p in apart}) + ['all']:
        pairs = [p for p in apart if kind in ('all', p[0])]
        merged = [p for p in pairs if keys[p[1]] == keys[p[2]]]
        print('%-12s %8d %8d %8.2f%%' % (kind, len(pairs), len(merged),
                                         100.0 * len(merged) / len(pairs)))
        if kind != 'all':
            for p in merged[:args.show]:
                print('    %s | %s -> %s' % (p[1], p[2], keys[p[1]]))


if __name__ == '__main__':
    main()
