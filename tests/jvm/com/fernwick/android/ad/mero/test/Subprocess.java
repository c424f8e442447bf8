package com.fernwick.android.ad.mero.test;

import java.io.IOException;
import java.nio.charset.StandardCharsets;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.List;
import java.util.concurrent.CompletableFuture;

/** A child JVM's exit code and output, for what only a fresh process shows. */
final class Subprocess {
    int exitCode;
    String stdout;
    String stderr;

    /** Runs mainClass in a new JVM with the given class path and this JVM's mero.* properties. */
    static Subprocess java(String classPath, String mainClass, String... jvmOptions)
            throws IOException, InterruptedException {
        List<String> command = new ArrayList<>();
        command.add(Path.of(System.getProperty("java.home"), "bin", "java").toString());
        command.addAll(List.of(jvmOptions));
        command.add("-Dmero.library=" + System.getProperty("mero.library"));
        command.add("-cp");
        command.add(classPath);
        command.add(mainClass);
        Process process = new ProcessBuilder(command).start();
        CompletableFuture<byte[]> err = CompletableFuture.supplyAsync(() -> readAll(process.getErrorStream()));
        Subprocess run = new Subprocess();
        run.stdout = new String(process.getInputStream().readAllBytes(), StandardCharsets.UTF_8);
        run.stderr = new String(err.join(), StandardCharsets.UTF_8);
        run.exitCode = process.waitFor();
        return run;
    }

    private static byte[] readAll(java.io.InputStream stream) {
        try {
            return stream.readAllBytes();
        } catch (IOException error) {
            throw new java.io.UncheckedIOException(error);
        }
    }

    List<String> stderrLines() {
        return stderr.lines().toList();
    }
}
