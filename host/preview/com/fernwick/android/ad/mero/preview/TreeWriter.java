package com.fernwick.android.ad.mero.preview;

import com.fernwick.android.ad.mero.components.GradientInfo;

import java.math.BigDecimal;
import java.math.RoundingMode;
import java.util.ArrayList;
import java.util.LinkedHashMap;
import java.util.List;
import java.util.Map;

/**
 * Writes the host's view tree after a step as JSON (step-NN.tree.json), for
 * authors to read and for snapshot tests to compare: each view's id, type
 * name, frame and properties by template key, and the animations the step
 * played. Numbers are rounded to 2 decimals; whole numbers have no fraction.
 * A view's frame and properties, and each animation, take one line each, so
 * that a change to one view is a change to one line.
 */
public final class TreeWriter {
    private TreeWriter() {}

    /** note may be null. */
    public static String write(int step, String action, String note, long clockMs, ViewNode root,
            List<PreviewHost.Animation> animations) {
        Map<String, Object> tree = new LinkedHashMap<>();
        tree.put("step", step);
        tree.put("action", action);
        if (note != null) {
            tree.put("note", note);
        }
        tree.put("clock", clockMs);
        tree.put("root", root == null ? null : node(root));
        tree.put("animations", animations.stream().map(played -> new Json.Inline(animation(played))).toList());
        return Json.writePretty(tree);
    }

    private static Map<String, Object> node(ViewNode node) {
        Map<String, Object> out = new LinkedHashMap<>();
        out.put("id", node.id);
        out.put("type", PropertyTable.typeName(node.type));
        Map<String, Object> frame = new LinkedHashMap<>();
        frame.put("x", value(node.x()));
        frame.put("y", value(node.y()));
        frame.put("width", value(node.width()));
        frame.put("height", value(node.height()));
        out.put("frame", new Json.Inline(frame));
        out.put("properties", new Json.Inline(properties(node)));
        if (!node.children.isEmpty()) {
            out.put("children", node.children.stream().map(TreeWriter::node).toList());
        }
        return out;
    }

    /** The engine's values by key in id order (the frame apart), then what the host adds. */
    private static Map<String, Object> properties(ViewNode node) {
        Map<String, Object> out = new LinkedHashMap<>();
        node.properties().forEach((id, value) -> {
            if (id > PropertyTable.Y) {
                out.put(PropertyTable.key(id), value(value));
            }
        });
        if (!node.onClick.isEmpty()) {
            out.put("onClick", node.onClick);
        }
        if (!node.loopAnimation.isEmpty()) {
            out.put("loopAnimation", jsonOrText(node.loopAnimation));
        }
        if (node.gradient != null) {
            out.put("gradient", gradient(node.gradient));
        }
        switch (node.type) {
            case 6 -> {
                if (!node.businessData.isEmpty()) {
                    out.put("businessData", jsonOrText(node.businessData));
                }
                out.put("downloadState", node.downloadState);
                out.put("downloadProgress", value(node.downloadProgress));
            }
            case 8 -> out.put("currentPage", node.currentPage);
            case 10 -> {
                if (node.videoDuration != null) {
                    out.put("videoDuration", node.videoDuration);
                }
            }
            default -> { }
        }
        return out;
    }

    private static Map<String, Object> gradient(GradientInfo gradient) {
        List<Object> colors = new ArrayList<>();
        List<Object> positions = new ArrayList<>();
        for (int i = 0; i < gradient.colors.length && gradient.colors[i] != null; i++) {
            colors.add(gradient.colors[i]);
            positions.add(value(gradient.positions[i]));
        }
        Map<String, Object> out = new LinkedHashMap<>();
        out.put("angle", gradient.type);
        out.put("colors", colors);
        out.put("positions", positions);
        return out;
    }

    private static Map<String, Object> animation(PreviewHost.Animation played) {
        Map<String, Object> out = new LinkedHashMap<>();
        out.put("id", played.id());
        out.put("property", PropertyTable.key(played.propertyId()));
        out.put("to", value(played.to()));
        out.put("timing", played.timing());
        out.put("duration", played.duration());
        out.put("delay", played.delay());
        return out;
    }

    /** JSON text the engine wrote, as JSON again; anything else as its text. */
    private static Object jsonOrText(String text) {
        try {
            return Json.parse(text);
        } catch (Json.ParseException notJson) {
            return text;
        }
    }

    /** Floats rounded half up to 2 decimals, from their shortest decimal text; other values unchanged. */
    static Object value(Object value) {
        if (!(value instanceof Float number)) {
            return value;
        }
        if (number.isNaN() || number.isInfinite()) {
            return null;
        }
        return new BigDecimal(Float.toString(number)).setScale(2, RoundingMode.HALF_UP);
    }
}
