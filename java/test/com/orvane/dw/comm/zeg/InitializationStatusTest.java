package com.orvane.dw.comm.zeg;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;
import static org.junit.jupiter.api.Assertions.assertTrue;

import org.junit.jupiter.api.Test;

/** Runs in a JVM of its own: what a job sees before and after a configuration that fails. */
class InitializationStatusTest {

    @Test
    void tellsWhyTheNormaliserIsNotInitialised() {
        assertFalse(Normalizer.isInitialized());
        assertEquals("initialize has not been called", Normalizer.initializationFailure());

        String missing = TestData.dataDir().resolve("no-such-normalizer.ini").toString();
        Normalizer.initialize(missing);
        assertFalse(Normalizer.isInitialized());
        String why = Normalizer.initializationFailure();
        assertTrue(why.contains("[Implement::init] Load configuration file " + missing + " failed."),
                why);
        assertTrue(why.endsWith("[NormalizeIntf::init] Implement initialization failed."), why);
        assertEquals("", Normalizer.normalize("abc", 4));
    }
}
