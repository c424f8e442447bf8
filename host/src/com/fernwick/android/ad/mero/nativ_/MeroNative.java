// Compiled under the placeholder package "nativ_" (javac refuses the keyword
// "native" in a package name); the build renames it to "native" in the class
// files. See host/CMakeLists.txt.
package com.fernwick.android.ad.mero.nativ_;

import com.fernwick.android.ad.mero.MRComponent;
import com.fernwick.android.ad.mero.components.GradientInfo;

/**
 * The host's side of libmero: the natives through which the app drives its
 * cards (each takes the card's handle first), and the methods through which
 * the engine makes and updates views and uses the app's services.
 *
 * <p>All calls for all handles must come from one thread at a time, and the
 * calls for one handle from the thread last given by initMREngine or updateEnv.
 */
public abstract class MeroNative {
    // Engine lifecycle, in the order a card needs them.
    public native void initMREngine(int handle, boolean logEnabled, boolean debugMode);
    public native void updateEnv(int handle);
    public native void setScreenWidth(int handle, float screenWidth);
    public native void loadTemplate(int handle, String template);
    public native void setData(int handle, String data, String extraData);
    public native void handleResult(int handle, String result, long callbackId);
    public native void handleKeyPathResult(int handle, String result, long callbackId);
    public native void releaseInstance(int handle);
    public native void sendEvent(int handle, String name, String payload);
    public native void sendClickEvent(int handle, String componentId);
    public native void initNode(int handle);
    public native void initContainerSize(int handle, float width, float height, int widthMode, int heightMode);
    public native void triggerInitEvent(int handle);
    public native void applyLayout(int handle);
    public native MRComponent createComponentTree(int handle);
    public native void executeTimeoutJob(int handle, int jobId);
    public native void executeVideoTimerJob(int handle, int jobId);
    public native void clearVideoTimerJobs(int handle);
    public native void sendSwiperEvent(int handle, String componentId, int index);
    public native void updateLayout(int handle, float width, float height, int widthMode, int heightMode);
    public native void markDirty(int handle, String componentId);

    // Views.
    public abstract MRComponent createComponent(
            int type, int[] ints, float[] floats, String[] strings, boolean[] booleans, GradientInfo gradient);
    public abstract void addRootView(MRComponent root);
    public abstract void removeRootView();
    public abstract MRComponent findComponentById(String componentId);
    public abstract void updateComponentProperty(String componentId, int propertyId, Object value);
    public abstract void playComponentAnimation(
            String componentId, int propertyId, Object value, int timing, int duration, int delay);

    // Services.
    public abstract float[] measureText(String text, float fontSize, int style, int maxLines, float lineHeight,
            float textInterval, float width, int widthMode, float height, int heightMode);
    /** Calls executeTimeoutJob(handle, jobId) after delay milliseconds. */
    public abstract void setTimeout(long delay, int jobId);
    /** Calls executeVideoTimerJob(handle, ids[i]) when the video reaches times[i] milliseconds. */
    public abstract void startVideoTimerTask(long second, int first, int[] times, int[] ids);
    public abstract void sendALog(String message);
    /** Answers later with handleResult(handle, resultJson, callbackId), exactly once. */
    public abstract void callJSB(String method, String paramsJson, long callbackId);
    /** Answers later with handleKeyPathResult(handle, resultJson, callbackId), exactly once. */
    public abstract void callJSBWithKeyPath(String method, String paramsJson, String keyPathJson, long callbackId);
}
