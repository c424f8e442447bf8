package com.fernwick.android.ad.mero.test;

import static com.fernwick.android.ad.mero.test.Check.equal;
import static com.fernwick.android.ad.mero.test.Check.isTrue;

import java.util.List;

/**
 * Drives libmero.so through its 21 natives on a real JVM, with a recording
 * host, and checks every call the engine makes back.
 */
public final class EndToEndTests {
    private EndToEndTests() {}

    public static void main(String[] args) throws Exception {
        System.load(System.getProperty("mero.library"));

        Check.run("a card is created from template to views", EndToEndTests::lifecycle);
        Check.run("every node kind fills its slots", EndToEndTests::slotsOfEveryKind);
        Check.run("a refused child is not added", EndToEndTests::refusedChild);
        Check.run("data and extra data merge without replacing", EndToEndTests::dataMerge);
        Check.run("a click runs its handler and sends the change", EndToEndTests::click);
        Check.run("showing and hiding a child reaches the parent view", EndToEndTests::visibility);
        Check.run("events deliver their payload", EndToEndTests::events);
        Check.run("a timeout job runs once", EndToEndTests::timeouts);
        Check.run("video timer jobs carry whole seconds and consecutive ids", EndToEndTests::videoJobs);
        Check.run("bridge answers reach their callbacks", EndToEndTests::bridgeAnswers);
        Check.run("the script log reaches sendALog", EndToEndTests::logSink);
        Check.run("swiper page changes dispatch the swiper's event", EndToEndTests::swiperPages);
        Check.run("animated and boxed updates", EndToEndTests::liveUpdates);
        Check.run("an image is measured from its view's content size", EndToEndTests::contentSize);
        Check.run("a root shown later becomes the root view", EndToEndTests::rootShownLater);
        Check.run("updateEnv moves a card to another thread", EndToEndTests::otherThread);
        Check.run("updateLayout acts only on a size change", EndToEndTests::updateLayout);
        Check.run("markDirty re-measures content-sized nodes only", EndToEndTests::markDirty);
        Check.run("released and unknown handles do nothing", EndToEndTests::releasedHandles);
        Check.run("a duplicate handle keeps the first instance", EndToEndTests::duplicateHandle);
        Check.run("an exception stops at the native without debugMode", EndToEndTests::exceptionBoundary);
        Check.run("an exception ends the process with debugMode", EndToEndTests::debugModeFailsFast);
        Check.run("bridge and log lines reach standard error", EndToEndTests::logLines);
        Check.run("loading without the host class fails", EndToEndTests::loadWithoutHostClass);
        Check.run("loading with a mismatched host class fails", EndToEndTests::loadWithMismatchedHostClass);
        System.exit(Check.finish());
    }

    private static void lifecycle() {
        Card card = Card.show(1, Templates.CARD, "{}", 750f, 1334f);
        isTrue(card.root != null, "createComponentTree answers the root view");
        equal(List.of("createComponent 3 root", "createComponent 4 title", "addChild root title",
                "createComponent 5 logo", "addChild root logo", "createComponent 4 answer", "addChild root answer"),
                card.seen(), "views made, hidden badge left out");
        RecordingHost.Created root = card.host.createdFor("root");
        equal(750f, root.floats[0], "root width, 100% of the container");
        equal(400f, root.floats[1], "root height");
        RecordingHost.Created title = card.host.createdFor("title");
        equal("120.0 30.0 0.0 0.0", frame(title), "title frame from the host's measurement");
        equal("Hello", title.strings[3], "title text");
        equal("tapTitle", title.strings[7], "click event name");
        equal(24f, title.floats[24], "font size");
        equal(2, title.ints[0], "max lines");
        equal("100.0 50.0 120.0 0.0", frame(card.host.createdFor("logo")), "logo frame, after the title");
        card.release();
    }

    private static String frame(RecordingHost.Created created) {
        return created.floats[0] + " " + created.floats[1] + " " + created.floats[2] + " " + created.floats[3];
    }

