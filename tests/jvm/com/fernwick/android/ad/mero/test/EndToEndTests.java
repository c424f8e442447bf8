package com.fernwick.android.ad.mero.test;

import static java.nio.charset.StandardCharsets.UTF_8;

import static com.fernwick.android.ad.mero.test.Checks.check;
import static com.fernwick.android.ad.mero.test.Checks.equal;
import static com.fernwick.android.ad.mero.test.Checks.messageOf;

import com.fernwick.android.ad.mero.components.GradientInfo;

import java.nio.file.Files;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.Arrays;
import java.util.List;
import java.util.StringJoiner;
import java.util.stream.Stream;

/**
 * Drives libmero.so through its 21 natives on a real JVM with a recording
 * host, and checks every call the engine makes back. With an argument it is
 * instead a probe that a parent test runs in a child JVM.
 */
public final class EndToEndTests {
    private EndToEndTests() {}

    interface Step { void on(RecordingHost card) throws Exception; }

    record Run(int exitCode, String stdout, String stderr) {}

    private static int nextHandle = 1;
    private static final String WITH_HOST =
            System.getProperty("mero.hostClasses") + ":" + System.getProperty("mero.testClasses");

    public static void main(String[] args) throws Exception {
        System.load(System.getProperty("mero.library"));
        if (args.length > 0) {
            probe(args[0]);
            return;
        }
        check("a card is created from template to views; a refused child is not added", EndToEndTests::lifecycle);
        check("every node kind fills its slots", EndToEndTests::slotsOfEveryKind);
        check("data and extra data merge without replacing; the screen width scales", EndToEndTests::dataMerge);

        // Each row: a fresh card, what is done to it once shown, and every host call that follows.
        calls("a click runs its handler; other and unknown nodes do nothing", Templates.CARD,
                c -> { c.click("title"); c.click("logo"); c.click("nobody"); }, "update title 203=STapped");
        calls("showing and hiding a child reaches the parent view at its index, at its frame", Templates.CARD, c -> {
            c.event("showBadge");
            equal("40.0|40.0|120.0|0.0", slots(c, "badge", "f 0 1 2 3"), "badge frame");
            c.event("hideBadge");
            c.event("showBadge");
        }, "update logo 2=F160.0", "update answer 2=F260.0", "createComponent 0 badge", "addChildAt root 1 badge",
                "removeChildAt root 1", "update logo 2=F120.0", "update answer 2=F220.0",
                "createComponent 0 badge", "addChildAt root 1 badge", "update logo 2=F160.0", "update answer 2=F260.0");
        calls("events deliver their payload, an empty one as an object; unknown ones do nothing", Templates.CARD,
                c -> { c.event("echo"); c.event("echo", "{\"n\":2}"); c.event("notification", "{}"); c.event("none"); },
                "update answer 203=S{}", "update answer 203=S{\"n\":2}", "update answer 203=S{}");
        calls("a timeout job runs once", Templates.CARD, c -> {
            c.event("startTimer");
            c.executeTimeoutJob(c.handle, c.timeoutIds.get(0));
            c.event("tapTitle");
            c.executeTimeoutJob(c.handle, c.timeoutIds.get(0));
        }, "setTimeout 99", "update title 203=STimed", "update title 203=STapped");
        calls("video jobs: whole seconds, consecutive ids, each once, none after a clear", Templates.CARD, c -> {
            c.event("startVideo");
            int[] ids = c.videoIds.get(0);
            c.executeVideoTimerJob(c.handle, ids[1]);
            c.executeVideoTimerJob(c.handle, ids[1]);
            c.clearVideoTimerJobs(c.handle);
            c.executeVideoTimerJob(c.handle, ids[0]);
        }, "startVideoTimerTask 5 3 [0, 1000] [0, 1]", "update answer 203=Sat 1.5");
        calls("bridge answers reach their callbacks; a key-path answer passes its data", Templates.CARD, c -> {
            c.keyPathReplies.put("getData", "{\"data\":5,\"other\":1}");
            c.event("ask");
            c.handleResult(c.handle, "{\"name\":\"Ann\"}", c.callbackIds.get(0));
            c.event("askPath");
        }, "callJSB getUser {\"id\":7}", "update answer 203=S{\"name\":\"Ann\"}",
                "callJSBWithKeyPath getData {\"id\":7} \"user.age\"", "update answer 203=F5.0");
        calls("the script log reaches sendALog", Templates.CARD, c -> c.event("log"), "sendALog from script");
        calls("a host method that throws ends the flush there; the caller gets the exception; the card goes on",
                Templates.CARD, c -> {
                    c.throwingId = "badge";
                    equal("host refused badge", messageOf(IllegalStateException.class, () -> c.event("showBadge")),
                            "the host's exception");
                    c.throwingId = null;
                    c.click("title");
                }, "update logo 2=F160.0", "update answer 2=F260.0", "createComponent 0 badge",
                "update title 203=STapped");
        calls("a swiper page change dispatches the swiper's event; not on other nodes", Templates.EVERY_KIND,
                c -> { c.sendSwiperEvent(c.handle, "swiper", 1); c.sendSwiperEvent(c.handle, "view", 1); },
                "update pageInfo 203=S{\"detail\":{\"current\":1}}");
        calls("an opacity update is animated; a boolean is boxed as Boolean", Templates.LIVE_UPDATES,
                c -> { c.event("dim"); c.event("play"); }, "animate fade 8=F0.5 2/300/10", "update player 301=Btrue");
        calls("a root shown later is made with its children and becomes the root view", Templates.LIVE_UPDATES,
                c -> c.event("show"), "createComponent 3 root", "createComponent 0 fade", "addChild root fade",
                "createComponent 10 player", "addChild root player", "createComponent 5 photo", "addChild root photo",
                "addRootView root");
        calls("updateEnv moves a card to another thread", Templates.CARD, c -> {
            Thread driver = new Thread(() -> { c.updateEnv(c.handle); c.click("title"); c.event("showBadge"); });
            driver.start();
            driver.join();
            c.updateEnv(c.handle);
        }, "update title 203=STapped", "createComponent 0 badge", "addChildAt root 1 badge", "update logo 2=F160.0",
                "update answer 2=F260.0");
        calls("markDirty re-measures content-sized nodes only", Templates.CARD, c -> {
            c.textSize = new float[] {200f, 40f};
            c.markDirty(c.handle, "badge");
            c.markDirty(c.handle, "nobody");
            equal(List.of(), c.measures, "fixed-size or unknown nodes are not measured");
            c.markDirty(c.handle, "title");
            equal(List.of("measureText Hello 24.0 0 2 0.0 0.0 750.0 2 400.0 2"), c.measures, "the title is");
        }, "update logo 2=F200.0", "update answer 2=F300.0", "update title 0=F200.0", "update title 1=F40.0");
        calls("released and unknown handles do nothing", Templates.CARD, c -> {
            c.event("startTimer");
            c.take();
            c.releaseInstance(c.handle);
            for (int handle : new int[] {c.handle, 4242}) {
                c.sendEvent(handle, "tapTitle", "");
                c.sendClickEvent(handle, "title");
                c.sendSwiperEvent(handle, "title", 1);
                c.executeTimeoutJob(handle, c.timeoutIds.get(0));
                c.executeVideoTimerJob(handle, c.timeoutIds.get(0));
                c.clearVideoTimerJobs(handle);
                c.handleResult(handle, "{}", 12345L);
                c.handleKeyPathResult(handle, "{}", 12345L);
                c.updateLayout(handle, 10f, 10f, 1, 1);
                c.markDirty(handle, "title");
                c.releaseInstance(handle);
            }
        });
        calls("a duplicate handle keeps the first instance", Templates.CARD, c -> {
            RecordingHost second = new RecordingHost(c.handle);
            second.initMREngine(c.handle, false, true);
            second.event("tapTitle");
            equal(List.of(), second.take(), "the second never answers");
        }, "update title 203=STapped");
        check("an exception stops at the native without debugMode", EndToEndTests::exceptionBoundary);
        check("an exception ends the process with debugMode", EndToEndTests::debugModeFailsFast);
        check("bridge and log lines reach standard error", EndToEndTests::logLines);
        check("loading fails without the host class or with a mismatched native", EndToEndTests::loadRefused);

        Checks.finish();
    }

