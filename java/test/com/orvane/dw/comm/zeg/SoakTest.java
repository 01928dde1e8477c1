package com.orvane.dw.comm.zeg;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertNull;
import static org.junit.jupiter.api.Assertions.assertTrue;

import java.io.IOException;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.List;
import java.util.Random;
import org.junit.jupiter.api.Test;

/**
 * Runs in a JVM of its own with a fixed, pre-touched heap, so that what the process holds can
 * only grow on the native side: the same queries are normalised pass after pass (5 million
 * calls in all, zeg.soakQueries), each pass must give the first pass's results, and after the
 * warm-up passes the resident set may not grow by more than zeg.soakGrowthKb.
 */
class SoakTest {

    private static final int QUERIES_PER_PASS = 100_000;
    private static final int WARM_UP_PASSES = 3;

    @Test
    void resultsAndMemoryStayTheSameCallAfterCall() throws Exception {
        Normalizer.initialize(TestData.defaultConfig());
        assertNull(Normalizer.initializationFailure());
        List<String> queries = queries();
        int[] modes = {Normalizer.USUAL, Normalizer.USUAL | Normalizer.CANONICAL_ORDER, 0, 255};
        int passes = Math.max(WARM_UP_PASSES + 1, Integer.getInteger("zeg.soakQueries", 5_000_000)
                / QUERIES_PER_PASS);
        long growthKb = Long.getLong("zeg.soakGrowthKb", 32 * 1024);
        long first = 0;
        long settledKb = 0;
        long worstKb = 0;
        for (int pass = 0; pass < passes; pass++) {
            long hash = pass(queries, modes);
            if (pass == 0) {
                first = hash;
            }
            assertEquals(first, hash, "pass " + pass + " differs from the first");
            long rss = residentKb();
            if (pass == WARM_UP_PASSES - 1) {
                settledKb = rss;
            }
            if (pass >= WARM_UP_PASSES) {
                worstKb = Math.max(worstKb, rss - settledKb);
            }
        }
        System.out.printf("soak: %d passes of %d queries, resident %d kB after warm-up, "
                + "growth at most %d kB%n", passes, queries.size(), settledKb, worstKb);
        assertTrue(worstKb <= growthKb, "resident set grew by " + worstKb + " kB after warm-up");
    }

    /** A hash of every result of one pass, in order. */
    private static long pass(List<String> queries, int[] modes) {
        long hash = 1125899906842597L;
        for (int i = 0; i < queries.size(); i++) {
            String out = Normalizer.normalize(queries.get(i), modes[i % modes.length]);
            hash = 31 * hash + (out == null ? -1 : out.hashCode());
        }
        return hash;
    }

    /** The sample queries, random mixes of them and noise, and a few too long to take. */
    private static List<String> queries() throws IOException {
        List<String> samples = Files.readAllLines(
                TestData.dataDir().resolve("sample-queries.txt"), StandardCharsets.UTF_8);
        String noise = "的 　ＡＢ12!？軟體下載免费北京大学,.-%\\uD83D\\uDE00\\u0000";
        Random random = new Random(20261123);
        List<String> queries = new ArrayList<>(samples);
        while (queries.size() < QUERIES_PER_PASS) {
            StringBuilder q = new StringBuilder();
            int parts = queries.size() % 997 == 0 ? 80 : 1 + random.nextInt(6);
            for (int n = parts; n > 0; n--) {
                q.append(samples.get(random.nextInt(samples.size())));
                q.append(noise.charAt(random.nextInt(noise.length())));
            }
            queries.add(q.toString());
        }
        return queries;
    }

    private static long residentKb() throws IOException {
        for (String line : Files.readAllLines(Path.of("/proc/self/status"))) {
            if (line.startsWith("VmRSS:")) {
                return Long.parseLong(line.replaceAll("[^0-9]", ""));
            }
        }
        throw new IOException("no VmRSS in /proc/self/status");
    }
}
