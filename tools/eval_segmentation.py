#!/usr/bin/python3
"""Scores zeg-segment's cut of a segmented corpus (PFR format) against its
gold cut: word precision, recall and F1, and crossing words (words of the
cut that cross a gold word, per 1,000 words of the cut). With --compare,
the same again with a line added to the configuration (a later key
replaces an earlier one), and the throughput of both.

usage: eval_segmentation.py CORPUS --segment build/bin/zeg-segment
           --config build/data/segmenter.conf
           [--compare "ENABLE_CORRECT_PHRASE = false"] [--repeat 5]
"""
import argparse
import subprocess
import time

import pfr_corpus


def score(binary, config, gold, texts):
    result = pfr_corpus.Score()
    for cut, words in zip(pfr_corpus.segment(binary, config, texts), gold):
        result.add(cut, words)
    return result


def seconds(binary, config, text, repeat):
    """Best wall time of segmenting `text`, less that of an empty input."""
    def best(data):
        times = []
        for _ in range(repeat):
            start = time.perf_counter()
            subprocess.run([binary, "--config", config], input=data, stdout=subprocess.DEVNULL,
                           check=True, text=True, encoding="utf-8")
            times.append(time.perf_counter() - start)
        return min(times)
    return best(text) - best("")


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n\n")[0])
    parser.add_argument("corpus")
    parser.add_argument("--segment", required=True, help="the zeg-segment binary")
    parser.add_argument("--config", required=True, help="the segmenter configuration")
    parser.add_argument("--compare", action="append", default=[],
                        help="a configuration line to score as a variant (repeatable)")
    parser.add_argument("--repeat", type=int, default=5, help="timing runs (best is kept)")
    args = parser.parse_args()

    gold = pfr_corpus.read_gold(args.corpus)
    texts = ["".join(words) for words in gold]
    big = "\n".join(texts * 4) + "\n"
    chars = sum(len(t) for t in texts) * 4
    print("%-36s %7s %7s %7s %7s %9s %9s" % ("configuration", "words", "P", "R", "F1",
                                             "cross/1k", "chars/s"))
    for label in ["as configured"] + args.compare:
        line = "" if label == "as configured" else label
        with pfr_corpus.config_with(args.config, line) as config:
            s = score(args.segment, config, gold, texts)
            rate = chars / seconds(args.segment, config, big, args.repeat)
        print("%-36s %7d %7.2f %7.2f %7.2f %9.3f %9.0f"
              % (label, s.cut_words, 100.0 * s.correct / s.cut_words,
                 100.0 * s.correct / s.gold_words, 100 * s.f1(), s.crossing_rate(), rate))
        if s.skipped:
            print("  (%d paragraphs the segmenter changed were left out)" % s.skipped)


if __name__ == "__main__":
    main()