    /** A fresh card of template; after it is shown, step's host calls must be exactly the expected ones. */
    static void calls(String name, String template, Step step, String... expected) {
        check(name, () -> {
            RecordingHost card = RecordingHost.show(nextHandle++, template);
            card.take();
            step.on(card);
            equal(List.of(expected), card.take(), "host calls");
            card.releaseInstance(card.handle);
        });
    }

    /** Slots of the view made for id, joined by "|": a buffer letter (i, f, s, b) before its slot numbers. */
    private static String slots(RecordingHost card, String id, String wanted) {
        RecordingHost.Created made = card.created.get(id);
        StringJoiner text = new StringJoiner("|");
        String buffer = "";
        for (String word : wanted.split(" ")) {
            if (Character.isLetter(word.charAt(0))) {
                buffer = word;
                continue;
            }
            int i = Integer.parseInt(word);
            text.add(switch (buffer) {
                case "i" -> String.valueOf(made.ints()[i]);
                case "f" -> String.valueOf(made.floats()[i]);
                case "b" -> String.valueOf(made.booleans()[i]);
                default -> made.strings()[i];
            });
        }
        return text.toString();
    }

    /** Each row: a node id, the slots, and their exact contents. */
    private static void slotRows(RecordingHost card, String[][] rows) {
        for (String[] row : rows) {
            equal(row[2], slots(card, row[0], row[1]), row[0] + " " + row[1]);
        }
    }

