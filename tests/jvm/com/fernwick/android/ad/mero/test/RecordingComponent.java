package com.fernwick.android.ad.mero.test;

import com.fernwick.android.ad.mero.MRComponent;

/** A host view that records what the engine does to it. */
public class RecordingComponent extends MRComponent {
    final RecordingHost host;
    final String id;

    RecordingComponent(RecordingHost host, String id) {
        this.host = host;
        this.id = id;
    }

    static String idOf(MRComponent component) {
        if (component instanceof RecordingComponent) {
            return ((RecordingComponent) component).id;
        }
        if (component instanceof RecordingSwiper) {
            return ((RecordingSwiper) component).id;
        }
        return String.valueOf(component);
    }

    @Override
    public void addChild(MRComponent child) {
        host.calls.add("addChild " + id + " " + idOf(child));
    }

    @Override
    public void addChildAt(int index, MRComponent child) {
        host.calls.add("addChildAt " + id + " " + index + " " + idOf(child));
    }

    @Override
    public void removeChildAt(int index) {
        host.calls.add("removeChildAt " + id + " " + index);
    }

    @Override
    public float[] getContentSize() {
        host.calls.add("getContentSize " + id);
        return host.contentSize.clone();
    }
}
