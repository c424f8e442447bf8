package com.fernwick.android.ad.mero.preview;

import java.awt.Font;
import java.awt.Graphics2D;
import java.awt.font.LineMetrics;
import java.util.ArrayList;
import java.util.List;

/**
 * A text broken into lines and measured: what measureText answers and what
 * the painter draws, so layout never disagrees with the picture. Lines wrap at
 * spaces; a word wider than the line (or text without spaces, like CJK) breaks
 * between any two characters; "\n" always breaks. Letter spacing follows every
 * character, the last one included.
 */
public final class TextBlock {
    public static final String ELLIPSIS = "\u2026";
    public static final int ALIGN_LEFT = 0, ALIGN_CENTER = 1, ALIGN_RIGHT = 2;

    /** Widths may differ from a rounded-up measure in the last bits; this much overflow still fits. */
    private static final float FIT_SLACK = 1e-3f;

    private final Font font;
    private final float spacing;
    private final List<String> lines;
    private final float[] lineWidths;
    private final float lineHeight;
    private final float baseline;

    private TextBlock(Font font, float spacing, List<String> lines, float lineHeight, float baseline) {
        this.font = font;
        this.spacing = spacing;
        this.lines = List.copyOf(lines);
        this.lineWidths = new float[lines.size()];
        for (int i = 0; i < lineWidths.length; i++) {
            lineWidths[i] = measure(font, spacing, lines.get(i));
        }
        this.lineHeight = lineHeight;
        this.baseline = baseline;
    }

    /**
     * Breaks and measures text. fontWeight is the host's weight number; maxLines 0 is unlimited; lineHeight 0
     * (or less) is the font's own; maxWidth is Float.POSITIVE_INFINITY when unbounded. Odd numbers (NaN,
     * negatives) never throw: a size of 0 or less gives an empty measure.
     */
    public static TextBlock layout(String text, float fontSize, int fontWeight, int maxLines, float lineHeight,
            float letterSpacing, float maxWidth) {
        Font font = Fonts.font(finite(fontSize), fontWeight);
        float spacing = finite(letterSpacing);
        float limit = Float.isNaN(maxWidth) ? Float.POSITIVE_INFINITY : Math.max(0f, maxWidth);
        List<String> lines = new ArrayList<>();
        if (text != null && !text.isEmpty() && font.getSize2D() > 0) {
            for (String paragraph : text.replace("\r\n", "\n").split("\n", -1)) {
                new Wrapper(font, spacing, limit, lines).wrap(paragraph);
            }
        }
        if (maxLines > 0 && lines.size() > maxLines) {
            List<String> shown = new ArrayList<>(lines.subList(0, maxLines));
            shown.set(maxLines - 1, ellipsize(font, spacing, limit, shown.get(maxLines - 1)));
            lines = shown;
        }
        LineMetrics metrics = Fonts.metrics(font);
        float natural = metrics.getAscent() + metrics.getDescent() + metrics.getLeading();
        float height = finite(lineHeight) > 0 ? lineHeight : natural;
        // A taller or shorter line keeps the glyphs centred in it, as the natural line would place them.
        float baseline = (height - natural) / 2 + metrics.getAscent();
        return new TextBlock(font, spacing, lines, height, baseline);
    }

    /** The widest line. */
    public float width() {
        float widest = 0;
        for (float width : lineWidths) {
            widest = Math.max(widest, width);
        }
        return widest;
    }

    /** Lines times the line height. */
    public float height() {
        return lines.size() * lineHeight;
    }

    /** The lines to draw, after wrapping and the ellipsis. */
    public List<String> lines() {
        return lines;
    }

    public float lineWidth(int line) {
        return lineWidths[line];
    }

    /** The height of each line. */
    public float lineHeight() {
        return lineHeight;
    }

    /** From the top of a line to its baseline. */
    public float baseline() {
        return baseline;
    }

    public Font font() {
        return font;
    }