    private static void lifecycle() {
        RecordingHost card = new RecordingHost(nextHandle++);
        card.refusedIds.add("logo");
        card.start(Templates.CARD);
        equal("root", String.valueOf(card.root), "createComponentTree answers the root view");
        equal(List.of("measureText Hello 24.0 0 2 0.0 0.0 750.0 2 400.0 2",
                "measureText none 0.0 0 0 0.0 0.0 750.0 2 400.0 2"), card.measures, "texts measured at most 750 by 400");
        equal(List.of("createComponent 3 root",
                "createComponent 4 title", "addChild root title", "createComponent 5 logo", "createComponent 4 answer",
                "addChild root answer"), card.take(), "views made; the hidden badge and the refused logo not added");
        slotRows(card, new String[][] {
            {"root", "f 0 1", "750.0|400.0"},
            {"title", "f 0 1 2 3 24 s 3 7 i 0", "120.0|30.0|0.0|0.0|24.0|Hello|tapTitle|2"},
            {"logo", "f 0 1 2 3", "100.0|50.0|120.0|0.0"},
        });
        card.releaseInstance(card.handle);
    }

    private static void slotsOfEveryKind() {
        RecordingHost card = RecordingHost.show(nextHandle++, Templates.EVERY_KIND);
        equal(List.of("createComponent 3 root", "createComponent 0 view", "addChild root view",
                "createComponent 4 text", "addChild root text", "createComponent 5 image", "addChild root image",
                "createComponent 6 progress", "addChild root progress", "createComponent 7 rating",
                "addChild root rating", "createComponent 8 swiper", "createComponent 4 page#0",
                "addChild swiper page#0", "createComponent 4 page#1", "addChild swiper page#1", "start swiper",
                "addChild root swiper", "createComponent 9 custom", "addChild root custom",
                "createComponent 10 video", "addChild root video", "createComponent 11 blur", "addChild root blur",
                "createComponent 4 pageInfo", "addChild root pageInfo", "createComponent 0 inner1",
                "addChild root inner1", "createComponent 0 inner3", "addChild root inner3"),
                card.take(),
                "every kind made; the flattened group hands up its shown children");
        slotRows(card, new String[][] {
            {"view", "f 0 1 4 8 15 16 22 36", "200.0|100.0|4.0|0.5|45.0|8.0|2.0|3.0"},
            {"view", "s 1 2 7 22", "#FF0000FF|#00FF00FF|tapView|{\"name\":\"pulse\"}"},
            {"text", "s 3 4 22 i 0 1 2 f 24 25 26", "Hi|#123456FF||3|700|1|28.0|34.0|2.0"},
            {"image", "s 6 i 3", "https://cdn.example/a.png|2"},
            {"progress", "s 11 12 13 14 15 16 17 18 19 20 21 f 24 i 1",
                "#A1|#A2|#A3|#A4|#A5|Get|Loading|Paused|Open|Installed|{\"appId\":12}|20.0|500"},
            {"rating", "f 28 29 30 s 10", "4.5|12.0|0.3|#FFD700FF"},
            {"swiper", "f 31 32 i 4 b 0 1 2", "400.0|3000.0|1|true|true|true"},
            {"page#0", "s 3", "a"},
            {"page#1", "f 0 1", "750.0|300.0"},
            {"custom", "s 23 9", "lottie|{\"loop\":true}"},
            {"video", "s 24 25 26 27 28 29 30 31 32 f 38 i 6 7 8 b 1 3 4 5 6 7",
                "m|v1|u|t|d|p|pk|tg|st|12.0|1|2|1024|true|true|false|true|false|true"},
            {"blur", "f 39 40", "8.0|0.6"},
        });
        GradientInfo gradient = card.created.get("view").gradient();
        equal("90 [#0, #1, #2, #3, #4] [0.0, 0.25, 0.5, 0.75, 1.0]", gradient.type + " "
                + Arrays.toString(gradient.colors) + " " + Arrays.toString(gradient.positions),
                "gradient, its angle of 90.8 truncated");
        equal(null, card.created.get("text").gradient(), "no gradient passes null");
        card.releaseInstance(card.handle);
    }

