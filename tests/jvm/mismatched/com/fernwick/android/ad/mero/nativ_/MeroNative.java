package com.fernwick.android.ad.mero.nativ_;

import com.fernwick.android.ad.mero.MRComponent;

/** A host class that declares setScreenWidth with a double: registration must fail. */
public class MeroNative {
    public native void initMREngine(int handle, boolean logEnabled, boolean debugMode);
    public native void updateEnv(int handle);
    public native void setScreenWidth(int handle, double screenWidth);
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
}
