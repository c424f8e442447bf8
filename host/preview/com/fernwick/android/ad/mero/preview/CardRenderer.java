package com.fernwick.android.ad.mero.preview;

import static com.fernwick.android.ad.mero.preview.PropertyTable.BACKGROUND_COLOR;
import static com.fernwick.android.ad.mero.preview.PropertyTable.BORDER_COLOR;

import java.awt.AlphaComposite;
import java.awt.Color;
import java.awt.Graphics2D;
import java.awt.Paint;
import java.awt.Rectangle;
import java.awt.RenderingHints;
import java.awt.Shape;
import java.awt.geom.AffineTransform;
import java.awt.geom.Rectangle2D;
import java.awt.image.BufferedImage;
import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.HashMap;
import java.util.List;
import java.util.Map;
import javax.imageio.ImageIO;

/**
 * Draws a card's tree of host views into an image, as an app's views would
 * show it. Each view draws, in its own space: background and gradient, its
 * content, its children (clipped to its rounded frame, as views clip their
 * children), then its border on top. A view with opacity below 1 is drawn
 * into a layer first and the layer blended once, so overlapping children do
 * not show through one another. The same tree and clock give the same pixels.
 */
public final class CardRenderer {
    private final long clockMs;
    private final Path templateFolder;
    private final Map<String, BufferedImage> loaded = new HashMap<>();

    private CardRenderer(long clockMs, Path templateFolder) {
        this.clockMs = clockMs;
        this.templateFolder = templateFolder;
    }

    /**
     * The card on a white page of widthPx by heightPx (at least 1 each). clockMs is the virtual time at which
     * loop animations are shown. Images the host has not loaded are looked up relative to templateFolder
     * (may be null).
     */
    public static BufferedImage render(ViewNode root, int widthPx, int heightPx, long clockMs, Path templateFolder) {
        BufferedImage page = new BufferedImage(Math.max(1, widthPx), Math.max(1, heightPx),
                BufferedImage.TYPE_INT_ARGB);
        Graphics2D g = page.createGraphics();
        try {
            g.setColor(Color.WHITE);
            g.fillRect(0, 0, page.getWidth(), page.getHeight());
            setQuality(g);
            g.setClip(0, 0, page.getWidth(), page.getHeight()); // bounds every layer
            if (root != null) {
                new CardRenderer(clockMs, templateFolder).paintNode(g, root);
            }
        } finally {
            g.dispose();
        }
        return page;
    }

    static void setQuality(Graphics2D g) {
        g.setRenderingHint(RenderingHints.KEY_ANTIALIASING, RenderingHints.VALUE_ANTIALIAS_ON);
        g.setRenderingHint(RenderingHints.KEY_TEXT_ANTIALIASING, RenderingHints.VALUE_TEXT_ANTIALIAS_ON);
        g.setRenderingHint(RenderingHints.KEY_FRACTIONALMETRICS, RenderingHints.VALUE_FRACTIONALMETRICS_ON);
        g.setRenderingHint(RenderingHints.KEY_STROKE_CONTROL, RenderingHints.VALUE_STROKE_PURE);
        g.setRenderingHint(RenderingHints.KEY_RENDERING, RenderingHints.VALUE_RENDER_QUALITY);
        g.setRenderingHint(RenderingHints.KEY_INTERPOLATION, RenderingHints.VALUE_INTERPOLATION_BILINEAR);
    }

    /** The view placed in its parent's space (g), then drawn directly or through a layer. */
    private void paintNode(Graphics2D g, ViewNode node) {
        Placement placement = Placement.of(node, clockMs);
        ViewBox box = ViewBox.of(node);
        AffineTransform transform = placement.transform(node.x(), node.y(), box.width, box.height);
        double determinant = transform.getDeterminant();
        if (!(placement.opacity() > 0) || box.isEmpty() || determinant == 0 || !Double.isFinite(determinant)) {
            return; // nothing of it, nor of its clipped children, can show
        }
        Graphics2D own = (Graphics2D) g.create();
        try {
            own.transform(transform);
            if (placement.opacity() < 1) {
                paintInLayer(own, node, box, placement.opacity());
            } else {
                paintView(own, node, box);
            }
        } finally {
            own.dispose();
        }
    }

    /** Draws the view opaque into a layer the size of its visible area, then blends the layer at opacity. */
    private void paintInLayer(Graphics2D g, ViewNode node, ViewBox box, float opacity) {
        AffineTransform toDevice = g.getTransform();
        Rectangle area = toDevice.createTransformedShape(box.outline).getBounds();
        Shape clip = g.getClip();
        area = area.intersection(toDevice.createTransformedShape(clip).getBounds());
        if (area.isEmpty()) {
            return;
        }
        BufferedImage layer = new BufferedImage(area.width, area.height, BufferedImage.TYPE_INT_ARGB);
        Graphics2D inLayer = layer.createGraphics();
        try {
            setQuality(inLayer);
            inLayer.translate(-area.x, -area.y);
            inLayer.transform(toDevice);
            inLayer.clip(clip);
            paintView(inLayer, node, box);
        } finally {
            inLayer.dispose();
        }
        Graphics2D blend = (Graphics2D) g.create();
        blend.setTransform(new AffineTransform());
        blend.setComposite(AlphaComposite.getInstance(AlphaComposite.SRC_OVER, opacity));
        blend.drawImage(layer, area.x, area.y, null);
        blend.dispose();
    }

    /** Background, content and children inside the frame's clip, then the border over them. */
    private void paintView(Graphics2D g, ViewNode node, ViewBox box) {
        g.setColor(Colors.parse(node.text(BACKGROUND_COLOR)));
        g.fill(box.outline);
        Paint gradient = Gradients.paint(node.gradient, box.width, box.height);
        if (gradient != null) {
            g.setPaint(gradient);
            g.fill(box.outline);
        }
        Graphics2D inside = (Graphics2D) g.create();
        try {
            inside.clip(box.outline);
            LeafPainter.paint(inside, node, box, id -> image(node, id));
            for (ViewNode child : shownChildren(node)) {
                paintNode(inside, child);
            }
            if (node.type == LeafPainter.TYPE_SWIPER) {
                LeafPainter.paintPageDots(inside, node.children.size(), node.currentPage, box);
            }
        } finally {
            inside.dispose();
        }
        if (box.hasBorder()) {
            g.setColor(node.has(BORDER_COLOR) ? Colors.parse(node.text(BORDER_COLOR)) : Color.BLACK);
            g.fill(box.borderRing());
        }
    }

    /** A swiper shows only its current page (a page out of range shows none); other views all children. */
    private static List<ViewNode> shownChildren(ViewNode node) {
        if (node.type != LeafPainter.TYPE_SWIPER) {
            return node.children;
        }
        int page = node.currentPage;
        return page >= 0 && page < node.children.size() ? List.of(node.children.get(page)) : List.of();
    }

    /**
     * The host's picture for the node; failing that, the file its path property names, relative to the template's
     * folder. Web addresses and unreadable files give null: the painters draw placeholders.
     */
    private BufferedImage image(ViewNode node, int pathId) {
        if (node.image != null) {
            return node.image;
        }
        String path = node.text(pathId);
        if (path.isEmpty() || path.startsWith("http:") || path.startsWith("https:")) {
            return null;
        }
        return loaded.computeIfAbsent(path, this::read);
    }

    private BufferedImage read(String path) {
        try {
            Path file = templateFolder == null ? Path.of(path) : templateFolder.resolve(path);
            return Files.isRegularFile(file) ? ImageIO.read(file.toFile()) : null;
        } catch (IOException | RuntimeException unreadable) {
            return null;
        }
    }
}