    private static void slotsOfEveryKind() {
        Card card = Card.show(2, Templates.EVERY_KIND, "{}", 750f, 2000f);
        List<String> seen = card.seen();
        equal(List.of("createComponent 3 root", "createComponent 0 view", "addChild root view",
                "createComponent 4 text", "addChild root text", "createComponent 5 image", "addChild root image",
                "createComponent 6 progress", "addChild root progress", "createComponent 7 rating",
                "addChild root rating", "createComponent 8 swiper", "createComponent 4 page#0",
                "addChild swiper page#0", "createComponent 4 page#1", "addChild swiper page#1", "start swiper",
                "addChild root swiper", "createComponent 9 custom", "addChild root custom",
                "createComponent 10 video", "addChild root video", "createComponent 11 blur", "addChild root blur",
                "createComponent 4 pageInfo", "addChild root pageInfo", "createComponent 0 inner1",
                "addChild root inner1", "createComponent 0 inner3", "addChild root inner3"), seen,
                "every kind made; the flattened group hands up its shown children");

        RecordingHost.Created view = card.host.createdFor("view");
        equal(0, view.type, "view type");
        equal(200f, view.floats[0], "width");
        equal(100f, view.floats[1], "height");
        equal(4f, view.floats[4], "padding left");
        equal(0.5f, view.floats[8], "opacity");
        equal(45f, view.floats[15], "rotation z");
        equal(8f, view.floats[16], "corner left top");
        equal(2f, view.floats[22], "border top");
        equal(3f, view.floats[36], "translate x");
        equal("#FF0000FF", view.strings[1], "background colour");
        equal("#00FF00FF", view.strings[2], "border colour");
        equal("tapView", view.strings[7], "click event");
        isTrue(view.strings[22].contains("\"name\":\"pulse\"") && view.strings[22].contains("\"duration\":300"),
                "loop animation as JSON: " + view.strings[22]);
        equal(Integer.valueOf(90), view.gradientType, "gradient type");
        equal(List.of("#000000FF", "#111111FF", "#222222FF", "#333333FF", "#444444FF"),
                List.of(view.gradientColors), "five gradient colours");
        equal("[0.0, 0.25, 0.5, 0.75, 1.0]", java.util.Arrays.toString(view.gradientPositions), "positions");

        RecordingHost.Created text = card.host.createdFor("text");
        equal("Hi", text.strings[3], "text");
        equal("#123456FF", text.strings[4], "text colour");
        equal(3, text.ints[0], "max lines");
        equal(700, text.ints[1], "font weight");
        equal(1, text.ints[2], "text align");
        equal("28.0 34.0 2.0", text.floats[24] + " " + text.floats[25] + " " + text.floats[26], "font sizes");
        equal("", text.strings[22], "no loop animation leaves slot 22 empty");
        equal(null, text.gradientType, "no gradient passes null");

        RecordingHost.Created image = card.host.createdFor("image");
        equal("https://cdn.example/a.png", image.strings[6], "src");
        equal(2, image.ints[3], "scale mode");

        RecordingHost.Created progress = card.host.createdFor("progress");
        equal(List.of("#A1", "#A2", "#A3", "#A4", "#A5", "Get", "Loading", "Paused", "Open", "Installed"),
                List.of(progress.strings).subList(11, 21), "progress strings 11 to 20");
        equal("{\"appId\":12}", progress.strings[21], "business data as JSON");
        equal(20f, progress.floats[24], "progress font size");
        equal(500, progress.ints[1], "progress font weight");

        RecordingHost.Created rating = card.host.createdFor("rating");
        equal("4.5 12.0 0.3", rating.floats[28] + " " + rating.floats[29] + " " + rating.floats[30], "rating");
        equal("#FFD700FF", rating.strings[10], "star colour");

        RecordingHost.Created swiper = card.host.createdFor("swiper");
        equal("400.0 3000.0", swiper.floats[31] + " " + swiper.floats[32], "duration, interval");
        equal(1, swiper.ints[4], "direction");
        equal("true true true", swiper.booleans[0] + " " + swiper.booleans[1] + " " + swiper.booleans[2],
                "circular, autoplay, touchable");
        equal("a", card.host.createdFor("page#0").strings[3], "first page's item");
        equal("750.0 300.0", card.host.createdFor("page#1").floats[0] + " "
                + card.host.createdFor("page#1").floats[1], "a page has the swiper's size");

        RecordingHost.Created custom = card.host.createdFor("custom");
        equal("lottie", custom.strings[23], "custom type");
        equal("{\"loop\":true}", custom.strings[9], "extra");

        RecordingHost.Created video = card.host.createdFor("video");
        equal(List.of("m", "v1", "https://v/1.mp4", "t", "d", "https://v/1.jpg", "pk", "tg", "st"),
                List.of(video.strings).subList(24, 33), "video strings 24 to 32");
        equal(12f, video.floats[38], "init time as a whole number");
        equal("1 2 1024", video.ints[6] + " " + video.ints[7] + " " + video.ints[8], "modes and cache size");
        equal("true true false true false true", video.booleans[1] + " " + video.booleans[3] + " "
                + video.booleans[4] + " " + video.booleans[5] + " " + video.booleans[6] + " " + video.booleans[7],
                "autoplay, muted, loop, pause on hide, (306 unused), auto prepare");

        RecordingHost.Created blur = card.host.createdFor("blur");
        equal("8.0 0.6", blur.floats[39] + " " + blur.floats[40], "blur radius and alpha");
        card.release();
    }

