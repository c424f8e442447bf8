package com.fernwick.android.ad.mero.preview;

import java.util.ArrayList;
import java.util.Collections;
import java.util.HashMap;
import java.util.List;
import java.util.Map;
import java.util.Set;

/**
 * The app's bridge APIs as the previewer answers them: a table read from a
 * JSON file, method name to its replies. "reply" answers every call the same;
 * "replies" are used in order and the last repeats; "delayMs" (default 0)
 * answers that much later on the virtual clock, 0 inside the call itself as a
 * synchronous app API must.
 *
 * <p>It also holds the download model: a reply that carries "downloadStatus"
 * moves the download buttons, as an app's download manager would.
 */
public final class BridgeFixture {
    /** One answer: the reply value (written as JSON for the engine) and when to give it. */
    public record Reply(Object value, long delayMs) {}

    private record Entry(List<Object> replies, long delayMs) {}

    private static final Set<String> ENTRY_KEYS = Set.of("reply", "replies", "delayMs");

    private final Map<String, Entry> entries;
    private final Map<String, Integer> callCounts = new HashMap<>();

    private BridgeFixture(Map<String, Entry> entries) {
        this.entries = entries;
    }

    /** No methods: every call is answered with {}. */
    public static BridgeFixture empty() {
        return new BridgeFixture(Map.of());
    }

    /** Reads a fixture file's text; a malformed one throws IllegalArgumentException saying what is wrong. */
    public static BridgeFixture parse(String json) {
        if (!(Json.parse(json) instanceof Map<?, ?> methods)) {
            throw new IllegalArgumentException("the bridge fixture must be a JSON object of method names");
        }
        Map<String, Entry> entries = new HashMap<>();
        for (Map.Entry<?, ?> method : methods.entrySet()) {
            entries.put((String) method.getKey(), entry((String) method.getKey(), method.getValue()));
        }
        return new BridgeFixture(entries);
    }

    private static Entry entry(String method, Object value) {
        String where = "bridge method \"" + method + "\": ";
        if (!(value instanceof Map<?, ?> fields)) {
            throw new IllegalArgumentException(where + "expected an object, found " + Json.kind(value));
        }
        for (Object key : fields.keySet()) {
            if (!ENTRY_KEYS.contains(key)) {
                throw new IllegalArgumentException(where + "unknown key \"" + key + "\"");
            }
        }
        if (fields.containsKey("reply") == fields.containsKey("replies")) {
            throw new IllegalArgumentException(where + "give exactly one of \"reply\" and \"replies\"");
        }
        List<Object> replies;
        if (fields.containsKey("reply")) {
            replies = Collections.singletonList(fields.get("reply"));
        } else if (fields.get("replies") instanceof List<?> list && !list.isEmpty()) {
            replies = Collections.unmodifiableList(new ArrayList<>(list));
        } else {
            throw new IllegalArgumentException(where + "\"replies\" must be a non-empty array");
        }
        Object delay = fields.containsKey("delayMs") ? fields.get("delayMs") : 0.0;
        if (!(delay instanceof Double ms) || ms < 0 || ms != Math.floor(ms)) {
            throw new IllegalArgumentException(where + "\"delayMs\" must be a whole number of milliseconds >= 0");
        }
        return new Entry(replies, ms.longValue());
    }

    /** The answer to the next call of method, or null when the fixture does not know it. */
    public Reply next(String method) {
        Entry entry = entries.get(method);
        if (entry == null) {
            return null;
        }
        int call = callCounts.merge(method, 1, Integer::sum) - 1;
        return new Reply(entry.replies().get(Math.min(call, entry.replies().size() - 1)), entry.delayMs());
    }

    /**
     * A download state change carried by a reply: the new state, the progress
     * (null when the reply has none) and the package it is about (null: every
     * download button).
     */
    public record DownloadUpdate(String state, Float progress, String packageName) {
        /** The change a reply carries, or null when it has no string "downloadStatus". */
        public static DownloadUpdate of(Object reply) {
            if (!(reply instanceof Map<?, ?> fields) || !(fields.get("downloadStatus") instanceof String state)) {
                return null;
            }
            Float progress = fields.get("progress") instanceof Number n ? n.floatValue() : null;
            String packageName = fields.get("packageName") instanceof String name ? name : null;
            return new DownloadUpdate(state, progress, packageName);
        }

        /** Whether a button with this business data JSON is the one the change is about. */
        public boolean appliesTo(String businessData) {
            if (packageName == null) {
                return true;
            }
            try {
                return Json.parse(businessData) instanceof Map<?, ?> data
                        && packageName.equals(data.get("packageName"));
            } catch (Json.ParseException notJson) {
                return false;
            }
        }

        /** Moves one button. */
        public void applyTo(ViewNode button) {
            button.downloadState = state;
            if (progress != null) {
                button.downloadProgress = progress;
            }
        }
    }
}
