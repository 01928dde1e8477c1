#!/usr/bin/python3
"""zeg beside its peers (cppjieba, ICU, python3-jieba, OpenCC) on the same
inputs in one run; prints one table with the ratios. See README.md.

usage: run.py [--zeg-build DIR]... [--zeg-threads N]... [--work DIR] [--runs N]
              [--text-mb MB] [--short-lines N] [--queries N] [--skip-deps]
"""
import argparse
import glob
import gzip
import os
import random
import re
import shutil
import statistics
import subprocess
import sys
import time
from collections import Counter

HERE = os.path.dirname(os.path.abspath(__file__))
ROOT = os.path.dirname(os.path.dirname(HERE))
JIEBA_DICT = '/usr/lib/python3/dist-packages/jieba/dict.txt'
PACKAGES = ['g++', 'time', 'libicu-dev', 'libopencc-dev', 'opencc', 'libopencc-data',
            'python3-jieba', 'manpages-zh']
NODEJIEBA = 'nodejieba@3.5.8'
HAN = re.compile(r'[\u4e00-\u9fff]')
PIECE = re.compile(r'[^\W_]+')  # runs of letters, digits and Han between punctuation
ROFF_ESCAPE = re.compile(r'\\f[BIRP1-4]|\\f\(..|\\\(..|\\[-&e|^ 0]|\\\*.|\\s[-+]?\d')
MIN_AGREEMENT = 0.90


def die(message):
    sys.exit('run.py: ' + message)


def sh(args, **kwargs):
    result = subprocess.run(args, **kwargs)
    if result.returncode != 0:
        die('failed (%d): %s' % (result.returncode, ' '.join(args)))
    return result


# --- set-up: packages, cppjieba's headers, the drivers ----------------------

def install_packages():
    missing = [p for p in PACKAGES if subprocess.run(
        ['dpkg-query', '-W', '-f=${Status}', p], capture_output=True, text=True
    ).stdout != 'install ok installed']
    if not shutil.which('npm'):  # often from Node's own packages, not Debian's npm
        missing.append('npm')
    if not missing:
        return
    print('installing:', ' '.join(missing), flush=True)
    sudo = [] if os.getuid() == 0 else ['sudo']
    env = dict(os.environ, DEBIAN_FRONTEND='noninteractive')
    sh(sudo + ['apt-get', 'update', '-qq'], env=env)
    sh(sudo + ['apt-get', 'install', '-y', '-qq', '--no-install-recommends'] + missing,
       env=env, stdout=subprocess.DEVNULL)


def fetch_cppjieba(work):
    """Unpacks the npm package nodejieba, which carries cppjieba's headers."""
    package = os.path.join(work, 'npm', 'package')
    if not os.path.isdir(package):
        npm = os.path.join(work, 'npm')
        os.makedirs(npm, exist_ok=True)
        sh(['npm', 'pack', '--silent', NODEJIEBA], cwd=npm, stdout=subprocess.DEVNULL)
        tarball = glob.glob(os.path.join(npm, 'nodejieba-*.tgz'))
        if len(tarball) != 1:
            die('npm pack gave no single nodejieba tarball in ' + npm)
        sh(['tar', 'xzf', tarball[0], '-C', npm])
    cppjieba = os.path.join(package, 'submodules', 'cppjieba')
    includes = [os.path.join(cppjieba, 'include'),
                os.path.join(cppjieba, 'deps', 'limonp', 'include')]
    for path in includes:
        if not os.path.isdir(path):
            die('%s: missing from the nodejieba package' % path)
    return includes


def build_drivers(work, includes):
    out = os.path.join(work, 'bin')
    os.makedirs(out, exist_ok=True)
    flags = ['-O2', '-std=c++17'] + ['-I' + i for i in includes]
    libs = ['-licui18n', '-licuuc', '-licudata', '-lopencc']
    drivers = {}
    for name, source in [('jieba_segment', 'JiebaSegment.cpp'),
                         ('icu_segment', 'IcuSegment.cpp'),
                         ('peer_normalize', 'PeerNormalize.cpp')]:
        binary = os.path.join(out, name)
        src = os.path.join(HERE, source)
        if not os.path.exists(binary) or os.path.getmtime(binary) < max(
                os.path.getmtime(src), os.path.getmtime(os.path.join(HERE, 'CompareDriver.h'))):
            sh(['g++'] + flags + ['-o', binary, src] + libs)
        drivers[name] = binary
    return drivers


