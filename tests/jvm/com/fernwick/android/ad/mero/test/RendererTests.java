package com.fernwick.android.ad.mero.test;

import static com.fernwick.android.ad.mero.preview.PropertyTable.*;
import static com.fernwick.android.ad.mero.test.Checks.check;
import static com.fernwick.android.ad.mero.test.Checks.equal;

import com.fernwick.android.ad.mero.components.GradientInfo;
import com.fernwick.android.ad.mero.preview.CardRenderer;
import com.fernwick.android.ad.mero.preview.Colors;
import com.fernwick.android.ad.mero.preview.TextBlock;
import com.fernwick.android.ad.mero.preview.ViewNode;

import java.awt.Color;
import java.awt.Graphics2D;
import java.awt.image.BufferedImage;
import java.util.List;

/**
 * The previewer's drawing without the engine: colour strings, text layout,
 * and pixels of hand-built view trees on the white page.
 */
public final class RendererTests {
    private RendererTests() {}

    private static final float NO_LIMIT = Float.POSITIVE_INFINITY;
    private static final int WHITE = 0xFFFFFFFF, RED = 0xFFFF0000, BLUE = 0xFF0000FF;

    public static void main(String[] args) {
        check("colour strings: #RRGGBBAA, #RRGGBB and #RGB; anything else is transparent", RendererTests::colours);
        check("text wraps at spaces, inside over-long words and anywhere in ideographs; \\n always breaks",
                RendererTests::wrapping);
        check("text cut by maxLines ends its last line with an ellipsis that still fits", RendererTests::ellipsis);
        check("letter spacing follows every character; line height is given or the font's own",
                RendererTests::spacingAndLineHeight);
        check("a rounded view shows its parent at the corner, its border at the edge, its colour inside",
                RendererTests::boxes);
        check("gradients run by the web's angles and hold their end colours beyond the end stops",
                RendererTests::gradients);
        check("opacity: a view at half shows half; a group at half is blended once", RendererTests::opacity);
        check("scale about the anchor and the loop animation at the clock move the view", RendererTests::transforms);
        check("a swiper shows only its current page; a rating fills its stars up to the score",
                RendererTests::swiperAndRating);
        check("images by scale mode, placeholders without a picture, the download button by its state",
                RendererTests::leaves);
        check("odd numbers draw what they can and never throw", RendererTests::oddInput);
        Checks.finish();
    }

    static void colours() {
        String[][] rows = {
            {"#11223344", "44112233"}, {"#AbCdEf", "ffabcdef"}, {"#abc", "ffaabbcc"}, {"#000000FF", "ff000000"},
            {"#1234", "0"}, {"#12345", "0"}, {"112233", "0"}, {"#GG0000", "0"}, {"#\u0661\u0662\u0663", "0"},
            {"", "0"}, {" #112233", "0"},
        };
        for (String[] row : rows) {
            equal(row[1], Integer.toHexString(Colors.parse(row[0]).getRGB()), row[0]);
        }
        equal(0, Colors.parse(null).getAlpha(), "null");
    }

    static void wrapping() {
        float twoWords = width("aaa bbb");
        equal(List.of("aaa bbb", "ccc"), lines("aaa bbb ccc", twoWords), "at spaces, the space not counted");
        equal(twoWords, text("aaa bbb ccc", 0, 0, 0, twoWords).width(), "width is the widest line");
        equal(List.of("mmm", "mmm", "m"), lines("mmmmmmm", width("mmm")), "an over-long word");
        equal(List.of("ab", "mmm", "m"), lines("ab mmmm", width("mmm")), "a long word after a short one");
        equal(List.of("\u4e00\u4e8c", "\u4e09\u56db", "\u4e94"), lines("\u4e00\u4e8c\u4e09\u56db\u4e94",
                width("\u4e00\u4e8c")), "ideographs without spaces");
        equal(List.of("a", "", "b", ""), lines("a\n\nb\n", NO_LIMIT), "newlines, a trailing one included");
        equal(List.of("m"), lines("m", 0), "at least one character a line");
        equal(List.of(), lines("", 100), "empty text has no lines");
    }

