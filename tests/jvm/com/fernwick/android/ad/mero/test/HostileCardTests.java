package com.fernwick.android.ad.mero.test;

import static com.fernwick.android.ad.mero.test.Checks.check;
import static com.fernwick.android.ad.mero.test.Checks.equal;

import java.util.List;

/**
 * Cards that try to take their host down, each driven through the natives as
 * a release build runs them (debugMode clear), on a thread with a JVM
 * thread's default stack of 1 MiB: the host must survive, and the same card's
 * next event must still reach its view.
 */
public final class HostileCardTests {
    private HostileCardTests() {}

    private static int nextHandle = 1;

    /** A text whose value follows "pinged": "0" before the next event, "1" after it. */
    private static final String STATUS =
            "{\"$\":4,\"nodeId\":\"status\",\"text\":{\"$\":5,\"n\":\"m\",\"a\":[{\"$\":3,\"n\":\"pinged\"}]}}";

    public static void main(String[] args) throws Exception {
        System.load(System.getProperty("mero.library"));
        String items = "{\"items\":[" + "\"x\",".repeat(100_000) + "\"x\"]}";
        hostile("elements nested 1,000 deep", card("[]", nestedElements(1_000)), "{}");
        hostile("elements nested 100,000 deep", card("[]", nestedElements(100_000)), "{}");
        hostile("an expression nested 100,000 deep",
                card("[{\"$\":4,\"n\":\"x\",\"value\":" + nestedConditional(100_000) + "}]", null), "{}");
        hostile("a function that calls itself", card("[{\"$\":5,\"n\":\"f\",\"a\":[]}]", null,
                ",\"functions\":[{\"n\":\"f\",\"a\":[],\"b\":[{\"$\":5,\"n\":\"f\",\"a\":[]}]}]"), "{}");
        hostile("a callback stored in a local that calls itself", card("[{\"$\":2,\"n\":\"again\",\"value\":"
                + "{\"$\":14,\"a\":[],\"b\":[{\"$\":5,\"n\":\"again\",\"a\":[]}]}},{\"$\":5,\"n\":\"again\",\"a\":[]}]",
                null), "{}");
        hostile("a while loop whose condition is true", card("[{\"$\":8,\"c\":true,\"b\":[]}]", null), "{}");
        hostile("a string doubled in 48 rounds", card(doubled("\"ab\"",
                "{\"$\":2,\"n\":\"s\",\"value\":{\"$\":5,\"n\":\"1\",\"a\":[[0],[{\"$\":1,\"n\":\"s\"},{\"$\":1,\"n\":\"s\"}]]}}"),
                null), "{}");
        hostile("an array doubled in 48 rounds", card(doubled("[1]",
                "{\"$\":5,\"n\":\"j\",\"a\":[{\"$\":1,\"n\":\"s\"},{\"$\":1,\"n\":\"s\"}]}"), null), "{}");
        hostile("a list node over 100,000 items", card("[]", "{\"$\":2,\"nodeId\":\"list\",\"list\":{\"$\":19,"
                + "\"n\":\"items\"},\"index\":\"i\",\"children\":[{\"$\":0,\"nodeId\":\"item\"}]}"), items);
        hostile("timeouts set in a loop", card("[{\"$\":7,\"startIndex\":0,\"endIndex\":2000,\"index\":\"i\",\"b\":"
                + "[{\"$\":5,\"n\":\"p\",\"a\":[1000,{\"$\":14,\"a\":[],\"b\":[]}]}]}]", null), "{}");
        Checks.finish();
    }

    /** Shows the card, sends "go", then "ping", and expects the ping's update, all on a 1 MiB stack. */
    private static void hostile(String name, String template, String data) throws Exception {
        check(name, () -> {
            RecordingHost card = new RecordingHost(nextHandle++);
            card.debugMode = false;
            card.data = data;
            Throwable[] thrown = new Throwable[1];
            long started = System.nanoTime();
            Thread driver = new Thread(null, () -> {
                try {
                    card.start(template);
                    card.event("go");
                    card.take();
                    card.event("ping");
                } catch (Throwable error) {
                    thrown[0] = error;
                }
            }, "card", 1 << 20);
            driver.start();
            driver.join();
            long millis = (System.nanoTime() - started) / 1_000_000;
            equal(null, thrown[0], "nothing thrown on the host's side");
            equal(List.of("update status 203=S1"), card.take(), "the next event reaches the card's view");
            card.releaseInstance(card.handle);
            System.out.println("     " + name + ": " + millis + " ms");
        });
    }

    /** Events "go" (the hostile part) and "ping"; `elements` beside the status text, if any. */
    private static String card(String goBody, String elements) {
        return card(goBody, elements, "");
    }

    private static String card(String goBody, String elements, String extra) {
        String children = STATUS + (elements == null ? "" : "," + elements);
        return "{\"variables\":{\"pinged\":false},\"elements\":{\"$\":3,\"nodeId\":\"root\",\"children\":[" + children
                + "]},\"events\":[{\"n\":\"go\",\"a\":[],\"b\":" + goBody + "},{\"n\":\"ping\",\"a\":[],\"b\":"
                + "[{\"$\":4,\"n\":\"pinged\",\"value\":true}]}]" + extra + "}";
    }

    /** s = `initial`, then `step` 48 times. */
    private static String doubled(String initial, String step) {
        return "[{\"$\":2,\"n\":\"s\",\"value\":" + initial + "},{\"$\":7,\"startIndex\":0,\"endIndex\":48,"
                + "\"index\":\"i\",\"b\":[" + step + "]}]";
    }

    private static String nestedElements(int depth) {
        return "{\"$\":3,\"nodeId\":\"n\",\"children\":[".repeat(depth - 1) + "{\"$\":0,\"nodeId\":\"leaf\"}"
                + "]}".repeat(depth - 1);
    }

    private static String nestedConditional(int depth) {
        return "{\"$\":5,\"n\":\"4\",\"a\":[true,".repeat(depth) + "1" + ",0]}".repeat(depth);
    }
}