    private static void dataMerge() {
        RecordingHost card = new RecordingHost(nextHandle++);
        card.screenWidth = 1080f;
        card.data = "{\"a\":\"1\"}";
        card.extraData = "{\"a\":\"2\",\"b\":\"3\"}";
        card.start("""
            {"elements": {"$": 3, "nodeId": "root", "children": [
              {"$": 4, "nodeId": "a", "text": {"$": 19, "n": "a"}}, {"$": 4, "nodeId": "b", "text": {"$": 19, "n": "b"}},
              {"$": 0, "nodeId": "scaled", "width": {"sizeType": 4, "value": 100}}]}}
            """);
        equal("1|3", slots(card, "a", "s 3") + "|" + slots(card, "b", "s 3"), "data keeps its a, extra data adds b");
        equal("144.0", slots(card, "scaled", "f 0"), "screen width 1080 scales by 1.44");
        card.releaseInstance(card.handle);
    }

    private static void exceptionBoundary() {
        RecordingHost card = new RecordingHost(nextHandle++);
        card.debugMode = false;
        card.start(Templates.CARD).take();
        card.event("echo", "{\"n\": -}");
        card.click("title");
        equal(List.of("update title 203=STapped"), card.take(), "the card goes on after the fault");
        card.releaseInstance(card.handle);
    }

    private static void debugModeFailsFast() throws Exception {
        Run run = child(WITH_HOST, EndToEndTests.class.getName(), "debugMode");
        equal("started", run.stdout.strip(), "the card ran up to the fault and no further");
        equal(true, run.exitCode != 0, "the process ended abnormally: " + run.exitCode);
    }

