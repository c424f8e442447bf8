package com.fernwick.android.ad.mero.preview;

import java.awt.Color;

/** Colour strings as templates write them: "#RRGGBBAA", "#RRGGBB" or "#RGB". */
public final class Colors {
    private Colors() {}

    private static final String HEX_DIGITS = "0123456789abcdefABCDEF";

    public static final Color TRANSPARENT = new Color(0, 0, 0, 0);

    /** The colour, or transparent for anything that is not one of the three forms. */
    public static Color parse(String text) {
        if (text == null || !text.startsWith("#")) {
            return TRANSPARENT;
        }
        String hex = text.substring(1);
        for (int i = 0; i < hex.length(); i++) {
            if (HEX_DIGITS.indexOf(hex.charAt(i)) < 0) { // ASCII only: Character.digit takes other scripts' digits
                return TRANSPARENT;
            }
        }
        switch (hex.length()) {
            case 8:
                return new Color(Integer.parseInt(hex.substring(0, 2), 16), Integer.parseInt(hex.substring(2, 4), 16),
                        Integer.parseInt(hex.substring(4, 6), 16), Integer.parseInt(hex.substring(6, 8), 16));
            case 6:
                return new Color(Integer.parseInt(hex, 16));
            case 3:
                return new Color(twice(hex.charAt(0)), twice(hex.charAt(1)), twice(hex.charAt(2)));
            default:
                return TRANSPARENT;
        }
    }

    /** The colour with its alpha multiplied by factor (0 to 1). */
    public static Color fade(Color color, float factor) {
        float kept = Math.max(0f, Math.min(1f, Float.isNaN(factor) ? 0f : factor));
        return new Color(color.getRed(), color.getGreen(), color.getBlue(), Math.round(color.getAlpha() * kept));
    }

    /** "#abc" means "#aabbcc". */
    private static int twice(char digit) {
        return Character.digit(digit, 16) * 17;
    }
}
