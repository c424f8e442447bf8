package com.fernwick.android.ad.mero.preview;

import java.util.ArrayList;
import java.util.Collections;
import java.util.HashMap;
import java.util.List;
import java.util.Map;
import java.util.TreeSet;

/**
 * The host contract's tables: host property ids with their template key
 * names, which ids each component type carries in createComponent's slot
 * arrays, and the component type names. The slot of an id follows from its
 * range: 0-99 float, 100-199 int, 200-299 String, 300-399 boolean, each at
 * id mod 100.
 */
public final class PropertyTable {
    private PropertyTable() {}

    // Common to every view.
    public static final int WIDTH = 0, HEIGHT = 1, X = 2, Y = 3;
    public static final int PADDING_LEFT = 4, PADDING_TOP = 5, PADDING_RIGHT = 6, PADDING_BOTTOM = 7;
    public static final int OPACITY = 8, SCALE_X = 9, SCALE_Y = 10, ANCHOR_X = 11, ANCHOR_Y = 12;
    public static final int ROTATION_X = 13, ROTATION_Y = 14, ROTATION_Z = 15;
    public static final int CORNER_LEFT_TOP = 16, CORNER_RIGHT_TOP = 17, CORNER_RIGHT_BOTTOM = 18,
            CORNER_LEFT_BOTTOM = 19;
    /** Border ids run left, right, top, bottom (padding runs left, top, right, bottom). */
    public static final int BORDER_LEFT = 20, BORDER_RIGHT = 21, BORDER_TOP = 22, BORDER_BOTTOM = 23;
    public static final int TRANSLATE_X = 36, TRANSLATE_Y = 37;
    public static final int BACKGROUND_COLOR = 201, BORDER_COLOR = 202;
    // Text (font size and weight also on the download button).
    public static final int FONT_SIZE = 24, LINE_HEIGHT = 25, TEXT_INTERVAL = 26;
    public static final int MAX_LINES = 100, FONT_WEIGHT = 101, TEXT_ALIGN = 102;
    public static final int TEXT = 203, TEXT_COLOR = 204;
    // Image.
    public static final int SCALE_MODE = 103, SRC = 206;
    // Rating.
    public static final int RATING_SCORE = 28, RATING_STAR_SIZE = 29, RATING_EMPTY_OPACITY = 30,
            RATING_STAR_COLOR = 210;
    // Swiper.
    public static final int SWIPER_DURATION = 31, SWIPER_INTERVAL = 32, SWIPER_DIRECTION = 104;
    public static final int CIRCULAR = 300, AUTOPLAY = 301, TOUCHABLE = 302;
    // Download button.
    public static final int DL_COLOR_NORMAL = 211, DL_COLOR_TEXT = 212, DL_COLOR_INITIAL = 213,
            DL_COLOR_PROGRESS = 214, DL_COLOR_PROGRESS_BG = 215;
    public static final int DL_TEXT_NORMAL = 216, DL_TEXT_ACTIVE = 217, DL_TEXT_PAUSED = 218,
            DL_TEXT_FINISHED = 219, DL_TEXT_INSTALLED = 220;
    // Custom.
    public static final int EXTRA = 209, CUSTOM_TYPE = 223;
    // Video (autoplay is shared with the swiper).
    public static final int INIT_TIME = 38, FULLSCREEN_MODE = 106, DISPLAY_MODE = 107, CACHE_SIZE = 108;
    public static final int VIDEO_MODEL = 224, VIDEO_ID = 225, PLAY_URL = 226, TOKEN = 227, DOMAIN = 228,
            POSTER = 229, PRELOAD_KEY = 230, TAG = 231, SUB_TAG = 232;
    public static final int MUTED = 303, LOOP = 304, PAUSE_ON_HIDE = 305, AUTO_PREPARE = 307;
    // Blur.
    public static final int BLUR_RADIUS = 39, BLUR_ALPHA = 40;

    /** Fixed String slots that are not property ids. */
    public static final int SLOT_ID = 0, SLOT_ON_CLICK = 7, SLOT_BUSINESS_DATA = 21, SLOT_LOOP_ANIMATION = 22;

