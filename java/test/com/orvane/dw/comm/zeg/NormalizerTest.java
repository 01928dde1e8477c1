package com.orvane.dw.comm.zeg;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertNotNull;
import static org.junit.jupiter.api.Assertions.assertTrue;
import static org.junit.jupiter.api.Assumptions.assumeTrue;

import java.nio.charset.StandardCharsets;
import java.util.ArrayList;
import java.util.Arrays;
import java.util.Collections;
import java.util.List;
import java.util.Random;
import java.util.stream.Stream;
import org.junit.jupiter.api.BeforeAll;
import org.junit.jupiter.api.DynamicTest;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.TestFactory;

/** The library through the Java API, initialised with the default data. */
class NormalizerTest {

    private static final int USUAL = Normalizer.USUAL;

    @BeforeAll
    static void initialize() {
        Normalizer.initialize(TestData.defaultConfig());
    }

    // query | mode | expected. None of these depends on how the dictionaries segment: without
    // bits 64 and 128 the query is only split at spaces, and the other rows hold for any
    // segmentation that keeps runs of ASCII letters and space-separated pieces apart.
    private static final String CASES = """
            ＡＢｃ               | 8   | ABc
            ＡＢｃ               | 12  | abc
            ＡＢｃ               | 10  | ABC
            ＡＢｃ               | 14  | abc
            ＡＢｃ               | 16  | ＡＢｃ
            Hello World         | 2   | HELLOWORLD
            Hello World         | 4   | helloworld
            Hello World         | 1   | HelloWorld
            軟體下載             | 16  | 软体下载
            軟體下載             | 8   | 軟體下載
            北京\u3000大学        | 8   | 北京大学
            北京\u3000大学        | 16  | 北京\u3000大学
            北京的天气？          | 32  | 北京的天气
            北京的天气？          | 40  | 北京的天气
            北京的天气？          | 16  | 北京的天气？
            《红楼梦》在线        | 32  | 红楼梦在线
            ｉＰｈｏｎｅ　１３ 價格 | 28  | iphone13价格
            ｅｍａｉｌ           | 76  | 电子邮件
            EMAIL               | 64  | 电子邮件
            E-Mail              | 64  | 电子邮件
            北大                 | 64  | 北京大学
            北大                 | 4   | 北大
            wifi 密码            | 64  | 无线网络 密码
            密码 WiFi            | 64  | 密码 无线网络
            b a                 | 128 | ba
            a b                 | 128 | ba
            y x                 | 128 | xy
            b B                 | 128 | Bb
            B b                 | 128 | Bb
            a 的 b               | 128 | ba
            A 的 B               | 252 | ba
            的                   | 252 |
            ？！“”               | 252 |
            x                   | 0   |
            x                   | -1  |
            x                   | -2147483648 |
            X                   | 2147483647 | x
            €                   | 4   | €
            한국어abc             | 4   | abc
            a😀b                | 4   | ab
            a\uD800b            | 4   | ab
            a\uDC00\uD800b      | 4   | ab
            a\u0000b            | 4   | ab
            a\uFFFF\uFFFEb      | 4   | ab
            \uFEFF中文𠀀          | 4   | 中文
            """;

    // Rows that hold only with the default dictionaries' segmentation (北京/大学, 软件/下载,
    // 笔记本/电脑, ...): check them again whenever the dictionaries change.
    private static final String DICTIONARY_CASES = """
            北京大学             | 252 | 北京大学
            大学 北京            | 252 | 北京大学
            北大                 | 252 | 北京大学
            软件下载             | 252 | 软件下载
            下载 软件            | 252 | 软件下载
            手提電腦             | 252 | 笔记本电脑
            上海的天气？          | 252 | 上海天气
            天气 上海            | 252 | 上海天气
            """;

    // Queries that must share one key under USUAL, whatever the segmentation.
    private static final String[][] SAME_KEY = {
        {"北京大学", "北京大學", "北大"},
        {"电子邮件", "電子郵件", "ｅｍａｉｌ", "Email", "E-MAIL"},
        {"无线网络", "ＷＩＦＩ", "wifi"},
        {"上海 天气", "天气 上海", "天氣\u3000上海", "上海，天气！"},
        {"iphone 13 价格", "价格 iPhone 13", "13 ＩＰＨＯＮＥ 價格"},
    };

    private static Stream<DynamicTest> table(String rows) {
        return rows.lines().map(row -> {
            String[] fields = row.split("\\|", -1);
            String query = fields[0].trim();
            int mode = Integer.parseInt(fields[1].trim());
            String expected = fields[2].trim();
            return DynamicTest.dynamicTest(query + " | " + mode, () ->
                    assertEquals(expected, Normalizer.normalize(query, mode)));
        });
    }

    @TestFactory
    Stream<DynamicTest> caseTable() {
        return table(CASES);
    }

    @TestFactory
    Stream<DynamicTest> dictionaryCaseTable() {
        assumeTrue(TestData.dictionaryCases(), "dictionary cases are switched off");
        return table(DICTIONARY_CASES);
    }

    @Test
    void equivalentQueriesShareOneKey() {
        for (String[] group : SAME_KEY) {
            String key = Normalizer.normalize(group[0], USUAL);
            assertTrue(!key.isEmpty(), group[0]);
            for (String query : group) {
                assertEquals(key, Normalizer.normalize(query, USUAL), query);
            }
        }
    }

