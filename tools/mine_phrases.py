#!/usr/bin/python3
"""Mines a phrase correction table (zeg-dict phrase's text form) from a
segmented corpus in the PFR format.

The corpus's text is cut by zeg-segment under the given configuration with
the phrase correcter switched off (the table lists the segmenter's own
errors). Wherever a word of that cut crosses
a gold word (a real ambiguity error, not a difference of granularity), the
smallest stretch around it that begins and ends on a boundary of both cuts
is a candidate phrase, with the gold cut of that stretch as its correction.

A candidate is then tried wherever the correcter would apply it: every
occurrence of the phrase that begins and ends on a boundary of the
segmenter's cut. It is kept when
  - it is 2 to --max-len characters long,
  - its correction is the gold cut at no fewer than --min-agree of those
    places (the gold cut is consistent), and
  - it fixes crossing words at no fewer than --min-fixed places and, over
    all places, turns more words right than wrong by at least --min-gain.

usage: mine_phrases.py CORPUS --segment build/bin/zeg-segment
                       --config build/data/segmenter.conf --output TABLE
"""
import argparse
import collections
import sys

import pfr_corpus


class Corpus:
    """The corpus as one text (paragraphs joined by line feeds), with the
    boundaries of the gold cut and of the segmenter's."""

    def __init__(self, gold, cuts):
        texts, self.gold_bounds, self.cut_bounds = [], set(), set()
        self.gold_spans, self.cut_spans = set(), set()
        base = 0
        for words, cut in zip(gold, cuts):
            if cut is None:
                continue
            text = "".join(words)
            for a, b in pfr_corpus.spans(words):
                self.gold_spans.add((base + a, base + b))
            for a, b in pfr_corpus.spans(cut):
                self.cut_spans.add((base + a, base + b))
            self.gold_bounds.update(base + p for p in pfr_corpus.boundaries(words))
            self.cut_bounds.update(base + p for p in pfr_corpus.boundaries(cut))
            texts.append(text)
            base += len(text) + 1
        self.text = "\n".join(texts)

    def gold_cut(self, a, b):
        """The gold words of [a, b) as lengths, or None when a or b lies
        inside a gold word."""
        if a not in self.gold_bounds or b not in self.gold_bounds:
            return None
        lens, start = [], a
        for p in range(a + 1, b + 1):
            if p in self.gold_bounds:
                lens.append(p - start)
                start = p
        return tuple(lens)

    def cut_words(self, a, b):
        """The segmenter's words inside [a, b) as spans."""
        out, start = [], a
        for p in range(a + 1, b + 1):
            if p in self.cut_bounds:
                out.append((start, p))
                start = p
        return out


def candidates(corpus, max_len):
    """phrase -> Counter of gold cuts, from the stretches around crossing words."""
    found = collections.defaultdict(collections.Counter)
    common = corpus.gold_bounds & corpus.cut_bounds
    for a, b in sorted(corpus.cut_spans):
        if not crossing(corpus, [(a, b)]):
            continue
        left = a
        while left not in common:
            left -= 1
        right = b
        while right not in common:
            right += 1
        if 2 <= right - left <= max_len:
            found[corpus.text[left:right]][corpus.gold_cut(left, right)] += 1
    return found


def _inside_one_gold_word(corpus, a, b):
    return not any(p in corpus.gold_bounds for p in range(a + 1, b))


def occurrences(text, phrase):
    at = text.find(phrase)
    while at >= 0:
        yield at
        at = text.find(phrase, at + 1)


def right_words(spans, gold_spans):
    return sum(1 for s in spans if s in gold_spans)


def crossing(corpus, spans):
    """The spans that cross a gold word (see pfr_corpus.crossing_spans)."""
    return sum(1 for a, b in spans
               if not (a in corpus.gold_bounds and b in corpus.gold_bounds)
               and not _inside_one_gold_word(corpus, a, b))


def judge(corpus, phrase, cut):
    """(places, agreeing places, places with crossing words fixed, words
    gained) of applying `cut` wherever the correcter would."""
    places = agree = fixed = gain = 0
    n = len(phrase)
    for at in occurrences(corpus.text, phrase):
        if at not in corpus.cut_bounds or at + n not in corpus.cut_bounds:
            continue
        places += 1
        before = corpus.cut_words(at, at + n)
        after, start = [], at
        for length in cut:
            after.append((start, start + length))
            start += length
        agree += corpus.gold_cut(at, at + n) == cut
        fixed += crossing(corpus, before) > crossing(corpus, after)
        gain += right_words(after, corpus.gold_spans) - right_words(before, corpus.gold_spans)
    return places, agree, fixed, gain


def words_of(phrase, cut):
    out, start = [], 0
    for length in cut:
        out.append(phrase[start:start + length])
        start += length
    return out


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n\n")[0])
    parser.add_argument("corpus", help="segmented corpus (PFR format), e.g. pfr1998-train.txt")
    parser.add_argument("--segment", required=True, help="the zeg-segment binary")
    parser.add_argument("--config", required=True, help="the segmenter configuration")
    parser.add_argument("--output", required=True, help="the table to write")
    parser.add_argument("--max-len", type=int, default=12)
    parser.add_argument("--min-agree", type=float, default=0.9)
    parser.add_argument("--min-fixed", type=int, default=2)
    parser.add_argument("--min-gain", type=int, default=2)
    args = parser.parse_args()

    gold = pfr_corpus.read_gold(args.corpus)
    with pfr_corpus.config_with(args.config, "ENABLE_CORRECT_PHRASE = false") as config:
        cuts = pfr_corpus.segment(args.segment, config, ["".join(w) for w in gold])
    corpus = Corpus(gold, cuts)
    found = candidates(corpus, args.max_len)
    kept = []
    for phrase, gold_cuts in found.items():
        cut, _ = gold_cuts.most_common(1)[0]
        places, agree, fixed, gain = judge(corpus, phrase, cut)
        if agree >= args.min_agree * places and fixed >= args.min_fixed and gain >= args.min_gain:
            kept.append((phrase, cut, places, agree, fixed, gain))
    kept.sort()
    with open(args.output, "w", encoding="utf-8") as out:
        out.write("# Phrase corrections mined by tools/mine_phrases.py from %s\n"
                  "# (--max-len %d --min-agree %g --min-fixed %d --min-gain %d): %d phrases.\n"
                  "# PHRASE  WORDS  # places applied, agreeing with gold, fixed; words gained\n"
                  % (args.corpus.rsplit("/", 1)[-1], args.max_len, args.min_agree,
                     args.min_fixed, args.min_gain, len(kept)))
        for phrase, cut, places, agree, fixed, gain in kept:
            out.write("%s\t%s\t# %d %d %d %+d\n" % (phrase, " ".join(words_of(phrase, cut)),
                                                    places, agree, fixed, gain))
    print("%d paragraphs (%d skipped), %d candidates, %d kept"
          % (len(gold), cuts.count(None), len(found), len(kept)), file=sys.stderr)


if __name__ == "__main__":
    main()
