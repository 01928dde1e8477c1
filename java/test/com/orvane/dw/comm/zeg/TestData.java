package com.orvane.dw.comm.zeg;

import java.nio.file.Path;

/** Where the build put what the tests use; set by CTest as system properties. */
final class TestData {

    private TestData() {}

    /** build/data/normalizer.ini: the default configuration. */
    static String defaultConfig() {
        return required("zeg.config");
    }

    /** build/data: the default data. */
    static Path dataDir() {
        return Path.of(required("zeg.data"));
    }

    /** build/bin/zeg-normalize. */
    static String tool() {
        return required("zeg.tool");
    }

    /**
     * Whether to check the cases whose expected results depend on how the default dictionaries
     * segment (on unless the build turned them off).
     */
    static boolean dictionaryCases() {
        return !"false".equals(System.getProperty("zeg.dictionaryCases"));
    }

    private static String required(String name) {
        String value = System.getProperty(name);
        if (value == null || value.isEmpty()) {
            throw new IllegalStateException("system property " + name + " is not set");
        }
        return value;
    }
}