    static void ellipsis() {
        float limit = width("one two");
        TextBlock cut = text("one two three four", 0, 2, 0, limit);
        equal(List.of("one two", "three\u2026"), cut.lines(), "two lines kept");
        equal(true, cut.width() <= limit, "the ellipsis fits");
        equal(List.of("one t\u2026"), text("one two three", 0, 1, 0, limit).lines(), "shortened to fit");
        equal(List.of("first\u2026"), text("first\nsecond", 0, 1, 0, NO_LIMIT).lines(), "cut at a newline");
        equal(List.of("one two", "three"), text("one two three", 0, 2, 0, limit).lines(), "no cut, no ellipsis");
    }

    static void spacingAndLineHeight() {
        float plain = width("Hello");
        equal(plain + 5 * 3f, TextBlock.layout("Hello", 24, 0, 0, 0, 3, NO_LIMIT).width(), "five characters");
        equal(List.of("He", "llo"), TextBlock.layout("He llo", 24, 0, 0, 0, 3, width("He l") + 9).lines(),
                "spacing counts in wrapping");
        equal(27.9375f, text("Hello", 0, 0, 0, NO_LIMIT).height(), "DejaVu Sans at 24: ascent + descent");
        equal(80f, text("a\nb", 0, 0, 40, NO_LIMIT).height(), "two lines of 40");
        int[] weights = {0, 400, 500, -1, 1, 600, 900, 2, 300};
        String[] faces = {"", "", "", "", " Bold", " Bold", " Bold", " ExtraLight", " ExtraLight"};
        for (int i = 0; i < weights.length; i++) {
            equal("DejaVu Sans" + faces[i], text("a", weights[i], 0, 0, NO_LIMIT).font().getFontName(),
                    "weight " + weights[i]);
        }
    }

    static void boxes() {
        ViewNode card = view(0, 0, 100, 100, BACKGROUND_COLOR, "#0000FFFF", CORNER_LEFT_TOP, 20, CORNER_RIGHT_TOP,
                20, CORNER_RIGHT_BOTTOM, 20, CORNER_LEFT_BOTTOM, 20, BORDER_LEFT, 4, BORDER_RIGHT, 4, BORDER_TOP, 4,
                BORDER_BOTTOM, 4, BORDER_COLOR, "#FF0000FF");
        card.children.add(view(-10, -10, 40, 40, BACKGROUND_COLOR, "#00FF00FF"));
        BufferedImage page = CardRenderer.render(card, 120, 120, 0, null);
        equal(WHITE, page.getRGB(1, 1), "outside the rounded corner, even with a child there");
        equal(0xFF00FF00, page.getRGB(20, 20), "the child inside the corner");
        equal(RED, page.getRGB(1, 50), "left border");
        equal(RED, page.getRGB(50, 98), "bottom border");
        equal(BLUE, page.getRGB(50, 50), "background");
        equal(WHITE, page.getRGB(110, 50), "beside the card");

        ViewNode uneven = view(0, 0, 100, 100, BORDER_LEFT, 10, BORDER_TOP, 2, BORDER_COLOR, "#FF0000FF");
        page = CardRenderer.render(uneven, 100, 100, 0, null);
        equal(List.of(RED, WHITE, RED, WHITE), List.of(page.getRGB(8, 50), page.getRGB(11, 50), page.getRGB(50, 1),
                page.getRGB(50, 3)), "strips of their own widths");
    }

    static void gradients() {
        ViewNode across = view(0, 0, 100, 100);
        across.gradient = new GradientInfo(90, new String[] {"#FF0000FF", "#0000FFFF", null, null, null},
                new float[] {0.1f, 0.9f, 0, 0, 0});
        BufferedImage page = CardRenderer.render(across, 100, 100, 0, null);
        equal(List.of(RED, BLUE), List.of(page.getRGB(2, 50), page.getRGB(97, 50)), "90: left to right");
        across.gradient = new GradientInfo(0, across.gradient.colors, across.gradient.positions);
        page = CardRenderer.render(across, 100, 100, 0, null);
        equal(List.of(RED, BLUE), List.of(page.getRGB(50, 97), page.getRGB(50, 2)), "0: bottom to top");
        across.gradient = new GradientInfo(180, new String[] {"#FF0000FF", "", "#0000FFFF", null, null},
                new float[5]);
        page = CardRenderer.render(across, 100, 100, 0, null);
        // The last row samples just short of the end.
        equal(List.of(0xFFFF0000, 0xFF0200FC), List.of(page.getRGB(50, 0), page.getRGB(50, 99)),
                "180, without positions: spread evenly over the stops that have a colour");
    }

