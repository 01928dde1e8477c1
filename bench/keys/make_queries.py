#!/usr/bin/python3
"""Writes the key benchmark's data: queries.txt (base queries, one a line,
words separated by one space as jieba cuts them) and apart.txt (pairs of
queries that must keep different keys, separated by a tab, with the kind of
pair first).

Sources: the Chinese translations in the installed zh_CN message catalogues,
python3-jieba's word list, data/sample-queries.txt and data/alnum_words.txt. Rerun it only to
change the benchmark; keybench.py reads the files it writes.

    /usr/bin/python3 bench/keys/make_queries.py
"""
import gettext
import glob
import os
import random
import re

import jieba

HERE = os.path.dirname(os.path.abspath(__file__))
SAMPLES = os.path.join(HERE, '..', '..', 'data', 'sample-queries.txt')
ALNUM_WORDS = os.path.join(HERE, '..', '..', 'data', 'alnum_words.txt')
JIEBA_DICT = '/usr/lib/python3/dist-packages/jieba/dict.txt'
HAN_RUN = re.compile(r'[\u4e00-\u9fff]{4,}')
LATIN = re.compile(r'^[a-z][a-z0-9]{1,9}$')

CHINESE_QUERIES = 3000
LATIN_QUERIES = 500
DIFFERENT_PAIRS = 3000
REVERSED_MIN_FREQ = 50


def catalogue_runs():
    """Runs of Chinese characters from the installed message catalogues."""
    seen = set()
    for path in sorted(glob.glob('/usr/share/locale/zh_CN/LC_MESSAGES/*.mo')):
        try:
            with open(path, 'rb') as f:
                catalog = gettext.GNUTranslations(f)._catalog
        except Exception:
            continue
        for value in catalog.values():
            for run in HAN_RUN.findall(str(value)):
                if run not in seen:
                    seen.add(run)
                    yield run


def word_list():
    with open(JIEBA_DICT, encoding='utf-8') as f:
        for line in f:
            fields = line.split()
            yield fields[0], int(fields[1])


def chinese_queries(rng):
    """Two to four consecutive words of a catalogue run, 4 to 12 characters."""
    pool = set()
    for run in catalogue_runs():
        words = list(jieba.cut(run, HMM=False))
        for start in range(0, len(words) - 1, 3):
            n = rng.randint(2, 4)
            piece = words[start:start + n]
            if len(piece) >= 2 and 4 <= len(''.join(piece)) <= 12:
                pool.add(' '.join(piece))
    return rng.sample(sorted(pool), CHINESE_QUERIES)


# Names users type with Latin letters; a digit after one is a version.
NAMES = ('iphone ipad android windows linux ubuntu office excel word python java '
         'chrome firefox github wifi email pdf app vip nba cctv qq wechat taobao '
         'photoshop xbox switch kindle macbook galaxy huawei xiaomi oppo vivo').split()


def latin_queries(rng, chinese):
    """A Latin word (our letter-digit words, names, names with a version)
    and one or two Chinese words, the Latin part first or last."""
    with open(ALNUM_WORDS, encoding='utf-8') as f:
        latin = sorted({line.split()[0].lower() for line in f if LATIN.match(line.split()[0].lower())})
    latin += NAMES + ['%s%d' % (rng.choice(NAMES), rng.randint(2, 15)) for _ in range(40)]
    queries = []
    for _ in range(LATIN_QUERIES):
        rest = rng.choice(chinese).split()[:rng.randint(1, 2)]
        word = rng.choice(latin)
        queries.append(' '.join([word] + rest if rng.random() < 0.5 else rest + [word]))
    return queries


def sample_queries():
    with open(SAMPLES, encoding='utf-8') as f:
        return [' '.join(line.split()) for line in f if line.strip()]


def reversed_pairs(words):
    """Common two-character words whose reverse is a common word too (蜂蜜,
    蜜蜂), and the example 日本 本日."""
    freq = {w: f for w, f in words if len(w) == 2 and re.match(r'^[\u4e00-\u9fff]{2}$', w)}
    pairs = {(w, w[::-1]) for w in freq if w[::-1] in freq and w < w[::-1] and w[0] != w[1]
             and min(freq[w], freq[w[::-1]]) >= REVERSED_MIN_FREQ}
    return sorted(pairs | {('日本', '本日')})


def meaningful(query):
    """The words a key keeps: 的 is dropped by canonical ordering."""
    return [w for w in query.split() if w != '的']


def different_pairs(rng, queries):
    """Queries that share a word but not all of them (上海 天气, 北京 天气)."""
    by_word = {}
    for q in queries:
        for w in set(q.split()):
            by_word.setdefault(w, []).append(q)
    shared = sorted(w for w, qs in by_word.items() if len(qs) >= 2)
    pairs = set()
    while len(pairs) < DIFFERENT_PAIRS:
        a, b = rng.sample(by_word[rng.choice(shared)], 2)
        if sorted(meaningful(a)) != sorted(meaningful(b)):
            pairs.add((min(a, b), max(a, b)))
    return sorted(pairs)


def main():
    rng = random.Random(13)
    jieba.setLogLevel(60)
    words = list(word_list())
    chinese = chinese_queries(rng)
    queries = sample_queries() + chinese + latin_queries(rng, chinese)
    with open(os.path.join(HERE, 'queries.txt'), 'w', encoding='utf-8') as f:
        f.write(''.join(q + '\n' for q in queries))
    with open(os.path.join(HERE, 'apart.txt'), 'w', encoding='utf-8') as f:
        for a, b in reversed_pairs(words):
            f.write('reversed\t%s\t%s\n' % (a, b))
        for a, b in different_pairs(rng, chinese):
            f.write('different\t%s\t%s\n' % (a, b))


if __name__ == '__main__':
    main()
