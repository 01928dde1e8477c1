package com.orvane.dw.comm.zeg;

import static java.nio.charset.StandardCharsets.UTF_8;
import static org.junit.jupiter.api.Assertions.assertArrayEquals;
import static org.junit.jupiter.api.Assertions.assertEquals;

import java.io.ByteArrayOutputStream;
import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.Arrays;
import java.util.List;
import java.util.Random;
import org.junit.jupiter.api.BeforeAll;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.io.TempDir;

/**
 * zeg-normalize must write, for every line, the UTF-8 bytes of what normalize returns for that
 * line read as a Java string. Shares a JVM with NormalizerTest (same configuration).
 */
class ToolAgreementTest {

    @TempDir Path dir;

    @BeforeAll
    static void initialize() {
        Normalizer.initialize(TestData.defaultConfig());
    }

    /** Runs the tool on `input`; returns its standard output. */
    private byte[] runTool(String config, int mode, byte[] input) throws Exception {
        Path in = dir.resolve("in.txt");
        Path out = dir.resolve("out.txt");
        Path err = dir.resolve("err.txt");
        Files.write(in, input);
        Process tool = new ProcessBuilder(TestData.tool(), "--config", config,
                "--mode", Integer.toString(mode))
                .redirectInput(in.toFile())
                .redirectOutput(out.toFile())
                .redirectError(err.toFile())
                .start();
        assertEquals(0, tool.waitFor(), () -> "zeg-normalize failed: " + read(err));
        return Files.readAllBytes(out);
    }

    private static String read(Path path) {
        try {
            return Files.readString(path, UTF_8);
        } catch (IOException e) {
            return e.toString();
        }
    }

    /** The lines of `bytes` as the tool reads them: cut at LF, a CR before the LF dropped. */
    private static List<byte[]> lines(byte[] bytes) {
        List<byte[]> lines = new ArrayList<>();
        int start = 0;
        for (int i = 0; i <= bytes.length; ++i) {
            if (i == bytes.length && i == start) {
                break;
            }
            if (i == bytes.length || bytes[i] == '\n') {
                int end = (i > start && bytes[i - 1] == '\r') ? i - 1 : i;
                lines.add(Arrays.copyOfRange(bytes, start, end));
                start = i + 1;
            }
        }
        return lines;
    }

    private void assertToolAgrees(byte[] input, int mode) throws Exception {
        List<byte[]> in = lines(input);
        ByteArrayOutputStream expected = new ByteArrayOutputStream();
        for (byte[] line : in) {
            expected.write(Normalizer.normalize(new String(line, UTF_8), mode).getBytes(UTF_8));
            expected.write('\n');
        }
        byte[] actual = runTool(TestData.defaultConfig(), mode, input);
        assertEquals(in.size(), lines(actual).size(), "one output line per input line");
        assertEquals(new String(expected.toByteArray(), UTF_8), new String(actual, UTF_8));
        assertArrayEquals(expected.toByteArray(), actual);
    }

    private static byte[] concat(byte[]... parts) {
        ByteArrayOutputStream out = new ByteArrayOutputStream();
        for (byte[] part : parts) {
            out.writeBytes(part);
        }
        return out.toByteArray();
    }

    private static byte[] bytes(int... values) {
        byte[] b = new byte[values.length];
        for (int i = 0; i < values.length; ++i) {
            b[i] = (byte) values[i];
        }
        return b;
    }

    @Test
    void sampleQueriesAgreeInEveryMode() throws Exception {
        byte[] samples = Files.readAllBytes(TestData.dataDir().resolve("sample-queries.txt"));
        for (int mode : new int[] {Normalizer.USUAL, 4, 8 | 16, 32, 64, 128, 255}) {
            assertToolAgrees(samples, mode);
        }
    }

