package com.fernwick.android.ad.mero.test;

import static com.fernwick.android.ad.mero.test.Checks.check;
import static com.fernwick.android.ad.mero.test.Checks.equal;
import static com.fernwick.android.ad.mero.test.Checks.messageOf;

import com.fernwick.android.ad.mero.preview.BridgeFixture;
import com.fernwick.android.ad.mero.preview.Json;
import com.fernwick.android.ad.mero.preview.PreviewHost;
import com.fernwick.android.ad.mero.preview.PropertyTable;
import com.fernwick.android.ad.mero.preview.Scenario;
import com.fernwick.android.ad.mero.preview.TreeWriter;
import com.fernwick.android.ad.mero.preview.ViewNode;
import com.fernwick.android.ad.mero.preview.VirtualClock;

import java.awt.image.BufferedImage;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.List;
import javax.imageio.ImageIO;

/**
 * The previewer's own host logic that the example cards' snapshots do not
 * pin down: the virtual clock's order, video positions behind the start,
 * bridge reply sequencing and delays, the download model's package matching,
 * and the JSON reader and writer with the tree file's number format.
 */
public final class PreviewHostTests {
    private PreviewHostTests() {}

    /** Texts a, b, c and answer, bound to variables of the same names; events that start a video and ask the bridge. */
    private static final String CARD = """
        {"variables": {"a": "-", "b": "-", "c": "-", "answer": "-"},
         "elements": {"$": 3, "nodeId": "root", "children": [
           {"$": 4, "nodeId": "a", "text": {"$": 3, "n": "a"}}, {"$": 4, "nodeId": "b", "text": {"$": 3, "n": "b"}},
           {"$": 4, "nodeId": "c", "text": {"$": 3, "n": "c"}},
           {"$": 4, "nodeId": "answer", "text": {"$": 3, "n": "answer"}},
           {"$": 10, "nodeId": "video"}]},
         "events": [
           {"n": "play", "a": [], "b": [
             {"$": 5, "n": "x", "a": [0.5, {"$": 14, "a": [], "b": [{"$": 4, "n": "a", "value": "fired"}]}]},
             {"$": 5, "n": "x", "a": [1.5, {"$": 14, "a": [], "b": [{"$": 4, "n": "b", "value": "fired"}]}]},
             {"$": 5, "n": "x", "a": [2.5, {"$": 14, "a": [], "b": [{"$": 4, "n": "c", "value": "fired"}]}]},
             {"$": 5, "n": "y", "a": [1000, 30]}]},
           {"n": "ask", "a": [], "b": [{"$": 5, "n": "k", "a": ["getUser", {},
             {"$": 14, "a": ["r"], "b": [{"$": 4, "n": "answer", "value": {"$": 1, "n": "r"}}]}]}]}]}
        """;

    private static int nextHandle = 100;

    public static void main(String[] args) {
        System.load(System.getProperty("mero.library"));
        check("the clock runs due jobs in time order, ties in scheduling order, new ones if due",
                PreviewHostTests::clock);
        check("video positions before the start never fire; the others fire at their distance from it",
                PreviewHostTests::videoTimers);
        check("bridge replies go in order and the last repeats; delayMs answers on the clock",
                PreviewHostTests::bridgeReplies);
        check("malformed bridge fixtures say what is wrong", PreviewHostTests::badFixtures);
        check("an autoplay swiper turns a page every interval and reports it; only a circular one wraps",
                PreviewHostTests::swiperAutoplay);
        check("a loaded image sizes its view through markDirty; a missing file leaves none",
                PreviewHostTests::images);
        check("measured text: the offered size when exact, at most the bound, else whole pixels",
                PreviewHostTests::measureModes);
        check("a download reply with a package moves only that package's buttons", PreviewHostTests::downloadModel);
        check("scenario steps read with their defaults; a bad step names itself and what is wrong",
                PreviewHostTests::scenarios);
        check("JSON text reads and writes back compactly; errors name line and column", PreviewHostTests::jsonRoundTrip);
        check("tree numbers: whole without a fraction, others rounded half up to 2 decimals",
                PreviewHostTests::treeNumbers);
        check("the generated property table holds every id, key and type of the engine's tables",
                PreviewHostTests::generatedTable);
        Checks.finish();
    }