# --- inputs ------------------------------------------------------------------

def manpage_lines(lang):
    """Chinese prose lines of the manpages-zh pages of one language: roff
    requests dropped, font and character escapes removed, and only lines at
    least half Han kept, so that option tables and examples stay out."""
    lines = []
    for path in sorted(glob.glob('/usr/share/man/%s/man*/*.gz' % lang)):
        try:
            with gzip.open(path) as f:
                page = f.read().decode('utf-8')
        except (OSError, UnicodeDecodeError):
            continue
        for line in page.split('\n'):
            if line.startswith(('.', "'")):
                continue
            line = ROFF_ESCAPE.sub('', line).strip()
            if len(line) >= 6 and 2 * len(HAN.findall(line)) >= len(line):
                lines.append(line)
    return lines


def opencc(config, lines):
    result = sh(['opencc', '-c', config], input='\n'.join(lines) + '\n',
                capture_output=True, text=True)
    converted = result.stdout.split('\n')[:len(lines)]
    if len(converted) != len(lines):
        die('opencc %s changed the number of lines' % config)
    return converted


def query_pieces(lines, count, seed):
    """Query-like pieces of 4 to 12 characters cut from the text's phrases."""
    rng = random.Random(seed)
    pieces = []
    for line in lines:
        for phrase in PIECE.findall(line):
            at = 0
            while len(phrase) - at >= 4:
                size = rng.randint(4, 12)
                piece = phrase[at:at + size]
                at += size
                if HAN.search(piece):
                    pieces.append(piece)
                    if len(pieces) == count:
                        return pieces
    die('the text gives only %d query-like pieces, %d wanted' % (len(pieces), count))


def full_width(text):
    return ''.join(chr(ord(c) + 0xFEE0) if '!' <= c <= '~' else c for c in text)


def messy_queries(lines, count, seed):
    """Traditional-Chinese queries as users type them: some with a Latin word
    (full width or upper case), some with stray blanks."""
    rng = random.Random(seed)
    queries = opencc('s2t.json', query_pieces(lines, count, seed))
    latin = sorted({w for line in lines for w in re.findall(r'\b[a-z][a-z0-9]{2,9}\b', line)})
    out = []
    for query in queries:
        if latin and rng.random() < 0.4:
            word = rng.choice(latin)
            word = word.upper() if rng.random() < 0.5 else word
            word = full_width(word) if rng.random() < 0.5 else word
            query = word + ' ' + query if rng.random() < 0.5 else query + word
        if rng.random() < 0.3:
            at = rng.randint(1, len(query) - 1)
            query = query[:at] + rng.choice([' ', '  ', '\u3000']) + query[at:]
        out.append(query)
    return out


def write_lines(path, lines):
    with open(path, 'w', encoding='utf-8') as f:
        f.write('\n'.join(lines) + '\n')


def make_inputs(work, megabytes, short_lines, queries):
    """The text: manpages-zh's simplified-Chinese pages, then its traditional
    ones converted to simplified, cut at MEGABYTES."""
    inputs = {k: os.path.join(work, k + '.txt') for k in ('text', 'short', 'queries', 'one')}
    if all(os.path.exists(p) for p in inputs.values()):
        return inputs
    lines = manpage_lines('zh_CN') + opencc('t2s.json', manpage_lines('zh_TW'))
    limit, size, text = int(megabytes * 1e6), 0, []
    for line in lines:
        size += len(line.encode('utf-8')) + 1
        if size > limit:
            break
        text.append(line)
    if size < limit:
        die('manpages-zh gives only %.1f MB of prose, %.1f MB wanted' % (size / 1e6, megabytes))
    write_lines(inputs['text'], text)
    write_lines(inputs['short'], query_pieces(text, short_lines, 1))
    write_lines(inputs['queries'], messy_queries(text, queries, 2))
    write_lines(inputs['one'], [text[0]])
    return inputs


