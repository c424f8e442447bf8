package com.fernwick.android.ad.mero.test;

import com.fernwick.android.ad.mero.MRComponent;

import java.util.List;

/** One card driven through the lifecycle natives in the host's order. */
final class Card {
    final RecordingHost host;
    final int handle;
    MRComponent root;

    Card(int handle) {
        this.handle = handle;
        this.host = new RecordingHost(handle);
    }

    /** initMREngine up to createComponentTree, the container exactly width by height. */
    static Card show(int handle, String template, String data, float width, float height) {
        Card card = new Card(handle);
        card.start(template, data, "{}", width, height, 1, 1, false, true);
        return card;
    }

    void start(String template, String data, String extraData, float width, float height, int widthMode,
            int heightMode, boolean logEnabled, boolean debugMode) {
        host.initMREngine(handle, logEnabled, debugMode);
        host.updateEnv(handle);
        host.setScreenWidth(handle, 750f);
        host.loadTemplate(handle, template);
        host.setData(handle, data, extraData);
        host.initContainerSize(handle, width, height, widthMode, heightMode);
        host.initNode(handle);
        host.triggerInitEvent(handle);
        host.applyLayout(handle);
        root = host.createComponentTree(handle);
    }

    /** What the host saw since the last take, text measurements left out. */
    List<String> seen() {
        List<String> calls = host.take();
        calls.removeIf(call -> call.startsWith("measureText "));
        return calls;
    }

    void release() {
        host.releaseInstance(handle);
    }
}