    private static void refusedChild() {
        Card card = new Card(3);
        card.host.refusedIds.add("title");
        card.start(Templates.CARD, "{}", "{}", 750f, 1334f, 1, 1, false, true);
        equal(List.of("createComponent 3 root", "createComponent 4 title", "createComponent 5 logo",
                "addChild root logo", "createComponent 4 answer", "addChild root answer"), card.seen(),
                "the other children are added");
        card.release();
    }

    private static void dataMerge() {
        String template = """
            {"elements": {"$": 3, "nodeId": "root", "children": [
              {"$": 4, "nodeId": "a", "text": {"$": 19, "n": "a"}},
              {"$": 4, "nodeId": "b", "text": {"$": 19, "n": "b"}},
              {"$": 0, "nodeId": "scaled", "width": {"sizeType": 4, "value": 100}}]}}
            """;
        Card card = new Card(4);
        card.host.initMREngine(4, false, true);
        card.host.setScreenWidth(4, 1080f);
        card.host.loadTemplate(4, template);
        card.host.setData(4, "{\"a\":\"1\"}", "{\"a\":\"2\",\"b\":\"3\"}");
        card.host.initContainerSize(4, 1080f, 500f, 1, 1);
        card.host.initNode(4);
        card.host.triggerInitEvent(4);
        card.host.applyLayout(4);
        card.host.createComponentTree(4);
        equal("1", card.host.createdFor("a").strings[3], "data keeps its own a");
        equal("3", card.host.createdFor("b").strings[3], "extra data adds b");
        equal(144f, card.host.createdFor("scaled").floats[0], "screen width 1080 scales by 1.44");
        card.release();
    }

    private static void click() {
        Card card = Card.show(5, Templates.CARD, "{}", 750f, 1334f);
        card.seen();
        card.host.sendClickEvent(5, "title");
        equal(List.of("update title 203=STapped"), card.seen(), "text update");
        card.host.sendClickEvent(5, "logo");
        card.host.sendClickEvent(5, "nobody");
        equal(List.of(), card.seen(), "nodes without a click event, or unknown, do nothing");
        card.release();
    }

