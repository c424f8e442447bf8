package com.fernwick.android.ad.mero.preview;

import static com.fernwick.android.ad.mero.preview.PropertyTable.*;

import java.awt.Color;
import java.awt.Graphics2D;
import java.awt.Shape;
import java.awt.geom.Rectangle2D;

/**
 * Five stars from the left of the content area, centred in its height, a
 * fifth of a star apart. The score fills them from the left, a fraction
 * filling part of a star; the rest are drawn faint.
 */
final class RatingPainter {
    private RatingPainter() {}

    static final int STARS = 5;
    private static final Color GOLD = new Color(0xFFB400);
    private static final float DEFAULT_EMPTY_OPACITY = 0.3f;
    private static final float GAP = 0.2f;

    static void paint(Graphics2D g, ViewNode node, ViewBox box) {
        Rectangle2D.Float area = box.content;
        float size = ViewBox.size(node.number(RATING_STAR_SIZE));
        size = size > 0 ? size : area.height;
        float score = node.number(RATING_SCORE);
        score = Float.isNaN(score) ? 0f : Math.max(0f, Math.min(STARS, score));
        Color color = node.has(RATING_STAR_COLOR) ? Colors.parse(node.text(RATING_STAR_COLOR)) : GOLD;
        float emptyOpacity = node.number(RATING_EMPTY_OPACITY) > 0 ? node.number(RATING_EMPTY_OPACITY)
                : DEFAULT_EMPTY_OPACITY;
        float top = area.y + (area.height - size) / 2;
        for (int i = 0; i < STARS; i++) {
            float left = area.x + i * size * (1 + GAP);
            Shape star = Shapes.star(left, top, size);
            g.setColor(Colors.fade(color, emptyOpacity));
            g.fill(star);
            float filled = Math.min(1f, score - i);
            if (filled > 0) {
                Graphics2D part = (Graphics2D) g.create();
                part.clip(new Rectangle2D.Float(left, top, size * filled, size));
                part.setColor(color);
                part.fill(star);
                part.dispose();
            }
        }
    }
}