    static void opacity() {
        ViewNode root = view(0, 0, 100, 100);
        root.children.add(view(0, 0, 50, 100, BACKGROUND_COLOR, "#FF0000FF", OPACITY, 0.5f));
        ViewNode group = view(50, 0, 50, 100, OPACITY, 0.5f);
        group.children.add(view(0, 0, 50, 100, BACKGROUND_COLOR, "#FF0000FF"));
        group.children.add(view(0, 0, 50, 100, BACKGROUND_COLOR, "#0000FFFF"));
        root.children.add(group);
        BufferedImage page = CardRenderer.render(root, 100, 100, 0, null);
        equal(0xFFFF7F7F, page.getRGB(25, 50), "red at half over white");
        equal(0xFF7F7FFF, page.getRGB(75, 50), "the group's top child only, at half");
    }

    static void transforms() {
        ViewNode root = view(0, 0, 100, 20);
        root.children.add(view(0, 0, 100, 10, BACKGROUND_COLOR, "#FF0000FF", SCALE_X, 0.5f));
        ViewNode moving = view(0, 10, 20, 10, BACKGROUND_COLOR, "#0000FFFF");
        moving.loopAnimation = "{\"property\":\"translateX\",\"from\":0,\"to\":80,\"duration\":1000,\"reverse\":true}";
        root.children.add(moving);
        BufferedImage page = CardRenderer.render(root, 100, 20, 0, null);
        equal(List.of(WHITE, RED, RED, WHITE), List.of(page.getRGB(23, 5), page.getRGB(26, 5), page.getRGB(73, 5),
                page.getRGB(76, 5)), "half width about the middle");
        equal(List.of(BLUE, WHITE), List.of(page.getRGB(10, 15), page.getRGB(30, 15)), "at 0 ms: the start");
        page = CardRenderer.render(root, 100, 20, 1750, null);
        equal(List.of(WHITE, BLUE, WHITE), List.of(page.getRGB(18, 15), page.getRGB(30, 15), page.getRGB(42, 15)),
                "at 1750 ms: three quarters of the way back, at 20");
    }

    static void swiperAndRating() {
        ViewNode swiper = node(8, 0, 0, 100, 100);
        for (String colour : new String[] {"#FF0000FF", "#00FF00FF", "#0000FFFF"}) {
            swiper.children.add(view(0, 0, 100, 100, BACKGROUND_COLOR, colour));
        }
        swiper.currentPage = 2;
        equal(BLUE, CardRenderer.render(swiper, 100, 100, 0, null).getRGB(50, 50), "page 2 over the others");

        ViewNode rating = node(7, 0, 0, 200, 40, RATING_SCORE, 1.5f, RATING_STAR_COLOR, "#FF0000FF");
        BufferedImage page = CardRenderer.render(rating, 200, 40, 0, null);
        // Stars of 40 (the frame's height), a fifth of a star apart: centres at 20, 68 and 116.
        int faint = 0xFFFFB2B2;
        equal(List.of(RED, RED, faint, faint), List.of(page.getRGB(20, 22), page.getRGB(64, 22),
                page.getRGB(71, 22), page.getRGB(116, 22)), "one full, half of the second, the rest at 0.3");
    }