# --- running -----------------------------------------------------------------

class Run:
    """One whole process: wall seconds, peak RSS (KiB), and the figure line
    an in-process driver prints. The peak comes from /usr/bin/time: a child
    forked from this script would count this script's own pages. The
    processor seconds are those of /usr/bin/time and the program it ran."""

    def __init__(self, args, stdin, stdout):
        peak_path = stdout + '.peak'
        args = ['/usr/bin/time', '-f', '%M', '-o', peak_path] + args
        # stderr to a file: a pipe nobody reads could block the child
        with open(stdin, 'rb') as fin, open(stdout, 'wb') as fout, \
                open(stdout + '.err', 'wb+') as ferr:
            start = time.monotonic()
            proc = subprocess.Popen(args, stdin=fin, stdout=fout, stderr=ferr)
            _, status, usage = os.wait4(proc.pid, 0)
            self.wall = time.monotonic() - start
            proc.returncode = os.waitstatus_to_exitcode(status)
            if proc.returncode != 0:
                ferr.seek(0)
                err = ferr.read().decode('utf-8', 'replace').strip()[-300:]
                die('%s exited %d: %s' % (' '.join(args), proc.returncode, err))
        with open(peak_path) as f:
            self.peak_kib = int(f.read().split()[-1])
        self.cpu = usage.ru_utime + usage.ru_stime
        self.figures = {}


class System:
    """A command and how to run it on an input. In-process systems are the
    drivers, which print their own load and run seconds; whole-process ones
    are timed from outside."""

    def __init__(self, name, kind, command, in_process):
        self.name, self.kind, self.command, self.in_process = name, kind, command, in_process

    def run(self, input_path, output_path):
        if self.in_process:
            figures_path = output_path + '.figures'
            run = Run(self.command + [input_path, output_path], os.devnull, figures_path)
            with open(figures_path) as f:
                run.figures = dict(kv.split('=') for kv in f.read().split())
        else:
            run = Run(self.command, input_path, output_path)
        return run


def measure(systems, input_path, work, tag, runs):
    """Runs every system RUNS times, interleaved, after one warm-up round.
    Returns {name: [Run]} and the output file of each system."""
    results = {s.name: [] for s in systems}
    outputs = {s.name: os.path.join(work, 'out', '%s.%s.txt' % (tag, slug(s.name)))
               for s in systems}
    os.makedirs(os.path.join(work, 'out'), exist_ok=True)
    for round_ in range(runs + 1):
        for system in systems:
            run = system.run(input_path, outputs[system.name])
            if round_:
                results[system.name].append(run)
        print('.', end='', flush=True)
    print(flush=True)
    return results, outputs


def slug(name):
    return re.sub(r'[^A-Za-z0-9]+', '-', name).strip('-')


def median(runs, key):
    return statistics.median(key(r) for r in runs)


# --- sanity checks -----------------------------------------------------------

def read_lines(path):
    with open(path, encoding='utf-8') as f:
        text = f.read()
    return (text[:-1] if text.endswith('\n') else text).split('\n')


def boundaries(line):
    """The characters of a segmented line (blanks dropped) and the offsets
    where one word ends and the next begins."""
    words = line.split()
    chars, cuts, at = ''.join(words), set(), 0
    for word in words[:-1]:
        at += len(word)
        cuts.add(at)
    return chars, cuts


