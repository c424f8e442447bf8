package com.fernwick.android.ad.mero.preview;

import com.fernwick.android.ad.mero.MRComponent;
import com.fernwick.android.ad.mero.components.swiper.MRSwiperComponent;

/**
 * A carousel: its pages are its ViewNode's children and currentPage says
 * which one shows. start() (called once the pages are added) shows page 0 and,
 * with "autoplay", turns a page every "interval" ms of the virtual clock and
 * reports each turn with sendSwiperEvent, as the app's carousel would.
 */
public final class PreviewSwiperComponent extends MRSwiperComponent {
    private final ViewNode node;
    private final PreviewHost host;

    public PreviewSwiperComponent(ViewNode node, PreviewHost host) {
        this.node = node;
        this.host = host;
    }

    public ViewNode node() {
        return node;
    }

    @Override public void addChild(MRComponent child) { addChildAt(node.children.size(), child); }
    @Override public void addChildAt(int index, MRComponent child) { PreviewComponent.insertChild(node, index, child); }
    @Override public void removeChildAt(int index) { PreviewComponent.removeChild(node, index); }
    @Override public float[] getContentSize() { return PreviewComponent.contentSize(node); }

    @Override
    public void start() {
        node.currentPage = 0;
        if (node.flag(PropertyTable.AUTOPLAY)) {
            scheduleTurn();
        }
    }

    private void scheduleTurn() {
        long interval = (long) node.number(PropertyTable.SWIPER_INTERVAL);
        if (interval > 0 && node.children.size() > 1) {
            host.clock().schedule(interval, this::turnPage);
        }
    }

    /** Stops once this view has left the card (or was made again) or a non-circular swiper is on its last page. */
    private void turnPage() {
        if (host.findComponentById(node.id) != this) {
            return;
        }
        int next = node.currentPage + 1;
        if (next >= node.children.size()) {
            if (!node.flag(PropertyTable.CIRCULAR)) {
                return;
            }
            next = 0;
        }
        host.showPage(node, next);
        scheduleTurn();
    }
}
