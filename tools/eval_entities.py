#!/usr/bin/python3
"""Scores zeg-segment against tagged corpora.

  eval_entities.py names --config SEG.conf [--last N] [--pfr] MSRA_FILE
      Entity precision, recall and F1 over exact character spans: a word
      that zeg-segment marks as an entity (--weights output; "/NR" for
      persons) must cover exactly a gold chunk of the tag (nr). --kind org
      scores "/NT" against nt chunks. --dict-tag also counts words whose
      dictionary type is the tag; --pos scores the words that the
      part-of-speech tagger (zeg-segment --pos) tags nr (nt). --pfr reads People's Daily text instead,
      a family name and its given name making one gold name.
  eval_entities.py words --config SEG.conf [--merge-names] PFR_FILE
      SIGHAN-style word precision, recall and F1 against People's Daily
      segmentation; --merge-names joins a family name and its given name
      (consecutive nr tokens) into one gold word.

Both print the throughput of the segmenter run (MB of UTF-8 input a second,
start-up included). Only the standard library is used.
"""
import argparse
import re
import subprocess
import sys
import time

KINDS = {"person": ("nr", "/NR "), "org": ("nt", "/NT ")}
# One word of the --weights output: the text, then either "[|...|] " or " ".
WORD = re.compile(r"(.+?)(?:\[\|(.*?)\|\] | )")


def read_msra(path, last):
    with open(path, encoding="utf-8") as f:
        lines = [l.rstrip("\n") for l in f if l.strip()]
    if last:
        lines = lines[-last:]
    sentences = []
    for line in lines:
        chunks = []
        for token in line.split(" "):
            slash = token.rfind("/")
            if slash > 0:
                chunks.append((token[:slash], token[slash + 1:]))
        sentences.append(chunks)
    return sentences


def read_pfr(path, merge_names):
    sentences = []
    with open(path, encoding="utf-8") as f:
        for line in f:
            words = []
            for token in line.split()[1:]:
                token = token.lstrip("[")
                slash = token.rfind("/", 0, token.find("]") if "]" in token else len(token))
                if slash <= 0:
                    continue
                word, tag = token[:slash], token[slash + 1:].split("]")[0]
                if merge_names and tag == "nr" and words and words[-1][1] == "nr":
                    words[-1] = (words[-1][0] + word, "nr")
                else:
                    words.append((word, tag))
            if words:
                sentences.append(words)
    return sentences


def segment(binary, config, texts, pos=False):
    data = ("\n".join(texts) + "\n").encode("utf-8")
    start = time.monotonic()
    run = subprocess.run([binary, "--config", config, "--pos" if pos else "--weights"], input=data,
                         stdout=subprocess.PIPE, check=True)
    seconds = time.monotonic() - start
    out = run.stdout.decode("utf-8").split("\n")
    return out[:len(texts)], len(data) / 1e6 / seconds


def spans(words):
    """(start, end, annotations) of each word in one output line."""
    result, at = [], 0
    for word, notes in words:
        result.append((at, at + len(word), notes or ""))
        at += len(word)
    return result, at


def parse_line(line):
    return [(m.group(1), m.group(2)) for m in WORD.finditer(line + " ")] if line else []


def parse_pos_line(line):
    """(word, "/tag ") of each word/tag of --pos output."""
    words = []
    for token in line.split(" "):
        slash = token.rfind("/")
        if slash > 0:
            words.append((token[:slash], token[slash:] + " "))
    return words


def prf(correct, predicted, gold):
    p = correct / predicted if predicted else 0.0
    r = correct / gold if gold else 0.0
    return p, r, (2 * p * r / (p + r) if p + r else 0.0)


def score(sentences, outputs, gold_spans, predicted_spans, parse=parse_line):
    correct = predicted = gold = skipped = 0
    for sentence, line in zip(sentences, outputs):
        text = "".join(w for w, _ in sentence)
        words, length = spans(parse(line))
        if length != len(text):
            skipped += 1  # the output does not map back onto the text
            continue
        g = gold_spans(sentence)
        p = predicted_spans(words)
        correct += len(g & p)
        predicted += len(p)
        gold += len(g)
    return prf(correct, predicted, gold), (correct, predicted, gold), skipped


def chunk_spans(sentence, tag):
    result, at = set(), 0
    for word, t in sentence:
        if t == tag:
            result.add((at, at + len(word)))
        at += len(word)
    return result


def run_names(args):
    tag, marker = KINDS[args.kind]
    if args.pfr:
        sentences = read_pfr(args.corpus, True)
    else:
        sentences = read_msra(args.corpus, args.last)
    outputs, speed = segment(args.segment, args.config, ["".join(w for w, _ in s) for s in sentences],
                             args.pos)
    dict_mark = "/" + tag + "@"
    if args.pos:
        marker = "/" + tag + " "
    marked = lambda notes: marker in notes + " " or (args.dict_tag and dict_mark in notes)
    (p, r, f), counts, skipped = score(
        sentences, outputs, lambda s: chunk_spans(s, tag),
        lambda words: {(s, e) for s, e, notes in words if marked(notes)},
        parse_pos_line if args.pos else parse_line)
    print("%s: P %.4f R %.4f F1 %.4f (correct %d, predicted %d, gold %d; %d of %d lines skipped)"
          % (args.kind, p, r, f, *counts, skipped, len(sentences)))
    print("throughput: %.2f MB/s" % speed)


def run_words(args):
    sentences = read_pfr(args.corpus, args.merge_names)
    outputs, speed = segment(args.segment, args.config, ["".join(w for w, _ in s) for s in sentences])
    (p, r, f), counts, skipped = score(
        sentences, outputs, word_spans,
        lambda words: {(s, e) for s, e, _ in words})
    print("words: P %.4f R %.4f F1 %.4f (correct %d, predicted %d, gold %d; %d of %d lines skipped)"
          % (p, r, f, *counts, skipped, len(sentences)))
    print("throughput: %.2f MB/s" % speed)


def word_spans(sentence):
    result, at = set(), 0
    for word, _ in sentence:
        result.add((at, at + len(word)))
        at += len(word)
    return result


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("--segment", default="build/bin/zeg-segment", help="the zeg-segment binary")
    sub = parser.add_subparsers(dest="mode", required=True)
    names = sub.add_parser("names", help="entity P/R/F1 on an MSRA-format file")
    names.add_argument("--config", required=True)
    names.add_argument("--kind", choices=sorted(KINDS), default="person")
    names.add_argument("--last", type=int, default=0, help="score only the last N lines")
    names.add_argument("--pfr", action="store_true",
                       help="the file is People's Daily text (a family name and its given "
                            "name make one gold name)")
    names.add_argument("--pos", action="store_true",
                       help="score the words the part-of-speech tagger tags with the tag")
    names.add_argument("--dict-tag", action="store_true",
                       help="also count words whose dictionary type is the tag")
    names.add_argument("corpus")
    words = sub.add_parser("words", help="word P/R/F1 on a People's Daily file")
    words.add_argument("--config", required=True)
    words.add_argument("--merge-names", action="store_true")
    words.add_argument("corpus")
    args = parser.parse_args()
    try:
        (run_names if args.mode == "names" else run_words)(args)
    except (OSError, subprocess.CalledProcessError, UnicodeDecodeError) as e:
        print("eval_entities.py: %s" % e, file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