def agreement(path_a, path_b):
    """F1 of the word boundaries of two segmentations of the same lines,
    counted between two Han characters (the Latin runs cppjieba cuts into
    letters are left out). Lines whose characters differ are skipped."""
    both = only = 0
    skipped = 0
    a_lines, b_lines = read_lines(path_a), read_lines(path_b)
    if len(a_lines) != len(b_lines):
        return None, 'line counts differ: %d vs %d' % (len(a_lines), len(b_lines))
    for la, lb in zip(a_lines, b_lines):
        chars_a, cuts_a = boundaries(la)
        chars_b, cuts_b = boundaries(lb)
        if chars_a != chars_b:
            skipped += 1
            continue
        han = {i for i in range(1, len(chars_a))
               if HAN.match(chars_a[i - 1]) and HAN.match(chars_a[i])}
        cuts_a &= han
        cuts_b &= han
        both += len(cuts_a & cuts_b)
        only += len(cuts_a ^ cuts_b)
    f1 = 2 * both / (2 * both + only) if both + only else 0.0
    return f1, '%d lines skipped (characters differ)' % skipped


def within_characters(path_a, path_b):
    """Share of lines whose normalised form A holds only characters of B's,
    order and blanks aside: both fold case, width and script alike, and zeg
    then drops stop characters."""
    a_lines, b_lines = read_lines(path_a), read_lines(path_b)
    if len(a_lines) != len(b_lines):
        return 0.0
    same = sum(not Counter(''.join(a.split())) - Counter(''.join(b.split()))
               for a, b in zip(a_lines, b_lines))
    return same / len(a_lines)


# --- the table -----------------------------------------------------------------

def seconds(system, run):
    """What a figure is taken from: a driver's own run seconds, or zeg's wall."""
    return float(run.figures['run_s']) if system.in_process else run.wall


def cpu_seconds(system, run):
    return float(run.figures['cpu_s']) if system.in_process else run.cpu


def paired(results, system, base, key):
    """Median over the rounds of key(base) / key(system): each round ran both
    one after the other, so the ratio rides out the machine's drift."""
    return statistics.median(key(base, b) / key(system, a)
                             for a, b in zip(results[system.name], results[base.name]))


def print_table(title, systems, results, unit, scale, figure_name, zeg_names):
    peers = [s for s in systems if s.name not in zeg_names]
    fastest = min(peers, key=lambda s: median(results[s.name], lambda r: seconds(s, r)))
    fastest_cpu = min(peers, key=lambda s: median(results[s.name], lambda r: cpu_seconds(s, r)))
    zegs = [s for s in systems if s.name in zeg_names]
    # zeg counts the same input as the peers do
    amount = float(results[fastest.name][0].figures[unit]) / scale
    print('\n' + title)
    header = '%-40s %-13s %11s %8s %7s %8s %9s %9s %10s %7s %9s' % (
        'system', 'measured', figure_name, 'run s', 'spread', 'load s', 'process s',
        'peak MiB', 'x fastest', 'cpu s', 'x by cpu')
    print(header + (' %10s %10s' % ('x 1st zeg', 'by cpu') if len(zegs) > 1 else ''))
    for s in systems:
        runs = results[s.name]
        run_s = median(runs, lambda r: seconds(s, r))
        spread = (max(seconds(s, r) for r in runs) - min(seconds(s, r) for r in runs)) / run_s
        load = '%.3f' % median(runs, lambda r: float(r.figures['load_s'])) if s.in_process else '-'
        figure = '%.2f' % (amount / run_s) if scale > 1 else '%.0f' % (amount / run_s)
        line = '%-40s %-13s %11s %8.3f %6.0f%% %8s %9.3f %9.1f %10.3f %7.3f %9.3f' % (
            s.name, s.kind, figure, run_s, 100 * spread, load,
            median(runs, lambda r: r.wall), median(runs, lambda r: r.peak_kib) / 1024.0,
            paired(results, s, fastest, seconds), median(runs, lambda r: cpu_seconds(s, r)),
            paired(results, s, fastest_cpu, cpu_seconds))
        if len(zegs) > 1:
            line += ' %10.3f %10.3f' % (paired(results, s, zegs[0], seconds),
                                        paired(results, s, zegs[0], cpu_seconds))
        print(line)


