package com.fernwick.android.ad.mero.preview;

import static java.nio.charset.StandardCharsets.UTF_8;

import java.io.BufferedReader;
import java.io.FileDescriptor;
import java.io.FileOutputStream;
import java.io.IOException;
import java.io.InputStreamReader;
import java.io.PrintStream;
import java.lang.management.ManagementFactory;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.List;
import java.util.function.Function;

/**
 * The mero-preview command. It checks the arguments and every input file,
 * then runs the card in a child JVM (PreviewSession) whose standard error it
 * reads: the engine writes its reported errors there as "D/mero_log_cpp: ..."
 * lines, and the child marks where each step begins, so each error can be
 * named by its step. Exit status: 2 for bad arguments or input files; 1 when
 * the session failed, or under --strict when the engine reported an error;
 * else 0.
 */
public final class Preview {
    private Preview() {}

    static final String USAGE = "usage: mero-preview TEMPLATE [--data FILE] [--width PX] [--height PX|auto]"
            + " [--scenario FILE] [--bridge FILE] [--out DIR] [--strict] [--verbose]";
    static final String HELP = USAGE + """


            Runs the card TEMPLATE on libmero and writes, into --out (default out/<template's folder>),
            step-00.png and step-00.tree.json after the first layout, then one of each after every
            scenario step.

              --data FILE       business data JSON (default {})
              --width PX        card width; templates are laid out on 750 units across (default 750)
              --height PX|auto  picture and container height; auto follows the content (default auto)
              --scenario FILE   JSON list of steps, each one action and an optional "note":
                                {"click": ID}  {"event": NAME, "payload": JSON}  {"advance": MS}
                                {"swipe": ID, "page": N}  {"resize": {"width": PX, "height": PX|"auto"}}
              --bridge FILE     bridge replies by method: {"METHOD": {"reply": JSON, "delayMs": MS}};
                                "replies": [JSON, ...] instead of "reply" are used in order, the last
                                repeating; a reply with "downloadStatus" (and "progress", "packageName")
                                moves the download buttons
              --strict          exit 1 when the engine reported an error
              --verbose         also show the engine's bridge log lines

            Errors the engine reports are shown as "mero-preview: step-NN: message".
            Exit status: 0 done, 1 session failed (or an error under --strict), 2 bad arguments or files.""";
    /** Lines the session writes to standard error for the launcher alone. */
    static final String MARKER = "mero-preview-marker ";
    static final String ERROR_PREFIX = "D/mero_log_cpp: ";
    static final String BRIDGE_LOG_PREFIX = "D/mero_log_jni: ";

    /** A bad argument or input file: one line, exit status 2. */
    static final class UsageException extends Exception {
        private static final long serialVersionUID = 1L;

        UsageException(String message) { super(message); }
    }

    /** The command line. height null: as tall as the card's content. data, scenario, bridge may be null. */
    record Options(Path template, Path data, int width, Integer height, Path scenario, Path bridge, Path out,
            boolean strict, boolean verbose) {

        static Options parse(String[] args) throws UsageException {
            Path template = null, data = null, scenario = null, bridge = null, out = null;
            int width = 750;
            Integer height = null;
            boolean strict = false, verbose = false;
            for (int i = 0; i < args.length; i++) {
                String arg = args[i];
                switch (arg) {
                    case "--data" -> data = Path.of(valueOf(args, ++i, arg));
                    case "--width" -> width = pixels(valueOf(args, ++i, arg), arg);
                    case "--height" -> {
                        String value = valueOf(args, ++i, arg);
                        height = value.equals("auto") ? null : pixels(value, arg);
                    }
                    case "--scenario" -> scenario = Path.of(valueOf(args, ++i, arg));
                    case "--bridge" -> bridge = Path.of(valueOf(args, ++i, arg));
                    case "--out" -> out = Path.of(valueOf(args, ++i, arg));
                    case "--strict" -> strict = true;
                    case "--verbose" -> verbose = true;
                    default -> {
                        if (arg.startsWith("-")) {
                            throw new UsageException("unknown option " + arg + " (see --help)");
                        }
                        if (template != null) {
                            throw new UsageException("one template only (" + template + ", then " + arg + ")");
                        }
                        template = Path.of(arg);
                    }
                }
            }
            if (template == null) {
                throw new UsageException("no template given (see --help)");
            }
            if (out == null) {
                Path folder = template.toAbsolutePath().getParent();
                out = Path.of("out", folder.getFileName() == null ? "card" : folder.getFileName().toString());
            }
            return new Options(template, data, width, height, scenario, bridge, out, strict, verbose);
        }

        private static String valueOf(String[] args, int i, String option) throws UsageException {
            if (i >= args.length) {
                throw new UsageException(option + " needs a value");
            }
            return args[i];
        }

        private static int pixels(String value, String option) throws UsageException {
            try {
                int px = Integer.parseInt(value);
                if (px > 0 && px <= 10000) {
                    return px;
                }
            } catch (NumberFormatException notNumber) {
                // reported below
            }
            throw new UsageException(option + " must be a whole number of pixels from 1 to 10000, not \"" + value
                    + "\"" + (option.equals("--height") ? " (or auto)" : ""));
        }

        /** The template's folder: image paths in the card are relative to it. */
        Path templateFolder() {
            return template.toAbsolutePath().getParent();
        }
    }

