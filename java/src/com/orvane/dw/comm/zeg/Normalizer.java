package com.orvane.dw.comm.zeg;

import java.io.IOException;
import java.io.InputStream;
import java.io.OutputStream;
import java.net.URL;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.List;
import java.util.Locale;
import java.util.jar.Manifest;

/**
 * Turns Chinese search queries into canonical keys, so that queries which mean the same thing
 * group together. The work is done by the native library {@code zegnormalizer}
 * ({@code libzegnormalizer.so}), which this class loads when it is first used.
 *
 * <p>Typical use: call {@link #initialize(String)} once at start-up with the path of the
 * normaliser's configuration file, then {@link #normalize(String, int)} for each query, usually
 * with {@link #USUAL}.
 *
 * <p>Threads: {@code initialize} should run once, at start-up, before any {@code normalize}.
 * After that any number of threads may call {@code normalize} at once, without locks: each
 * thread normalises with working state of its own over the dictionaries, word lists and settings
 * that {@code initialize} loaded once, and results do not depend on the thread.
 *
 * <p>Failures do not throw: a configuration that did not load makes {@code normalize} return the
 * empty string for every query, and the library writes its diagnostics to the process's standard
 * error stream. Call {@link #isInitialized()} (or {@link #initializationFailure()} for the
 * reason) after {@code initialize} to fail fast instead of writing empty keys.
 *
 * <p>The jar carries the native library for linux-x86_64; see {@link #loadLibrary()}.
 */
public final class Normalizer {

    /** Mode bit: ASCII letters to upper case (ignored when {@link #TO_LOWER} is set too). */
    public static final int TO_UPPER = 2;
    /** Mode bit: ASCII letters to lower case; wins over {@link #TO_UPPER}. */
    public static final int TO_LOWER = 4;
    /** Mode bit: full-width letters, digits and symbols and the ideographic space to ASCII. */
    public static final int FULL_TO_HALF = 8;
    /** Mode bit: traditional Chinese characters to simplified ones. */
    public static final int TRADITIONAL_TO_SIMPLIFIED = 16;
    /** Mode bit: every stop character (from the stop-word file) becomes a space. */
    public static final int STOP_CHARACTERS = 32;
    /**
     * Mode bit: the whole query, and then each of its words, is replaced by its synonym from the
     * synonym file (looked up ignoring ASCII case). Implies segmentation into words.
     */
    public static final int SYNONYMS = 64;
    /**
     * Mode bit: the query is segmented into words, the words are put into a canonical order that
     * does not depend on their order in the query, the word "的" is dropped and every space is
     * removed. Without this bit the words keep their order and are joined without spaces.
     */
    public static final int CANONICAL_ORDER = 128;
    /** The usual mode: every bit but {@link #TO_UPPER}, that is 252. */
    public static final int USUAL = TO_LOWER | FULL_TO_HALF | TRADITIONAL_TO_SIMPLIFIED
            | STOP_CHARACTERS | SYNONYMS | CANONICAL_ORDER;

    /** The longest query, in modified UTF-8 bytes, that is normalised; longer ones give "". */
    public static final int MAX_QUERY_BYTES = 511;

    /** System property naming the library file to load first (an absolute path). */
    public static final String LIBRARY_PATH_PROPERTY = "zeg.normalizer.library";
    /** The library's name for {@link System#loadLibrary(String)}. */
    public static final String LIBRARY_NAME = "zegnormalizer";

    private static boolean loaded;

    static {
        loadLibrary();
    }

    private Normalizer() {}

    /**
     * Loads the native library unless it is already loaded. Tries, in order: the file named by the
     * system property {@value #LIBRARY_PATH_PROPERTY} (when set); {@code
     * System.loadLibrary("zegnormalizer")}, which searches {@code java.library.path}; the copy
     * bundled in this jar for the running platform ({@code native/linux-x86_64/}), extracted to a
     * private temporary file, loaded and deleted. A class loaded by a second class loader in the
     * same JVM gets its own extracted copy, since the JVM lets one library file serve only one
     * class loader. Runs automatically when the class is initialised; calling it again does
     * nothing.
     *
     * @throws UnsatisfiedLinkError listing every attempt, when none of them succeeds
     */
    public static synchronized void loadLibrary() {
        if (loaded) {
            return;
        }
        List<String> attempts = new ArrayList<>();
        String path = System.getProperty(LIBRARY_PATH_PROPERTY);
        if (path != null && !path.isEmpty()) {
            try {
                System.load(path);
                loaded = true;
                return;
            } catch (UnsatisfiedLinkError | SecurityException e) {
                attempts.add(LIBRARY_PATH_PROPERTY + "=" + path + ": " + e.getMessage());
            }
        }
        try {
            System.loadLibrary(LIBRARY_NAME);
            loaded = true;
            return;
        } catch (UnsatisfiedLinkError | SecurityException e) {
            attempts.add("System.loadLibrary(\"" + LIBRARY_NAME + "\") with java.library.path="
                    + System.getProperty("java.library.path") + ": " + e.getMessage());
        }
        try {
            loadBundled();
            loaded = true;
        } catch (IOException | UnsatisfiedLinkError | SecurityException e) {
            attempts.add("the copy bundled for " + platform() + ": " + e.getMessage());
            throw new UnsatisfiedLinkError("cannot load the zeg normaliser: "
                    + String.join("; ", attempts));
        }
    }