    private static void visibility() {
        Card card = Card.show(6, Templates.CARD, "{}", 750f, 1334f);
        card.seen();
        card.host.sendEvent(6, "showBadge", "");
        // In enlisting order: the siblings moved by the badge were enlisted
        // by the first layout, the root by the child change.
        equal(List.of("update logo 2=F160.0", "update answer 2=F260.0", "createComponent 0 badge",
                "addChildAt root 1 badge"), card.seen(), "shown at its index among shown siblings");
        equal("40.0 40.0 120.0 0.0", frame(card.host.createdFor("badge")), "at its laid-out frame");
        card.host.sendEvent(6, "hideBadge", "");
        equal(List.of("removeChildAt root 1", "update logo 2=F120.0", "update answer 2=F220.0"), card.seen(),
                "hidden, and the siblings move back");
        card.host.sendEvent(6, "showBadge", "");
        equal(List.of("createComponent 0 badge", "addChildAt root 1 badge", "update logo 2=F160.0",
                "update answer 2=F260.0"), card.seen(), "shown again with a new view");
        card.release();
    }

    private static void events() {
        Card card = Card.show(7, Templates.CARD, "{}", 750f, 1334f);
        card.seen();
        card.host.sendEvent(7, "echo", "");
        equal(List.of("update answer 203=S{}"), card.seen(), "an empty payload is an empty object");
        card.host.sendEvent(7, "echo", "{\"n\":2}");
        equal(List.of("update answer 203=S{\"n\":2}"), card.seen(), "a payload is parsed");
        card.host.sendEvent(7, "notification", "{}");
        equal(List.of("update answer 203=S{}"), card.seen(), "notification is delivered too");
        card.host.sendEvent(7, "nobodyListens", "");
        equal(List.of(), card.seen(), "an unknown event changes nothing");
        card.release();
    }

    private static void timeouts() {
        Card card = Card.show(8, Templates.CARD, "{}", 750f, 1334f);
        card.seen();
        card.host.sendEvent(8, "startTimer", "");
        equal(List.of("setTimeout 99"), card.seen(), "99.9 ms truncated");
        int id = (int) card.host.timeouts.get(0)[1];
        isTrue(id >= 0 && id < 10000, "job id in 0..9999: " + id);
        card.host.executeTimeoutJob(8, id);
        equal(List.of("update title 203=STimed"), card.seen(), "the job runs and flushes");
        card.host.sendEvent(8, "tapTitle", "");
        card.seen();
        card.host.executeTimeoutJob(8, id);
        equal(List.of(), card.seen(), "a job runs once");
        card.release();
    }

    private static void videoJobs() {
        Card card = Card.show(9, Templates.CARD, "{}", 750f, 1334f);
        card.seen();
        card.host.sendEvent(9, "startVideo", "");
        equal(List.of("startVideoTimerTask 5 3 [0, 1000]"), card.seen(), "times in whole seconds x 1000");
        int[] ids = card.host.videoTasks.get(0).ids;
        equal(ids[0] + 1, ids[1], "consecutive ids");
        card.host.executeVideoTimerJob(9, ids[1]);
        equal(List.of("update answer 203=Sat 1.5"), card.seen(), "the second entry's job");
        card.host.executeVideoTimerJob(9, ids[1]);
        equal(List.of(), card.seen(), "each entry runs once");
        card.host.clearVideoTimerJobs(9);
        card.host.executeVideoTimerJob(9, ids[0]);
        equal(List.of(), card.seen(), "cleared jobs never run");
        card.release();
    }

    private static void bridgeAnswers() {
        Card card = Card.show(10, Templates.CARD, "{}", 750f, 1334f);
        card.seen();
        card.host.sendEvent(10, "ask", "");
        equal(List.of("callJSB getUser {\"id\":7}"), card.seen(), "params as JSON");
        long callbackId = card.host.bridgeCalls.get(0).callbackId;
        isTrue(callbackId != 0, "callback id is an address");
        card.host.handleResult(10, "{\"name\":\"Ann\"}", callbackId);
        equal(List.of("update answer 203=S{\"name\":\"Ann\"}"), card.seen(), "the whole result");

        card.host.immediateKeyPathResults.put("getData", "{\"data\":5,\"other\":1}");
        card.host.sendEvent(10, "askPath", "");
        equal(List.of("callJSBWithKeyPath getData {\"id\":7} \"user.age\"", "update answer 203=F5.0"), card.seen(),
                "the key-path answer passes its data member");
        card.release();
    }