    /** A file's text; a missing or unreadable file is a usage error. Bytes that are not UTF-8 become U+FFFD. */
    static String read(Path file, String what) throws UsageException {
        if (!Files.isRegularFile(file)) {
            throw new UsageException(what + " not found: " + file);
        }
        try {
            return new String(Files.readAllBytes(file), UTF_8);
        } catch (IOException unreadable) {
            throw new UsageException("cannot read " + what + " " + file + ": " + unreadable.getMessage());
        }
    }

    public static void main(String[] args) throws Exception {
        System.setOut(new PrintStream(new FileOutputStream(FileDescriptor.out), true, UTF_8));
        System.setErr(new PrintStream(new FileOutputStream(FileDescriptor.err), true, UTF_8));
        if (args.length == 1 && (args[0].equals("--help") || args[0].equals("-h"))) {
            System.out.println(HELP);
            return;
        }
        Options options;
        try {
            options = Options.parse(args);
            check(options);
        } catch (UsageException bad) {
            System.err.println("mero-preview: " + bad.getMessage());
            System.exit(2);
            return;
        }
        System.exit(runSession(options, args));
    }

    /** Everything that can be found wrong before the card runs. A bad template is the engine's to report. */
    private static void check(Options options) throws UsageException {
        String library = System.getProperty("mero.library");
        if (library == null || !Files.isRegularFile(Path.of(library))) {
            throw new UsageException("libmero.so not found (-Dmero.library=" + library + ")");
        }
        read(options.template(), "template");
        if (options.data() != null) {
            read(options.data(), "data file");
        }
        if (options.scenario() != null) {
            parse(options.scenario(), "scenario", Scenario::parse);
        }
        if (options.bridge() != null) {
            parse(options.bridge(), "bridge fixture", BridgeFixture::parse);
        }
        try {
            Files.createDirectories(options.out());
        } catch (IOException | RuntimeException unwritable) {
            throw new UsageException("cannot create the output folder " + options.out());
        }
    }

    private static void parse(Path file, String what, Function<String, ?> parser) throws UsageException {
        String text = read(file, what);
        try {
            parser.apply(text);
        } catch (IllegalArgumentException bad) {
            throw new UsageException(file + ": " + bad.getMessage());
        }
    }

    /** Runs PreviewSession in a child JVM like this one, relaying its output; returns the exit status. */
    private static int runSession(Options options, String[] args) throws IOException, InterruptedException {
        List<String> command = new ArrayList<>();
        command.add(Path.of(System.getProperty("java.home"), "bin", "java").toString());
        command.addAll(ManagementFactory.getRuntimeMXBean().getInputArguments());
        command.addAll(List.of("-cp", System.getProperty("java.class.path"), PreviewSession.class.getName()));
        command.addAll(List.of(args));
        Process child = new ProcessBuilder(command).redirectOutput(ProcessBuilder.Redirect.INHERIT).start();
        child.getOutputStream().close();
        Relay relay = new Relay(options.verbose());
        try (BufferedReader lines = new BufferedReader(new InputStreamReader(child.getErrorStream(), UTF_8))) {
            for (String line = lines.readLine(); line != null; line = lines.readLine()) {
                relay.line(line);
            }
        }
        int status = child.waitFor();
        for (String path : relay.written) {
            System.out.println("mero-preview: wrote " + path);
        }
        if (relay.errors > 0) {
            System.err.println("mero-preview: " + relay.errors + (relay.errors == 1 ? " error" : " errors")
                    + " reported");
        }
        if (status != 0) {
            System.err.println("mero-preview: the preview session failed (exit status " + status + ")");
            return 1;
        }
        return options.strict() && relay.errors > 0 ? 1 : 0;
    }

    /** Sorts the child's standard error: markers are kept, bridge lines shown with --verbose, errors counted. */
    static final class Relay {
        final boolean verbose;
        final List<String> written = new ArrayList<>();
        int errors;
        String step = "step-00";

        Relay(boolean verbose) { this.verbose = verbose; }

        void line(String line) {
            if (line.startsWith(MARKER + "step ")) {
                step = line.substring((MARKER + "step ").length());
            } else if (line.startsWith(MARKER + "wrote ")) {
                written.add(line.substring((MARKER + "wrote ").length()));
            } else if (line.startsWith(BRIDGE_LOG_PREFIX)) {
                if (verbose) {
                    System.err.println(line);
                }
            } else if (line.startsWith(ERROR_PREFIX)) {
                errors++;
                System.err.println(line);
                System.err.println("mero-preview: " + step + ": " + line.substring(ERROR_PREFIX.length()));
            } else {
                System.err.println(line);
            }
        }
    }
}
