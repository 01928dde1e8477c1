package com.orvane.dw.comm.zeg;

import static org.junit.jupiter.api.Assertions.assertEquals;

import org.junit.jupiter.api.Test;

/** Runs in a JVM of its own: the one initialisation fails, and nothing can repair it. */
class FailedConfigurationTest {

    @Test
    void aConfigurationThatFailsLeavesOnlyEmptyResults() {
        Normalizer.initialize(TestData.dataDir().resolve("no-such-normalizer.ini").toString());
        assertEquals("", Normalizer.normalize("北京大学", Normalizer.USUAL));
        assertEquals("", Normalizer.normalize("abc", 4));

        Normalizer.initialize(TestData.defaultConfig());
        assertEquals("", Normalizer.normalize("abc", 4), "a second initialize must do nothing");
    }
}
