#!/usr/bin/python3
"""Derives the organisation recogniser's word lists from tagged corpora.

  derive_org_lists.py --segment build/bin/zeg-segment --config SEG.conf \\
      --msra MSRA_FILE --held-out N --pfr PFR_TRAIN_FILE \\
      [--jieba DICT] --out data/org

Organisation names are the nt chunks of the MSRA file (all but its last N
lines, which stay for evaluation) and the bracketed [...]nt compounds and nt
words of People's Daily. Each name and the whole raw text are cut with
zeg-segment, so the lists hold words as the segmenter sees them:

  suffix.txt  word TAB suffix-share TAB whole-share: words that end names,
              with the share of their occurrences in the text that end a
              name of several words, and that are a name by themselves
  zone.txt    place words that begin names (tagged ns in either corpus)
  tezhi.txt   distinctive words that begin names: seen inside names at
              least a fifth of the times they occur at all
  inner.txt   other words seen inside names (not first, not last)

With --jieba, the dictionary's place words (ns) join the zone list and its
organisation words (nt) that the corpora never show join the suffix list as
names by themselves.

Only the standard library is used; the output is sorted, so runs agree.
"""
import argparse
import collections
import os
import re
import subprocess
import sys

MIN_SUFFIX = 3          # names a suffix must end
MIN_RELIABILITY = 0.05  # share of its occurrences that end a name
MIN_WHOLE = 0.3         # share of its occurrences that are a name by themselves
MIN_START = 2
MIN_INNER = 2
TEZHI_SHARE = 0.2
MIN_LISTED = 5          # frequency a jieba entry needs to be taken
LISTED_WHOLE = 0.5      # whole-share given to a listed name the corpora never show


def msra_lines(path, held_out):
    with open(path, encoding="utf-8") as f:
        lines = [l.rstrip("\n") for l in f if l.strip()]
    return lines[:-held_out] if held_out else lines


def msra_tokens(line):
    for token in line.split(" "):
        slash = token.rfind("/")
        if slash > 0:
            yield token[:slash], token[slash + 1:]


PFR_TOKEN = re.compile(r"(\[?)([^\s/\[]+)/([A-Za-z]+)(\][a-z]+)?")


def pfr_paragraphs(path):
    """(raw text, nt names, ns words) per paragraph."""
    with open(path, encoding="utf-8") as f:
        for line in f:
            tokens = line.split()[1:]
            text, names, places, open_words = [], [], [], None
            for token in tokens:
                m = PFR_TOKEN.fullmatch(token)
                if not m:
                    continue
                opening, word, tag, closing = m.groups()
                text.append(word)
                if tag == "ns":
                    places.append(word)
                if opening:
                    open_words = []
                if open_words is not None:
                    open_words.append(word)
                if closing:
                    if closing == "]nt":
                        names.append("".join(open_words))
                    open_words = None
                elif tag == "nt" and open_words is None:
                    names.append(word)
            yield "".join(text), names, places


def segment(binary, config, texts):
    data = ("\n".join(texts) + "\n").encode("utf-8")
    out = subprocess.run([binary, "--config", config], input=data, stdout=subprocess.PIPE,
                         check=False).stdout.decode("utf-8").split("\n")
    return [line.split() for line in out[:len(texts)]]


def write(path, rows):
    with open(path, "w", encoding="utf-8") as f:
        for row in rows:
            f.write("\t".join(str(x) for x in row) + "\n")


def main():
    ap = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    ap.add_argument("--segment", default="build/bin/zeg-segment")
    ap.add_argument("--config", required=True)
    ap.add_argument("--msra", required=True)
    ap.add_argument("--held-out", type=int, default=5000)
    ap.add_argument("--pfr", required=True)
    ap.add_argument("--jieba", help="a jieba-format word list: its ns words begin names, "
                    "its nt words unseen in the corpora are names by themselves")
    ap.add_argument("--out", required=True)
    args = ap.parse_args()

    texts, names, places = [], [], set()
    for line in msra_lines(args.msra, args.held_out):
        tokens = list(msra_tokens(line))
        texts.append("".join(w for w, _ in tokens))
        names += [w for w, t in tokens if t == "nt"]
        places.update(w for w, t in tokens if t == "ns")
    for text, nt, ns in pfr_paragraphs(args.pfr):
        texts.append(text)
        names += nt
        places.update(ns)

    total = collections.Counter()
    for words in segment(args.segment, args.config, texts):
        total.update(words)
    ends, starts, inner = collections.Counter(), collections.Counter(), collections.Counter()
    inside = collections.Counter()
    whole = collections.Counter()
    for words in segment(args.segment, args.config, names):
        if len(words) == 1:
            whole[words[0]] += 1
        if len(words) < 2:
            continue
        ends[words[-1]] += 1
        starts[words[0]] += 1
        inner.update(words[1:-1])
        inside.update(words[:-1])

    share = lambda counts, w: round(min(counts[w] / max(total[w], 1), 1.0), 3)
    suffixes = sorted((w, share(ends, w), share(whole, w)) for w in set(ends) | set(whole)
                      if (ends[w] >= MIN_SUFFIX and share(ends, w) >= MIN_RELIABILITY) or
                      (whole[w] >= MIN_SUFFIX and share(whole, w) >= MIN_WHOLE))
    listed_places, listed_names = set(), set()
    if args.jieba:
        with open(args.jieba, encoding="utf-8") as f:
            for line in f:
                fields = line.split()
                if len(fields) == 3 and int(fields[1]) >= MIN_LISTED:
                    (listed_places if fields[2] == "ns" else
                     listed_names if fields[2] == "nt" else set()).add(fields[0])
    zone = sorted(set(w for w, n in starts.items() if n >= MIN_START and w in places) |
                  listed_places)
    tezhi = sorted(w for w, n in starts.items() if n >= MIN_START and w not in places and
                   inside[w] >= TEZHI_SHARE * max(total[w], 1))
    seen = {w for w, _, _ in suffixes}
    suffixes = sorted(suffixes + [(w, 0.0, LISTED_WHOLE) for w in listed_names - seen
                                  if total[w] == 0])
    starting = set(zone) | set(tezhi)
    inner_words = sorted(w for w, n in (inner + starts).items()
                         if n >= MIN_INNER and w not in starting)
    os.makedirs(args.out, exist_ok=True)
    write(os.path.join(args.out, "suffix.txt"), suffixes)
    write(os.path.join(args.out, "zone.txt"), [(w,) for w in zone])
    write(os.path.join(args.out, "tezhi.txt"), [(w,) for w in tezhi])
    write(os.path.join(args.out, "inner.txt"), [(w,) for w in inner_words])
    print("%d names; suffix %d, zone %d, tezhi %d, inner %d"
          % (len(names), len(suffixes), len(zone), len(tezhi), len(inner_words)))
    return 0


if __name__ == "__main__":
    sys.exit(main())