    /** Each line of the engine's listing: "property ID NAME key" or "type CODE name ID...". */
    private static void generatedTable() throws Exception {
        List<String> lines = Files.readAllLines(Path.of(System.getProperty("mero.hostTables")));
        equal(true, lines.size() > 80, "listing read");
        for (String line : lines) {
            String[] words = line.split(" ");
            int number = Integer.parseInt(words[1]);
            if (words[0].equals("property")) {
                equal(number, PropertyTable.class.getField(words[2]).getInt(null), words[2]);
                equal(words[3], PropertyTable.key(number), "key of " + number);
            } else {
                equal(words[2], PropertyTable.typeName(number), "name of type " + number);
                for (int i = 3; i < words.length; i++) {
                    equal(true, PropertyTable.idsOf(number).contains(Integer.parseInt(words[i])),
                            "type " + number + " carries " + words[i]);
                }
            }
        }
    }

    private static void clock() {
        VirtualClock clock = new VirtualClock();
        List<String> ran = new ArrayList<>();
        clock.schedule(100, () -> {
            ran.add("a@" + clock.now());
            clock.schedule(0, () -> ran.add("a-then@" + clock.now()));
            clock.schedule(10, () -> ran.add("late@" + clock.now()));
        });
        clock.schedule(50, () -> {
            ran.add("b@" + clock.now());
            clock.schedule(20, () -> ran.add("b-then@" + clock.now()));
        });
        clock.schedule(100, () -> ran.add("c@" + clock.now()));
        clock.schedule(-5, () -> ran.add("now@" + clock.now()));
        clock.advance(100);
        equal(List.of("now@0", "b@50", "b-then@70", "a@100", "c@100", "a-then@100"), ran, "order up to 100");
        equal(100L, clock.now(), "the clock ends at the target");
        clock.advance(9);
        equal(6, ran.size(), "nothing due before 110");
        clock.advance(1);
        equal("late@110", ran.get(6), "the job scheduled while advancing runs on the next advance");
    }

    private static void videoTimers() {
        PreviewHost card = card(CARD, BridgeFixture.empty());
        card.sendEvent(card.handle(), "play", "");
        card.settle();
        equal("-|fired|-", texts(card), "from 1000 ms: 0 ms never, 1000 ms at once");
        card.clock().advance(999);
        equal("-|fired|-", texts(card), "2000 ms is 1000 ms away");
        card.clock().advance(1);
        equal("-|fired|fired", texts(card), "at 1000 ms after the start");
        card.clock().advance(60_000);
        equal("-|fired|fired", texts(card), "the entry behind the start stays unfired");
        equal(30L, card.find("video").videoDuration, "the second number is the video's duration");
        card.releaseInstance(card.handle());
    }

    private static void bridgeReplies() {
        BridgeFixture fixture = BridgeFixture.parse("""
            {"getUser": {"replies": [{"n": 1}, {"n": 2}], "delayMs": 500}, "getApp": {"reply": "same"}}
            """);
        PreviewHost card = card(CARD, fixture);
        card.sendEvent(card.handle(), "ask", "");
        card.clock().advance(499);
        equal("-", card.find("answer").text(PropertyTable.TEXT), "not answered before 500 ms");
        card.clock().advance(1);
        equal("{\"n\":1}", card.find("answer").text(PropertyTable.TEXT), "the first reply at 500 ms");
        for (String expected : new String[] {"{\"n\":2}", "{\"n\":2}"}) {
            card.sendEvent(card.handle(), "ask", "");
            card.clock().advance(500);
            equal(expected, card.find("answer").text(PropertyTable.TEXT), "the last reply repeats");
        }
        card.releaseInstance(card.handle());
        equal(List.of("same", "same", 0L), List.of(fixture.next("getApp").value(), fixture.next("getApp").value(),
                fixture.next("getApp").delayMs()), "one reply for every call, at once");
        equal(null, fixture.next("unknown"), "a method the fixture lacks");
    }

