package com.fernwick.android.ad.mero.preview;

import java.util.ArrayList;
import java.util.List;
import java.util.Map;
import java.util.Set;

/**
 * What the author does to a card after its first layout: a JSON list of
 * steps, each an object with exactly one action and an optional "note".
 *
 * <pre>
 * {"click": "install"}                              sendClickEvent
 * {"event": "videoProgress", "payload": {"t": 3}}   sendEvent (payload default {})
 * {"advance": 1000}                                 run the virtual clock
 * {"swipe": "gallery", "page": 2}                   show a page, then sendSwiperEvent
 * {"resize": {"width": 600, "height": "auto"}}      updateLayout (height default "auto")
 * </pre>
 */
public final class Scenario {
    private Scenario() {}

    /** One action; describe() is how the tree file and messages name it. */
    public sealed interface Action permits Click, Event, Advance, Swipe, Resize {
        String describe();
    }

    public record Click(String componentId) implements Action {
        public String describe() { return "click " + componentId; }
    }

    public record Event(String name, String payloadJson) implements Action {
        public String describe() { return "event " + name + " " + payloadJson; }
    }

    public record Advance(long ms) implements Action {
        public String describe() { return "advance " + ms; }
    }

    public record Swipe(String componentId, int page) implements Action {
        public String describe() { return "swipe " + componentId + " to page " + page; }
    }

    /** height null: as tall as the content. */
    public record Resize(int width, Integer height) implements Action {
        public String describe() { return "resize " + width + " x " + (height == null ? "auto" : height); }
    }

    /** note is null when the step has none. */
    public record Step(Action action, String note) {}

    /** Each row: an action key and the other keys its step may have besides "note". */
    private static final Map<String, Set<String>> ACTIONS = Map.of(
            "click", Set.of(),
            "event", Set.of("payload"),
            "advance", Set.of(),
            "swipe", Set.of("page"),
            "resize", Set.of());

    /** Reads a scenario file's text; a malformed one throws IllegalArgumentException saying what is wrong. */
    public static List<Step> parse(String json) {
        if (!(Json.parse(json) instanceof List<?> list)) {
            throw new IllegalArgumentException("a scenario must be a JSON array of steps");
        }
        List<Step> steps = new ArrayList<>();
        for (Object element : list) {
            String where = String.format("scenario step %d (step-%02d): ", steps.size() + 1, steps.size() + 1);
            if (!(element instanceof Map<?, ?> fields)) {
                throw new IllegalArgumentException(where + "expected an object, found " + Json.kind(element));
            }
            try {
                steps.add(step(fields));
            } catch (IllegalArgumentException bad) {
                throw new IllegalArgumentException(where + bad.getMessage());
            }
        }
        return steps;
    }

    private static Step step(Map<?, ?> fields) {
        List<String> actions = fields.keySet().stream().map(String::valueOf).filter(ACTIONS::containsKey).toList();
        if (actions.size() != 1) {
            throw new IllegalArgumentException(actions.isEmpty()
                    ? "no action (one of click, event, advance, swipe, resize)"
                    : "more than one action: " + String.join(", ", actions));
        }
        String kind = actions.get(0);
        for (Object key : fields.keySet()) {
            if (!key.equals(kind) && !key.equals("note") && !ACTIONS.get(kind).contains(key)) {
                throw new IllegalArgumentException("unknown key \"" + key + "\" in a " + kind + " step");
            }
        }
        Object note = fields.get("note");
        if (note != null && !(note instanceof String)) {
            throw new IllegalArgumentException("\"note\" must be a string");
        }
        Object value = fields.get(kind);
        Action action = switch (kind) {
            case "click" -> new Click(name(value, "click"));
            case "event" -> new Event(name(value, "event"),
                    fields.containsKey("payload") ? Json.write(fields.get("payload")) : "{}");
            case "advance" -> new Advance(whole(value, "advance", 0));
            case "swipe" -> new Swipe(name(value, "swipe"), (int) whole(fields.get("page"), "page", 0));
            default -> resize(value);
        };
        return new Step(action, (String) note);
    }

    private static Resize resize(Object value) {
        if (!(value instanceof Map<?, ?> size)) {
            throw new IllegalArgumentException("\"resize\" must be an object with \"width\" and \"height\"");
        }
        for (Object key : size.keySet()) {
            if (!key.equals("width") && !key.equals("height")) {
                throw new IllegalArgumentException("unknown key \"" + key + "\" in \"resize\"");
            }
        }
        int width = (int) whole(size.get("width"), "resize width", 1);
        Object height = size.containsKey("height") ? size.get("height") : "auto";
        return new Resize(width, "auto".equals(height) ? null : (int) whole(height, "resize height", 1));
    }

    private static String name(Object value, String what) {
        if (!(value instanceof String text) || text.isEmpty()) {
            throw new IllegalArgumentException("\"" + what + "\" must be a non-empty string");
        }
        return text;
    }

    private static long whole(Object value, String what, long least) {
        if (!(value instanceof Double number) || number != Math.floor(number) || number < least
                || number > Integer.MAX_VALUE) {
            throw new IllegalArgumentException("\"" + what + "\" must be a whole number >= " + least);
        }
        return number.longValue();
    }
}