    static void leaves() {
        BufferedImage picture = new BufferedImage(20, 10, BufferedImage.TYPE_INT_ARGB);
        Graphics2D paint = picture.createGraphics();
        paint.setColor(Color.RED);
        paint.fillRect(0, 0, 20, 10);
        paint.dispose();
        // Each row: scale mode, then the pixels at (50, 10), (50, 50) and (0, 50) of a 100 by 100 image view.
        int[][] modes = {{0, RED, RED, RED}, {1, WHITE, RED, RED}, {2, RED, RED, RED}, {7, RED, RED, RED}};
        for (int[] row : modes) {
            ViewNode image = node(5, 0, 0, 100, 100, SCALE_MODE, row[0]);
            image.image = picture;
            BufferedImage page = CardRenderer.render(image, 100, 100, 0, null);
            equal(List.of(row[1], row[2], row[3]), List.of(page.getRGB(50, 10), page.getRGB(50, 50),
                    page.getRGB(0, 50)), "scale mode " + row[0]);
        }
        ViewNode missing = node(5, 0, 0, 100, 100, SRC, "https://example.com/a.png");
        equal(0xFFE6E8EB, CardRenderer.render(missing, 100, 100, 0, null).getRGB(2, 2), "image placeholder");
        equal(0xFF2F3338, CardRenderer.render(node(10, 0, 0, 100, 100), 100, 100, 0, null).getRGB(2, 2),
                "video without a poster");

        // Each row: state, progress, then the pixels at 10% and 90% of the button's width.
        Object[][] states = {{"normal", 50f, 0xFF00FF00, 0xFF00FF00}, {"active", 50f, RED, BLUE},
            {"paused", 95f, RED, RED}, {"finished", 0f, RED, RED}, {"installed", 0f, 0xFF00FF00, 0xFF00FF00},
            {"unknown", 50f, 0xFF00FF00, 0xFF00FF00}};
        for (Object[] row : states) {
            ViewNode button = node(6, 0, 0, 200, 40, DL_COLOR_NORMAL, "#00FF00FF", DL_COLOR_PROGRESS, "#FF0000FF",
                    DL_COLOR_PROGRESS_BG, "#0000FFFF");
            button.downloadState = (String) row[0];
            button.downloadProgress = (Float) row[1];
            BufferedImage page = CardRenderer.render(button, 200, 40, 0, null);
            equal(List.of(row[2], row[3], WHITE), List.of(page.getRGB(20, 20), page.getRGB(180, 20),
                    page.getRGB(1, 1)), "download button " + row[0] + ", round ends");
        }
    }

    static void oddInput() {
        ViewNode root = view(0, 0, 100, 100, BACKGROUND_COLOR, "#0000FFFF", CORNER_LEFT_TOP, 1e9f, OPACITY,
                Float.NaN, SCALE_X, Float.NaN);
        root.children.add(view(Float.NaN, 10, -5, Float.POSITIVE_INFINITY));
        ViewNode text = node(4, 0, 0, 0, 0, TEXT, "x", FONT_SIZE, -3, MAX_LINES, -1);
        text.children.add(view(0, 0, 10, 10));
        ViewNode swiper = node(8, 0, 0, 10, 10);
        swiper.currentPage = 7;
        ViewNode gradient = view(0, 0, 10, 10);
        gradient.gradient = new GradientInfo(45, new String[] {"#FF0000FF", "#00FF00FF", "bad", null},
                new float[] {1, 1, Float.NaN});
        ViewNode looping = view(0, 0, 10, 10);
        looping.loopAnimation = "{\"property\":\"scale\",\"duration\":0}";
        root.children.addAll(List.of(text, swiper, gradient, looping, new ViewNode(99, "unknown")));
        BufferedImage page = CardRenderer.render(root, 100, 100, -5, null);
        equal(BLUE, page.getRGB(99, 99), "a radius of 1e9 rounds one corner only, to half the side");
        equal(WHITE, page.getRGB(2, 2), "the rounded corner");
        equal(1, CardRenderer.render(null, 0, -1, 0, null).getWidth(), "a page is at least 1 by 1");
    }

    private static ViewNode view(float x, float y, float width, float height, Object... properties) {
        return node(3, x, y, width, height, properties);
    }

    /** A view of the type at the frame, with (id, value) pairs; numbers are stored as Float, as the host does. */
    private static ViewNode node(int type, float x, float y, float width, float height, Object... properties) {
        ViewNode node = new ViewNode(type, "view");
        node.set(X, x);
        node.set(Y, y);
        node.set(WIDTH, width);
        node.set(HEIGHT, height);
        for (int i = 0; i < properties.length; i += 2) {
            Object value = properties[i + 1];
            node.set((Integer) properties[i], value instanceof Number number ? number.floatValue() : value);
        }
        return node;
    }

    /** DejaVu Sans at 24, normal weight, no spacing. */
    private static TextBlock text(String text, int weight, int maxLines, float lineHeight, float maxWidth) {
        return TextBlock.layout(text, 24, weight, maxLines, lineHeight, 0, maxWidth);
    }

    private static List<String> lines(String text, float maxWidth) {
        return text(text, 0, 0, 0, maxWidth).lines();
    }

    private static float width(String text) {
        return text(text, 0, 0, 0, NO_LIMIT).width();
    }
}
