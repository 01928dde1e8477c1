package com.orvane.dw.comm.zeg;

import static org.junit.jupiter.api.Assertions.assertEquals;

import java.io.IOException;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.util.ArrayList;
import java.util.List;
import java.util.Random;
import java.util.concurrent.ExecutorService;
import java.util.concurrent.Executors;
import java.util.concurrent.Future;
import org.junit.jupiter.api.Test;

/**
 * Runs in a JVM of its own: 16 threads normalise real and random queries at once, and every
 * result equals the one a single thread got. zeg.stressQueries sets the queries per thread.
 */
class ThreadStressTest {

    private static final int THREADS = 16;

    @Test
    void manyThreadsGetTheSingleThreadResults() throws Exception {
        Normalizer.initialize(TestData.defaultConfig());
        assertEquals(null, Normalizer.initializationFailure());
        List<String> queries = queries(Integer.getInteger("zeg.stressQueries", 200_000));
        List<String> expected = new ArrayList<>(queries.size());
        for (String q : queries) {
            expected.add(Normalizer.normalize(q, Normalizer.USUAL));
        }
        ExecutorService pool = Executors.newFixedThreadPool(THREADS);
        List<Future<Integer>> mismatches = new ArrayList<>();
        for (int t = 0; t < THREADS; t++) {
            final int offset = t * 7919;
            mismatches.add(pool.submit(() -> {
                int wrong = 0;
                for (int k = 0; k < queries.size(); k++) {
                    int i = (k + offset) % queries.size();
                    if (!expected.get(i).equals(Normalizer.normalize(queries.get(i), Normalizer.USUAL))) {
                        wrong++;
                    }
                }
                return wrong;
            }));
        }
        pool.shutdown();
        for (Future<Integer> f : mismatches) {
            assertEquals(0, f.get());
        }
    }

    /** The sample queries, then random mixes of their characters, words and noise. */
    private static List<String> queries(int count) throws IOException {
        List<String> samples = Files.readAllLines(
                TestData.dataDir().resolve("sample-queries.txt"), StandardCharsets.UTF_8);
        String noise = "的 　ＡＢ12!？軟體下載免费北京大学\\uD83D\\uDE00\\u0000";
        Random random = new Random(20261123);
        List<String> queries = new ArrayList<>(samples);
        while (queries.size() < count) {
            StringBuilder q = new StringBuilder();
            for (int n = 1 + random.nextInt(4); n > 0; n--) {
                String s = samples.get(random.nextInt(samples.size()));
                q.append(random.nextBoolean() ? s : s.substring(random.nextInt(s.length() + 1)));
                q.append(noise.charAt(random.nextInt(noise.length())));
            }
            queries.add(q.toString());
        }
        return queries.subList(0, count);
    }
}
