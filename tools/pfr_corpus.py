"""Reading the segmented PFR corpus and comparing a segmenter's cut with it.

A paragraph line is "ID/m  word/tag  word/tag ..."; compound names are
bracketed ("[中央/n  人民/n]nt"), the brackets are dropped. A cut is a list of
words; positions count characters of the paragraph's text.
"""

import contextlib
import os
import subprocess
import tempfile


def read_gold(path):
    """The paragraphs of `path` as lists of words (empty paragraphs left out)."""
    paragraphs = []
    with open(path, encoding="utf-8") as f:
        for line in f:
            words = []
            for token in line.split()[1:]:
                word = token.rsplit("/", 1)[0]
                if word.startswith("[") and len(word) > 1:
                    word = word[1:]
                if word:
                    words.append(word)
            if words:
                paragraphs.append(words)
    return paragraphs


def segment(binary, config, texts):
    """Each text cut by `binary` (zeg-segment) under `config`; None where the
    words do not spell the text (a line the segmenter changed)."""
    run = subprocess.run([binary, "--config", config], input="\n".join(texts) + "\n",
                         capture_output=True, text=True, encoding="utf-8", check=True)
    lines = run.stdout.split("\n")
    if len(lines) < len(texts):
        raise RuntimeError("%s printed %d lines for %d texts" % (binary, len(lines), len(texts)))
    cuts = []
    for text, line in zip(texts, lines):
        words = line.split()
        cuts.append(words if "".join(words) == text else None)
    return cuts


@contextlib.contextmanager
def config_with(config, line):
    """The path of a copy of the configuration `config` with `line` added
    (a later key replaces an earlier one), removed afterwards."""
    with open(config, encoding="utf-8") as f:
        text = f.read()
    with tempfile.TemporaryDirectory() as tmp:
        path = os.path.join(tmp, "variant.conf")
        with open(path, "w", encoding="utf-8") as f:
            f.write(text + "\n" + line + "\n")
        yield path


def spans(words):
    """(start, end) of each word."""
    out, pos = [], 0
    for w in words:
        out.append((pos, pos + len(w)))
        pos += len(w)
    return out


def boundaries(words):
    """Every position where a word starts or ends."""
    out, pos = {0}, 0
    for w in words:
        pos += len(w)
        out.add(pos)
    return out


def crossing_spans(cut, gold):
    """The spans of `cut` that cross a gold word: they neither lie inside one
    gold word nor are made of whole gold words (a difference of granularity
    is neither)."""
    gold_bounds = boundaries(gold)
    word_at = []
    for i, w in enumerate(gold):
        word_at.extend([i] * len(w))
    return [(a, b) for a, b in spans(cut)
            if not (a in gold_bounds and b in gold_bounds) and word_at[a] != word_at[b - 1]]


class Score:
    """Word precision, recall and F1, and crossing words per 1,000 words."""

    def __init__(self):
        self.cut_words = self.gold_words = self.correct = self.crossing = 0
        self.skipped = 0

    def add(self, cut, gold):
        if cut is None:
            self.skipped += 1
            return
        self.cut_words += len(cut)
        self.gold_words += len(gold)
        self.correct += len(set(spans(cut)) & set(spans(gold)))
        self.crossing += len(crossing_spans(cut, gold))

    def f1(self):
        p = self.correct / self.cut_words
        r = self.correct / self.gold_words
        return 2 * p * r / (p + r)

    def crossing_rate(self):
        return 1000.0 * self.crossing / self.cut_words