    @Test
    void canonicalOrderIgnoresTheOrderOfSpaceSeparatedPieces() {
        // Spaces between Chinese characters go before segmentation under the default data,
        // so the Chinese pieces are ones that cut back into themselves in any order
        // (北京 大学 would become the one word 北京大学).
        List<String> pieces = Arrays.asList("北京", "天气", "mp3", "下载", "Ｘ");
        Random random = new Random(8);
        for (int mode : new int[] {128, 128 | 4, 128 | 16 | 8, USUAL}) {
            String key = Normalizer.normalize(String.join(" ", pieces), mode);
            for (int round = 0; round < 20; ++round) {
                List<String> shuffled = new ArrayList<>(pieces);
                Collections.shuffle(shuffled, random);
                // The ideographic space is a separator only once folded to a space.
                boolean folded = (mode & Normalizer.FULL_TO_HALF) != 0;
                String query = String.join(folded && round % 2 == 1 ? "\u3000 " : " ", shuffled);
                assertEquals(key, Normalizer.normalize(query, mode), query + " | " + mode);
            }
        }
    }

    @Test
    void canonicalOrderOnlyRearrangesCharacters() {
        for (String query : new String[] {"北京大学 录取 分数线", "番茄炒蛋做法", "mp3 下载 免费"}) {
            char[] plain = Normalizer.normalize(query, 4).toCharArray();
            char[] canonical = Normalizer.normalize(query, 128 | 4).toCharArray();
            Arrays.sort(plain);
            Arrays.sort(canonical);
            assertEquals(new String(plain), new String(canonical), query);
        }
    }

    @Test
    void queriesOfMoreThan511BytesAreNotNormalised() {
        // Modified UTF-8 lengths: 'a' 1, '中' 3, U+0000 2, a supplementary character 6.
        assertEquals("a".repeat(511), Normalizer.normalize("a".repeat(511), 4));
        assertEquals("", Normalizer.normalize("a".repeat(512), 4));
        assertEquals("中".repeat(170) + "a", Normalizer.normalize("中".repeat(170) + "A", 4));
        assertEquals("", Normalizer.normalize("中".repeat(170) + "ab", 4));
        assertEquals("a".repeat(509), Normalizer.normalize("a".repeat(509) + "\0", 4));
        assertEquals("", Normalizer.normalize("a".repeat(510) + "\0", 4));
        assertEquals("a".repeat(505), Normalizer.normalize("😀" + "a".repeat(505), 4));
        assertEquals("", Normalizer.normalize("😀" + "a".repeat(506), 4));
        assertEquals("", Normalizer.normalize("中".repeat(100_000 / 3), USUAL));
    }

    @Test
    void emptyBlankAndNullQueriesGiveTheEmptyString() {
        for (String query : new String[] {"", " ", "\u3000\u3000", " \t ", null}) {
            assertEquals("", Normalizer.normalize(query, USUAL), String.valueOf(query));
        }
        assertEquals("ab", Normalizer.normalize("  a   b  ", 4));
    }

    // What comes back went through GBK: no surrogates, no U+0000, no U+FFFD, and it fits the
    // library's buffer. (Java's own GBK tables differ from the library's in a few symbols, so
    // they cannot be the judge.)
    private static boolean isCleanResult(String result) {
        return result.getBytes(StandardCharsets.UTF_8).length < 2048
                && result.chars().noneMatch(
                        c -> c == 0 || c == 0xFFFD || Character.isSurrogate((char) c));
    }

    @Test
    void anyStringAndAnyModeGiveCleanTextAndNeverFail() {
        Random random = new Random(88);
        int[] modes = {USUAL, 4, 8, 16, 32, 64, 128, 255, 0, -7, Integer.MAX_VALUE, 1 << 20};
        for (int round = 0; round < 2000; ++round) {
            StringBuilder query = new StringBuilder();
            int length = random.nextInt(round % 50 == 0 ? 400 : 30);
            for (int k = 0; k < length; ++k) {
                query.append(randomChar(random));
            }
            // Random modes are kept positive: each invalid one prints two lines.
            int mode = round % 3 == 0 ? random.nextInt(Integer.MAX_VALUE) + 1
                    : modes[round % modes.length];
            String result = Normalizer.normalize(query.toString(), mode);
            assertNotNull(result);
            assertTrue(isCleanResult(result), () -> "not clean: " + result);
        }
    }

    // Mostly characters a query would hold, with surrogates, controls and others mixed in.
    private static char randomChar(Random random) {
        switch (random.nextInt(6)) {
            case 0: return (char) (0x20 + random.nextInt(0x5F));
            case 1: return (char) (0x4E00 + random.nextInt(0x5200));
            case 2: return (char) (0xFF01 + random.nextInt(0x5E));
            case 3: return (char) (0xD800 + random.nextInt(0x800));
            case 4: return (char) random.nextInt(0x20);
            default: return (char) random.nextInt(0x10000);
        }
    }

    @Test
    void unitializeChangesNothing() {
        String before = Normalizer.normalize("軟體下載", USUAL);
        Normalizer.unitialize();
        assertEquals(before, Normalizer.normalize("軟體下載", USUAL));
        assertTrue(!before.isEmpty());
    }
}