    private static void badFixtures() throws Exception {
        String[][] rows = {
            {"[]", "the bridge fixture must be a JSON object of method names"},
            {"{\"m\": 1}", "bridge method \"m\": expected an object, found number"},
            {"{\"m\": {}}", "bridge method \"m\": give exactly one of \"reply\" and \"replies\""},
            {"{\"m\": {\"replies\": []}}", "bridge method \"m\": \"replies\" must be a non-empty array"},
            {"{\"m\": {\"reply\": 1, \"delayMs\": -1}}",
                "bridge method \"m\": \"delayMs\" must be a whole number of milliseconds >= 0"},
            {"{\"m\": {\"reply\": 1, \"delay\": 5}}", "bridge method \"m\": unknown key \"delay\""},
        };
        for (String[] row : rows) {
            equal(row[1], messageOf(IllegalArgumentException.class, () -> BridgeFixture.parse(row[0])), row[0]);
        }
    }

    private static void swiperAutoplay() throws Exception {
        String swiper = """
            {"$": 8, "nodeId": "ID", "list": ["a", "b", "c"], "item": "item", "autoplay": true, "interval": 1000,
             "circular": CIRCULAR, "onSwiperChange": "changed", "width": {"sizeType": 1, "value": 300},
             "height": {"sizeType": 1, "value": 100}, "children": [{"$": 4, "nodeId": "page", "text": "p"}]}
            """;
        PreviewHost card = card("""
            {"variables": {"last": "-"}, "elements": {"$": 3, "nodeId": "root", "children": [
              ROUND, ONCE, {"$": 4, "nodeId": "last", "text": {"$": 3, "n": "last"}}]},
             "events": [{"n": "changed", "a": ["e"], "b": [{"$": 4, "n": "last", "value": {"$": 1, "n": "e"}}]}]}
            """.replace("ROUND", swiper.replace("ID", "round").replace("CIRCULAR", "true"))
                .replace("ONCE", swiper.replace("ID", "once").replace("CIRCULAR", "false")), BridgeFixture.empty());
        List<String> pages = new ArrayList<>();
        for (int second = 0; second <= 3; second++) {
            card.clock().advance(second == 0 ? 0 : 1000);
            pages.add(card.find("round").currentPage + "/" + card.find("once").currentPage);
        }
        equal(List.of("0/0", "1/1", "2/2", "0/2"), pages, "pages at 0, 1, 2 and 3 s");
        equal("{\"detail\":{\"current\":0}}", card.find("last").text(PropertyTable.TEXT), "the last turn reported");
        card.releaseInstance(card.handle());
    }

    private static void images() throws Exception {
        Path folder = Files.createTempDirectory("mero-preview-images");
        BufferedImage picture = new BufferedImage(40, 20, BufferedImage.TYPE_INT_ARGB);
        ImageIO.write(picture, "png", folder.resolve("pic.png").toFile());
        PreviewHost card = new PreviewHost(nextHandle++, new VirtualClock(), BridgeFixture.empty(), folder);
        card.showCard("""
            {"variables": {"src": "pic.png"}, "elements": {"$": 3, "nodeId": "root", "children": [
              {"$": 5, "nodeId": "pic", "src": {"$": 3, "n": "src"}, "width": {"sizeType": 1, "value": 100}}]},
             "events": [{"n": "swap", "a": [], "b": [{"$": 4, "n": "src", "value": "missing.png"}]}]}
            """, "{}", 750, null);
        ViewNode pic = card.find("pic");
        equal("40.0x20.0 100.0x50.0", pic.naturalWidth + "x" + pic.naturalHeight + " " + pic.width() + "x"
                + pic.height(), "content size, then the view's frame at its aspect ratio");
        card.sendEvent(card.handle(), "swap", "");
        equal("null 0.0", (pic.image == null ? "null" : "image") + " " + pic.naturalWidth, "after a missing file");
        card.releaseInstance(card.handle());
        Files.delete(folder.resolve("pic.png"));
        Files.delete(folder);
    }