    /**
     * Draws the lines from top, each aligned (ALIGN_*) inside [left, left + boxWidth], in the graphics' colour.
     * Characters are placed one by one at the measured advances, so the picture matches width() exactly.
     */
    public void draw(Graphics2D g, float left, float top, float boxWidth, int align) {
        g.setFont(font);
        for (int i = 0; i < lines.size(); i++) {
            float free = boxWidth - lineWidths[i];
            float x = left + (align == ALIGN_CENTER ? free / 2 : align == ALIGN_RIGHT ? free : 0);
            float y = top + i * lineHeight + baseline;
            String line = lines.get(i);
            for (int at = 0; at < line.length(); ) {
                int codePoint = line.codePointAt(at);
                int next = at + Character.charCount(codePoint);
                g.drawString(line.substring(at, next), x, y);
                x += Fonts.advance(font, codePoint) + spacing;
                at = next;
            }
        }
    }

    static float measure(Font font, float spacing, String text) {
        float width = 0;
        for (int at = 0; at < text.length(); ) {
            int codePoint = text.codePointAt(at);
            width += Fonts.advance(font, codePoint) + spacing;
            at += Character.charCount(codePoint);
        }
        return width;
    }

    /** The line shortened until it fits with the ellipsis; the ellipsis alone when nothing else fits. */
    private static String ellipsize(Font font, float spacing, float limit, String line) {
        String kept = line;
        while (!kept.isEmpty() && measure(font, spacing, kept.stripTrailing() + ELLIPSIS) > limit + FIT_SLACK) {
            kept = kept.substring(0, kept.offsetByCodePoints(kept.length(), -1));
        }
        return kept.stripTrailing() + ELLIPSIS;
    }

    private static float finite(float value) {
        return Float.isFinite(value) ? value : 0f;
    }

    /** Greedy line filling for one paragraph. Spaces at a line's end hang: they never force a break. */
    private static final class Wrapper {
        private final Font font;
        private final float spacing;
        private final float limit;
        private final List<String> out;
        private final StringBuilder line = new StringBuilder();
        private float lineWidth; // including the spaces that end it

        Wrapper(Font font, float spacing, float limit, List<String> out) {
            this.font = font;
            this.spacing = spacing;
            this.limit = limit;
            this.out = out;
        }

        void wrap(String paragraph) {
            int at = 0;
            while (at < paragraph.length()) {
                int end = wordEnd(paragraph, at);
                int spacesEnd = spacesEnd(paragraph, end);
                place(paragraph.substring(at, end));
                line.append(paragraph, end, spacesEnd);
                lineWidth += measure(font, spacing, paragraph.substring(end, spacesEnd));
                at = spacesEnd;
            }
            flush();
        }

        private void place(String word) {
            float width = measure(font, spacing, word);
            if (line.length() > 0 && lineWidth + width > limit + FIT_SLACK) {
                flush();
            }
            if (line.length() == 0 && width > limit + FIT_SLACK) {
                word = breakLongWord(word);
                width = measure(font, spacing, word);
            }
            line.append(word);
            lineWidth += width;
        }

        /** Emits full lines of the word's head, at least one character each; returns the tail that is left. */
        private String breakLongWord(String word) {
            int start = 0;
            float width = 0;
            for (int at = 0; at < word.length(); ) {
                int codePoint = word.codePointAt(at);
                float advance = Fonts.advance(font, codePoint) + spacing;
                if (at > start && width + advance > limit + FIT_SLACK) {
                    out.add(word.substring(start, at));
                    start = at;
                    width = 0;
                }
                width += advance;
                at += Character.charCount(codePoint);
            }
            return word.substring(start);
        }

        private void flush() {
            out.add(line.toString().stripTrailing());
            line.setLength(0);
            lineWidth = 0;
        }

        /** A word runs to the next space; an ideograph is a word of its own, as such scripts break anywhere. */
        private static int wordEnd(String text, int at) {
            int end = at;
            while (end < text.length() && text.charAt(end) != ' ') {
                int codePoint = text.codePointAt(end);
                if (Character.isIdeographic(codePoint) && end > at) {
                    break;
                }
                end += Character.charCount(codePoint);
                if (Character.isIdeographic(codePoint)) {
                    break;
                }
            }
            return end;
        }

        private static int spacesEnd(String text, int at) {
            int end = at;
            while (end < text.length() && text.charAt(end) == ' ') {
                end++;
            }
            return end;
        }
    }
}