    private static void logSink() {
        Card card = Card.show(11, Templates.CARD, "{}", 750f, 1334f);
        card.seen();
        card.host.sendEvent(11, "log", "");
        equal(List.of("sendALog from script"), card.seen(), "script log");
        card.release();
    }

    private static void swiperPages() {
        Card card = Card.show(12, Templates.EVERY_KIND, "{}", 750f, 2000f);
        card.seen();
        card.host.sendSwiperEvent(12, "swiper", 1);
        equal(List.of("update pageInfo 203=S{\"detail\":{\"current\":1}}"), card.seen(), "page event payload");
        card.host.sendSwiperEvent(12, "view", 1);
        equal(List.of(), card.seen(), "not a swiper: nothing");
        card.release();
    }

    private static void liveUpdates() {
        Card card = Card.show(18, Templates.LIVE_UPDATES, "{}", 750f, 1334f);
        card.seen();
        card.host.sendEvent(18, "dim", "");
        equal(List.of("animate fade 8=F0.5 2/300/10"), card.seen(), "opacity animated: timing, duration, delay");
        card.host.sendEvent(18, "play", "");
        equal(List.of("update player 301=Btrue"), card.seen(), "a boolean boxed as Boolean");
        card.release();
    }

    private static void contentSize() {
        Card card = Card.show(19, Templates.LIVE_UPDATES, "{}", 750f, 1334f);
        equal(0f, card.host.createdFor("photo").floats[1], "no view yet: measured 0 high");
        card.seen();
        card.host.markDirty(19, "photo");
        equal(List.of("getContentSize photo", "update photo 1=F25.0"), card.seen(),
                "content 200 by 50 at width 100 is 25 high");
        card.release();
    }

    private static void rootShownLater() {
        Card card = Card.show(20, Templates.LIVE_UPDATES, "{}", 750f, 1334f);
        card.seen();
        card.host.sendEvent(20, "show", "");
        List<String> seen = card.seen();
        equal("createComponent 3 root", seen.get(0), "the root's view is made again");
        equal("addRootView root", seen.get(seen.size() - 1), "and handed to the host as its root view");
        card.release();
    }

    private static void otherThread() throws Exception {
        Card card = Card.show(21, Templates.CARD, "{}", 750f, 1334f);
        card.seen();
        Thread driver = new Thread(() -> {
            card.host.updateEnv(21);
            card.host.sendClickEvent(21, "title");
            card.host.sendEvent(21, "showBadge", "");
        });
        driver.start();
        driver.join();
        card.host.updateEnv(21);
        equal(List.of("update title 203=STapped", "createComponent 0 badge", "addChildAt root 1 badge",
                "update logo 2=F160.0", "update answer 2=F260.0"), card.seen(),
                "views made and updated from the other thread");
        card.release();
    }

    private static void updateLayout() {
        Card card = Card.show(13, Templates.CARD, "{}", 750f, 1334f);
        card.seen();
        card.host.updateLayout(13, 750f, 1334f, 2, 2);
        equal(List.of(), card.seen(), "same sizes, other modes: nothing");
        card.host.updateLayout(13, 600f, 1334f, 1, 1);
        equal(List.of("update root 0=F600.0"), card.seen(), "a new width lays the card out again");
        card.release();
    }

    private static void markDirty() {
        Card card = Card.show(14, Templates.CARD, "{}", 750f, 1334f);
        card.seen();
        card.host.textSize = new float[] {200f, 40f};
        card.host.markDirty(14, "badge");
        card.host.markDirty(14, "nobody");
        equal(List.of(), card.host.take(), "fixed-size or unknown nodes: nothing, not even a measurement");
        card.host.markDirty(14, "title");
        List<String> seen = card.host.take();
        isTrue(seen.size() > 0 && seen.get(0).startsWith("measureText Hello 24.0 0 2 "), "re-measured: " + seen);
        seen.removeIf(call -> call.startsWith("measureText "));
        // In enlisting order: the siblings were enlisted by the first layout.
        equal(List.of("update logo 2=F200.0", "update answer 2=F300.0", "update title 0=F200.0",
                "update title 1=F40.0"), seen, "the new size and the siblings' new positions");
        card.release();
    }