    private static void measureModes() {
        PreviewHost host = new PreviewHost(0, new VirtualClock(), BridgeFixture.empty(), Path.of("."));
        float[] exact = host.measureText("Hello there", 24, 0, 0, 0, 0, 333.5f, 1, 40.25f, 1);
        float[] bounded = host.measureText("Hello there", 24, 0, 0, 0, 0, 10, 2, 5, 2);
        float[] free = host.measureText("Hello there", 24, 0, 0, 0, 0, 0, 0, 0, 0);
        equal("333.5x40.25 10.0x5.0", exact[0] + "x" + exact[1] + " " + bounded[0] + "x" + bounded[1],
                "exact, at most");
        equal(true, free[0] > 100 && free[0] == Math.floor(free[0]) && free[1] == Math.floor(free[1]),
                "undefined: whole pixels, " + free[0] + "x" + free[1]);
    }

    private static void downloadModel() {
        var update = BridgeFixture.DownloadUpdate.of(Json.parse(
                "{\"downloadStatus\": \"active\", \"progress\": 30, \"packageName\": \"com.a\"}"));
        equal(List.of(true, false, false, false), List.of(update.appliesTo("{\"packageName\":\"com.a\",\"x\":1}"),
                update.appliesTo("{\"packageName\":\"com.b\"}"), update.appliesTo(""), update.appliesTo("{bad")),
                "same package only; empty or broken business data never matches");
        var everyButton = BridgeFixture.DownloadUpdate.of(Json.parse("{\"downloadStatus\": \"paused\"}"));
        equal(true, everyButton.appliesTo(""), "no package: every button");
        ViewNode button = new ViewNode(6, "install");
        update.applyTo(button);
        everyButton.applyTo(button);
        equal("paused 30.0", button.downloadState + " " + button.downloadProgress, "no progress keeps the last");
        equal(null, BridgeFixture.DownloadUpdate.of(Json.parse("{\"progress\": 5}")), "no downloadStatus");
    }

    private static void scenarios() throws Exception {
        List<String> read = Scenario.parse("""
            [{"click": "buy", "note": "tap"}, {"event": "e"}, {"event": "e", "payload": [1, {"a": null}]},
             {"advance": 0}, {"swipe": "s", "page": 2}, {"resize": {"width": 600}},
             {"resize": {"width": 1, "height": 9}}]
            """).stream().map(step -> step.action().describe() + (step.note() == null ? "" : " / " + step.note()))
                .toList();
        equal(List.of("click buy / tap", "event e {}", "event e [1,{\"a\":null}]", "advance 0", "swipe s to page 2",
                "resize 600 x auto", "resize 1 x 9"), read, "steps");
        String[][] rows = {
            {"{}", "a scenario must be a JSON array of steps"},
            {"[{\"click\": \"a\"}, 5]", "scenario step 2 (step-02): expected an object, found number"},
            {"[{\"tap\": \"a\"}]",
                "scenario step 1 (step-01): no action (one of click, event, advance, swipe, resize)"},
            {"[{\"click\": \"a\", \"advance\": 1}]", "scenario step 1 (step-01): more than one action: click, advance"},
            {"[{\"click\": \"a\", \"page\": 1}]", "scenario step 1 (step-01): unknown key \"page\" in a click step"},
            {"[{\"click\": \"\"}]", "scenario step 1 (step-01): \"click\" must be a non-empty string"},
            {"[{\"advance\": 1.5}]", "scenario step 1 (step-01): \"advance\" must be a whole number >= 0"},
            {"[{\"swipe\": \"s\"}]", "scenario step 1 (step-01): \"page\" must be a whole number >= 0"},
            {"[{\"resize\": {\"width\": 0}}]",
                "scenario step 1 (step-01): \"resize width\" must be a whole number >= 1"},
            {"[{\"resize\": {\"width\": 9, \"height\": \"tall\"}}]",
                "scenario step 1 (step-01): \"resize height\" must be a whole number >= 1"},
            {"[{\"event\": \"e\", \"note\": 3}]", "scenario step 1 (step-01): \"note\" must be a string"},
        };
        for (String[] row : rows) {
            equal(row[1], messageOf(IllegalArgumentException.class, () -> Scenario.parse(row[0])), row[0]);
        }
    }

