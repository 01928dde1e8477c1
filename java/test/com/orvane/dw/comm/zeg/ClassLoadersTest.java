package com.orvane.dw.comm.zeg;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;
import static org.junit.jupiter.api.Assertions.assertNotNull;
import static org.junit.jupiter.api.Assertions.assertNull;

import java.lang.reflect.Method;
import java.net.URL;
import java.net.URLClassLoader;
import java.nio.file.Path;
import org.junit.jupiter.api.Test;

/**
 * Runs in a JVM of its own with no library path: the jar loads the library it carries, and a
 * second and third class loader (as a job server gives each session) each get a copy of their own.
 */
class ClassLoadersTest {

    @Test
    void everyClassLoaderGetsAWorkingNormaliser() throws Exception {
        assertNull(System.getProperty(Normalizer.LIBRARY_PATH_PROPERTY));
        Normalizer.initialize(TestData.defaultConfig());
        assertNull(Normalizer.initializationFailure());
        String expected = Normalizer.normalize("軟體 下載", Normalizer.USUAL);
        assertFalse(expected.isEmpty());
        assertNotNull(Normalizer.version());

        URL jar = Path.of(System.getProperty("zeg.jar")).toUri().toURL();
        for (int i = 0; i < 2; i++) {
            try (URLClassLoader session =
                    new URLClassLoader(new URL[] {jar}, ClassLoader.getPlatformClassLoader())) {
                Class<?> other = session.loadClass(Normalizer.class.getName());
                assertEquals(session, other.getClassLoader());
                other.getMethod("initialize", String.class).invoke(null, TestData.defaultConfig());
                Method normalize = other.getMethod("normalize", String.class, int.class);
                assertEquals(expected, normalize.invoke(null, "軟體 下載", Normalizer.USUAL));
                assertEquals(true, other.getMethod("isInitialized").invoke(null));
            }
        }
        assertEquals(expected, Normalizer.normalize("軟體 下載", Normalizer.USUAL));
    }
}