    /** Each row: a host property id and the template key that sets it (layout results by their style key). */
    private static final Object[][] KEYS = {
        {WIDTH, "width"}, {HEIGHT, "height"}, {X, "x"}, {Y, "y"},
        {PADDING_LEFT, "paddingLeft"}, {PADDING_TOP, "paddingTop"}, {PADDING_RIGHT, "paddingRight"},
        {PADDING_BOTTOM, "paddingBottom"},
        {OPACITY, "opacity"}, {SCALE_X, "scaleX"}, {SCALE_Y, "scaleY"},
        {ANCHOR_X, "anchorPointX"}, {ANCHOR_Y, "anchorPointY"},
        {ROTATION_X, "rotationX"}, {ROTATION_Y, "rotationY"}, {ROTATION_Z, "rotationZ"},
        {CORNER_LEFT_TOP, "cornerLeftTop"}, {CORNER_RIGHT_TOP, "cornerRightTop"},
        {CORNER_RIGHT_BOTTOM, "cornerRightBottom"}, {CORNER_LEFT_BOTTOM, "cornerLeftBottom"},
        {BORDER_LEFT, "borderLeft"}, {BORDER_RIGHT, "borderRight"}, {BORDER_TOP, "borderTop"},
        {BORDER_BOTTOM, "borderBottom"},
        {FONT_SIZE, "fontSize"}, {LINE_HEIGHT, "lineHeight"}, {TEXT_INTERVAL, "textInterval"},
        {RATING_SCORE, "rating_score"}, {RATING_STAR_SIZE, "rating_star_size"},
        {RATING_EMPTY_OPACITY, "rating_empty_opacity"},
        {SWIPER_DURATION, "duration"}, {SWIPER_INTERVAL, "interval"},
        {TRANSLATE_X, "translateX"}, {TRANSLATE_Y, "translateY"},
        {INIT_TIME, "initTime"}, {BLUR_RADIUS, "blurRadius"}, {BLUR_ALPHA, "blurAlpha"},
        {MAX_LINES, "maxLines"}, {FONT_WEIGHT, "fontWeight"}, {TEXT_ALIGN, "textAlign"},
        {SCALE_MODE, "scaleMode"}, {SWIPER_DIRECTION, "swiperDirection"},
        {FULLSCREEN_MODE, "fullscreenMode"}, {DISPLAY_MODE, "displayMode"}, {CACHE_SIZE, "cacheSize"},
        {BACKGROUND_COLOR, "backgroundColor"}, {BORDER_COLOR, "borderColor"},
        {TEXT, "text"}, {TEXT_COLOR, "textColor"}, {SRC, "src"}, {EXTRA, "extra"},
        {RATING_STAR_COLOR, "rating_star_color"},
        {DL_COLOR_NORMAL, "dl_color_normal"}, {DL_COLOR_TEXT, "dl_color_text"},
        {DL_COLOR_INITIAL, "dl_color_initial"}, {DL_COLOR_PROGRESS, "dl_color_progress"},
        {DL_COLOR_PROGRESS_BG, "dl_color_progressBg"},
        {DL_TEXT_NORMAL, "dl_text_normal"}, {DL_TEXT_ACTIVE, "dl_text_active"},
        {DL_TEXT_PAUSED, "dl_text_paused"}, {DL_TEXT_FINISHED, "dl_text_finished"},
        {DL_TEXT_INSTALLED, "dl_text_installed"},
        {CUSTOM_TYPE, "customType"}, {VIDEO_MODEL, "videoModel"}, {VIDEO_ID, "videoId"},
        {PLAY_URL, "playUrl"}, {TOKEN, "token"}, {DOMAIN, "domain"}, {POSTER, "poster"},
        {PRELOAD_KEY, "preloadKey"}, {TAG, "tag"}, {SUB_TAG, "subTag"},
        {CIRCULAR, "circular"}, {AUTOPLAY, "autoplay"}, {TOUCHABLE, "touchable"}, {MUTED, "muted"},
        {LOOP, "loop"}, {PAUSE_ON_HIDE, "pauseOnHide"}, {AUTO_PREPARE, "autoPrepare"},
    };