    private static void jsonRoundTrip() throws Exception {
        String text = "{\"s\": \"q\\\"\\\\\\n\\u00e9\\t\", \"n\": [0, -1.5, 2e3, 1.0E-4], \"b\": [true, false, null],"
                + " \"o\": {}, \"a\": [], \"s\": \"second\"}";
        Object value = Json.parse(text);
        String compact = "{\"s\":\"q\\\"\\\\\\n\u00e9\\t\",\"n\":[0,-1.5,2000,0.0001],\"b\":[true,false,null],"
                + "\"o\":{},\"a\":[]}";
        equal(compact, Json.write(value), "compact, the first of two equal keys kept");
        equal(value, Json.parse(Json.write(value)), "read back equal");
        String[][] bad = {
            {"{\"a\": 1,}", "expected a member name in quotes at line 1, column 9"},
            {"[1,\n 2", "unexpected end of text, expected ']' at line 2, column 3"},
            {"[01]", "expected ']' at line 1, column 3"},
            {"{} x", "unexpected text after the value at line 1, column 4"},
        };
        for (String[] row : bad) {
            equal(row[1], messageOf(Json.ParseException.class, () -> Json.parse(row[0])), row[0]);
        }
    }

    private static void treeNumbers() {
        ViewNode text = new ViewNode(4, "t");
        text.set(PropertyTable.WIDTH, 750f);
        text.set(PropertyTable.HEIGHT, 1f / 3);
        text.set(PropertyTable.X, 12.345f);
        text.set(PropertyTable.Y, -0f);
        text.set(PropertyTable.OPACITY, 0.5f);
        text.set(PropertyTable.MAX_LINES, 2f);
        text.set(PropertyTable.TEXT, "Hi");
        String tree = TreeWriter.write(3, "advance 10", null, 10, text, List.of(
                new PreviewHost.Animation("t", PropertyTable.OPACITY, 0.125f, 1, 300, 0)));
        equal("""
            {
              "step": 3,
              "action": "advance 10",
              "clock": 10,
              "root": {
                "id": "t",
                "type": "text",
                "frame": {"x": 12.35, "y": 0, "width": 750, "height": 0.33},
                "properties": {"opacity": 0.5, "maxLines": 2, "text": "Hi"}
              },
              "animations": [
                {"id": "t", "property": "opacity", "to": 0.13, "timing": 1, "duration": 300, "delay": 0}
              ]
            }
            """, tree, "tree text");
    }

    /** The template shown 750 wide, as tall as its content, on a fresh handle. */
    private static PreviewHost card(String template, BridgeFixture fixture) {
        PreviewHost card = new PreviewHost(nextHandle++, new VirtualClock(), fixture, Path.of("."));
        card.showCard(template, "{}", 750, null);
        return card;
    }

    private static String texts(PreviewHost card) {
        return String.join("|", card.find("a").text(PropertyTable.TEXT), card.find("b").text(PropertyTable.TEXT),
                card.find("c").text(PropertyTable.TEXT));
    }
}
