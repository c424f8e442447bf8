package com.fernwick.android.ad.mero.preview;

import java.awt.Shape;
import java.awt.geom.Path2D;
import java.awt.geom.Rectangle2D;

/** The outlines the painters fill: rectangles with a radius per corner, stars, the play triangle. */
final class Shapes {
    private Shapes() {}

    /** How far a cubic's control points sit from a quarter circle's ends, per unit of radius. */
    private static final double ARC = 0.5522847498;

    /**
     * A rectangle whose corners (left-top, right-top, right-bottom, left-bottom) are quarter circles. Radii are
     * assumed already clamped to half the shorter side.
     */
    static Shape rounded(double x, double y, double w, double h, float[] radii) {
        if (radii[0] <= 0 && radii[1] <= 0 && radii[2] <= 0 && radii[3] <= 0) {
            return new Rectangle2D.Double(x, y, w, h);
        }
        double lt = radii[0], rt = radii[1], rb = radii[2], lb = radii[3];
        Path2D.Double path = new Path2D.Double();
        path.moveTo(x + lt, y);
        path.lineTo(x + w - rt, y);
        path.curveTo(x + w - rt + rt * ARC, y, x + w, y + rt - rt * ARC, x + w, y + rt);
        path.lineTo(x + w, y + h - rb);
        path.curveTo(x + w, y + h - rb + rb * ARC, x + w - rb + rb * ARC, y + h, x + w - rb, y + h);
        path.lineTo(x + lb, y + h);
        path.curveTo(x + lb - lb * ARC, y + h, x, y + h - lb + lb * ARC, x, y + h - lb);
        path.lineTo(x, y + lt);
        path.curveTo(x, y + lt - lt * ARC, x + lt - lt * ARC, y, x + lt, y);
        path.closePath();
        return path;
    }

    /** Each radius made finite, at least 0 and at most half the shorter side, as a corner can hold no more. */
    static float[] clampRadii(float[] radii, float w, float h) {
        float most = Math.max(0f, Math.min(w, h) / 2);
        float[] clamped = new float[radii.length];
        for (int i = 0; i < radii.length; i++) {
            clamped[i] = radii[i] > 0 ? Math.min(radii[i], most) : 0f; // NaN fails the test too
        }
        return clamped;
    }

    /** A five-pointed star, point up, filling the square at (x, y) of side size. */
    static Shape star(double x, double y, double size) {
        double outer = size / 2;
        double inner = outer * 0.381966; // the regular star's ratio
        // The lower points sit higher than the top point is far: centre the star's height in the square.
        double cx = x + size / 2;
        double cy = y + size / 2 + outer * (1 - Math.cos(Math.PI / 5)) / 2;
        Path2D.Double path = new Path2D.Double();
        for (int i = 0; i < 10; i++) {
            double radius = i % 2 == 0 ? outer : inner;
            double angle = -Math.PI / 2 + i * Math.PI / 5;
            double px = cx + radius * Math.cos(angle);
            double py = cy + radius * Math.sin(angle);
            if (i == 0) {
                path.moveTo(px, py);
            } else {
                path.lineTo(px, py);
            }
        }
        path.closePath();
        return path;
    }

    /** A triangle pointing right, centred (by its box) on (cx, cy). */
    static Shape playTriangle(double cx, double cy, double size) {
        Path2D.Double path = new Path2D.Double();
        double half = size / 2;
        path.moveTo(cx - half * 0.8, cy - half);
        path.lineTo(cx + half, cy);
        path.lineTo(cx - half * 0.8, cy + half);
        path.closePath();
        return path;
    }
}
