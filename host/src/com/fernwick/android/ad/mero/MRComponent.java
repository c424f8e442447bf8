package com.fernwick.android.ad.mero;

/**
 * A host view that the engine created and now drives: it receives its
 * children and reports its content size. The app gives the implementation.
 */
public abstract class MRComponent {
    public abstract void addChild(MRComponent child);

    public abstract void addChildAt(int index, MRComponent child);

    public abstract void removeChildAt(int index);

    /** The natural size of the content (an image's), width then height. */
    public abstract float[] getContentSize();
}
