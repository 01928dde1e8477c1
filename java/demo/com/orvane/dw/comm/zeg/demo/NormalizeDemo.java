package com.orvane.dw.comm.zeg.demo;

import com.orvane.dw.comm.zeg.Normalizer;
import java.io.IOException;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.LinkedHashMap;
import java.util.List;
import java.util.Map;

/**
 * Normalises a file of queries through {@link Normalizer} and shows which queries share a key.
 *
 * <p>Arguments: the configuration file, the query file (UTF-8, one query a line) and optionally
 * the mode (default {@link Normalizer#USUAL}).
 */
public final class NormalizeDemo {

    private NormalizeDemo() {}

    public static void main(String[] args) throws IOException {
        if (args.length < 2 || args.length > 3) {
            System.err.println("usage: NormalizeDemo CONFIG QUERIES [MODE]");
            System.exit(2);
        }
        int mode = args.length == 3 ? Integer.parseInt(args[2]) : Normalizer.USUAL;
        List<String> queries = new ArrayList<>();
        for (String line : Files.readAllLines(Path.of(args[1]), StandardCharsets.UTF_8)) {
            if (!line.isBlank()) {
                queries.add(line);
            }
        }

        Normalizer.initialize(args[0]);
        Map<String, List<String>> groups = new LinkedHashMap<>();
        int width = 0;
        for (String query : queries) {
            width = Math.max(width, displayWidth(query));
        }
        System.out.println("mode " + mode + ": query → canonical key");
        for (String query : queries) {
            String key = Normalizer.normalize(query, mode);
            groups.computeIfAbsent(key, k -> new ArrayList<>()).add(query);
            System.out.println("  " + pad(query, width) + " → " + key);
        }

        System.out.println();
        System.out.println("keys shared by several queries:");
        for (Map.Entry<String, List<String>> group : groups.entrySet()) {
            if (group.getValue().size() > 1) {
                System.out.println(
                        "  " + group.getKey() + " ← " + String.join(" | ", group.getValue()));
            }
        }
        System.out.println();
        System.out.println(queries.size() + " queries collapsed into " + groups.size() + " keys.");
        if (groups.containsKey("")) {
            System.out.println("Some keys are empty: check the messages above, the configuration"
                    + " may not have loaded.");
        }
    }

    // Chinese characters take two columns on a terminal.
    private static int displayWidth(String text) {
        return text.codePoints().map(c -> c >= 0x1100 ? 2 : 1).sum();
    }

    private static String pad(String text, int width) {
        return text + " ".repeat(Math.max(0, width - displayWidth(text)));
    }
}
