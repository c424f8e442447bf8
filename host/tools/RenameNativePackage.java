import java.io.ByteArrayOutputStream;
import java.io.IOException;
import java.io.InputStream;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.Enumeration;
import java.util.jar.JarEntry;
import java.util.jar.JarFile;

/**
 * Build tool: copies the classes of a jar into a folder, renaming the
 * placeholder package "com/fernwick/android/ad/mero/nativ_/" to ".../native/"
 * in their paths and in their bytes.
 *
 * <p>javac will not compile a package named after the keyword "native", but
 * the JVM loads one. The two names have the same length, so only the bytes of
 * constant-pool strings change, never a length or an offset.
 *
 * <p>Usage: RenameNativePackage JAR OUTPUT_FOLDER
 */
public final class RenameNativePackage {
    private static final byte[] PLACEHOLDER =
            "com/fernwick/android/ad/mero/nativ_/".getBytes(StandardCharsets.UTF_8);
    private static final byte[] REAL = "com/fernwick/android/ad/mero/native/".getBytes(StandardCharsets.UTF_8);

    public static void main(String[] args) throws IOException {
        Path output = Path.of(args[1]);
        try (JarFile jar = new JarFile(args[0])) {
            Enumeration<JarEntry> entries = jar.entries();
            while (entries.hasMoreElements()) {
                JarEntry entry = entries.nextElement();
                if (!entry.getName().endsWith(".class")) {
                    continue;
                }
                byte[] bytes;
                try (InputStream in = jar.getInputStream(entry)) {
                    bytes = in.readAllBytes();
                }
                Path target = output.resolve(rename(entry.getName()));
                Files.createDirectories(target.getParent());
                Files.write(target, replaceAll(bytes));
            }
        }
    }

    private static String rename(String path) {
        return path.replace(new String(PLACEHOLDER, StandardCharsets.UTF_8), new String(REAL, StandardCharsets.UTF_8));
    }

    private static byte[] replaceAll(byte[] bytes) {
        ByteArrayOutputStream out = new ByteArrayOutputStream(bytes.length);
        int at = 0;
        while (at < bytes.length) {
            if (startsWith(bytes, at, PLACEHOLDER)) {
                out.write(REAL, 0, REAL.length);
                at += PLACEHOLDER.length;
            } else {
                out.write(bytes[at++]);
            }
        }
        return out.toByteArray();
    }

    private static boolean startsWith(byte[] bytes, int at, byte[] prefix) {
        if (at + prefix.length > bytes.length) {
            return false;
        }
        for (int i = 0; i < prefix.length; i++) {
            if (bytes[at + i] != prefix[i]) {
                return false;
            }
        }
        return true;
    }
}
