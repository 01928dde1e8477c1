package com.orvane.dw.comm.zeg;

import static org.junit.jupiter.api.Assertions.assertEquals;

import java.io.IOException;
import java.nio.charset.Charset;
import java.nio.file.Files;
import java.nio.file.Path;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.io.TempDir;

/** Runs in a JVM of its own: the first configuration stays, whatever comes after it. */
class SecondInitializeTest {

    @TempDir Path dir;

    // The default configuration but for the synonyms: 北大 stands for 北大附中 here.
    private String otherConfig() throws IOException {
        Path synonyms = dir.resolve("synonyms.txt");
        Files.write(synonyms, "北大\u0001北大附中\n".getBytes(Charset.forName("GBK")));
        Path data = TestData.dataDir();
        Path config = dir.resolve("other.ini");
        Files.writeString(config, "[SERVER]\n"
                + "WS_CONFIG=" + data.resolve("segmenter.conf") + "\n"
                + "STOP_FILE=" + data.resolve("stopwords.txt") + "\n"
                + "SYNONYMS_FILE=" + synonyms + "\n"
                + "MAX_INPUT_LENGTH=10000\n");
        return config.toString();
    }

    @Test
    void aSecondInitializeKeepsTheFirstConfiguration() throws IOException {
        Normalizer.initialize(TestData.defaultConfig());
        assertEquals("北京大学", Normalizer.normalize("北大", Normalizer.SYNONYMS));

        Normalizer.initialize(otherConfig());
        assertEquals("北京大学", Normalizer.normalize("北大", Normalizer.SYNONYMS));

        Normalizer.unitialize();
        assertEquals("北京大学", Normalizer.normalize("北大", Normalizer.SYNONYMS));
        Normalizer.initialize(otherConfig());
        assertEquals("北京大学", Normalizer.normalize("北大", Normalizer.SYNONYMS));
    }
}