    private static void releasedHandles() {
        Card card = Card.show(15, Templates.CARD, "{}", 750f, 1334f);
        card.host.sendEvent(15, "startTimer", "");
        int id = (int) card.host.timeouts.get(0)[1];
        card.seen();
        card.release();
        for (int handle : new int[] {15, 4242}) {
            card.host.sendEvent(handle, "tapTitle", "");
            card.host.sendClickEvent(handle, "title");
            card.host.sendSwiperEvent(handle, "title", 1);
            card.host.executeTimeoutJob(handle, id);
            card.host.executeVideoTimerJob(handle, id);
            card.host.clearVideoTimerJobs(handle);
            card.host.handleResult(handle, "{}", 12345L);
            card.host.handleKeyPathResult(handle, "{}", 12345L);
            card.host.updateLayout(handle, 10f, 10f, 1, 1);
            card.host.markDirty(handle, "title");
            card.host.releaseInstance(handle);
        }
        equal(List.of(), card.seen(), "no host call after release");
    }

    private static void duplicateHandle() {
        Card first = Card.show(16, Templates.CARD, "{}", 750f, 1334f);
        first.seen();
        RecordingHost second = new RecordingHost(16);
        second.initMREngine(16, false, true);
        second.sendEvent(16, "tapTitle", "");
        equal(List.of("update title 203=STapped"), first.seen(), "the first instance still answers");
        equal(List.of(), second.take(), "the second never does");
        first.release();
    }

    private static void exceptionBoundary() {
        Card card = new Card(17);
        card.start(Templates.CARD, "{}", "{}", 750f, 1334f, 1, 1, false, false);
        card.seen();
        card.host.sendEvent(17, "echo", "{\"n\": -}");
        card.host.sendClickEvent(17, "title");
        equal(List.of("update title 203=STapped"), card.seen(), "the card goes on after the fault");
        card.release();
    }

    private static void debugModeFailsFast() throws Exception {
        java.io.File errorFile = java.io.File.createTempFile("mero-debug-mode", ".log");
        Subprocess run = Subprocess.java(System.getProperty("mero.hostClasses") + ":"
                + System.getProperty("mero.testClasses"), "com.fernwick.android.ad.mero.test.DebugModeProbe",
                "-XX:ErrorFile=" + errorFile, "-XX:-CreateCoredumpOnCrash");
        errorFile.delete();
        equal("started", run.stdout.strip(), "the card ran up to the fault and no further");
        isTrue(run.exitCode != 0, "the process ended abnormally: " + run.exitCode);
    }

    private static void logLines() throws Exception {
        Subprocess run = Subprocess.java(System.getProperty("mero.hostClasses") + ":"
                + System.getProperty("mero.testClasses"), "com.fernwick.android.ad.mero.test.LogLinesProbe");
        equal(0, run.exitCode, "probe exit code; stderr: " + run.stderr);
        equal(LogLinesProbe.EXPECTED, run.stderrLines(), "log lines in order");
    }

    private static void loadWithoutHostClass() throws Exception {
        Subprocess run = Subprocess.java(System.getProperty("mero.testClasses"),
                "com.fernwick.android.ad.mero.test.LoadProbe");
        equal("failed java.lang.NoClassDefFoundError", run.stdout.strip(), "load refused");
    }

    private static void loadWithMismatchedHostClass() throws Exception {
        Subprocess run = Subprocess.java(System.getProperty("mero.mismatchedClasses") + ":"
                + System.getProperty("mero.testClasses"), "com.fernwick.android.ad.mero.test.LoadProbe");
        equal("failed java.lang.NoSuchMethodError", run.stdout.strip(), "registration refused");
    }
}
