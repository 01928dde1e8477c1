package com.orvane.dw.comm.zeg.examples;

import com.orvane.dw.comm.zeg.Normalizer;
import java.io.Serializable;
import java.util.Iterator;
import java.util.function.Function;

/**
 * Normalises one partition of queries, the shape Spark's {@code mapPartitions} takes:
 *
 * <pre>{@code
 * NormalizePartition keys = new NormalizePartition("/data/zeg/normalizer.ini", Normalizer.USUAL);
 * JavaRDD<String> out = queries.mapPartitions(keys::apply);
 * }</pre>
 *
 * <p>The normaliser is initialised once per executor JVM, on the first partition, and a job
 * whose configuration does not load fails at once instead of writing empty keys. Partitions may
 * run on many task threads of one executor at the same time.
 */
public final class NormalizePartition implements Function<Iterator<String>, Iterator<String>>,
        Serializable {

    private static final long serialVersionUID = 1L;

    private final String config;
    private final int mode;

    /**
     * @param config the normaliser's configuration file, present on every executor
     * @param mode the mode bits, usually {@link Normalizer#USUAL}
     */
    public NormalizePartition(String config, int mode) {
        this.config = config;
        this.mode = mode;
    }

    /** Initialises the normaliser in this JVM (once) or throws why it cannot be. */
    static void initialize(String config) {
        synchronized (Normalizer.class) {
            if (!Normalizer.isInitialized()) {
                Normalizer.initialize(config);
            }
        }
        String failure = Normalizer.initializationFailure();
        if (failure != null) {
            throw new IllegalStateException("zeg normaliser not initialised: " + failure);
        }
    }

    @Override
    public Iterator<String> apply(Iterator<String> queries) {
        initialize(config);
        return new Iterator<String>() {
            @Override
            public boolean hasNext() {
                return queries.hasNext();
            }

            @Override
            public String next() {
                return Normalizer.normalize(queries.next(), mode);
            }
        };
    }
}
