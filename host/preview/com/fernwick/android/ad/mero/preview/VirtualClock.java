package com.fernwick.android.ad.mero.preview;

import java.util.Comparator;
import java.util.PriorityQueue;

/**
 * The previewer's time: a millisecond counter that moves only when told to,
 * and the jobs waiting on it (timeouts, video positions, late bridge replies,
 * swiper autoplay). An app would use its main-thread handler instead; here
 * time is virtual so that every run of a scenario gives the same pictures.
 */
public final class VirtualClock {
    private record Job(long time, long order, Runnable action) {}

    private final PriorityQueue<Job> jobs =
            new PriorityQueue<>(Comparator.comparingLong(Job::time).thenComparingLong(Job::order));
    private long now;
    private long scheduled;

    /** Milliseconds since the card started. */
    public long now() {
        return now;
    }

    /** Runs action delayMs from now; a negative delay counts as 0. */
    public void schedule(long delayMs, Runnable action) {
        jobs.add(new Job(now + Math.max(0, delayMs), scheduled++, action));
    }

    public int pending() {
        return jobs.size();
    }

    /**
     * Moves time forward by ms, running every job that falls due on the way in
     * time order (jobs due at the same time in the order they were scheduled).
     * The clock reads each job's time while it runs, so jobs it schedules are
     * placed from there, and run too if they fall due before the end.
     */
    public void advance(long ms) {
        long end = now + Math.max(0, ms);
        while (!jobs.isEmpty() && jobs.peek().time() <= end) {
            Job job = jobs.poll();
            now = job.time();
            job.action().run();
        }
        now = end;
    }
}