def print_startup(systems, results, zeg_names):
    print('\n4. Start-up: whole process on a 1-line input (medians; x fastest: time over the '
          'fastest peer\'s)')
    peers = [s for s in systems if s.name not in zeg_names]
    fastest = min(peers, key=lambda s: median(results[s.name], lambda r: r.wall))
    print('%-40s %10s %9s %10s' % ('system', 'wall ms', 'peak MiB', 'x fastest'))
    for s in systems:
        print('%-40s %10.1f %9.1f %10.3f' % (
            s.name, median(results[s.name], lambda r: r.wall) * 1000,
            median(results[s.name], lambda r: r.peak_kib) / 1024.0,
            1 / paired(results, s, fastest, lambda _, r: r.wall)))


# --- main ------------------------------------------------------------------------

def zeg_systems(builds, thread_counts):
    """Each build's two tools on one thread, then on each of THREAD_COUNTS
    (their --threads; the peers keep one thread, so those rows say what a
    whole machine gives, not what a core does)."""
    seg, norm = [], []
    for build in builds:
        label = build if sum(os.path.basename(b) == os.path.basename(build)
                             for b in builds) > 1 else os.path.basename(build)
        paths = [os.path.join(build, 'bin', 'zeg-segment'), os.path.join(build, 'bin', 'zeg-normalize'),
                 os.path.join(build, 'data', 'segmenter.conf'),
                 os.path.join(build, 'data', 'normalizer.ini')]
        for path in paths:
            if not os.path.exists(path):
                die('%s: missing (build the tools and zeg_default_data in %s)' % (path, build))
        for threads in [1] + thread_counts:
            flag = [] if threads == 1 else ['--threads', str(threads)]
            suffix = '' if threads == 1 else ' -t%d' % threads
            seg.append(System('zeg-segment%s [%s]' % (suffix, label), 'whole process',
                              [paths[0], '--config', paths[2]] + flag, False))
            norm.append(System('zeg-normalize --mode 252%s [%s]' % (suffix, label),
                               'whole process',
                               [paths[1], '--config', paths[3], '--mode', '252'] + flag, False))
    return seg, norm


def threaded_differences(systems, outputs):
    """The threaded rows (named '... -tN [build]') whose output is not byte
    for byte that of the same build's one-thread row."""
    single = {}
    for s in systems:
        base = re.sub(r' -t\d+ \[', ' [', s.name)
        if base == s.name:
            single[base] = outputs[s.name]
    for s in systems:
        base = re.sub(r' -t\d+ \[', ' [', s.name)
        if base != s.name:
            with open(outputs[s.name], 'rb') as a, open(single[base], 'rb') as b:
                if a.read() != b.read():
                    yield s


def parse_args():
    parser = argparse.ArgumentParser(description=__doc__.split('\n\n')[0])
    parser.add_argument('--zeg-build', action='append', metavar='DIR',
                        help='a zeg build tree (bin/, data/); repeat to compare builds '
                             '(default: build/ of this checkout)')
    parser.add_argument('--work', default='/tmp/zeg-compare',
                        help='where packages, drivers, inputs and outputs go')
    parser.add_argument('--runs', type=int, default=5, help='timed runs of each system')
    parser.add_argument('--text-mb', type=float, default=4.5, help='size of the text in MB')
    parser.add_argument('--short-lines', type=int, default=150000)
    parser.add_argument('--queries', type=int, default=100000)
    parser.add_argument('--zeg-threads', action='append', type=int, default=[], metavar='N',
                        help='also run zeg\'s tools with --threads N (2 or more); repeatable')
    parser.add_argument('--skip-deps', action='store_true',
                        help='do not check or install Debian packages')
    args = parser.parse_args()
    if args.runs < 1:
        parser.error('--runs must be at least 1')
    if any(n < 2 or n > 64 for n in args.zeg_threads):
        parser.error('--zeg-threads takes 2 to 64')
    args.zeg_threads = sorted(set(args.zeg_threads))
    args.zeg_build = [os.path.abspath(b) for b in args.zeg_build or [os.path.join(ROOT, 'build')]]
    if len(set(args.zeg_build)) != len(args.zeg_build):
        parser.error('--zeg-build names the same tree twice')
    return args


