import com.orvane.dw.comm.zeg.Normalizer;
import java.io.IOException;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.List;
import java.util.concurrent.atomic.AtomicLong;
import java.util.stream.Collectors;

/**
 * Calls per second of Normalizer.normalize, through JNI, over a file of queries, from 1, 2, 4
 * and 8 threads at once, and the resident memory after the runs.
 * Arguments: CONFIG QUERIES [MODE [SECONDS [THREADS...]]].
 */
public final class NormalizerBench {

    private NormalizerBench() {}

    public static void main(String[] args) throws Exception {
        if (args.length < 2) {
            System.err.println("usage: NormalizerBench CONFIG QUERIES [MODE [SECONDS [THREADS...]]]");
            System.exit(2);
        }
        int mode = args.length > 2 ? Integer.parseInt(args[2]) : Normalizer.USUAL;
        double seconds = args.length > 3 ? Double.parseDouble(args[3]) : 3.0;
        List<Integer> threadCounts = new ArrayList<>();
        for (int i = 4; i < args.length; i++) {
            threadCounts.add(Integer.parseInt(args[i]));
        }
        if (threadCounts.isEmpty()) {
            threadCounts = List.of(1, 2, 4, 8);
        }
        List<String> queries = Files.readAllLines(Path.of(args[1]), StandardCharsets.UTF_8)
                .stream().filter(q -> !q.isEmpty()).collect(Collectors.toList());
        Normalizer.initialize(args[0]);
        if (queries.isEmpty() || Normalizer.normalize(queries.get(0), mode).isEmpty()) {
            System.err.println("the configuration did not load, or the queries are missing");
            System.exit(1);
        }
        run(queries, mode, 1.0, 2);  // warm-up: class loading and JIT compilation
        long total = 0;
        for (int threads : threadCounts) {
            long start = System.nanoTime();
            long calls = run(queries, mode, seconds, threads);
            double elapsed = (System.nanoTime() - start) / 1e9;
            total += calls;
            System.out.printf("mode %d, %d threads: %d calls in %.2f s, %.0f calls/s%n", mode,
                    threads, calls, elapsed, calls / elapsed);
        }
        System.out.printf("%d calls in all; resident memory %s%n", total, residentMemory());
    }

    private static long run(List<String> queries, int mode, double seconds, int threads)
            throws InterruptedException {
        AtomicLong calls = new AtomicLong();
        long deadline = System.nanoTime() + (long) (seconds * 1e9);
        List<Thread> workers = new ArrayList<>();
        for (int t = 0; t < threads; t++) {
            Thread worker = new Thread(() -> {
                long mine = 0;
                while (System.nanoTime() < deadline) {
                    for (String query : queries) {
                        Normalizer.normalize(query, mode);
                    }
                    mine += queries.size();
                }
                calls.addAndGet(mine);
            });
            worker.start();
            workers.add(worker);
        }
        for (Thread worker : workers) {
            worker.join();
        }
        return calls.get();
    }

    private static String residentMemory() {
        try {
            for (String line : Files.readAllLines(Path.of("/proc/self/status"))) {
                if (line.startsWith("VmRSS:")) {
                    return line.substring(6).trim();
                }
            }
        } catch (IOException e) {
            return "unknown (" + e.getMessage() + ")";
        }
        return "unknown";
    }
}
