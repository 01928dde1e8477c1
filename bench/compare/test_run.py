#!/usr/bin/python3
"""The checks run.py passes or fails a run on, and its query maker.
usage: /usr/bin/python3 -m unittest discover -s bench/compare"""
import os
import tempfile
import unittest

import run


class Files:
    """Writes each text to a temporary file; removed on exit."""

    def __init__(self, *texts):
        self.dir = tempfile.TemporaryDirectory()
        self.paths = []
        for i, text in enumerate(texts):
            self.paths.append(os.path.join(self.dir.name, str(i)))
            with open(self.paths[-1], 'w', encoding='utf-8') as f:
                f.write(text)

    def __enter__(self):
        return self.paths

    def __exit__(self, *_):
        self.dir.cleanup()


class AgreementTest(unittest.TestCase):
    def f1(self, a, b):
        with Files(a, b) as (pa, pb):
            return run.agreement(pa, pb)[0]

    def test_counts_only_cuts_between_han(self):
        self.assertEqual(self.f1('我们 在 北京 when\n', '我们 在 北京 w h e n\n'), 1.0)
        # three cuts against one, one shared: F1 = 2*1 / (2*1 + 2)
        self.assertEqual(self.f1('北京 大学 学生 会\n', '北京大学 学生会\n'), 0.5)

    def test_skips_lines_whose_characters_differ(self):
        self.assertEqual(self.f1('北京 大学\n北京\n', '北京 大学\n南 京\n'), 1.0)

    def test_refuses_different_line_counts(self):
        self.assertIsNone(self.f1('北京\n大学\n', '北京\n'))


class WithinCharactersTest(unittest.TestCase):
    def share(self, a, b):
        with Files(a, b) as (pa, pb):
            return run.within_characters(pa, pb)

    def test_dropped_characters_pass_and_added_ones_fail(self):
        self.assertEqual(self.share('请求发出\n', '发出 的 请求\n'), 1.0)
        self.assertEqual(self.share('请求请求\n', '的 请求\n'), 0.0)


class QueriesTest(unittest.TestCase):
    def test_pieces_are_short_han_and_replayable(self):
        lines = ['命令替换可以嵌套，当使用旧式的反引号替换形式时 bash 会删除所有后续的新行符'] * 20
        pieces = run.query_pieces(lines, 30, 7)
        self.assertEqual(pieces, run.query_pieces(lines, 30, 7))
        for piece in pieces:
            self.assertTrue(4 <= len(piece) <= 12 and run.HAN.search(piece), piece)

    def test_full_width_maps_printable_ascii_only(self):
        self.assertEqual(run.full_width('Ab1 中'), 'Ａｂ１ 中')


class ThreadedDifferencesTest(unittest.TestCase):
    def test_names_only_threaded_rows_that_differ_from_their_build(self):
        with Files('a\n', 'a\n', 'b\n', 'c\n', 'c\n') as paths:
            names = ['zeg-segment [x]', 'zeg-segment -t2 [x]', 'zeg-segment -t4 [x]',
                     'zeg-segment [y]', 'zeg-segment -t2 [y]']
            systems = [run.System(n, 'whole process', [], False) for n in names]
            outputs = dict(zip(names, paths))
            self.assertEqual([s.name for s in run.threaded_differences(systems, outputs)],
                             ['zeg-segment -t4 [x]'])


if __name__ == '__main__':
    unittest.main()
