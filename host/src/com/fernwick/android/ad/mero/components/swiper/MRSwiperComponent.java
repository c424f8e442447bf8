package com.fernwick.android.ad.mero.components.swiper;

import com.fernwick.android.ad.mero.MRComponent;

/** A carousel view; the engine calls start() once its pages are added. */
public abstract class MRSwiperComponent extends MRComponent {
    public abstract void start();
}
