package com.fernwick.android.ad.mero.test;

import com.fernwick.android.ad.mero.MRComponent;
import com.fernwick.android.ad.mero.components.swiper.MRSwiperComponent;

/** A carousel view that records what the engine does to it. */
class RecordingSwiper extends MRSwiperComponent {
    final RecordingHost host;
    final String id;

    RecordingSwiper(RecordingHost host, String id) {
        this.host = host;
        this.id = id;
    }

    @Override
    public void addChild(MRComponent child) {
        host.calls.add("addChild " + id + " " + RecordingComponent.idOf(child));
    }

    @Override
    public void addChildAt(int index, MRComponent child) {
        host.calls.add("addChildAt " + id + " " + index + " " + RecordingComponent.idOf(child));
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

    @Override
    public void start() {
        host.calls.add("start " + id);
    }
}
