package com.fernwick.android.ad.mero.test;

import java.util.ArrayList;
import java.util.List;
import java.util.Objects;

/**
 * The JVM tests' small harness: named cases, exact comparisons, and a summary
 * whose exit code CTest reads. Each test class is a plain main.
 */
final class Checks {
    private Checks() {}

    interface Case { void run() throws Exception; }

    private static final List<String> failures = new ArrayList<>();
    private static int cases;
    private static String current = "";

    /** Runs one named case; an exception fails it. */
    static void check(String name, Case body) {
        cases++;
        current = name;
        int before = failures.size();
        try {
            body.run();
        } catch (Throwable error) {
            failures.add(name + ": threw " + error);
        }
        System.out.println((failures.size() == before ? "PASS " : "FAIL ") + name);
    }

    static void equal(Object expected, Object actual, String what) {
        if (!Objects.equals(expected, actual)) {
            failures.add(current + ": " + what + "\n    expected: " + expected + "\n    actual:   " + actual);
        }
    }

    /** The message of the exception body throws, which must be a type; "no error" when it throws none. */
    static String messageOf(Class<? extends Throwable> type, Case body) throws Exception {
        try {
            body.run();
        } catch (Throwable error) {
            if (!type.isInstance(error)) {
                throw error instanceof Exception checked ? checked : new RuntimeException(error);
            }
            return error.getMessage();
        }
        return "no error";
    }

    /** Prints the failures and the count, and exits 1 when any case failed. */
    static void finish() {
        for (String failure : failures) {
            System.out.println("FAILED " + failure);
        }
        System.out.println(cases + " cases, " + failures.size() + " failures");
        System.exit(failures.isEmpty() ? 0 : 1);
    }
}
