package com.orvane.dw.comm.zeg;

import static org.junit.jupiter.api.Assertions.assertEquals;

import org.junit.jupiter.api.Test;

/** Runs in a JVM of its own: a null path is a configuration that cannot be loaded. */
class NullConfigurationTest {

    @Test
    void aNullPathCountsAsAFailedInitialisation() {
        Normalizer.initialize(null);
        assertEquals("", Normalizer.normalize("abc", 4));
        Normalizer.initialize(TestData.defaultConfig());
        assertEquals("", Normalizer.normalize("abc", 4));
    }
}