def main():
    args = parse_args()
    os.makedirs(args.work, exist_ok=True)
    if not args.skip_deps:
        install_packages()
    drivers = build_drivers(args.work, fetch_cppjieba(args.work))
    inputs = make_inputs(args.work, args.text_mb, args.short_lines, args.queries)
    zeg_seg, zeg_norm = zeg_systems(args.zeg_build, args.zeg_threads)
    zeg_names = {s.name for s in zeg_seg + zeg_norm}
    cppjieba = System('cppjieba MPSegment (no HMM)', 'in process',
                      [drivers['jieba_segment'], JIEBA_DICT], True)
    icu = System('ICU word BreakIterator', 'in process', [drivers['icu_segment']], True)
    pyjieba = System('python3-jieba cut(HMM=False)', 'in process',
                     [os.path.join(HERE, 'jieba_segment.py')], True)
    peer_norm = System('ICU+OpenCC+cppjieba+sort', 'in process',
                       [drivers['peer_normalize'], JIEBA_DICT], True)
    segmenters = zeg_seg + [cppjieba, icu, pyjieba]
    normalisers = zeg_norm + [peer_norm]

    text_mb = os.path.getsize(inputs['text']) / 1e6
    print('inputs in %s: text %.2f MB, %d short lines, %d queries; %d timed runs each' % (
        args.work, text_mb, args.short_lines, args.queries, args.runs), flush=True)
    text_runs, text_out = measure(segmenters, inputs['text'], args.work, 'text', args.runs)
    short_runs, short_out = measure(segmenters, inputs['short'], args.work, 'short', args.runs)
    norm_runs, norm_out = measure(normalisers, inputs['queries'], args.work, 'queries', args.runs)
    one_runs, _ = measure(segmenters + normalisers, inputs['one'], args.work, 'one', args.runs)

    print_table('1. Segmentation of %.2f MB of manpages-zh prose (medians; x fastest: speed '
                'over the fastest peer\'s, paired by round)' % text_mb,
                segmenters, text_runs, 'bytes', 1e6, 'MB/s', zeg_names)
    print_table('2. %d query-like lines of 4-12 characters' % args.short_lines,
                segmenters, short_runs, 'lines', 1, 'lines/s', zeg_names)
    print_table('3. Normalisation of %d traditional-Chinese queries' % args.queries,
                normalisers, norm_runs, 'lines', 1, 'queries/s', zeg_names)
    print_startup(segmenters + normalisers, one_runs, zeg_names)

    print('\nSanity (word-boundary F1 between Han characters, against cppjieba):')
    healthy = True
    for tag, outs in (('text', text_out), ('short lines', short_out)):
        for s in segmenters:
            if s is cppjieba:
                continue
            f1, note = agreement(outs[s.name], outs[cppjieba.name])
            if f1 is None:
                healthy = False
                print('  %-12s %-40s %s' % (tag, s.name, note))
                continue
            low = s.name in zeg_names and f1 < MIN_AGREEMENT
            healthy = healthy and not low
            print('  %-12s %-40s %6.1f%%  %s%s' % (tag, s.name, 100 * f1, note,
                                                    '  TOO LOW' if low else ''))
    for s in zeg_norm:
        share = within_characters(norm_out[s.name], norm_out[peer_norm.name])
        low = share < MIN_AGREEMENT
        healthy = healthy and not low
        print('  queries      %-40s %6.1f%% of lines hold only characters of the peers\' line%s' % (
            s.name, 100 * share, '  TOO LOW' if low else ''))
    for tag, outs, systems in (('text', text_out, zeg_seg), ('short lines', short_out, zeg_seg),
                               ('queries', norm_out, zeg_norm)):
        for s in threaded_differences(systems, outs):
            healthy = False
            print('  %-12s %-40s differs from the same build on one thread' % (tag, s.name))
    if not healthy:
        die('the outputs disagree more than expected; see %s/out' % args.work)


if __name__ == '__main__':
    main()
