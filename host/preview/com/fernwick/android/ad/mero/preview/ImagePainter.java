package com.fernwick.android.ad.mero.preview;

import java.awt.Color;
import java.awt.Graphics2D;
import java.awt.geom.AffineTransform;
import java.awt.geom.Ellipse2D;
import java.awt.geom.Path2D;
import java.awt.geom.Rectangle2D;
import java.awt.image.BufferedImage;

/** Images and video posters in their box, and the placeholders drawn when there is no picture. */
final class ImagePainter {
    private ImagePainter() {}

    static final int STRETCH = 0, FIT = 1, FILL = 2;

    private static final Color PLACEHOLDER = new Color(0xE6E8EB);
    private static final Color PLACEHOLDER_GLYPH = new Color(0xB5BBC3);
    private static final Color VIDEO_PLACEHOLDER = new Color(0x2F3338);
    private static final Color PLAY_DISC = new Color(0, 0, 0, 0x73);
    private static final Color PLAY_TRIANGLE = new Color(255, 255, 255, 0xE6);

    /** The picture scaled into the area by scale mode (an unknown mode stretches); else the light placeholder. */
    static void paintImage(Graphics2D g, BufferedImage image, int scaleMode, Rectangle2D.Float area) {
        if (image == null) {
            paintPlaceholder(g, area);
        } else {
            paintScaled(g, image, scaleMode, area);
        }
    }

    /** The poster filling the area, cropped; a dark box without one; a play button over either. */
    static void paintVideo(Graphics2D g, BufferedImage poster, Rectangle2D.Float area) {
        if (poster == null) {
            g.setColor(VIDEO_PLACEHOLDER);
            g.fill(area);
        } else {
            paintScaled(g, poster, FILL, area);
        }
        double diameter = Math.max(24, Math.min(96, Math.min(area.width, area.height) * 0.28));
        double cx = area.getCenterX(), cy = area.getCenterY();
        g.setColor(PLAY_DISC);
        g.fill(new Ellipse2D.Double(cx - diameter / 2, cy - diameter / 2, diameter, diameter));
        g.setColor(PLAY_TRIANGLE);
        g.fill(Shapes.playTriangle(cx + diameter * 0.04, cy, diameter * 0.4));
    }

    private static void paintScaled(Graphics2D g, BufferedImage image, int scaleMode, Rectangle2D.Float area) {
        if (area.isEmpty()) {
            return;
        }
        double sx = area.width / image.getWidth(), sy = area.height / image.getHeight();
        if (scaleMode == FIT || scaleMode == FILL) {
            double scale = scaleMode == FIT ? Math.min(sx, sy) : Math.max(sx, sy);
            sx = scale;
            sy = scale;
        }
        // Centred; what overflows (fill) is cut by the view's clip.
        AffineTransform place = AffineTransform.getTranslateInstance(
                area.getCenterX() - image.getWidth() * sx / 2, area.getCenterY() - image.getHeight() * sy / 2);
        place.scale(sx, sy);
        Graphics2D clipped = (Graphics2D) g.create();
        clipped.clip(area);
        clipped.drawImage(image, place, null);
        clipped.dispose();
    }

    /** Light grey with a small sun over two mountains in the middle. */
    private static void paintPlaceholder(Graphics2D g, Rectangle2D.Float area) {
        g.setColor(PLACEHOLDER);
        g.fill(area);
        double size = Math.min(64, Math.min(area.width, area.height) * 0.4);
        if (!(size >= 8)) {
            return;
        }
        double x = area.getCenterX() - size / 2, y = area.getCenterY() - size / 2;
        g.setColor(PLACEHOLDER_GLYPH);
        g.fill(new Ellipse2D.Double(x + size * 0.62, y + size * 0.12, size * 0.22, size * 0.22));
        Path2D.Double mountains = new Path2D.Double();
        mountains.moveTo(x, y + size * 0.88);
        mountains.lineTo(x + size * 0.36, y + size * 0.36);
        mountains.lineTo(x + size * 0.6, y + size * 0.7);
        mountains.lineTo(x + size * 0.74, y + size * 0.52);
        mountains.lineTo(x + size, y + size * 0.88);
        mountains.closePath();
        g.fill(mountains);
    }
}
