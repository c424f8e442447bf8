package com.fernwick.android.ad.mero.preview;

import com.fernwick.android.ad.mero.components.GradientInfo;

import java.awt.image.BufferedImage;
import java.util.ArrayList;
import java.util.Collections;
import java.util.List;
import java.util.Map;
import java.util.TreeMap;

/**
 * One host view as the previewer keeps it: the component type, the property
 * values the engine sent (by host property id), its children in host order,
 * and what the host itself adds (a loaded image, a swiper's page, a download
 * button's state). An Android host would hold a real View instead.
 *
 * <p>Values are kept as the engine boxes them: numbers as Float (the int slots
 * 100-199 too), strings as String, booleans as Boolean.
 */
public final class ViewNode {
    /** Component type code: 0 view; 2, 3 container; 4 text; 5 image; 6 download button; 7 rating; 8 swiper;
     *  9 custom; 10 video; 11 blur. */
    public final int type;
    /** The node id (String slot 0). */
    public final String id;
    /** Children in host order (a swiper's pages). */
    public final List<ViewNode> children = new ArrayList<>();
    /** Null when the view has none. type is the angle in degrees: 0 bottom to top, 90 left to right. */
    public GradientInfo gradient;
    /** Swiper only: the page shown. */
    public int currentPage;
    /** Download button: normal, active, paused, finished or installed. */
    public String downloadState = "normal";
    /** Download button: 0 to 100. */
    public float downloadProgress;
    /** The loaded image's pixel size; 0 when nothing is loaded. */
    public float naturalWidth, naturalHeight;
    /** The loaded "src" (image) or "poster" (video); null draws a placeholder. */
    public BufferedImage image;
    /** String slot 22: the loop animation's JSON, "" when none. */
    public String loopAnimation = "";
    /** String slot 7: the click event name, "" when none. */
    public String onClick = "";
    /** String slot 21 (download button): the business data JSON, "" when none. */
    public String businessData = "";
    /** Video: the duration the engine's video timer request gave, or null before any. */
    public Long videoDuration;

    private final Map<Integer, Object> properties = new TreeMap<>();

    public ViewNode(int type, String id) {
        this.type = type;
        this.id = id;
    }

    /** Stores a property value as the engine boxed it; null (a value the engine cannot box) is kept as null. */
    public void set(int propertyId, Object value) {
        properties.put(propertyId, value);
    }

    /** The raw value, or null when absent or null. */
    public Object value(int propertyId) {
        return properties.get(propertyId);
    }

    /** Every property held, by id in ascending order. */
    public Map<Integer, Object> properties() {
        return Collections.unmodifiableMap(properties);
    }

    /** The number; 0 when absent or not a number. */
    public float number(int propertyId) {
        return properties.get(propertyId) instanceof Number number ? number.floatValue() : 0f;
    }

    /** The text; "" when absent. A non-string value gives its plain text. */
    public String text(int propertyId) {
        Object value = properties.get(propertyId);
        return value == null ? "" : value.toString();
    }

    /** The flag; false when absent or not a boolean. */
    public boolean flag(int propertyId) {
        return properties.get(propertyId) instanceof Boolean flag && flag;
    }

    public boolean has(int propertyId) {
        return properties.containsKey(propertyId);
    }

    /** Frame, in px relative to the parent host view. */
    public float x() { return number(PropertyTable.X); }
    public float y() { return number(PropertyTable.Y); }
    public float width() { return number(PropertyTable.WIDTH); }
    public float height() { return number(PropertyTable.HEIGHT); }

    @Override
    public String toString() {
        return PropertyTable.typeName(type) + " " + id;
    }
}
