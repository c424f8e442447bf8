package com.fernwick.android.ad.mero.preview;

import static com.fernwick.android.ad.mero.preview.PropertyTable.*;

import java.awt.Color;
import java.awt.Graphics2D;
import java.awt.Shape;
import java.awt.geom.Rectangle2D;

/**
 * The download button in its state: a pill (or the view's own corners) in the
 * state's colour, a progress bar while downloading, and the state's text
 * centred on one line.
 */
final class DownloadButtonPainter {
    private DownloadButtonPainter() {}

    /** Each row: a state, the id of its text, and whether it shows the progress bar. */
    private static final Object[][] STATES = {
        {"normal", DL_TEXT_NORMAL, false},
        {"active", DL_TEXT_ACTIVE, true},
        {"paused", DL_TEXT_PAUSED, true},
        {"finished", DL_TEXT_FINISHED, false},
        {"installed", DL_TEXT_INSTALLED, false},
    };

    static void paint(Graphics2D g, ViewNode node, ViewBox box) {
        Object[] state = state(node.downloadState);
        Shape pill = pill(box);
        float progress = Float.isNaN(node.downloadProgress) ? 0f : Math.max(0f, Math.min(100f, node.downloadProgress));
        if ((Boolean) state[2]) {
            g.setColor(Colors.parse(node.text(DL_COLOR_PROGRESS_BG)));
            g.fill(pill);
            Graphics2D bar = (Graphics2D) g.create();
            bar.clip(pill);
            bar.setColor(Colors.parse(node.text(DL_COLOR_PROGRESS)));
            bar.fill(new Rectangle2D.Float(0, 0, box.width * progress / 100, box.height));
            bar.dispose();
        } else {
            // A finished download waits to be installed: the bar stays full.
            int fill = state[0].equals("finished") ? DL_COLOR_PROGRESS : DL_COLOR_NORMAL;
            g.setColor(Colors.parse(node.text(fill)));
            g.fill(pill);
        }
        String text = node.text((Integer) state[1]).replace("{progress}", Integer.toString(Math.round(progress)));
        paintLabel(g, node, box, text);
    }

    private static void paintLabel(Graphics2D g, ViewNode node, ViewBox box, String text) {
        // The button has no measure of its own: without a font size the label follows its height.
        float size = node.number(FONT_SIZE) > 0 ? node.number(FONT_SIZE) : box.height * 0.4f;
        Rectangle2D.Float area = box.content;
        TextBlock label = TextBlock.layout(text, size, (int) node.number(FONT_WEIGHT), 1, 0, 0, area.width);
        g.setColor(node.has(DL_COLOR_TEXT) ? Colors.parse(node.text(DL_COLOR_TEXT)) : Color.WHITE);
        label.draw(g, area.x, area.y + (area.height - label.height()) / 2, area.width, TextBlock.ALIGN_CENTER);
    }

    /** The view's corners when it has any, else fully round ends. */
    private static Shape pill(ViewBox box) {
        for (float radius : box.radii) {
            if (radius > 0) {
                return box.outline;
            }
        }
        float round = Math.min(box.width, box.height) / 2;
        return Shapes.rounded(0, 0, box.width, box.height, new float[] {round, round, round, round});
    }

    /** An unknown state shows as normal. */
    private static Object[] state(String name) {
        for (Object[] row : STATES) {
            if (row[0].equals(name)) {
                return row;
            }
        }
        return STATES[0];
    }
}
