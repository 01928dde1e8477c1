#!/usr/bin/python3
"""Scores zeg-segment's part-of-speech tags against a tagged corpus.

The corpus has one paragraph a line: an id token, then word/tag tokens
separated by blanks; bracketed compounds count as their inner words (as
zeg-dict pos-train reads them). Reports
  (a) tag accuracy with the corpus's own words (zeg-segment --pos
      --presegmented), for words seen in training (the word-tags file) and
      for the others;
  (b) word F1 and joint word+tag F1 when zeg-segment --pos cuts and tags
      the raw characters.
With --jieba, python3-jieba's posseg is scored on (b) too, its tags folded
onto the corpus's. With --throughput MB, the corpus's raw text, repeated to
at least MB megabytes, is segmented with and without the tagger; the best
of three runs' CPU time (user + system) gives MB/s.
"""
import argparse
import os
import resource
import subprocess
import sys
import tempfile

TYPOS = {"vvn": "vn", "na": "n", "Yg": "y"}
JIEBA_FOLD = {"x": "w", "uj": "u", "ul": "u", "uv": "u", "ud": "u", "ug": "u", "uz": "u",
              "nrt": "nr", "nrfg": "nr", "mq": "m", "vi": "v", "vq": "v", "df": "d",
              "rr": "r", "rz": "r", "rg": "Rg", "ag": "Ag", "dg": "Dg", "ng": "Ng",
              "vg": "Vg", "tg": "Tg", "mg": "Mg", "zg": "z", "g": "Ng", "eng": "nx"}


def split_token(token):
    t = token[1:] if token.startswith("[") else token
    close = t.rfind("]")
    if close != -1 and close > t.rfind("/"):
        t = t[:close]
    word, slash, tag = t.rpartition("/")
    if not slash or not word or not tag.isalpha():
        return None
    return word, TYPOS.get(tag, tag)


def read_corpus(path):
    paragraphs = []
    with open(path, encoding="utf-8") as f:
        for line in f:
            words = [w for w in map(split_token, line.split()[1:]) if w]
            if words:
                paragraphs.append(words)
    return paragraphs


def read_vocabulary(path):
    with open(path, encoding="utf-8") as f:
        return {line.split(None, 1)[0] for line in f if line.strip()}


def run(command, lines):
    result = subprocess.run(command, input="\n".join(lines) + "\n", capture_output=True,
                            text=True, check=False)
    if result.returncode != 0:
        sys.exit("eval_pos: %s failed: %s" % (" ".join(command), result.stderr.strip()))
    out = result.stdout.split("\n")
    if len(out) < len(lines):
        sys.exit("eval_pos: %s gave %d lines for %d" % (command[0], len(out), len(lines)))
    return [[tok.rpartition("/")[::2] for tok in line.split(" ") if tok] for line in out[:len(lines)]]


def spans(words):
    out, at = set(), 0
    for word, tag in words:
        out.add((at, at + len(word), tag))
        at += len(word)
    return out


def f1(gold_count, found_count, right):
    p = right / found_count if found_count else 0.0
    r = right / gold_count if gold_count else 0.0
    return 2 * p * r / (p + r) if p + r else 0.0


def score_joint(paragraphs, tagged):
    gold_n = found_n = words_right = joint_right = 0
    for gold, found in zip(paragraphs, tagged):
        g, f = spans(gold), spans(found)
        gold_n += len(g)
        found_n += len(f)
        joint_right += len(g & f)
        words_right += len({s[:2] for s in g} & {s[:2] for s in f})
    return (f1(gold_n, found_n, words_right), f1(gold_n, found_n, joint_right),
            joint_right / words_right if words_right else 0.0)


def accuracy(paragraphs, tagged, vocabulary):
    counts = {True: [0, 0], False: [0, 0]}
    for gold, found in zip(paragraphs, tagged):
        if [w for w, _ in gold] != [w for w, _ in found]:
            sys.exit("eval_pos: the presegmented output changed the words of %r" % gold[:5])
        for (word, tag), (_, got) in zip(gold, found):
            c = counts[word in vocabulary]
            c[0] += tag == got
            c[1] += 1
    return counts


def jieba_tagged(paragraphs):
    import jieba.posseg
    out = []
    for gold in paragraphs:
        text = "".join(w for w, _ in gold)
        out.append([(p.word, JIEBA_FOLD.get(p.flag, p.flag)) for p in jieba.posseg.cut(text)])
    return out


def cpu_seconds(command, path):
    """CPU time of the best of three runs of command over the file at path."""
    best = None
    for _ in range(3):
        before = resource.getrusage(resource.RUSAGE_CHILDREN)
        with open(path, "rb") as text, open(os.devnull, "wb") as sink:
            subprocess.run(command, stdin=text, stdout=sink, check=True)
        after = resource.getrusage(resource.RUSAGE_CHILDREN)
        used = (after.ru_utime - before.ru_utime) + (after.ru_stime - before.ru_stime)
        best = used if best is None else min(best, used)
    return best


def throughput(paragraphs, megabytes, base):
    text = "\n".join("".join(w for w, _ in p) for p in paragraphs).encode("utf-8") + b"\n"
    copies = max(1, -(-int(megabytes * 1e6) // len(text)))
    with tempfile.NamedTemporaryFile(suffix=".txt") as f:
        f.write(text * copies)
        f.flush()
        size = len(text) * copies / 1e6
        plain = cpu_seconds(base[:-1], f.name)
        tagged = cpu_seconds(base, f.name)
    print("throughput on %.1f MB: %.1f MB/s without the tagger, %.1f MB/s with it" % (
        size, size / plain, size / tagged))


def main():
    ap = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    ap.add_argument("corpus", help="tagged corpus file (e.g. pfr1998-dev.txt)")
    ap.add_argument("--zeg-segment", default="build/bin/zeg-segment")
    ap.add_argument("--config", default="build/data/segmenter.conf")
    ap.add_argument("--word-tags", default="data/pos_word_tags.txt",
                    help="the training words (known vs unknown)")
    ap.add_argument("--jieba", action="store_true", help="also score python3-jieba's posseg")
    ap.add_argument("--throughput", type=float, metavar="MB",
                    help="also time zeg-segment with and without the tagger")
    args = ap.parse_args()

    paragraphs = read_corpus(args.corpus)
    vocabulary = read_vocabulary(args.word_tags)
    base = [args.zeg_segment, "--config", args.config, "--pos"]

    pre = run(base + ["--presegmented"], [" ".join(w for w, _ in p) for p in paragraphs])
    counts = accuracy(paragraphs, pre, vocabulary)
    right = counts[True][0] + counts[False][0]
    total = counts[True][1] + counts[False][1]
    print("paragraphs %d, words %d" % (len(paragraphs), total))
    print("(a) tag accuracy, gold words: %.4f (known %.4f of %d, unknown %.4f of %d)" % (
        right / total, counts[True][0] / max(counts[True][1], 1), counts[True][1],
        counts[False][0] / max(counts[False][1], 1), counts[False][1]))

    raw = run(base, ["".join(w for w, _ in p) for p in paragraphs])
    line = "word F1 %.4f, joint word+tag F1 %.4f, tag right on %.4f of the words cut right"
    print("(b) zeg from raw text: " + line % score_joint(paragraphs, raw))
    if args.jieba:
        print("    jieba posseg:      " + line % score_joint(paragraphs, jieba_tagged(paragraphs)))
    if args.throughput:
        throughput(paragraphs, args.throughput, base)


if __name__ == "__main__":
    main()
