package com.fernwick.android.ad.mero.preview;

import java.util.Map;

/**
 * A view's endless animation (string slot 22), a flat JSON object:
 * {"property": "scale"|"scaleX"|"scaleY"|"opacity"|"rotationZ"|"translateX"|"translateY",
 *  "from": n, "to": n, "duration": ms, "reverse": bool}.
 * It runs linearly from "from" to "to" once per duration and starts over, or
 * swings back when reverse is set. Anything else in the text makes no animation.
 */
final class LoopAnimation {
    final String property;
    final float from, to, duration;
    final boolean reverse;

    private LoopAnimation(String property, float from, float to, float duration, boolean reverse) {
        this.property = property;
        this.from = from;
        this.to = to;
        this.duration = duration;
        this.reverse = reverse;
    }

    /** The animation, or null when the text is empty, not such an object, or its duration is not positive. */
    static LoopAnimation parse(String json) {
        Map<?, ?> fields = object(json);
        if (fields == null || !(fields.get("property") instanceof String property)) {
            return null;
        }
        float duration = number(fields.get("duration"));
        if (!(duration > 0) || !Float.isFinite(duration)) {
            return null;
        }
        return new LoopAnimation(property, number(fields.get("from")), number(fields.get("to")), duration,
                Boolean.TRUE.equals(fields.get("reverse")));
    }

    /** The value at clockMs; a reversing animation goes back on every odd run. */
    float valueAt(long clockMs) {
        long time = Math.max(0, clockMs);
        double run = Math.floor(time / (double) duration);
        double progress = (time - run * duration) / duration;
        if (reverse && run % 2 == 1) {
            progress = 1 - progress;
        }
        return (float) (from + (to - from) * progress);
    }

    /** The JSON object the text holds, or null for empty or malformed text or another kind of value. */
    private static Map<?, ?> object(String json) {
        if (json == null || json.isBlank()) {
            return null;
        }
        try {
            return Json.parse(json) instanceof Map<?, ?> map ? map : null;
        } catch (IllegalArgumentException malformed) {
            return null;
        }
    }

    private static float number(Object value) {
        return value instanceof Double number && Double.isFinite(number) ? number.floatValue() : 0f;
    }
}
