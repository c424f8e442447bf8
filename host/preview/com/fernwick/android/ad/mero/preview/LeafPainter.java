package com.fernwick.android.ad.mero.preview;

import static com.fernwick.android.ad.mero.preview.PropertyTable.*;

import java.awt.BasicStroke;
import java.awt.Color;
import java.awt.Graphics2D;
import java.awt.geom.Ellipse2D;
import java.awt.geom.Rectangle2D;
import java.awt.image.BufferedImage;
import java.util.function.Function;

/**
 * What a view of each kind draws over its background, inside its clip. Only
 * leaves draw content; containers (and the swiper, whose page dots come after
 * its page) draw just their children.
 */
final class LeafPainter {
    private LeafPainter() {}

    /** Component type codes. */
    static final int TYPE_TEXT = 4, TYPE_IMAGE = 5, TYPE_DOWNLOAD = 6, TYPE_RATING = 7, TYPE_SWIPER = 8,
            TYPE_CUSTOM = 9, TYPE_VIDEO = 10, TYPE_BLUR = 11;

    private static final float DEFAULT_VEIL = 0.6f;
    private static final Color CUSTOM_FILL = new Color(0xF4F5F7);
    private static final Color CUSTOM_LINE = new Color(0xA9AFB8);
    private static final Color CUSTOM_TEXT = new Color(0x6B7280);
    // Dark dots with light rings and a light dot with a dark ring: each reads on light and dark pages alike.
    private static final Color DOT = new Color(0, 0, 0, 0x47);
    private static final Color DOT_RING = new Color(255, 255, 255, 0x8C);
    private static final Color CURRENT_DOT = Color.WHITE;
    private static final Color CURRENT_DOT_RING = new Color(0, 0, 0, 0x73);

    /** images: the picture for a path property (src, poster) of a node, or null. */
    static void paint(Graphics2D g, ViewNode node, ViewBox box, Function<Integer, BufferedImage> images) {
        switch (node.type) {
            case TYPE_TEXT -> paintText(g, node, box);
            case TYPE_IMAGE -> ImagePainter.paintImage(g, images.apply(SRC), (int) node.number(SCALE_MODE),
                    box.content);
            case TYPE_DOWNLOAD -> DownloadButtonPainter.paint(g, node, box);
            case TYPE_RATING -> RatingPainter.paint(g, node, box);
            case TYPE_CUSTOM -> paintCustom(g, node, box);
            case TYPE_VIDEO -> ImagePainter.paintVideo(g, images.apply(POSTER), box.content);
            case TYPE_BLUR -> paintVeil(g, node, box);
            default -> { }
        }
    }

    /** Lines from the top of the content area, wrapped to its width: the measure the layout was given. */
    private static void paintText(Graphics2D g, ViewNode node, ViewBox box) {
        Rectangle2D.Float area = box.content;
        TextBlock block = TextBlock.layout(node.text(TEXT), node.number(FONT_SIZE),
                (int) node.number(FONT_WEIGHT), (int) node.number(MAX_LINES), node.number(LINE_HEIGHT),
                node.number(TEXT_INTERVAL), area.width);
        g.setColor(node.has(TEXT_COLOR) ? Colors.parse(node.text(TEXT_COLOR)) : Color.BLACK);
        block.draw(g, area.x, area.y, area.width, (int) node.number(TEXT_ALIGN));
    }

    /** A white veil standing for the blur of what lies below it. */
    private static void paintVeil(Graphics2D g, ViewNode node, ViewBox box) {
        float alpha = node.number(BLUR_ALPHA) > 0 ? Math.min(1f, node.number(BLUR_ALPHA)) : DEFAULT_VEIL;
        g.setColor(Colors.fade(Color.WHITE, alpha));
        g.fill(box.outline);
    }

    /** The app draws custom views; the preview marks their place and kind. */
    private static void paintCustom(Graphics2D g, ViewNode node, ViewBox box) {
        g.setColor(CUSTOM_FILL);
        g.fill(box.outline);
        Graphics2D dashed = (Graphics2D) g.create();
        dashed.setColor(CUSTOM_LINE);
        dashed.setStroke(new BasicStroke(2f, BasicStroke.CAP_BUTT, BasicStroke.JOIN_MITER, 10f, new float[] {6, 4}, 0));
        dashed.draw(new Rectangle2D.Float(1, 1, Math.max(0, box.width - 2), Math.max(0, box.height - 2)));
        dashed.dispose();
        String kind = node.text(CUSTOM_TYPE).isEmpty() ? "custom" : node.text(CUSTOM_TYPE);
        float size = Math.max(10f, Math.min(24f, box.height * 0.25f));
        TextBlock label = TextBlock.layout(kind, size, 0, 1, 0, 0, Math.max(0, box.width - 8));
        g.setColor(CUSTOM_TEXT);
        label.draw(g, 4, (box.height - label.height()) / 2, box.width - 8, TextBlock.ALIGN_CENTER);
    }

    /** One dot per page, centred along the bottom; the current one solid white with a thin dark ring, the rest
     *  translucent dark with a thin light ring. */
    static void paintPageDots(Graphics2D g, int pages, int current, ViewBox box) {
        if (pages < 2) {
            return;
        }
        float dot = Math.max(4f, Math.min(12f, Math.min(box.width, box.height) * 0.04f));
        float left = (box.width - (pages * 2 - 1) * dot) / 2;
        float top = box.height - dot * 2;
        for (int page = 0; page < pages; page++) {
            Ellipse2D.Float disc = new Ellipse2D.Float(left + page * dot * 2, top, dot, dot);
            g.setColor(page == current ? CURRENT_DOT : DOT);
            g.fill(disc);
            g.setColor(page == current ? CURRENT_DOT_RING : DOT_RING);
            g.setStroke(new BasicStroke(1f));
            g.draw(disc);
        }
    }
}