    /** Each row: a type code, its name, and the ids it carries besides the common ones. */
    private static final Object[][] TYPES = {
        {0, "view", new int[] {}},
        {2, "list", new int[] {}},
        {3, "flex", new int[] {}},
        {4, "text", new int[] {FONT_SIZE, LINE_HEIGHT, TEXT_INTERVAL, MAX_LINES, FONT_WEIGHT, TEXT_ALIGN, TEXT,
            TEXT_COLOR}},
        {5, "image", new int[] {SCALE_MODE, SRC}},
        {6, "download", new int[] {FONT_SIZE, FONT_WEIGHT, DL_COLOR_NORMAL, DL_COLOR_TEXT, DL_COLOR_INITIAL,
            DL_COLOR_PROGRESS, DL_COLOR_PROGRESS_BG, DL_TEXT_NORMAL, DL_TEXT_ACTIVE, DL_TEXT_PAUSED,
            DL_TEXT_FINISHED, DL_TEXT_INSTALLED}},
        {7, "rating", new int[] {RATING_SCORE, RATING_STAR_SIZE, RATING_EMPTY_OPACITY, RATING_STAR_COLOR}},
        {8, "swiper", new int[] {SWIPER_DURATION, SWIPER_INTERVAL, SWIPER_DIRECTION, CIRCULAR, AUTOPLAY,
            TOUCHABLE}},
        {9, "custom", new int[] {EXTRA, CUSTOM_TYPE}},
        {10, "video", new int[] {INIT_TIME, FULLSCREEN_MODE, DISPLAY_MODE, CACHE_SIZE, VIDEO_MODEL, VIDEO_ID,
            PLAY_URL, TOKEN, DOMAIN, POSTER, PRELOAD_KEY, TAG, SUB_TAG, AUTOPLAY, MUTED, LOOP, PAUSE_ON_HIDE,
            AUTO_PREPARE}},
        {11, "blur", new int[] {BLUR_RADIUS, BLUR_ALPHA}},
    };

    /** Every view: frame, padding, opacity and transforms, corners, borders (floats 0-23), translation, colours. */
    private static final int[] COMMON = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19, 20,
        21, 22, 23, TRANSLATE_X, TRANSLATE_Y, BACKGROUND_COLOR, BORDER_COLOR};

    private static final Map<Integer, String> KEY_BY_ID = new HashMap<>();
    private static final Map<Integer, String> NAME_BY_TYPE = new HashMap<>();
    private static final Map<Integer, List<Integer>> IDS_BY_TYPE = new HashMap<>();

    static {
        for (Object[] row : KEYS) {
            KEY_BY_ID.put((Integer) row[0], (String) row[1]);
        }
        for (Object[] row : TYPES) {
            TreeSet<Integer> ids = new TreeSet<>();
            for (int id : COMMON) {
                ids.add(id);
            }
            for (int id : (int[]) row[2]) {
                ids.add(id);
            }
            NAME_BY_TYPE.put((Integer) row[0], (String) row[1]);
            IDS_BY_TYPE.put((Integer) row[0], Collections.unmodifiableList(new ArrayList<>(ids)));
        }
    }

    /** The template key of a host property id; "property<id>" for an id outside the table. */
    public static String key(int propertyId) {
        return KEY_BY_ID.getOrDefault(propertyId, "property" + propertyId);
    }

    /** The ids a component of this type carries, ascending; an unknown type carries the common ones. */
    public static List<Integer> idsOf(int type) {
        return IDS_BY_TYPE.getOrDefault(type, IDS_BY_TYPE.get(0));
    }

    /** "flex", "text", ...; "type<code>" for a code outside the table. */
    public static String typeName(int type) {
        return NAME_BY_TYPE.getOrDefault(type, "type" + type);
    }

    public static boolean isFloatSlot(int propertyId) { return propertyId < 100; }
    public static boolean isIntSlot(int propertyId) { return propertyId >= 100 && propertyId < 200; }
    public static boolean isStringSlot(int propertyId) { return propertyId >= 200 && propertyId < 300; }
    public static boolean isBooleanSlot(int propertyId) { return propertyId >= 300 && propertyId < 400; }
}
