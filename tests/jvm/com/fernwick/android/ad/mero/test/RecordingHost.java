package com.fernwick.android.ad.mero.test;

import com.fernwick.android.ad.mero.MRComponent;
import com.fernwick.android.ad.mero.components.GradientInfo;
import com.fernwick.android.ad.mero.components.swiper.MRSwiperComponent;
import com.fernwick.android.ad.mero.nativ_.MeroNative;

import java.util.ArrayList;
import java.util.Arrays;
import java.util.HashMap;
import java.util.HashSet;
import java.util.List;
import java.util.Map;
import java.util.Set;
import java.util.stream.Collectors;

/**
 * One card's host: records every call the engine makes, one line each with
 * copies of the arguments, and answers with values a test sets beforehand.
 */
public class RecordingHost extends MeroNative {
    /** One createComponent call's arguments, copied. */
    record Created(int[] ints, float[] floats, String[] strings, boolean[] booleans, GradientInfo gradient) {}

    /** A host view; every view is a swiper, so start() is recorded wherever the engine calls it. */
    final class View extends MRSwiperComponent {
        final String id;

        View(String id) { this.id = id; }
        @Override public void addChild(MRComponent child) { record(calls, "addChild", id, child); }
        @Override public void addChildAt(int index, MRComponent child) { record(calls, "addChildAt", id, index, child); }
        @Override public void removeChildAt(int index) { record(calls, "removeChildAt", id, index); }
        @Override public void start() { record(calls, "start", id); }
        @Override public String toString() { return id; }
        @Override public float[] getContentSize() {
            record(calls, "getContentSize", id);
            return contentSize.clone();
        }
    }

    final int handle;
    final List<String> calls = new ArrayList<>();
    /** measureText calls, kept apart: most changes re-measure a text. */
    final List<String> measures = new ArrayList<>();
    /** The last createComponent for each node id. */
    final Map<String, Created> created = new HashMap<>();
    final Map<String, MRComponent> views = new HashMap<>();
    final List<Integer> timeoutIds = new ArrayList<>();
    final List<int[]> videoIds = new ArrayList<>();
    final List<Long> callbackIds = new ArrayList<>();
    MRComponent root;

    // What the host answers, and how start() sets the card up.
    final Set<String> refusedIds = new HashSet<>();
    /** createComponent throws for this id, after recording the call. */
    String throwingId;
    float[] textSize = {120f, 30f};
    float[] contentSize = {200f, 50f};
    /** Key-path bridge methods answered at once, inside the call: method to result JSON. */
    final Map<String, String> keyPathReplies = new HashMap<>();
    float screenWidth = 750f;
    String data = "{}";
    String extraData = "{}";
    boolean logEnabled;
    boolean debugMode = true;

    RecordingHost(int handle) { this.handle = handle; }

    /** A card through every set-up native in the host's order, its container exactly 750 by 1334. */
    static RecordingHost show(int handle, String template) { return new RecordingHost(handle).start(template); }

    RecordingHost start(String template) {
        initMREngine(handle, logEnabled, debugMode);
        updateEnv(handle);
        setScreenWidth(handle, screenWidth);
        loadTemplate(handle, template);
        setData(handle, data, extraData);
        initContainerSize(handle, 750f, 1334f, 1, 1);
        initNode(handle);
        triggerInitEvent(handle);
        applyLayout(handle);
        root = createComponentTree(handle);
        return this;
    }

    void event(String name) { sendEvent(handle, name, ""); }
    void event(String name, String payload) { sendEvent(handle, name, payload); }
    void click(String componentId) { sendClickEvent(handle, componentId); }

    /** The calls recorded since the last take; forgets the measurements too. */
    List<String> take() {
        List<String> seen = new ArrayList<>(calls);
        calls.clear();
        measures.clear();
        return seen;
    }

    static void record(List<String> into, Object... words) {
        into.add(Arrays.stream(words).map(String::valueOf).collect(Collectors.joining(" ")));
    }

    /** A property value with its boxed type: F for Float, B for Boolean, S for String. */
    static String box(Object value) {
        return (value instanceof Float ? "F" : value instanceof Boolean ? "B" : value instanceof String ? "S" : "?")
                + value;
    }

    @Override
    public MRComponent createComponent(
            int type, int[] ints, float[] floats, String[] strings, boolean[] booleans, GradientInfo gradient) {
        GradientInfo copy = gradient == null ? null
                : new GradientInfo(gradient.type, gradient.colors.clone(), gradient.positions.clone());
        String id = strings[0];
        created.put(id, new Created(ints.clone(), floats.clone(), strings.clone(), booleans.clone(), copy));
        record(calls, "createComponent", type, id);
        if (id.equals(throwingId)) {
            throw new IllegalStateException("host refused " + id);
        }
        views.put(id, refusedIds.contains(id) ? null : new View(id));
        return views.get(id);
    }

    @Override public void addRootView(MRComponent view) { record(calls, "addRootView", view); }
    @Override public void removeRootView() { record(calls, "removeRootView"); }
    @Override public MRComponent findComponentById(String componentId) { return views.get(componentId); }
    @Override public void sendALog(String message) { record(calls, "sendALog", message); }

    @Override public void updateComponentProperty(String componentId, int propertyId, Object value) {
        record(calls, "update", componentId, propertyId + "=" + box(value));
    }

    @Override public void playComponentAnimation(
            String componentId, int propertyId, Object value, int timing, int duration, int delay) {
        record(calls, "animate", componentId, propertyId + "=" + box(value), timing + "/" + duration + "/" + delay);
    }

    @Override public float[] measureText(String text, float fontSize, int style, int maxLines, float lineHeight,
            float textInterval, float width, int widthMode, float height, int heightMode) {
        record(measures, "measureText", text, fontSize, style, maxLines, lineHeight, textInterval, width, widthMode,
                height, heightMode);
        return textSize.clone();
    }

    @Override public void setTimeout(long delay, int jobId) {
        record(calls, "setTimeout", delay);
        timeoutIds.add(jobId);
    }

    /** Recorded with the ids relative to the first, which is random. */
    @Override public void startVideoTimerTask(long second, int first, int[] times, int[] ids) {
        record(calls, "startVideoTimerTask", second, first, Arrays.toString(times),
                Arrays.toString(Arrays.stream(ids).map(id -> id - ids[0]).toArray()));
        videoIds.add(ids.clone());
    }

    @Override public void callJSB(String method, String paramsJson, long callbackId) {
        record(calls, "callJSB", method, paramsJson);
        callbackIds.add(callbackId);
    }

    @Override public void callJSBWithKeyPath(String method, String paramsJson, String keyPathJson, long callbackId) {
        record(calls, "callJSBWithKeyPath", method, paramsJson, keyPathJson);
        callbackIds.add(callbackId);
        if (keyPathReplies.containsKey(method)) {
            handleKeyPathResult(handle, keyPathReplies.get(method), callbackId);
        }
    }
}
