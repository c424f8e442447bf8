package com.fernwick.android.ad.mero.test;

import com.fernwick.android.ad.mero.MRComponent;
import com.fernwick.android.ad.mero.components.GradientInfo;
import com.fernwick.android.ad.mero.nativ_.MeroNative;

import java.util.ArrayList;
import java.util.Arrays;
import java.util.HashMap;
import java.util.HashSet;
import java.util.List;
import java.util.Map;
import java.util.Set;

/**
 * A host that records every call the engine makes, as one line each with
 * copies of the arguments, and answers with values a test sets beforehand.
 */
public class RecordingHost extends MeroNative {
    /** One createComponent call, with copies of its arrays. */
    public static final class Created {
        public int type;
        public int[] ints;
        public float[] floats;
        public String[] strings;
        public boolean[] booleans;
        public Integer gradientType;
        public String[] gradientColors;
        public float[] gradientPositions;

        public String id() {
            return strings[0];
        }
    }

    public static final class BridgeCall {
        public String method;
        public String params;
        public String keyPath;
        public long callbackId;
    }

    public static final class VideoTask {
        public long second;
        public int first;
        public int[] times;
        public int[] ids;
    }

    public final int handle;
    public final List<String> calls = new ArrayList<>();
    public final List<Created> created = new ArrayList<>();
    public final Map<String, MRComponent> componentsById = new HashMap<>();
    public final List<long[]> timeouts = new ArrayList<>();
    public final List<VideoTask> videoTasks = new ArrayList<>();
    public final List<BridgeCall> bridgeCalls = new ArrayList<>();

    /** Node ids whose createComponent answers null. */
    public final Set<String> refusedIds = new HashSet<>();
    /** What measureText answers. */
    public float[] textSize = {120f, 30f};
    /** What every component's getContentSize answers. */
    public float[] contentSize = {200f, 50f};
    /** Key-path bridge methods answered at once, inside the call: method to result JSON. */
    public final Map<String, String> immediateKeyPathResults = new HashMap<>();

    public RecordingHost(int handle) {
        this.handle = handle;
    }

    static String box(Object value) {
        if (value instanceof Float) {
            return "F" + value;
        }
        if (value instanceof Boolean) {
            return "B" + value;
        }
        if (value instanceof String) {
            return "S" + value;
        }
        return value == null ? "null" : "?" + value.getClass().getName();
    }

    /** The calls recorded since the last take, then forgets them. */
    public List<String> take() {
        List<String> seen = new ArrayList<>(calls);
        calls.clear();
        return seen;
    }

    public Created createdFor(String id) {
        for (int i = created.size() - 1; i >= 0; i--) {
            if (created.get(i).id().equals(id)) {
                return created.get(i);
            }
        }
        return null;
    }

    @Override
    public MRComponent createComponent(
            int type, int[] ints, float[] floats, String[] strings, boolean[] booleans, GradientInfo gradient) {
        Created record = new Created();
        record.type = type;
        record.ints = ints.clone();
        record.floats = floats.clone();
        record.strings = strings.clone();
        record.booleans = booleans.clone();
        if (gradient != null) {
            record.gradientType = gradient.type;
            record.gradientColors = gradient.colors.clone();
            record.gradientPositions = gradient.positions.clone();
        }
        created.add(record);
        String id = strings[0];
        calls.add("createComponent " + type + " " + id);
        if (refusedIds.contains(id)) {
            return null;
        }
        MRComponent component = type == 8 ? new RecordingSwiper(this, id) : new RecordingComponent(this, id);
        componentsById.put(id, component);
        return component;
    }

    @Override
    public void addRootView(MRComponent root) {
        calls.add("addRootView " + RecordingComponent.idOf(root));
    }

    @Override
    public void removeRootView() {
        calls.add("removeRootView");
    }

    @Override
    public MRComponent findComponentById(String componentId) {
        return componentsById.get(componentId);
    }

    @Override
    public void updateComponentProperty(String componentId, int propertyId, Object value) {
        calls.add("update " + componentId + " " + propertyId + "=" + box(value));
    }

    @Override
    public void playComponentAnimation(
            String componentId, int propertyId, Object value, int timing, int duration, int delay) {
        calls.add("animate " + componentId + " " + propertyId + "=" + box(value) + " " + timing + "/" + duration + "/"
                + delay);
    }

    @Override
    public float[] measureText(String text, float fontSize, int style, int maxLines, float lineHeight,
            float textInterval, float width, int widthMode, float height, int heightMode) {
        calls.add("measureText " + text + " " + fontSize + " " + style + " " + maxLines + " " + lineHeight + " "
                + textInterval + " " + width + " " + widthMode + " " + height + " " + heightMode);
        return textSize.clone();
    }

    @Override
    public void setTimeout(long delay, int jobId) {
        calls.add("setTimeout " + delay);
        timeouts.add(new long[] {delay, jobId});
    }

    @Override
    public void startVideoTimerTask(long second, int first, int[] times, int[] ids) {
        calls.add("startVideoTimerTask " + second + " " + first + " " + Arrays.toString(times));
        VideoTask task = new VideoTask();
        task.second = second;
        task.first = first;
        task.times = times.clone();
        task.ids = ids.clone();
        videoTasks.add(task);
    }

    @Override
    public void sendALog(String message) {
        calls.add("sendALog " + message);
    }

    @Override
    public void callJSB(String method, String paramsJson, long callbackId) {
        calls.add("callJSB " + method + " " + paramsJson);
        BridgeCall call = new BridgeCall();
        call.method = method;
        call.params = paramsJson;
        call.callbackId = callbackId;
        bridgeCalls.add(call);
    }

    @Override
    public void callJSBWithKeyPath(String method, String paramsJson, String keyPathJson, long callbackId) {
        calls.add("callJSBWithKeyPath " + method + " " + paramsJson + " " + keyPathJson);
        BridgeCall call = new BridgeCall();
        call.method = method;
        call.params = paramsJson;
        call.keyPath = keyPathJson;
        call.callbackId = callbackId;
        bridgeCalls.add(call);
        String answer = immediateKeyPathResults.get(method);
        if (answer != null) {
            handleKeyPathResult(handle, answer, callbackId);
        }
    }
}
