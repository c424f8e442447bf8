package com.fernwick.android.ad.mero.test;

/**
 * Run in a child JVM: loads libmero.so and prints "loaded", or "failed"
 * and the error's class when the load is refused.
 */
public final class LoadProbe {
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
