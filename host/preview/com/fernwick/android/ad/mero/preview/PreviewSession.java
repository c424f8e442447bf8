package com.fernwick.android.ad.mero.preview;

import static java.nio.charset.StandardCharsets.UTF_8;

import java.awt.image.BufferedImage;
import java.io.FileDescriptor;
import java.io.FileOutputStream;
import java.io.IOException;
import java.io.PrintStream;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.List;
import java.util.stream.Stream;
import javax.imageio.ImageIO;

/**
 * One card, start to end, in the child JVM that Preview starts: the set-up
 * natives in the host's order, a picture and a tree file after the first
 * layout, then one of each after every scenario step, and releaseInstance
 * last. Before each step it writes a marker line to standard error, so that
 * the launcher can tell which step the engine's error lines belong to.
 */
public final class PreviewSession {
    private static final int HANDLE = 1;

    private final Preview.Options options;
    private final PreviewHost host;
    private int width;
    /** null: as tall as the card's content. */
    private Integer height;

    private PreviewSession(Preview.Options options, BridgeFixture bridge) {
        this.options = options;
        this.host = new PreviewHost(HANDLE, new VirtualClock(), bridge, options.templateFolder());
        this.width = options.width();
        this.height = options.height();
    }

    /** The arguments are the launcher's, already checked there. */
    public static void main(String[] args) throws Exception {
        System.setOut(new PrintStream(new FileOutputStream(FileDescriptor.out), true, UTF_8));
        System.setErr(new PrintStream(new FileOutputStream(FileDescriptor.err), true, UTF_8));
        Preview.Options options = Preview.Options.parse(args);
        BridgeFixture bridge = options.bridge() == null ? BridgeFixture.empty()
                : BridgeFixture.parse(Preview.read(options.bridge(), "bridge fixture"));
        List<Scenario.Step> steps = options.scenario() == null ? List.of()
                : Scenario.parse(Preview.read(options.scenario(), "scenario"));
        System.load(System.getProperty("mero.library"));
        new PreviewSession(options, bridge).run(steps);
    }

    private void run(List<Scenario.Step> steps) throws Exception {
        clearOldSteps();
        mark(0);
        host.showCard(Preview.read(options.template(), "template"),
                options.data() == null ? "{}" : Preview.read(options.data(), "data file"), width, height);
        snapshot(0, "first layout", null);
        for (int i = 0; i < steps.size(); i++) {
            Scenario.Step step = steps.get(i);
            mark(i + 1);
            perform(i + 1, step.action());
            host.settle();
            snapshot(i + 1, step.action().describe(), step.note());
        }
        host.releaseInstance(HANDLE);
    }

    private void perform(int step, Scenario.Action action) {
        if (action instanceof Scenario.Click click) {
            warnIfMissing(step, click.componentId(), "click");
            host.sendClickEvent(HANDLE, click.componentId());
        } else if (action instanceof Scenario.Event event) {
            host.sendEvent(HANDLE, event.name(), event.payloadJson());
        } else if (action instanceof Scenario.Advance advance) {
            host.clock().advance(advance.ms());
        } else if (action instanceof Scenario.Swipe swipe) {
            swipe(step, swipe);
        } else if (action instanceof Scenario.Resize resize) {
            width = resize.width();
            height = resize.height();
            host.resize(width, height);
        }
    }

    /** An id that is not on the card is sent all the same (the engine ignores it), with a warning. */
    private void swipe(int step, Scenario.Swipe swipe) {
        ViewNode swiper = host.find(swipe.componentId());
        if (swiper == null || swiper.type != 8) {
            warn(step, "swipe: no swiper \"" + swipe.componentId() + "\" on the card");
        } else if (swipe.page() >= swiper.children.size()) {
            warn(step, "swipe: \"" + swipe.componentId() + "\" has " + swiper.children.size() + " pages");
        } else {
            host.showPage(swiper, swipe.page());
            return;
        }
        host.sendSwiperEvent(HANDLE, swipe.componentId(), swipe.page());
    }

    private void warnIfMissing(int step, String componentId, String action) {
        if (host.find(componentId) == null) {
            warn(step, action + ": no view \"" + componentId + "\" on the card");
        }
    }

    private static void warn(int step, String message) {
        System.err.printf("mero-preview: step-%02d: warning: %s%n", step, message);
    }

    private static void mark(int step) {
        System.err.printf("%sstep step-%02d%n", Preview.MARKER, step);
        System.err.flush();
    }

    /** Earlier runs' pictures would mix with this run's when the scenario got shorter. */
    private void clearOldSteps() throws IOException {
        try (Stream<Path> files = Files.list(options.out())) {
            for (Path file : files.filter(f -> f.getFileName().toString().matches("step-\\d+\\.(png|tree\\.json)"))
                    .toList()) {
                Files.delete(file);
            }
        }
    }

    private void snapshot(int step, String action, String note) throws IOException {
        ViewNode root = host.root();
        int pictureHeight = height != null ? height
                : root == null ? 1 : Math.max(1, (int) Math.ceil(root.height()));
        String name = String.format("step-%02d", step);
        Path picture = options.out().resolve(name + ".png");
        ImageIO.write(render(root, pictureHeight), "png", picture.toFile());
        written(picture);
        Path tree = options.out().resolve(name + ".tree.json");
        Files.writeString(tree, TreeWriter.write(step, action, note, host.clock().now(), root,
                host.takeAnimations()));
        written(tree);
    }

    private BufferedImage render(ViewNode root, int pictureHeight) {
        return CardRenderer.render(root, width, pictureHeight, host.clock().now(), options.templateFolder());
    }

    private static void written(Path file) {
        System.err.println(Preview.MARKER + "wrote " + file);
        System.err.flush();
    }
}
