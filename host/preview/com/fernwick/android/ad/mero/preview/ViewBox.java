package com.fernwick.android.ad.mero.preview;

import static com.fernwick.android.ad.mero.preview.PropertyTable.*;

import java.awt.Shape;
import java.awt.geom.Area;
import java.awt.geom.Rectangle2D;

/**
 * A view's box in its own space (origin at its top left): size, rounded
 * outline, border widths and the content area inside border and padding.
 * Odd numbers from the engine (NaN, negative sizes, radii larger than the
 * view) are made drawable here, once, so the painters need not care.
 */
final class ViewBox {
    final float width, height;
    /** Left-top, right-top, right-bottom, left-bottom. */
    final float[] radii;
    /** Left, top, right, bottom. */
    final float[] border;
    final Shape outline;
    final Rectangle2D.Float content;

    private ViewBox(ViewNode node) {
        width = size(node.width());
        height = size(node.height());
        radii = Shapes.clampRadii(new float[] {node.number(CORNER_LEFT_TOP), node.number(CORNER_RIGHT_TOP),
            node.number(CORNER_RIGHT_BOTTOM), node.number(CORNER_LEFT_BOTTOM)}, width, height);
        border = new float[] {size(node.number(BORDER_LEFT)), size(node.number(BORDER_TOP)),
            size(node.number(BORDER_RIGHT)), size(node.number(BORDER_BOTTOM))};
        outline = Shapes.rounded(0, 0, width, height, radii);
        float left = border[0] + size(node.number(PADDING_LEFT));
        float top = border[1] + size(node.number(PADDING_TOP));
        float right = border[2] + size(node.number(PADDING_RIGHT));
        float bottom = border[3] + size(node.number(PADDING_BOTTOM));
        content = new Rectangle2D.Float(left, top, Math.max(0f, width - left - right),
                Math.max(0f, height - top - bottom));
    }

    static ViewBox of(ViewNode node) {
        return new ViewBox(node);
    }

    boolean isEmpty() {
        return width <= 0 || height <= 0;
    }

    boolean hasBorder() {
        return border[0] > 0 || border[1] > 0 || border[2] > 0 || border[3] > 0;
    }

    /**
     * The ring between the outline and the outline moved in by the border widths. Equal widths give an even
     * rounded stroke inside the edge; unequal ones give strips of their own widths, still following the corners.
     */
    Shape borderRing() {
        float innerWidth = Math.max(0f, width - border[0] - border[2]);
        float innerHeight = Math.max(0f, height - border[1] - border[3]);
        float[] innerRadii = Shapes.clampRadii(new float[] {
            radii[0] - Math.max(border[0], border[1]), radii[1] - Math.max(border[2], border[1]),
            radii[2] - Math.max(border[2], border[3]), radii[3] - Math.max(border[0], border[3])},
            innerWidth, innerHeight);
        Area ring = new Area(outline);
        ring.subtract(new Area(Shapes.rounded(border[0], border[1], innerWidth, innerHeight, innerRadii)));
        return ring;
    }

    /** Finite and not negative. */
    static float size(float value) {
        return value > 0 && Float.isFinite(value) ? value : 0f;
    }
}
