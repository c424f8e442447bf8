package com.fernwick.android.ad.mero.test;

import java.util.List;

/**
 * Run in a child JVM: one card with logging on and debugMode off, through
 * every native that logs, then one with logging off. The parent compares its standard error, where the
 * desktop log writes, with EXPECTED.
 */
public final class LogLinesProbe {
    static final List<String> EXPECTED = List.of(
            "D/mero_log_jni: initMREngine",
            "D/mero_log_jni: updateEnv",
            "D/mero_log_jni: setScreenWidth",
            "D/mero_log_jni: loadTemplate",
            "D/mero_log_jni: setData",
            "D/mero_log_jni: initContainerSize",
            "D/mero_log_jni: initNode",
            "D/mero_log_jni: triggerInitEvent",
            "D/mero_log_jni: applyLayout",
            "D/mero_log_jni: createComponentTree",
            "D/mero_log_jni: sendEvent: tapTitle",
            "D/mero_log_jni: sendClickEvent",
            "D/mero_log_jni: markComponentDirty",
            "D/mero_log_jni: sendEvent: startVideo",
            "D/mero_log_jni: find video task, executing...",
            "D/mero_log_jni: sendEvent: echo",
            "D/mero_log_cpp: sendEvent: stod");

    private LogLinesProbe() {}

    public static void main(String[] args) {
        System.load(System.getProperty("mero.library"));
        Card card = new Card(1);
        card.start(Templates.CARD, "{}", "{}", 750f, 1334f, 1, 1, true, false);
        RecordingHost host = card.host;
        host.sendEvent(1, "tapTitle", "");
        host.sendEvent(1, "notification", "{}");
        host.sendClickEvent(1, "title");
        host.markDirty(1, "title");
        host.sendEvent(1, "startVideo", "");
        host.executeVideoTimerJob(1, host.videoTasks.get(0).ids[0]);
        host.clearVideoTimerJobs(1);
        host.executeVideoTimerJob(1, host.videoTasks.get(0).ids[1]);
        host.sendEvent(1, "echo", "{\"n\": -}");
        card.release();

        // Logging off again: a whole card, an event and a fault log nothing.
        Card quiet = new Card(2);
        quiet.start(Templates.CARD, "{}", "{}", 750f, 1334f, 1, 1, false, false);
        quiet.host.sendEvent(2, "tapTitle", "");
        quiet.host.sendEvent(2, "echo", "{\"n\": -}");
        quiet.release();
    }
}