    /** The platform's folder in the jar, such as {@code linux-x86_64}. */
    static String platform() {
        String os = System.getProperty("os.name", "").toLowerCase(Locale.ROOT);
        String arch = System.getProperty("os.arch", "").toLowerCase(Locale.ROOT);
        if (arch.equals("amd64")) {
            arch = "x86_64";
        }
        return (os.startsWith("linux") ? "linux" : os.replace(' ', '_')) + "-" + arch;
    }

    private static void loadBundled() throws IOException {
        String resource = "/native/" + platform() + "/lib" + LIBRARY_NAME + ".so";
        Path file;
        try (InputStream in = Normalizer.class.getResourceAsStream(resource)) {
            if (in == null) {
                throw new IOException("the jar has no " + resource);
            }
            // Owner-only permissions: createTempFile gives rw------- on POSIX systems.
            file = Files.createTempFile("lib" + LIBRARY_NAME + "-", ".so");
            long copied;
            try (OutputStream out = Files.newOutputStream(file)) {
                copied = in.transferTo(out);
            }
            if (copied == 0 || Files.size(file) != copied) {
                Files.deleteIfExists(file);
                throw new IOException("extracting " + resource + " to " + file + " failed");
            }
        }
        try {
            System.load(file.toAbsolutePath().toString());
        } finally {
            // The loaded library stays mapped; the file is not needed any more.
            if (!file.toFile().delete()) {
                file.toFile().deleteOnExit();
            }
        }
    }

    /**
     * Whether the normaliser is initialised, that is {@link #initialize(String)} has loaded a
     * configuration. When this is false every {@link #normalize(String, int)} returns "".
     *
     * @return true once initialised
     */
    public static boolean isInitialized() {
        return initializationFailure() == null;
    }

    /**
     * Why the normaliser is not initialised: "initialize has not been called", or the library's
     * messages from the failed {@link #initialize(String)} (one a line). Null once initialised.
     *
     * @return the reason, or null
     */
    public static native String initializationFailure();

    /** The version of this jar and its library, from the jar's manifest (null outside a jar). */
    public static String version() {
        // The jar's own manifest: the package may also be defined by another jar first.
        URL self = Normalizer.class.getResource("Normalizer.class");
        String text = self == null ? "" : self.toString();
        int end = text.indexOf("!/");
        if (!text.startsWith("jar:") || end < 0) {
            return null;
        }
        try (InputStream in = new URL(text.substring(0, end + 2) + "META-INF/MANIFEST.MF")
                .openStream()) {
            return new Manifest(in).getMainAttributes().getValue("Implementation-Version");
        } catch (IOException e) {
            return null;
        }
    }

    /**
     * Loads the configuration and builds the normaliser. Only the first call in the life of the
     * process has an effect; every later call does nothing, even when the first one failed, so a
     * bad configuration cannot be corrected without restarting the process. A null path counts as
     * a file that cannot be loaded.
     *
     * <p>Failure does not throw: the library writes what went wrong to standard error, from then
     * on {@link #normalize(String, int)} returns "" for every query, and {@link #isInitialized()}
     * is false, with the reason in {@link #initializationFailure()}.
     *
     * @param configPath the normaliser's configuration file (section {@code [SERVER]} with
     *     {@code WS_CONFIG}, {@code STOP_FILE}, {@code SYNONYMS_FILE}, {@code MAX_INPUT_LENGTH})
     */
    public static synchronized native void initialize(String configPath);

    /**
     * Normalises one query. {@code mode} is a sum of the mode bits of this class ({@link #USUAL}
     * for the canonical key); a mode of 0 or below gives "".
     *
     * <p>Returns "" when the library is not initialised (or its initialisation failed), for a null
     * or empty query, for a query that is blank once stop characters are removed, and for a query
     * of more than {@value #MAX_QUERY_BYTES} bytes in modified UTF-8 (three bytes for most Chinese
     * characters, six for a character outside the basic multilingual plane). Characters that GBK
     * lacks are dropped. A query longer than the configuration's {@code MAX_INPUT_LENGTH} (in GBK
     * bytes) comes back unchanged.
     *
     * @param query the query
     * @param mode the mode bits
     * @return the normalised query, never null
     */
    public static native String normalize(String query, int mode);

    /**
     * Does nothing: the normaliser stays loaded and usable until the process ends, and a later
     * {@link #initialize(String)} still does nothing. (The name is spelt as the library exports
     * it.)
     */
    public static native void unitialize();
}
