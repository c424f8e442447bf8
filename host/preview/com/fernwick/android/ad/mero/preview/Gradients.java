package com.fernwick.android.ad.mero.preview;

import com.fernwick.android.ad.mero.components.GradientInfo;

import java.awt.Color;
import java.awt.LinearGradientPaint;
import java.awt.Paint;
import java.awt.geom.Point2D;
import java.util.ArrayList;
import java.util.List;

/**
 * A view's linear gradient as a paint. The angle follows the web's
 * convention: 0 runs bottom to top, 90 left to right, 180 top to bottom, and
 * the gradient line is just long enough for its ends to reach the corners.
 */
final class Gradients {
    private Gradients() {}

    /** Stops closer than this are one hard edge: the paint needs strictly rising positions. */
    private static final float NUDGE = 1e-4f;

    /** The paint for a box of the given size; null when the gradient has no usable stop. */
    static Paint paint(GradientInfo gradient, float width, float height) {
        if (gradient == null || gradient.colors == null || gradient.positions == null) {
            return null;
        }
        List<Color> colors = new ArrayList<>();
        List<Float> positions = new ArrayList<>();
        collectStops(gradient, colors, positions);
        if (colors.isEmpty()) {
            return null;
        }
        if (colors.size() == 1) {
            return colors.get(0);
        }
        double angle = Math.toRadians(gradient.type);
        double dx = Math.sin(angle), dy = -Math.cos(angle);
        double half = (Math.abs(width * dx) + Math.abs(height * dy)) / 2;
        if (!(half > 0)) {
            return colors.get(0);
        }
        Point2D start = new Point2D.Double(width / 2.0 - dx * half, height / 2.0 - dy * half);
        Point2D end = new Point2D.Double(width / 2.0 + dx * half, height / 2.0 + dy * half);
        float[] fractions = new float[positions.size()];
        for (int i = 0; i < fractions.length; i++) {
            fractions[i] = positions.get(i);
        }
        return new LinearGradientPaint(start, end, fractions, colors.toArray(new Color[0]));
    }

    /**
     * The stops that have a colour, positions clamped to 0..1 and made strictly rising. A gradient whose positions
     * are all 0 (the template gave none) spreads its stops evenly.
     */
    private static void collectStops(GradientInfo gradient, List<Color> colors, List<Float> given) {
        int count = Math.min(gradient.colors.length, gradient.positions.length);
        for (int i = 0; i < count; i++) {
            if (gradient.colors[i] != null && !gradient.colors[i].isEmpty()) {
                colors.add(Colors.parse(gradient.colors[i]));
                float position = gradient.positions[i];
                given.add(position > 0 ? Math.min(position, 1f) : 0f);
            }
        }
        boolean unplaced = given.stream().allMatch(position -> position == 0f);
        for (int i = 0; i < given.size(); i++) {
            float position = unplaced && given.size() > 1 ? i / (float) (given.size() - 1) : given.get(i);
            given.set(i, i == 0 ? position : Math.max(position, given.get(i - 1) + NUDGE));
        }
        // Nudging may push the last stops past 1: they are hidden behind the one that reached it.
        while (given.size() > 1 && given.get(given.size() - 1) > 1f) {
            given.remove(given.size() - 1);
            colors.remove(colors.size() - 1);
        }
    }
}
