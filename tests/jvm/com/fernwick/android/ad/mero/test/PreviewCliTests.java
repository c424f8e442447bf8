package com.fernwick.android.ad.mero.test;

import static com.fernwick.android.ad.mero.test.Checks.check;
import static com.fernwick.android.ad.mero.test.Checks.equal;
import static java.nio.charset.StandardCharsets.UTF_8;

import java.awt.image.BufferedImage;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.List;
import java.util.Map;
import java.util.stream.Stream;
import javax.imageio.ImageIO;

/**
 * The mero-preview command from the outside, as an author runs it: the
 * pictures it writes, its exit codes and the messages it prints.
 */
public final class PreviewCliTests {
    private PreviewCliTests() {}

    record Run(int exitCode, String stdout, String stderr) {}

    private static final Path ROOT = Path.of(System.getProperty("mero.root"));
    private static Path work;

    /**
     * A grey card 750 by 200 design units with a rounded blue button at
     * (40, 60), 200 by 80; a click turns the button red; "fail" calls
     * setTimeout with one argument, a script error.
     */
    private static final String CARD = """
        {"variables": {"buttonColor": "#2266DDFF"},
         "elements": {"$": 3, "nodeId": "root", "backgroundColor": "#F4F6F8FF",
           "width": {"sizeType": 4, "value": 750}, "height": {"sizeType": 4, "value": 200}, "children": [
           {"$": 0, "nodeId": "button", "onClick": "press", "backgroundColor": {"$": 3, "n": "buttonColor"},
            "width": {"sizeType": 4, "value": 200}, "height": {"sizeType": 4, "value": 80},
            "marginLeft": {"sizeType": 4, "value": 40}, "marginTop": {"sizeType": 4, "value": 60},
            "cornerLeftTop": {"sizeType": 4, "value": 40}, "cornerRightTop": {"sizeType": 4, "value": 40},
            "cornerRightBottom": {"sizeType": 4, "value": 40}, "cornerLeftBottom": {"sizeType": 4, "value": 40}}]},
         "events": [
           {"n": "press", "a": [], "b": [{"$": 4, "n": "buttonColor", "value": "#DD2222FF"}]},
           {"n": "fail", "a": [], "b": [{"$": 5, "n": "p", "a": [1]}]}]}
        """;

    private static final int GREY = 0xF4F6F8;
    private static final int BLUE = 0x2266DD;
    private static final int RED = 0xDD2222;