    private static void logLines() throws Exception {
        Run run = child(WITH_HOST, EndToEndTests.class.getName(), "logLines");
        equal(0, run.exitCode, "probe exit code; stderr: " + run.stderr);
        List<String> expected = new ArrayList<>(Stream.of("initMREngine", "updateEnv", "setScreenWidth", "loadTemplate",
                "setData", "initContainerSize", "initNode", "triggerInitEvent", "applyLayout", "createComponentTree",
                "sendEvent: tapTitle", "sendClickEvent", "markComponentDirty", "sendEvent: startVideo",
                "find video task, executing...", "sendEvent: echo").map(line -> "D/mero_log_jni: " + line).toList());
        expected.add("D/mero_log_cpp: sendEvent: stod");
        equal(expected, run.stderr.lines().toList(), "log lines in order; none once logging is off");
    }

    private static void loadRefused() throws Exception {
        String testClasses = System.getProperty("mero.testClasses");
        equal("failed java.lang.NoClassDefFoundError", child(testClasses, LoadProbe.class.getName()).stdout.strip(),
                "without the host class");
        equal("failed java.lang.NoSuchMethodError", child(System.getProperty("mero.mismatchedClasses") + ":"
                + testClasses, LoadProbe.class.getName()).stdout.strip(), "setScreenWidth declared with a double");
    }

    private static void probe(String name) {
        if (name.equals("debugMode")) {
            // A payload the JSON reader cannot convert: the error must leave the native and end the process.
            RecordingHost card = RecordingHost.show(1, Templates.CARD);
            System.out.println("started");
            System.out.flush();
            card.event("echo", "{\"n\": -}");
            System.out.println("survived");
            return;
        }
        // Logging on: every native that logs, a notification (never logged), cleared video jobs and a fault.
        RecordingHost card = new RecordingHost(1);
        card.logEnabled = true;
        card.debugMode = false;
        card.start(Templates.CARD);
        card.event("tapTitle");
        card.event("notification", "{}");
        card.click("title");
        card.markDirty(1, "title");
        card.event("startVideo");
        card.executeVideoTimerJob(1, card.videoIds.get(0)[0]);
        card.clearVideoTimerJobs(1);
        card.executeVideoTimerJob(1, card.videoIds.get(0)[1]);
        card.event("echo", "{\"n\": -}");
        card.releaseInstance(1);
        // Logging off again: a whole card, an event and a fault log nothing.
        RecordingHost quiet = new RecordingHost(2);
        quiet.debugMode = false;
        quiet.start(Templates.CARD);
        quiet.event("tapTitle");
        quiet.event("echo", "{\"n\": -}");
        quiet.releaseInstance(2);
    }

    /** Run in a child JVM: loads libmero.so and prints "loaded", or "failed" and the error's class. */
    public static final class LoadProbe {
        private LoadProbe() {}

        public static void main(String[] args) {
            try {
                System.load(System.getProperty("mero.library"));
                System.out.println("loaded");
            } catch (Throwable error) {
                System.out.println("failed " + error.getClass().getName());
            }
        }
    }

    /** Runs mainClass in a child JVM with this one's library; a crash leaves no core and no error file behind. */
    private static Run child(String classPath, String mainClass, String... args) throws Exception {
        Path dir = Files.createTempDirectory("mero-child");
        List<String> command = new ArrayList<>(List.of(Path.of(System.getProperty("java.home"), "bin", "java")
                .toString(), "-XX:ErrorFile=" + dir.resolve("crash.log"), "-XX:-CreateCoredumpOnCrash",
                "-Dmero.library=" + System.getProperty("mero.library"), "-cp", classPath, mainClass));
        command.addAll(List.of(args));
        Process process = new ProcessBuilder(command).redirectError(dir.resolve("stderr").toFile()).start();
        String stdout = new String(process.getInputStream().readAllBytes(), UTF_8);
        Run run = new Run(process.waitFor(), stdout, Files.readString(dir.resolve("stderr")));
        try (var files = Files.list(dir)) {
            files.forEach(file -> file.toFile().delete());
        }
        Files.delete(dir);
        return run;
    }
}
