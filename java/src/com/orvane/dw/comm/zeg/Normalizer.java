package com.orvane.dw.comm.zeg;

import java.util.ArrayList;
import java.util.List;

/**
 * Turns Chinese search queries into canonical keys, so that queries which mean the same thing
 * group together. The work is done by the native library {@code zegnormalizer}
 * ({@code libzegnormalizer.so}), which this class loads when it is first used.
 *
 * <p>Typical use: call {@link #initialize(String)} once at start-up with the path of the
 * normaliser's configuration file, then {@link #normalize(String, int)} for each query, usually
 * with {@link #USUAL}.
 *
 * <p>Threads: {@code initialize} should run once, at start-up, before any {@code normalize}. The
 * library serves one query at a time; the native methods are synchronized on this class, so any
 * thread may call them, and concurrent calls simply take turns.
 *
 * <p>Failures are silent: nothing is thrown and nothing is returned to tell that the
 * configuration did not load. The library writes its diagnostics to the process's standard error
 * stream, and {@code normalize} then returns the empty string for every query.
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
     * Loads the native library unless it is already loaded. Tries, in order, the file named by the
     * system property {@value #LIBRARY_PATH_PROPERTY} (when set), then {@code
     * System.loadLibrary("zegnormalizer")}, which searches {@code java.library.path}. Runs
     * automatically when the class is initialised; calling it again does nothing.
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
        } catch (UnsatisfiedLinkError | SecurityException e) {
            attempts.add("System.loadLibrary(\"" + LIBRARY_NAME + "\") with java.library.path="
                    + System.getProperty("java.library.path") + ": " + e.getMessage());
            throw new UnsatisfiedLinkError("cannot load the zeg normaliser: "
                    + String.join("; ", attempts));
        }
    }

    /**
     * Loads the configuration and builds the normaliser. Only the first call in the life of the
     * process has an effect; every later call does nothing, even when the first one failed, so a
     * bad configuration cannot be corrected without restarting the process. A null path counts as
     * a file that cannot be loaded.
     *
     * <p>Failure is not reported to the caller: the library writes what went wrong to standard
     * error, and from then on {@link #normalize(String, int)} returns "" for every query.
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
    public static synchronized native String normalize(String query, int mode);

    /**
     * Does nothing: the normaliser stays loaded and usable until the process ends, and a later
     * {@link #initialize(String)} still does nothing. (The name is spelt as the library exports
     * it.)
     */
    public static synchronized native void unitialize();
}