    public static void main(String[] args) throws Exception {
        work = Files.createTempDirectory("mero-preview-tests");
        Path card = write("card.json", CARD);

        check("a card is drawn at --width (750 by default) and its own height or --height, scaled to it", () -> {
            equal(0, preview(card, "--width", "375", "--out", out("half")).exitCode(), "exit code at --width");
            equal(0, preview(card, "--height", "300", "--out", out("tall")).exitCode(), "exit code at --height");
            BufferedImage half = picture("half", 0), tall = picture("tall", 0);
            equal("375x100 750x300", size(half) + " " + size(tall), "picture sizes");
            equal(List.of(GREY, BLUE, GREY, GREY), colours(half, 5, 5, 70, 50, 21, 31, 150, 90),
                    "root, button centre, outside the button's rounded corner, right of the button");
            equal(List.of(BLUE, GREY), colours(tall, 140, 100, 140, 150), "tall: button centre, below the button");
        });
        check("each scenario step writes a picture and a tree", () -> {
            Path scenario = write("click.json", "[{\"click\": \"button\", \"note\": \"press it\"}]");
            Run run = preview(card, "--scenario", scenario.toString(), "--out", out("click"));
            equal(0, run.exitCode(), "exit code");
            equal(List.of(BLUE, RED), List.of(colours(picture("click", 0), 140, 100).get(0),
                    colours(picture("click", 1), 140, 100).get(0)), "the button before and after the click");
            String tree = Files.readString(work.resolve("click/step-01.tree.json"), UTF_8);
            equal(true, tree.contains("\"backgroundColor\": \"#DD2222FF\""), "the new colour is in the tree");
            equal(false, Files.exists(work.resolve("click/step-02.png")), "no step beyond the scenario");
        });

        check("a script error and the template checker's findings are shown; --strict fails on them after drawing",
                () -> {
            Path scenario = write("fail.json", "[{\"event\": \"fail\"}]");
            Path misspelled = write("misspelled.json",
                    "{\"elements\": {\"$\": 0, \"nodeId\": \"root\",\n  \"backgroundColour\": \"#FF0000FF\"}}");
            for (String mode : List.of("lenient", "strict")) {
                String strict = mode.equals("strict") ? "--strict" : "";
                Run failing = preview(card, "--scenario", scenario.toString(), strict, "--out", out(mode));
                Run checked = preview(misspelled, strict, "--out", out("checked-" + mode));
                int exitCode = mode.equals("strict") ? 1 : 0;
                equal(List.of(exitCode, exitCode), List.of(failing.exitCode(), checked.exitCode()), mode + " exit codes");
                equal(true, failing.stderr().contains("mero-preview: step-01: set timeout args size not match"),
                        mode + " message in " + failing.stderr());
                equal(misspelled + ":2:3: error: unknown property \"backgroundColour\" of a view node; "
                        + "did you mean \"backgroundColor\"?", checked.stdout().lines().findFirst().orElse(""),
                        mode + " the checker's finding is the first line");
                equal(true, Files.exists(work.resolve(mode + "/step-01.png")), mode + " still draws the step");
                equal(true, Files.exists(work.resolve("checked-" + mode + "/step-00.png")), mode + " still draws");
            }
        });
        check("a template that is not JSON is reported, and still gives a first picture", () -> {
            Path broken = write("broken.json", "<card/>");
            Run run = preview(broken, "--strict", "--out", out("broken"));
            equal(1, run.exitCode(), "exit code");
            equal(true, run.stderr().contains("mero-preview: step-00: Syntax error: '{' expected."),
                    "message in " + run.stderr());
            equal(true, Files.exists(work.resolve("broken/step-00.png")), "first picture");
        });
        check("a missing or unreadable file, or a bad option or scenario, is one line and exit 2", () -> {
            Path badScenario = write("bad-scenario.json", "[{\"click\": ");
            Path unknownStep = write("unknown-step.json", "[{\"shake\": 1}]");
            Map<String, String[]> cases = Map.of(
                    "missing template", new String[] {work.resolve("none.json").toString()},
                    "missing data", new String[] {card.toString(), "--data", work.resolve("none.json").toString()},
                    "a folder as the template", new String[] {work.toString()},
                    "a width that is not a number", new String[] {card.toString(), "--width", "wide"},
                    "an unknown option", new String[] {card.toString(), "--colour"},
                    "a scenario that is not JSON", new String[] {card.toString(), "--scenario", badScenario.toString()},
                    "an unknown step", new String[] {card.toString(), "--scenario", unknownStep.toString()});
            for (Map.Entry<String, String[]> entry : cases.entrySet()) {
                Run run = run(entry.getValue());
                String[] lines = run.stderr().strip().split("\n");
                equal(2, run.exitCode(), entry.getKey() + " exit code");
                equal(1, lines.length, entry.getKey() + " lines in " + run.stderr());
                equal(true, lines[0].startsWith("mero-preview: "), entry.getKey() + " prefix of " + lines[0]);
            }
        });
        Checks.finish();
    }

    private static Path write(String name, String text) throws Exception {
        return Files.writeString(work.resolve(name), text, UTF_8);
    }

    private static String out(String name) {
        return work.resolve(name).toString();
    }

    private static BufferedImage picture(String folder, int step) throws Exception {
        return ImageIO.read(work.resolve(folder).resolve(String.format("step-%02d.png", step)).toFile());
    }

    private static String size(BufferedImage picture) {
        return picture.getWidth() + "x" + picture.getHeight();
    }

    /** The RGB colour (alpha dropped) at each (x, y) pair. */
    private static List<Integer> colours(BufferedImage picture, int... points) {
        List<Integer> colours = new ArrayList<>();
        for (int i = 0; i + 1 < points.length; i += 2) {
            colours.add(picture.getRGB(points[i], points[i + 1]) & 0xFFFFFF);
        }
        return colours;
    }

    /** Runs mero-preview on the template; empty options are left out. */
    private static Run preview(Path template, String... options) throws Exception {
        List<String> arguments = new ArrayList<>(List.of(template.toString()));
        arguments.addAll(Stream.of(options).filter(option -> !option.isEmpty()).toList());
        return run(arguments.toArray(String[]::new));
    }

    /** Runs tools/mero-preview on the build under test, its output kept in files. */
    private static Run run(String... arguments) throws Exception {
        List<String> command = new ArrayList<>(List.of(ROOT.resolve("tools/mero-preview").toString()));
        command.addAll(List.of(arguments));
        Path stdout = Files.createTempFile(work, "stdout", ".txt");
        Path stderr = Files.createTempFile(work, "stderr", ".txt");
        ProcessBuilder builder = new ProcessBuilder(command).redirectOutput(stdout.toFile())
                .redirectError(stderr.toFile());
        builder.environment().put("MERO_BUILD", System.getProperty("mero.build"));
        int exitCode = builder.start().waitFor();
        return new Run(exitCode, Files.readString(stdout, UTF_8), Files.readString(stderr, UTF_8));
    }
}
