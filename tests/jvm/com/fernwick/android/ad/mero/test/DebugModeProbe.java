package com.fernwick.android.ad.mero.test;

/**
 * Run in a child JVM: a card with debugMode set receives a payload that the
 * JSON reader cannot convert. The error must leave the native and end the
 * process; "survived" is printed only if it did not.
 */
public final class DebugModeProbe {
    private DebugModeProbe() {}

    public static void main(String[] args) {
        System.load(System.getProperty("mero.library"));
        Card card = new Card(1);
        card.start(Templates.CARD, "{}", "{}", 750f, 1334f, 1, 1, false, true);
        System.out.println("started");
        System.out.flush();
        card.host.sendEvent(1, "echo", "{\"n\": -}");
        System.out.println("survived");
    }
}
