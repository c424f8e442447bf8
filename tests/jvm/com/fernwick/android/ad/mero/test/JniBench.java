package com.fernwick.android.ad.mero.test;

import com.fernwick.android.ad.mero.MRComponent;
import com.fernwick.android.ad.mero.components.GradientInfo;
import com.fernwick.android.ad.mero.components.swiper.MRSwiperComponent;
import com.fernwick.android.ad.mero.nativ_.MeroNative;

import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.HashMap;
import java.util.Map;
import java.util.regex.Matcher;
import java.util.regex.Pattern;

/**
 * Times the natives from Java: a card from loadTemplate to the returned root
 * view, and one click to the end of its flush. Beside each it prints the same
 * work without JNI, read from mero_bench's JSON output (BM_Instance*), and the
 * share JNI adds. Run with `cmake --build <build> --target jvm_bench`.
 */
public final class JniBench {
    private static final String[] CARDS = {"app_install_template.json", "carousel_template.json", "bridge_card.json"};
    private static final String[] NAMES = {"app_install", "carousel", "bridge_card"};

    private JniBench() {}

    /** A host whose views and services do as little as a host can. */
    static final class QuietHost extends MeroNative {
        final Map<String, MRComponent> views = new HashMap<>();
        final float[] textSize = {120f, 30f};

        @Override
        public MRComponent createComponent(
                int type, int[] ints, float[] floats, String[] strings, boolean[] booleans, GradientInfo gradient) {
            MRComponent view = type == 8 ? new QuietSwiper() : new QuietView();
            views.put(strings[0], view);
            return view;
        }

        @Override public void addRootView(MRComponent root) {}
        @Override public void removeRootView() {}
        @Override public MRComponent findComponentById(String componentId) { return views.get(componentId); }
        @Override public void updateComponentProperty(String componentId, int propertyId, Object value) {}
        @Override public void playComponentAnimation(
                String componentId, int propertyId, Object value, int timing, int duration, int delay) {}
        @Override public float[] measureText(String text, float fontSize, int style, int maxLines,
                float lineHeight, float textInterval, float width, int widthMode, float height, int heightMode) {
            return textSize;
        }
        @Override public void setTimeout(long delay, int jobId) {}
        @Override public void startVideoTimerTask(long second, int first, int[] times, int[] ids) {}
        @Override public void sendALog(String message) {}
        @Override public void callJSB(String method, String paramsJson, long callbackId) {}
        @Override public void callJSBWithKeyPath(
                String method, String paramsJson, String keyPathJson, long callbackId) {}
    }

    static class QuietView extends MRComponent {
        @Override public void addChild(MRComponent child) {}
        @Override public void addChildAt(int index, MRComponent child) {}
        @Override public void removeChildAt(int index) {}
        @Override public float[] getContentSize() { return new float[] {200f, 50f}; }
    }

    static final class QuietSwiper extends MRSwiperComponent {
        @Override public void addChild(MRComponent child) {}
        @Override public void addChildAt(int index, MRComponent child) {}
        @Override public void removeChildAt(int index) {}
        @Override public float[] getContentSize() { return new float[] {200f, 50f}; }
        @Override public void start() {}
    }

    public static void main(String[] args) throws IOException {
        System.load(System.getProperty("mero.library"));
        Path data = Path.of(System.getProperty("mero.benchData"));
        Map<String, Double> withoutJni = readNativeResults(System.getProperty("mero.nativeResults"));
        String feed = Files.readString(data.resolve("feed_data.json"));
        QuietHost host = new QuietHost();
        System.out.printf("%-34s %12s %12s %10s%n", "work", "JNI (us)", "no JNI (us)", "JNI share");
        for (int card = 0; card < CARDS.length; card++) {
            String template = Files.readString(data.resolve(CARDS[card]));
            // The two feed templates read the feed's data; the bridge card reads none.
            String cardData = NAMES[card].equals("bridge_card") ? "{}" : feed;
            startCards(host, template, cardData, 300);
            double micros = startCards(host, template, cardData, 2000);
            print("loadTemplate to root: " + NAMES[card], micros,
                    withoutJni.get("BM_InstanceStart_NoJni/" + NAMES[card] + "/manual_time"));
        }
        double click = clicks(host, Files.readString(data.resolve("bridge_card.json")));
        print("click to end of flush", click, withoutJni.get("BM_InstanceClick_NoJni"));
    }

    private static void print(String work, double jni, Double withoutJni) {
        if (withoutJni == null) {
            System.out.printf("%-34s %12.2f %12s %10s%n", work, jni, "-", "-");
            return;
        }
        System.out.printf("%-34s %12.2f %12.2f %9.0f%%%n", work, jni, withoutJni, 100.0 * (jni - withoutJni) / jni);
    }

    /** Mean microseconds from loadTemplate to the returned root view. */
    private static double startCards(QuietHost host, String template, String data, int count) {
        long total = 0;
        for (int i = 0; i < count; i++) {
            host.views.clear();
            host.initMREngine(7, false, false);
            host.setScreenWidth(7, 1080f);
            long start = System.nanoTime();
            host.loadTemplate(7, template);
            host.setData(7, data, "{}");
            host.initContainerSize(7, 1080f, 0f, 1, 0);
            host.initNode(7);
            host.triggerInitEvent(7);
            host.applyLayout(7);
            MRComponent root = host.createComponentTree(7);
            total += System.nanoTime() - start;
            if (root == null) {
                throw new IllegalStateException("no root view");
            }
            host.releaseInstance(7);
        }
        return total / 1000.0 / count;
    }

    /** Mean microseconds of one click, alternating two targets so each changes the title. */
    private static double clicks(QuietHost host, String template) {
        host.views.clear();
        host.initMREngine(8, false, false);
        host.setScreenWidth(8, 1080f);
        host.loadTemplate(8, template);
        host.setData(8, "{}", "{}");
        host.initContainerSize(8, 1080f, 0f, 1, 0);
        host.initNode(8);
        host.triggerInitEvent(8);
        host.applyLayout(8);
        host.createComponentTree(8);
        for (int i = 0; i < 20_000; i++) {
            host.sendClickEvent(8, i % 2 == 0 ? "title" : "icon");
        }
        int count = 100_000;
        long start = System.nanoTime();
        for (int i = 0; i < count; i++) {
            host.sendClickEvent(8, i % 2 == 0 ? "title" : "icon");
        }
        double micros = (System.nanoTime() - start) / 1000.0 / count;
        host.releaseInstance(8);
        return micros;
    }

    /** name -> real_time (microseconds) from Google Benchmark's JSON output. */
    private static Map<String, Double> readNativeResults(String file) throws IOException {
        Map<String, Double> times = new HashMap<>();
        if (file == null || !Files.exists(Path.of(file))) {
            return times;
        }
        Matcher entry = Pattern.compile("\"name\": \"([^\"]+)\",.*?\"real_time\": ([0-9.e+]+)", Pattern.DOTALL)
                .matcher(Files.readString(Path.of(file)));
        while (entry.find()) {
            times.put(entry.group(1), Double.parseDouble(entry.group(2)));
        }
        return times;
    }
}
