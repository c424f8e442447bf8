package com.fernwick.android.ad.mero.test;

import java.nio.file.Files;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.List;

/**
 * 1,000 cards alive at once, each driven through events, a click, a timer and
 * a bridge answer, then all released, round after round. With a fixed,
 * pre-touched Java heap the resident set (VmRSS) follows native memory: after
 * two warm-up rounds set the baseline, three more must leave it within 8 MiB
 * (keeping every card adds about 20 MiB a round; the margin is the allocator's
 * and the JIT's own drift, seen up to about 6 MiB).
 */
public final class StressTest {
    private StressTest() {}

    public static void main(String[] args) throws Exception {
        System.load(System.getProperty("mero.library"));
        runRound(0);
        runRound(1);
        long baseline = settledResidentKiB();
        for (int round = 2; round < 5; round++) {
            long alive = runRound(round);
            System.out.printf("round %d: %d KiB with 1,000 cards alive, %d KiB after their release%n", round, alive,
                    settledResidentKiB());
        }
        long growth = settledResidentKiB() - baseline;
        System.out.printf("baseline %d KiB; after three more rounds %+d KiB%n", baseline, growth);
        fail(growth > 8192, "resident memory grew by " + growth + " KiB");
        System.out.println("PASS resident memory back near its baseline");
    }

    /** Runs 1,000 cards at once; answers the resident set while all are alive. */
    private static long runRound(int round) throws Exception {
        List<RecordingHost> cards = new ArrayList<>();
        for (int i = 0; i < 1000; i++) {
            cards.add(RecordingHost.show(100_000 + i, Templates.CARD));
        }
        for (RecordingHost card : cards) {
            card.event("showBadge");
            card.click("title");
            card.event("startTimer");
            card.executeTimeoutJob(card.handle, card.timeoutIds.get(0));
            card.event("ask");
            card.handleResult(card.handle, "{\"round\":" + round + "}", card.callbackIds.get(0));
            card.event("hideBadge");
            fail(!card.take().contains("update answer 203=S{\"round\":" + round + "}"), "no answer: " + card.handle);
        }
        long alive = residentKiB();
        cards.forEach(card -> card.releaseInstance(card.handle));
        return alive;
    }

    private static void fail(boolean failed, String what) {
        if (failed) {
            System.out.println("FAIL " + what);
            System.exit(1);
        }
    }

    private static long settledResidentKiB() throws Exception {
        for (int i = 0; i < 3; i++) {
            System.gc();
            Thread.sleep(50);
        }
        return residentKiB();
    }

    private static long residentKiB() throws Exception {
        String status = Files.readString(Path.of("/proc/self/status"));
        return Long.parseLong(status.replaceAll("(?s).*VmRSS:\\s*(\\d+).*", "$1"));
    }
}
