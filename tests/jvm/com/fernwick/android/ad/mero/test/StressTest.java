package com.fernwick.android.ad.mero.test;

import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.List;

/**
 * 1,000 cards alive at once in one JVM, each driven through events, clicks,
 * a timer and a bridge answer, then all released, round after round.
 *
 * <p>Memory is the process's resident set (VmRSS). The test runs with a
 * fixed, pre-touched Java heap (-Xms = -Xmx, -XX:+AlwaysPreTouch), so the
 * heap's pages are resident from the start and what moves is native memory
 * (the engine's, plus the JIT's code and metadata). Two rounds warm the
 * allocator and the JIT; the resident set after them is the baseline. After
 * three more rounds it must be back within 2 MiB of it: a leak of one
 * card's engine, tree or controllers would add several MiB per round.
 */
public final class StressTest {
    private static final int CARDS = 1000;
    private static final int WARMUP_ROUNDS = 2;
    private static final int ROUNDS = 3;
    private static final long ALLOWED_GROWTH_KIB = 2048;

    private StressTest() {}

    public static void main(String[] args) throws Exception {
        System.load(System.getProperty("mero.library"));
        for (int round = 0; round < WARMUP_ROUNDS; round++) {
            runRound(round);
        }
        long baseline = settledResidentKiB();
        long peak = 0;
        for (int round = WARMUP_ROUNDS; round < WARMUP_ROUNDS + ROUNDS; round++) {
            peak = Math.max(peak, runRound(round));
            System.out.printf("round %d: %d KiB with %d cards alive, %d KiB after their release%n", round, peak,
                    CARDS, settledResidentKiB());
        }
        long growth = settledResidentKiB() - baseline;
        System.out.printf("baseline %d KiB; peak %d KiB; after %d rounds %+d KiB%n", baseline, peak, ROUNDS,
                growth);
        if (growth > ALLOWED_GROWTH_KIB) {
            System.out.println("FAIL resident memory grew by " + growth + " KiB, allowed " + ALLOWED_GROWTH_KIB);
            System.exit(1);
        }
        System.out.println("PASS resident memory back near its baseline");
    }

    /** Runs 1,000 cards at once; answers the resident set while all are alive. */
    private static long runRound(int round) throws IOException {
        List<Card> cards = new ArrayList<>(CARDS);
        for (int i = 0; i < CARDS; i++) {
            cards.add(Card.show(100_000 + i, Templates.CARD, "{}", 750f, 1334f));
        }
        for (Card card : cards) {
            RecordingHost host = card.host;
            host.sendEvent(card.handle, "showBadge", "");
            host.sendClickEvent(card.handle, "title");
            host.sendEvent(card.handle, "startTimer", "");
            host.executeTimeoutJob(card.handle, (int) host.timeouts.get(0)[1]);
            host.sendEvent(card.handle, "ask", "");
            host.handleResult(card.handle, "{\"round\":" + round + "}", host.bridgeCalls.get(0).callbackId);
            host.sendEvent(card.handle, "hideBadge", "");
            check(host.calls.contains("update answer 203=S{\"round\":" + round + "}"), "bridge answer reached "
                    + card.handle);
            host.calls.clear();
        }
        long alive = residentKiB();
        for (Card card : cards) {
            card.release();
        }
        return alive;
    }

    private static void check(boolean condition, String what) {
        if (!condition) {
            System.out.println("FAIL " + what);
            System.exit(1);
        }
    }

    private static long settledResidentKiB() throws IOException, InterruptedException {
        for (int i = 0; i < 3; i++) {
            System.gc();
            Thread.sleep(50);
        }
        return residentKiB();
    }

    private static long residentKiB() throws IOException {
        for (String line : Files.readAllLines(Path.of("/proc/self/status"))) {
            if (line.startsWith("VmRSS:")) {
                return Long.parseLong(line.replaceAll("[^0-9]", ""));
            }
        }
        throw new IOException("no VmRSS in /proc/self/status");
    }
}
