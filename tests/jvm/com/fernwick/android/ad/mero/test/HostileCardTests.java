package com.fernwick.android.ad.mero.test;

import static com.fernwick.android.ad.mero.test.Checks.check;
import static com.fernwick.android.ad.mero.test.Checks.equal;

import java.util.List;

/**
 * Cards that try to take their host down through its own calls (a deep view
 * tree, thousands of views, a thousand timeouts), each driven through the
 * natives as a release build runs them (debugMode clear), on a thread with a
 * JVM thread's default stack of 1 MiB: the host must survive, and the same
 * card's next event must still reach its view. The limits that scripts alone
 * cross are CardLimitsTest's, on half that stack.
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
        hostile("elements nested 100,000 deep", card("[]", nestedElements(100_000)), "{}");
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
        String children = STATUS + (elements == null ? "" : "," + elements);
        return "{\"variables\":{\"pinged\":false},\"elements\":{\"$\":3,\"nodeId\":\"root\",\"children\":[" + children
                + "]},\"events\":[{\"n\":\"go\",\"a\":[],\"b\":" + goBody + "},{\"n\":\"ping\",\"a\":[],\"b\":"
                + "[{\"$\":4,\"n\":\"pinged\",\"value\":true}]}]}";
    }

    private static String nestedElements(int depth) {
        return "{\"$\":3,\"nodeId\":\"n\",\"children\":[".repeat(depth - 1) + "{\"$\":0,\"nodeId\":\"leaf\"}"
                + "]}".repeat(depth - 1);
    }
}
