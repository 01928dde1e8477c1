package com.orvane.dw.comm.zeg;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertNull;

import com.orvane.dw.comm.zeg.examples.NormalizePartition;
import com.orvane.dw.comm.zeg.examples.NormalizeUdf;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.util.ArrayList;
import java.util.List;
import java.util.concurrent.ExecutorService;
import java.util.concurrent.Executors;
import java.util.concurrent.Future;
import org.junit.jupiter.api.Test;

/** The examples on a fake executor: partitions on a thread pool, as Spark runs them. */
class ExamplesTest {

    @Test
    void partitionsOnATaskPoolGiveTheUdfsKeys() throws Exception {
        List<String> queries = Files.readAllLines(
                TestData.dataDir().resolve("sample-queries.txt"), StandardCharsets.UTF_8);
        NormalizeUdf udf = new NormalizeUdf(TestData.defaultConfig());
        List<String> expected = new ArrayList<>();
        for (String q : queries) {
            expected.add(udf.evaluate(q));
        }
        assertNull(udf.evaluate(null));

        NormalizePartition keys = new NormalizePartition(TestData.defaultConfig(), Normalizer.USUAL);
        ExecutorService executor = Executors.newFixedThreadPool(4);
        List<Future<List<String>>> partitions = new ArrayList<>();
        for (int p = 0; p < 8; p++) {
            partitions.add(executor.submit(() -> {
                List<String> out = new ArrayList<>();
                keys.apply(queries.iterator()).forEachRemaining(out::add);
                return out;
            }));
        }
        executor.shutdown();
        for (Future<List<String>> partition : partitions) {
            assertEquals(expected, partition.get());
        }
    }
}
