import com.orvane.dw.comm.zeg.Normalizer;
import java.io.IOException;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.List;
import java.util.stream.Collectors;

/**
 * Queries per second of Normalizer.normalize, through JNI, over a file of queries.
 * Arguments: CONFIG QUERIES [MODE [SECONDS]].
 */
public final class NormalizerBench {

    private NormalizerBench() {}

    public static void main(String[] args) throws IOException {
        if (args.length < 2) {
            System.err.println("usage: NormalizerBench CONFIG QUERIES [MODE [SECONDS]]");
            System.exit(2);
        }
        int mode = args.length > 2 ? Integer.parseInt(args[2]) : Normalizer.USUAL;
        double seconds = args.length > 3 ? Double.parseDouble(args[3]) : 3.0;
        List<String> queries = Files.readAllLines(Path.of(args[1]), StandardCharsets.UTF_8)
                .stream().filter(q -> !q.isEmpty()).collect(Collectors.toList());
        Normalizer.initialize(args[0]);
        if (queries.isEmpty() || Normalizer.normalize(queries.get(0), mode).isEmpty()) {
            System.err.println("the configuration did not load, or the queries are missing");
            System.exit(1);
        }

        run(queries, mode, 1.0);  // warm-up: class loading and JIT compilation
        long calls = 0;
        long chars = 0;
        long start = System.nanoTime();
        long deadline = start + (long) (seconds * 1e9);
        while (System.nanoTime() < deadline) {
            for (String query : queries) {
                chars += Normalizer.normalize(query, mode).length();
            }
            calls += queries.size();
        }
        double elapsed = (System.nanoTime() - start) / 1e9;
        System.out.printf("Normalizer.normalize, mode %d, %d sample queries: %d calls in %.2f s,"
                + " %.0f queries/s, %.2f us/query (%d result chars)%n", mode, queries.size(),
                calls, elapsed, calls / elapsed, elapsed * 1e6 / calls, chars);
    }

    private static void run(List<String> queries, int mode, double seconds) {
        long deadline = System.nanoTime() + (long) (seconds * 1e9);
        while (System.nanoTime() < deadline) {
            for (String query : queries) {
                Normalizer.normalize(query, mode);
            }
        }
    }
}
