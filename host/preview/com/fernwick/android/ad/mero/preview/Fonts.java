package com.fernwick.android.ad.mero.preview;

import java.awt.Font;
import java.awt.RenderingHints;
import java.awt.font.FontRenderContext;
import java.awt.font.LineMetrics;
import java.util.HashMap;
import java.util.Map;

/**
 * The previewer's one typeface, DejaVu Sans, in three weights, and the one
 * rendering context that measures and draws it. Antialiased, fractional
 * metrics: advances do not depend on the screen, so measuring is repeatable
 * and agrees with drawing to the bit.
 */
final class Fonts {
    private Fonts() {}

    static final FontRenderContext CONTEXT = new FontRenderContext(null,
            RenderingHints.VALUE_TEXT_ANTIALIAS_ON, RenderingHints.VALUE_FRACTIONALMETRICS_ON);

    private static final Font NORMAL = new Font("DejaVu Sans", Font.PLAIN, 1);
    private static final Font BOLD = new Font("DejaVu Sans", Font.BOLD, 1);
    private static final Font LIGHT = lightOrNormal();

    /** Far above any card's text; keeps an absurd size from reaching the rasteriser. */
    private static final float MAX_SIZE = 4096f;

    private static final Map<Font, Map<Integer, Float>> ADVANCES = new HashMap<>();

    /** The font for a host font weight: 0 or 400 normal, 1 or 600 and up bold, 2 to 300 light. */
    static Font font(float size, int weight) {
        Font base = weight == 1 || weight >= 600 ? BOLD : weight >= 2 && weight <= 300 ? LIGHT : NORMAL;
        return base.deriveFont(size > 0 ? Math.min(size, MAX_SIZE) : 0f);
    }

    /** The advance of one code point, without letter spacing. Fonts and code points repeat: cached. */
    static synchronized float advance(Font font, int codePoint) {
        return ADVANCES.computeIfAbsent(font, f -> new HashMap<>()).computeIfAbsent(codePoint, cp -> {
            String text = new String(Character.toChars(cp));
            var glyphs = font.createGlyphVector(CONTEXT, text);
            return (float) glyphs.getGlyphPosition(glyphs.getNumGlyphs()).getX();
        });
    }

    static LineMetrics metrics(Font font) {
        return font.getLineMetrics("", CONTEXT);
    }

    /** The extra-light face when the system has it; the fallback is the normal face, never a foreign one. */
    private static Font lightOrNormal() {
        Font light = new Font("DejaVu Sans ExtraLight", Font.PLAIN, 1);
        return light.getFontName().equals("DejaVu Sans ExtraLight") ? light : NORMAL;
    }
}
