package com.fernwick.android.ad.mero.test;

import java.util.ArrayList;
import java.util.List;
import java.util.Objects;

/** A small test runner: named cases, exact expectations, a failure count. */
final class Check {
    interface Case {
        void run() throws Exception;
    }

    private static final List<String> failures = new ArrayList<>();
    private static int cases;
    private static String current = "";

    private Check() {}

    static void run(String name, Case body) {
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

    static void isTrue(boolean condition, String what) {
        if (!condition) {
            failures.add(current + ": " + what);
        }
    }

    /** Prints the failures and answers the process's exit code. */
    static int finish() {
        for (String failure : failures) {
            System.out.println("FAILED " + failure);
        }
        System.out.println(cases + " cases, " + failures.size() + " failures");
        return failures.isEmpty() ? 0 : 1;
    }
}
