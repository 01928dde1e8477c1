package com.orvane.dw.comm.zeg.examples;

import com.orvane.dw.comm.zeg.Normalizer;

/**
 * The body of a Hive UDF giving a query's key. With Hive's classes on the class path, make it
 * one by extending {@code org.apache.hadoop.hive.ql.exec.UDF}:
 *
 * <pre>{@code
 * public final class ZegKey extends UDF {
 *     private final NormalizeUdf key = new NormalizeUdf("/data/zeg/normalizer.ini");
 *     public String evaluate(String query) { return key.evaluate(query); }
 * }
 * -- ADD JAR zeg-normalizer.jar; ADD JAR zeg-udf.jar;
 * -- CREATE TEMPORARY FUNCTION zeg_key AS 'ZegKey';
 * -- SELECT zeg_key(query), count(*) FROM query_log GROUP BY zeg_key(query);
 * }</pre>
 */
public final class NormalizeUdf {

    private final String config;

    /** @param config the normaliser's configuration file, present on every node */
    public NormalizeUdf(String config) {
        this.config = config;
    }

    /** The key of {@code query} in the usual mode; null for a null query, as Hive expects. */
    public String evaluate(String query) {
        if (query == null) {
            return null;
        }
        NormalizePartition.initialize(config);
        return Normalizer.normalize(query, Normalizer.USUAL);
    }
}