    @Test
    void awkwardBytesAgreeAndNoLineIsLost() throws Exception {
        byte[] input = concat(
                "北京 大学\r\n".getBytes(UTF_8),
                bytes('a', 0, 'b', '\n'),                          // NUL
                bytes('x', 0xFF, 0xC3, '(', 0xE4, 0xB8, '\n'),     // invalid UTF-8
                bytes(0xED, 0xA0, 0x80, 'y', 0xED, 0xB0, 0x80, '\n'),  // encoded surrogates
                bytes(0xF0, 0x9F, 0x98, 0x80, 'z', 0xC0, 0x80, '\n'),  // emoji, overlong NUL
                "\n\r\n".getBytes(UTF_8),                          // empty lines
                "a".repeat(511).getBytes(UTF_8), bytes('\n'),
                "a".repeat(512).getBytes(UTF_8), bytes('\n'),
                "中".repeat(170).getBytes(UTF_8), bytes('A', '\n'),
                "中".repeat(170).getBytes(UTF_8), bytes('A', 'B', '\n'),
                "x".repeat(100_000).getBytes(UTF_8), bytes('\n'),
                bytes(0xE4, 0xB8, 0xAD), "a".repeat(509).getBytes(UTF_8), bytes('\n'),
                "軟體下載 最後一行".getBytes(UTF_8));                 // no final newline
        assertToolAgrees(input, Normalizer.USUAL);
        assertToolAgrees(input, 4);
    }

    @Test
    void randomBytesAgree() throws Exception {
        Random random = new Random(808);
        ByteArrayOutputStream input = new ByteArrayOutputStream();
        for (int line = 0; line < 300; ++line) {
            int length = random.nextInt(line % 30 == 0 ? 700 : 40);
            for (int k = 0; k < length; ++k) {
                int b = random.nextInt(256);
                input.write(b == '\n' ? 'n' : b);
            }
            input.write('\n');
        }
        assertToolAgrees(input.toByteArray(), Normalizer.USUAL);
        assertToolAgrees(input.toByteArray(), 4 | 8);
    }

    /**
     * With MAX_INPUT_LENGTH=1 every query of two or more GBK bytes comes back as it was given, so
     * the tool's output shows exactly how it read each line: it must read it as Java does.
     */
    @Test
    void theToolDecodesUtf8AsJavaDoes() throws Exception {
        Path data = TestData.dataDir();
        Path config = dir.resolve("tiny.ini");
        Files.writeString(config, "[SERVER]\n"
                + "WS_CONFIG=" + data.resolve("segmenter.conf") + "\n"
                + "STOP_FILE=" + data.resolve("stopwords.txt") + "\n"
                + "SYNONYMS_FILE=" + data.resolve("synonyms.txt") + "\n"
                + "MAX_INPUT_LENGTH=1\n");
        int[] interesting = {0x00, 0x41, 0x7F, 0x80, 0xBF, 0xC0, 0xC1, 0xC2, 0xDF, 0xE0, 0xED,
            0xEF, 0xF0, 0xF4, 0xF5, 0xF8, 0xFF, 0x90, 0x9F, 0xA0};
        Random random = new Random(1808);
        ByteArrayOutputStream input = new ByteArrayOutputStream();
        ByteArrayOutputStream expected = new ByteArrayOutputStream();
        for (int line = 0; line < 2000; ++line) {
            ByteArrayOutputStream bytes = new ByteArrayOutputStream();
            bytes.write('a');
            bytes.write('b');
            int length = random.nextInt(12);
            for (int k = 0; k < length; ++k) {
                int b = random.nextBoolean() ? interesting[random.nextInt(interesting.length)]
                        : random.nextInt(256);
                bytes.write(b == '\n' || b == '\r' ? 'r' : b);
            }
            input.writeBytes(bytes.toByteArray());
            input.write('\n');
            expected.writeBytes(new String(bytes.toByteArray(), UTF_8).getBytes(UTF_8));
            expected.write('\n');
        }
        byte[] actual = runTool(config.toString(), 4, input.toByteArray());
        assertEquals(new String(expected.toByteArray(), UTF_8), new String(actual, UTF_8));
        assertArrayEquals(expected.toByteArray(), actual);
    }
}
