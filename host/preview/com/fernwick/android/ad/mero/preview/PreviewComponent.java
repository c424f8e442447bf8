package com.fernwick.android.ad.mero.preview;

import com.fernwick.android.ad.mero.MRComponent;

/**
 * A host view for every component type but the swiper: a thin adapter that
 * applies the engine's child changes to its ViewNode. An Android host would
 * wrap a View or ViewGroup the same way.
 */
public final class PreviewComponent extends MRComponent {
    private final ViewNode node;

    public PreviewComponent(ViewNode node) {
        this.node = node;
    }

    public ViewNode node() {
        return node;
    }

    @Override public void addChild(MRComponent child) { addChildAt(node.children.size(), child); }
    @Override public void addChildAt(int index, MRComponent child) { insertChild(node, index, child); }
    @Override public void removeChildAt(int index) { removeChild(node, index); }
    @Override public float[] getContentSize() { return contentSize(node); }

    /** The ViewNode behind either kind of previewer component; null for null. */
    public static ViewNode nodeOf(MRComponent component) {
        if (component instanceof PreviewComponent view) {
            return view.node();
        }
        return component instanceof PreviewSwiperComponent swiper ? swiper.node() : null;
    }

    /** An index past the end appends, as a ViewGroup's addView does. */
    static void insertChild(ViewNode parent, int index, MRComponent child) {
        ViewNode node = nodeOf(child);
        if (node != null) {
            parent.children.add(Math.max(0, Math.min(index, parent.children.size())), node);
        }
    }

    static void removeChild(ViewNode parent, int index) {
        if (index >= 0 && index < parent.children.size()) {
            parent.children.remove(index);
        }
    }

    /** The loaded image's pixel size; {0, 0} while nothing is loaded. */
    static float[] contentSize(ViewNode node) {
        return new float[] {node.naturalWidth, node.naturalHeight};
    }
}
