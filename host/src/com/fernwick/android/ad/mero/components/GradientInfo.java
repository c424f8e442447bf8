package com.fernwick.android.ad.mero.components;

/** A view's background gradient: its type and up to five stops. */
public final class GradientInfo {
    public final int type;
    /** Stop colours; null where the gradient has fewer than five stops. */
    public final String[] colors;
    public final float[] positions;

    public GradientInfo(int type, String[] colors, float[] positions) {
        this.type = type;
        this.colors = colors;
        this.positions = positions;
    }
}
