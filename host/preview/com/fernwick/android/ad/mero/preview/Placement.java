package com.fernwick.android.ad.mero.preview;

import static com.fernwick.android.ad.mero.preview.PropertyTable.*;

import java.awt.geom.AffineTransform;

/**
 * Where a view lands in its parent and how opaque it is: its frame origin,
 * translation, and scale and rotation about its anchor point, with its loop
 * animation (at the clock's time) applied on top. Rotation about x or y is a
 * flat picture's approximation: the other axis shrinks by the angle's cosine.
 */
final class Placement {
    private float translateX, translateY, scaleX, scaleY, rotation, opacity;
    private final float rotationX, rotationY, anchorX, anchorY;

    private Placement(ViewNode node) {
        translateX = number(node, TRANSLATE_X, 0);
        translateY = number(node, TRANSLATE_Y, 0);
        scaleX = number(node, SCALE_X, 1);
        scaleY = number(node, SCALE_Y, 1);
        rotation = number(node, ROTATION_Z, 0);
        opacity = Math.max(0f, Math.min(1f, number(node, OPACITY, 1)));
        rotationX = number(node, ROTATION_X, 0);
        rotationY = number(node, ROTATION_Y, 0);
        anchorX = number(node, ANCHOR_POINT_X, 0.5f);
        anchorY = number(node, ANCHOR_POINT_Y, 0.5f);
    }

    static Placement of(ViewNode node, long clockMs) {
        Placement placement = new Placement(node);
        LoopAnimation loop = LoopAnimation.parse(node.loopAnimation);
        if (loop != null) {
            placement.animate(loop.property, loop.valueAt(clockMs));
        }
        return placement;
    }

    float opacity() {
        return opacity;
    }

    /** From the view's own space to its parent's, for a view of the given frame. */
    AffineTransform transform(float x, float y, float width, float height) {
        double pivotX = anchorX * width, pivotY = anchorY * height;
        AffineTransform transform = AffineTransform.getTranslateInstance(x + translateX, y + translateY);
        transform.translate(pivotX, pivotY);
        transform.rotate(Math.toRadians(rotation));
        transform.scale(scaleX * Math.cos(Math.toRadians(rotationY)), scaleY * Math.cos(Math.toRadians(rotationX)));
        transform.translate(-pivotX, -pivotY);
        return transform;
    }

    /** The loop's value composes with the view's own: scales and opacity multiply, the rest add. */
    private void animate(String property, float value) {
        switch (property) {
            case "scale" -> { scaleX *= value; scaleY *= value; }
            case "scaleX" -> scaleX *= value;
            case "scaleY" -> scaleY *= value;
            case "opacity" -> opacity *= Math.max(0f, Math.min(1f, value));
            case "rotationZ" -> rotation += value;
            case "translateX" -> translateX += value;
            case "translateY" -> translateY += value;
            default -> { } // an unknown property animates nothing
        }
    }

    /** The property, or the engine's default when absent (a hand-made node) or not finite. */
    private static float number(ViewNode node, int id, float fallback) {
        float value = node.number(id);
        return node.has(id) && Float.isFinite(value) ? value : fallback;
    }
}
