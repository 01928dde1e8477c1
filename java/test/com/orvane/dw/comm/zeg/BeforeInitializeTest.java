package com.orvane.dw.comm.zeg;

import static org.junit.jupiter.api.Assertions.assertEquals;

import org.junit.jupiter.api.Test;

/** Runs in a JVM of its own: the library is loaded but never initialised. */
class BeforeInitializeTest {

    @Test
    void everyQueryGivesTheEmptyString() {
        for (int mode : new int[] {Normalizer.USUAL, 4, 128, 0, -1}) {
            assertEquals("", Normalizer.normalize("北京大学", mode));
            assertEquals("", Normalizer.normalize("", mode));
            assertEquals("", Normalizer.normalize(null, mode));
            assertEquals("", Normalizer.normalize("x".repeat(600), mode));
        }
        Normalizer.unitialize();
        assertEquals("", Normalizer.normalize("北京大学", Normalizer.USUAL));
    }
}
